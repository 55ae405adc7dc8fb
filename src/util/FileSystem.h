#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tvn2x {

/// What identifies one state of a file: a file whose stamp is unchanged has not been written to since a tick after its
/// last change.
struct FileStamp
{
    bool exists = false;
    uint64_t size = 0;
    uint64_t modified = 0;  ///< of the clock that FileSystem::Now reads, at the file system's full resolution
    uint64_t identity = 0;  ///< file index or inode: another file under the same name differs

    bool operator==(const FileStamp&) const = default;
};

/// The tick of the clock that a stamp was taken from, in nanoseconds, as far as its digits tell. Two writes within one
/// tick may leave the same stamp.
uint64_t TickOf(const FileStamp& stamp);

/// Why an operation on a file has failed, on every system in the same words.
enum class FileFault
{
    none,
    missing,
    accessDenied,
    inUse,
    diskFull,
    pathMissing,
    readOnly,
    isDirectory,
    tooLarge,
    changed,
    other
};

/// What a fault means to a user, as the end of a sentence: "the disk is full".
std::wstring_view FaultText(FileFault fault);

/// A file being written. Closed without a trace of an error when it is destroyed.
class OutputFile
{
public:
    virtual ~OutputFile() = default;
    virtual FileFault Write(std::string_view bytes) = 0;
    virtual FileFault Flush() = 0;  ///< to the disk itself
    virtual FileFault Close() = 0;
};

/// Keeps the product's other writers away from a file, in this process and in all others of the machine, until it is
/// destroyed, on the thread that took it, or its process ends. Nothing on the disk tells of it.
class FileLock
{
public:
    virtual ~FileLock() = default;
};

/// Files as the product uses them. SystemFiles is the machine's; tests make the n-th operation fail. Paths are absolute
/// or relative to the current folder.
class FileSystem
{
public:
    virtual ~FileSystem() = default;

    /// The stamp of a file; exists is false where there is none.
    virtual FileStamp Stamp(const std::wstring& path) = 0;

    /// The machine's clock in nanoseconds from any fixed day. It may be set, and a file server's may go differently.
    virtual uint64_t Now() = 0;

    /// The whole content and the stamp it belongs to. A missing file is FileFault::missing.
    virtual FileFault Read(const std::wstring& path, std::string& content, FileStamp& stamp) = 0;

    /// Creates a new file with an unpredictable name in the folder of `target`, with the attributes and access rights
    /// of `target` where that exists. A read-only target, or one that is a folder, is refused. `path` receives its
    /// name.
    virtual FileFault CreateTemporary(const std::wstring& target, std::wstring& path,
                                      std::unique_ptr<OutputFile>& file) = 0;

    /// Takes a file for its writer alone, whatever path it is reached by and whether or not it exists. Another writer
    /// is waited for for half a second, then it is FileFault::inUse. Where the system has no means for it (some network
    /// shares) the call succeeds and `lock` stays empty.
    virtual FileFault Exclude(const std::wstring& path, std::unique_ptr<FileLock>& lock) = 0;

    /// Renames `from` over `to` in one step. A file that somebody holds open is tried again for half a second. With
    /// `expected` each try begins with a look at `to`: in another state it stays, and that is FileFault::changed.
    virtual FileFault Rename(const std::wstring& from, const std::wstring& to, const FileStamp* expected) = 0;
    virtual FileFault Remove(const std::wstring& path) = 0;

    /// The name, without its folder, of the first file that matches a path whose last part is a pattern
    /// ("C:\\data\\net.*"), nothing where none does. Folders do not count.
    virtual std::optional<std::wstring> FindFirst(const std::wstring& pattern) = 0;
    virtual std::wstring CurrentFolder() = 0;
};

/// The machine's files. One object for the process.
FileSystem& SystemFiles();

/// Where a path leads from the folder that is the current one now; the path itself where the system cannot tell.
std::wstring FullPath(const std::wstring& path);

/// Whether a name matches a pattern of "*" and "?", in any case. "*.*" matches every name, "net." a name without a dot.
bool MatchesPattern(std::wstring_view name, std::wstring_view pattern);

/// A new content for a file, being written to a temporary file beside it. Until Commit the old file is whole; whatever
/// ends this before it leaves no temporary.
class Replacement
{
public:
    explicit Replacement(FileSystem& files) : files_(files) {}
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement() { Discard(); }

    /// Begins anew: what was open before is discarded.
    FileFault Open(const std::wstring& path);
    bool IsOpen() const { return file_ != nullptr; }
    /// Only while open. What would be larger than Read takes is FileFault::tooLarge: what nobody could read again must
    /// not take the place of what can be read.
    FileFault Write(std::string_view bytes);
    /// Flushes the content to the disk; nothing can be written any more.
    FileFault Finish();
    /// Finishes and puts the content in the file's place, in one step. Afterwards nothing is open.
    FileFault Commit();
    /// The same where the file still is in the state that the content was made from, otherwise FileFault::changed. For
    /// who has excluded the other writers since before that state was read.
    FileFault Commit(const FileStamp& state);
    void Discard() noexcept;

private:
    FileFault Ended(FileFault fault);

    FileSystem& files_;
    std::wstring path_;
    std::wstring temporary_;  ///< "" where there is none to remove
    std::unique_ptr<OutputFile> file_;
    uint64_t written_ = 0;  ///< bytes
};

/// Renames `from` over `to` in one step, and not while another writer of the product works on `to`.
FileFault MoveInto(FileSystem& files, const std::wstring& from, const std::wstring& to);

/// Replaces a file's content, or creates the file, in one step.
FileFault ReplaceContent(FileSystem& files, const std::wstring& path, std::string_view content);

}  // namespace tvn2x
