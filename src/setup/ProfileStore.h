#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/ProfileFile.h"
#include "util/FileSystem.h"

namespace tvn2x {

/// One initialisation file on the disk. Outside a batch a read sees what the file holds now and a write is committed at
/// once; a batch reads and changes one state of the file and commits it once.
///
/// A commit replaces the file in one step, so the old file or the new one is there, never a piece. A file that another
/// program has changed since it was read is read again, and our writes are made in it. Commits of several stores, in
/// whatever processes, wait for each other, so each finds the writes of all before it; one that waits for more than
/// half a second fails. Programs that know nothing of this are looked for as the last thing before the file is
/// replaced.
class ProfileStore
{
public:
    explicit ProfileStore(FileSystem& files, const CodePage& codePage = SystemCodePage())
        : files_(files), codePage_(codePage)
    {
    }

    /// Binds to another file; what a batch has not committed is dropped.
    void Bind(std::wstring path);

    /// The file as it is now, or as the batch has changed it. A file that cannot be read looks empty, and cannot be
    /// written.
    const ProfileFile& Profile();
    bool Readable();

    /// Texts are as Profile() takes them. False where the text cannot be written or the commit fails.
    bool Write(std::string_view section, std::string_view key, std::optional<std::string_view> value);
    bool DeleteSection(std::string_view section);

    void BeginBatch();
    /// Ends the batch. True where the file on the disk holds every write; false leaves the file as it was.
    bool CommitBatch();
    bool InBatch() const { return batch_; }

private:
    /// One write: lengths of its texts in the log, -1 for one that is not there. Without a key a section is removed.
    struct Change
    {
        int32_t section;
        int32_t key;
        int32_t value;
    };
    using Text = std::optional<std::string_view>;

    void Load();
    void NoteAge(uint64_t begin);
    bool IsCurrent();
    bool Apply(std::string_view section, Text key, Text value);
    bool Record(std::string_view section, Text key, Text value);
    bool Commit();
    FileFault ReplaceFile();
    bool Replay();
    void Abandon();

    FileSystem& files_;
    const CodePage& codePage_;
    std::wstring path_;
    ProfileFile profile_;
    FileStamp stamp_;
    uint64_t seen_ = 0;     ///< when the stamp was first seen
    bool isYoung_ = false;  ///< a second write within the tick of the first may have left the same stamp
    size_t hash_ = 0;       ///< of the content, where the stamp is young
    FileFault fault_ = FileFault::none;
    bool loaded_ = false;
    bool batch_ = false;
    std::vector<Change> changes_;
    std::string log_;  ///< the texts of the changes, one behind the other
};

}  // namespace tvn2x
