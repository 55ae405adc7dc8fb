#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

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

/// Files of another file system whose n-th operation fails. A stamp that fails says that there is no file, a write that
/// fails has written half of its bytes, a close that fails has closed the file; any other operation has done nothing.
class FaultyFiles : public FileSystem
{
public:
    explicit FaultyFiles(FileSystem& files) : files_(files) {}

    /// Lets the n-th operation from now on (1 = the next), of any kind or of one kind, fail. With `lasting` all that
    /// follow it fail too.
    void FailAt(int n, FileFault fault) { plan_ = {n, fault, false, std::nullopt}; }
    void FailOn(FileOperation kind, int n, FileFault fault, bool lasting = false) { plan_ = {n, fault, lasting, kind}; }
    void Heal() { plan_ = {}; }

    /// True once a fault has been handed out since the last FailAt or FailOn.
    bool Failed() const { return plan_.fault != FileFault::none && plan_.countdown <= 0; }
    int Count(FileOperation kind) const { return counts_[static_cast<size_t>(kind)]; }

    FileStamp Stamp(const std::wstring& path) override
    {
        return Fault(FileOperation::stamp) != FileFault::none ? FileStamp() : files_.Stamp(path);
    }
    FileFault Read(const std::wstring& path, std::string& content, FileStamp& stamp) override
    {
        const FileFault fault = Fault(FileOperation::read);
        return fault != FileFault::none ? fault : files_.Read(path, content, stamp);
    }
    FileFault CreateTemporary(const std::wstring& target, std::wstring& path,
                              std::unique_ptr<OutputFile>& file) override
    {
        FileFault fault = Fault(FileOperation::create);
        if (fault == FileFault::none) {
            fault = files_.CreateTemporary(target, path, file);
        }
        if (fault == FileFault::none) {
            file = std::make_unique<Output>(*this, std::move(file));
        }
        return fault;
    }
    uint64_t Now() override { return files_.Now(); }
    FileFault Exclude(const std::wstring& path, std::unique_ptr<FileLock>& lock) override
    {
        const FileFault fault = Fault(FileOperation::exclude);
        return fault != FileFault::none ? fault : files_.Exclude(path, lock);
    }
    FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) override
    {
        const FileFault fault = Fault(FileOperation::rename);
        return fault != FileFault::none ? fault : files_.Rename(from, to, expected);
    }
    FileFault Remove(const std::wstring& path) override
    {
        const FileFault fault = Fault(FileOperation::remove);
        return fault != FileFault::none ? fault : files_.Remove(path);
    }
    std::optional<std::wstring> FindFirst(const std::wstring& pattern) override
    {
        return Fault(FileOperation::find) != FileFault::none ? std::nullopt : files_.FindFirst(pattern);
    }
    std::wstring CurrentFolder() override { return files_.CurrentFolder(); }

private:
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
        Output(FaultyFiles& owner, std::unique_ptr<OutputFile> inner) : owner_(owner), inner_(std::move(inner)) {}

        FileFault Write(std::string_view bytes) override
        {
            const FileFault fault = owner_.Fault(FileOperation::write);
            if (fault == FileFault::none) {
                return inner_->Write(bytes);
            }
            inner_->Write(bytes.substr(0, bytes.size() / 2));
            return fault;
        }
        FileFault Flush() override
        {
            const FileFault fault = owner_.Fault(FileOperation::flush);
            return fault != FileFault::none ? fault : inner_->Flush();
        }
        FileFault Close() override
        {
            const FileFault fault = owner_.Fault(FileOperation::close);
            const FileFault innerFault = inner_->Close();
            return fault != FileFault::none ? fault : innerFault;
        }

    private:
        FaultyFiles& owner_;
        std::unique_ptr<OutputFile> inner_;
    };

    FileFault Fault(FileOperation kind)
    {
        ++counts_[static_cast<size_t>(kind)];
        if (plan_.fault == FileFault::none || (plan_.kind && *plan_.kind != kind)) {
            return FileFault::none;
        }
        --plan_.countdown;
        return plan_.countdown == 0 || (plan_.countdown < 0 && plan_.lasting) ? plan_.fault : FileFault::none;
    }

    FileSystem& files_;
    Plan plan_;
    std::array<int, 10> counts_{};
};

}  // namespace tvn2x
