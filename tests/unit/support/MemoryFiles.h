#pragma once

#include <limits>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "util/FileSystem.h"

namespace tvn2x {

/// Files that live in memory, under the paths they are given (no path is normalised). Every folder exists.
class MemoryFiles : public FileSystem
{
public:
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
        const auto found = entries_.find(path);
        return found == entries_.end() ? FileStamp() : StampOf(*found->second);
    }

    uint64_t Now() override { return now != 0 ? now : std::numeric_limits<uint64_t>::max() / 2; }

    FileFault Read(const std::wstring& path, std::string& content, FileStamp& stamp) override
    {
        const auto found = entries_.find(path);
        if (found == entries_.end()) {
            return FileFault::missing;
        }
        content = found->second->content;
        stamp = StampOf(*found->second);
        return FileFault::none;
    }

    FileFault CreateTemporary(const std::wstring& target, std::wstring& path,
                              std::unique_ptr<OutputFile>& file) override
    {
        if (readOnly.count(target) != 0) {
            return FileFault::readOnly;
        }
        path = target + L"." + std::to_wstring(++counter_) + L".tmp";
        Put(path, {});
        file = std::make_unique<Output>(entries_[path], *this);
        return FileFault::none;
    }

    FileFault Exclude(const std::wstring&, std::unique_ptr<FileLock>& lock) override
    {
        lock = std::make_unique<FileLock>();
        return FileFault::none;
    }

    FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) override
    {
        if (expected != nullptr && !(Stamp(to) == *expected)) {
            return FileFault::changed;
        }
        if (readOnly.count(to) != 0) {
            return FileFault::readOnly;
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
        return entries_.erase(path) != 0 ? FileFault::none : FileFault::missing;
    }

    std::optional<std::wstring> FindFirst(const std::wstring& pattern) override
    {
        const std::wstring folder = Folder(pattern);
        for (const auto& [path, entry] : entries_) {
            if (Folder(path) == folder &&
                MatchesPattern(std::wstring_view(path).substr(folder.size()), pattern.substr(folder.size()))) {
                return path.substr(folder.size());
            }
        }
        return std::nullopt;
    }

    std::wstring CurrentFolder() override { return current; }

    std::wstring current = L"C:\\current";
    std::set<std::wstring> readOnly;  ///< files that may not be written
    /// The time of day, which files get as the last even second. At 0 each write has a time of its own, long ago.
    uint64_t now = 0;

private:
    struct Entry
    {
        uint64_t identity = 0;
        uint64_t modified = 0;
        std::string content{};
    };

    class Output : public OutputFile
    {
    public:
        Output(std::shared_ptr<Entry> entry, MemoryFiles& files) : entry_(std::move(entry)), files_(files) {}
        FileFault Write(std::string_view bytes) override
        {
            entry_->content.append(bytes);
            entry_->modified = files_.Time();
            return FileFault::none;
        }
        FileFault Flush() override { return FileFault::none; }
        FileFault Close() override { return FileFault::none; }

    private:
        std::shared_ptr<Entry> entry_;
        MemoryFiles& files_;
    };

    uint64_t Time()
    {
        constexpr uint64_t tick = 2'000'000'000;
        return now != 0 ? now - now % tick : ++counter_;
    }
    static FileStamp StampOf(const Entry& entry)
    {
        return {true, entry.content.size(), entry.modified, entry.identity};
    }
    static std::wstring Folder(const std::wstring& path) { return path.substr(0, path.find_last_of(L"\\/") + 1); }

    std::map<std::wstring, std::shared_ptr<Entry>> entries_;
    uint64_t counter_ = 0;
};

/// Files on which memory runs out when all is written.
class ExhaustedFiles : public MemoryFiles
{
public:
    FileFault Rename(const std::wstring&, const std::wstring&, const FileStamp*) override { throw std::bad_alloc(); }
};

}  // namespace tvn2x
