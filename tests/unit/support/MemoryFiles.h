#pragma once

#include <array>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/FileSystem.h"

namespace tvn2x {

enum class FileOperation
{
    stamp,
    read,
    create,
    write,
    flush,
    close,
    exclude,
    rename,
    remove,
    find
};

/// Files that live in memory, under the paths they are given (no path is normalised). Every folder exists. The n-th
/// operation may be made to fail: a stamp that fails says that there is no file, a write that fails has written half of
/// its bytes, any other operation has done nothing.
class MemoryFiles : public FileSystem
{
public:
    /// Lets the n-th operation from now on (1 = the next), of any kind or of one kind, fail. With `lasting` all that
    /// follow it fail too.
    void FailAt(int n, FileFault fault) { plan_ = {n, fault, false, std::nullopt}; }
    void FailOn(FileOperation kind, int n, FileFault fault, bool lasting = false) { plan_ = {n, fault, lasting, kind}; }
    void Heal() { plan_ = {}; }
    /// True once a fault has been handed out since the last FailAt or FailOn.
    bool Failed() const { return plan_.fault != FileFault::none && plan_.countdown <= 0; }
    int Count(FileOperation kind) const { return counts_[static_cast<size_t>(kind)]; }

    void Put(const std::wstring& path, std::string_view content)
    {
        std::shared_ptr<Entry>& entry = entries_[path];
        if (!entry) {
            entry = std::make_shared<Entry>(Entry{.identity = ++counter_});
        }
        entry->content = content;
        entry->modified = Time();
    }
    bool Exists(const std::wstring& path) const { return entries_.count(path) != 0; }
    /// The bytes of a file, empty where there is none.
    std::string Content(const std::wstring& path) const
    {
        const auto found = entries_.find(path);
        return found == entries_.end() ? std::string() : found->second->content;
    }
    std::vector<std::wstring> Paths() const
    {
        std::vector<std::wstring> paths;
        for (const auto& [path, entry] : entries_) {
            paths.push_back(path);
        }
        return paths;
    }

    FileStamp Stamp(const std::wstring& path) override
    {
        return Begin(FileOperation::stamp) != FileFault::none ? FileStamp() : StampAt(path);
    }

    uint64_t Now() override { return now != 0 ? now : std::numeric_limits<uint64_t>::max() / 2; }

    FileFault Read(const std::wstring& path, std::string& content, FileStamp& stamp) override
    {
        const FileFault fault = Begin(FileOperation::read);
        if (fault != FileFault::none || !Exists(path)) {
            return fault != FileFault::none ? fault : FileFault::missing;
        }
        content = Content(path);
        stamp = StampAt(path);
        return FileFault::none;
    }

    FileFault CreateTemporary(const std::wstring& target, std::wstring& path,
                              std::unique_ptr<OutputFile>& file) override
    {
        if (const FileFault fault = Begin(FileOperation::create); fault != FileFault::none) {
            return fault;
        }
        path = target + L"." + std::to_wstring(++counter_) + L".tmp";
        Put(path, {});
        file = std::make_unique<Output>(entries_[path], *this);
        return FileFault::none;
    }

    FileFault Exclude(const std::wstring&, std::unique_ptr<FileLock>& lock) override
    {
        const FileFault fault = Begin(FileOperation::exclude);
        lock = fault == FileFault::none ? std::make_unique<FileLock>() : nullptr;
        return fault;
    }

    FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) override
    {
        if (const FileFault fault = Begin(FileOperation::rename); fault != FileFault::none) {
            return fault;
        }
        if (expected != nullptr && !(StampAt(to) == *expected)) {
            return FileFault::changed;
        }
        const auto found = entries_.find(from);
        if (found == entries_.end()) {
            return FileFault::missing;
        }
        entries_[to] = found->second;
        entries_.erase(from);
        return FileFault::none;
    }

    FileFault Remove(const std::wstring& path) override
    {
        const FileFault fault = Begin(FileOperation::remove);
        const bool isOpen = Exists(path) && entries_[path].use_count() > 1;
        if (fault != FileFault::none || isOpen) {
            return isOpen ? FileFault::inUse : fault;
        }
        return entries_.erase(path) != 0 ? FileFault::none : FileFault::missing;
    }

    std::optional<std::wstring> FindFirst(const std::wstring& pattern) override
    {
        const std::wstring folder = Folder(pattern);
        const bool isFound = Begin(FileOperation::find) == FileFault::none;
        for (const auto& [path, entry] : entries_) {
            if (isFound && Folder(path) == folder &&
                MatchesPattern(std::wstring_view(path).substr(folder.size()), pattern.substr(folder.size()))) {
                return path.substr(folder.size());
            }
        }
        return std::nullopt;
    }

    std::wstring CurrentFolder() override { return current; }

    std::function<void(FileOperation)> before;  ///< runs before each operation: what somebody else does at this moment
    std::wstring current = L"C:\\current";
    /// The time of day, which files get as the last even second. At 0 each write has a time of its own, long ago.
    uint64_t now = 0;

private:
    struct Entry
    {
        uint64_t identity = 0;
        uint64_t modified = 0;
        std::string content{};
    };

    struct Plan
    {
        int countdown = 0;
        FileFault fault = FileFault::none;
        bool lasting = false;
        std::optional<FileOperation> kind;
    };

    class Output : public OutputFile
    {
    public:
        Output(std::shared_ptr<Entry> entry, MemoryFiles& files) : entry_(std::move(entry)), files_(files) {}
        FileFault Write(std::string_view bytes) override
        {
            const FileFault fault = files_.Begin(FileOperation::write);
            entry_->content.append(bytes.substr(0, fault == FileFault::none ? bytes.size() : bytes.size() / 2));
            entry_->modified = files_.Time();
            return fault;
        }
        FileFault Flush() override { return files_.Begin(FileOperation::flush); }
        FileFault Close() override { return files_.Begin(FileOperation::close); }

    private:
        std::shared_ptr<Entry> entry_;
        MemoryFiles& files_;
    };

    /// What becomes of an operation that begins.
    FileFault Begin(FileOperation kind)
    {
        ++counts_[static_cast<size_t>(kind)];
        if (before) {
            before(kind);
        }
        if (plan_.fault == FileFault::none || (plan_.kind && *plan_.kind != kind)) {
            return FileFault::none;
        }
        --plan_.countdown;
        return plan_.countdown == 0 || (plan_.countdown < 0 && plan_.lasting) ? plan_.fault : FileFault::none;
    }
    uint64_t Time()
    {
        constexpr uint64_t tick = 2'000'000'000;
        return now != 0 ? now - now % tick : ++counter_;
    }
    FileStamp StampAt(const std::wstring& path) const
    {
        const auto found = entries_.find(path);
        return found == entries_.end()
                   ? FileStamp()
                   : FileStamp{true, found->second->content.size(), found->second->modified, found->second->identity};
    }
    static std::wstring Folder(const std::wstring& path) { return path.substr(0, path.find_last_of(L"\\/") + 1); }

    std::map<std::wstring, std::shared_ptr<Entry>> entries_;
    uint64_t counter_ = 0;
    Plan plan_;
    std::array<int, 10> counts_{};
};

}  // namespace tvn2x
