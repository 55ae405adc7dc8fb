#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "setup/ProfileStore.h"
#include "util/FileSystem.h"
#include "util/MessageBox.h"

namespace tvn2x {

/// One initialisation file and one current section: each read or write names the key alone.
///
/// Outside a batch every read sees the file as it is now and every write is committed at once, in one step. A read,
/// write or delete without a section name tells the user so and has no effect. A text that holds a line end, or more
/// than 32,767 characters, is not written; a NUL ends a text. One that the code page cannot hold makes the private file
/// a UTF-16LE file, and is not written to WIN.INI. Nothing here raises an error of its own.
class clsIniFile
{
public:
    /// Bound to the running module's own .ini file beside it, section "General".
    clsIniFile(FileSystem& files, MessageBoxes& messages, const CodePage& codePage = SystemCodePage());
    virtual ~clsIniFile() = default;

    const std::wstring& PrivPath() const { return privatePath_; }
    void UseWinINI(bool use);
    bool UseWinINI() const { return useWinIni_; }
    /// Ends a batch without writing what it has not committed. A bare name means a file in the system's folder.
    void FullPath(const std::wstring& path);
    const std::wstring& FullPath() const { return fullPath_; }
    const std::wstring& FilePath() const { return filePath_; }
    const std::wstring& FileName() const { return fileName_; }  ///< without extension
    const std::wstring& FileExt() const { return fileExt_; }    ///< without the dot
    void SectionName(const std::wstring& name);
    const std::wstring& SectionName() const { return sectionName_; }

    /// File name of a path, or of the full path where it is empty: 1 before its first ".", 2 behind it, 0 the whole.
    std::wstring ExtractName(const std::wstring& path, int32_t choice) const;
    /// Folder of a path, without a separator at its end unless it is a root; relative to the current folder and drive.
    std::wstring ExtractPath(const std::wstring& path) const;
    int16_t Exists(const std::wstring& name) const;  ///< -1 where a file has that name, else 0; "net" finds "net.*"

    std::wstring GetString(const std::wstring& key, const std::wstring& defaultValue);
    int16_t GetInt(const std::wstring& key, int16_t defaultValue);   ///< modulo 2^16
    int32_t GetLong(const std::wstring& key, int32_t defaultValue);  ///< modulo 2^32
    /// YES, Y, TRUE, T, ON, 1 and -1 are true in any case, every other text is false.
    bool GetTF(const std::wstring& key, int16_t defaultValue);
    int16_t PutString(const std::wstring& key, const std::wstring& value);  ///< -1 on success, else 0
    int16_t PutInt(const std::wstring& key, int32_t value);
    bool PutTF(const std::wstring& key, int16_t value);
    void DeleteStrEntry(const std::wstring& key);  ///< empties the key
    bool DeleteNumEntry(const std::wstring& key);  ///< removes the key; true on success
    void DeleteSection();

    std::wstring GetSectEntries();  ///< "key=value", each ended by a NUL
    void GetSectEntriesEx(std::vector<std::array<std::wstring, 2>>& entries);
    std::wstring GetSections();  ///< each name ended by a NUL, the list by another
    void GetSectionsEx(std::vector<std::wstring>& names);
    bool SectExist(const std::wstring& name);
    /// Commits what a batch has written so far and goes on with the batch; nothing is ever kept back outside one.
    void FlushCache();

    /// One read of any section and file. With `readNumber` the number is returned and its text is in `text`; without it
    /// the text alone is read.
    int16_t IniRead(const std::wstring& section, const std::wstring& key, int16_t defaultNumber,
                    const std::wstring& defaultText, std::wstring& text, bool readNumber, const std::wstring& path);
    int16_t IniWrite(const std::wstring& section, const std::wstring& key, const std::wstring& value,
                     const std::wstring& path);

    /// From here on reads and writes work on one state of the private file, until CommitBatch makes the writes or,
    /// false, leaves the file as it was.
    void BeginBatch() { store_.BeginBatch(); }
    bool CommitBatch() { return store_.CommitBatch(); }

    /// For callers that build many keys: the private file, with a key in ASCII.
    std::optional<std::wstring> Find(std::string_view key);
    bool Has(std::string_view key);
    int32_t FindLong(std::string_view key, int32_t defaultValue);
    bool Put(std::string_view key, std::wstring_view value);
    bool Delete(std::string_view key);
    /// The size of the private file as it was read, in bytes of UTF-8.
    size_t TextSize() { return store_.Profile().TextSize(); }
    /// Whether the private file can be read, or does not exist.
    bool Readable() { return store_.Readable(); }

protected:
    /// Called after each write to WIN.INI, for a descendant that tells other programs.
    virtual void WinIniWritten() {}

private:
    bool Registered() const;
    bool WriteKey(const std::wstring& key, const std::optional<std::wstring>& value);
    void TakePath(const std::wstring& path);
    std::wstring FileOf(const std::wstring& path) const;

    FileSystem& files_;
    MessageBoxes& messages_;
    const CodePage& codePage_;
    ProfileStore store_;
    std::wstring sectionName_;
    std::wstring privatePath_;
    std::wstring fullPath_;
    std::wstring filePath_;
    std::wstring fileName_;
    std::wstring fileExt_;
    bool useWinIni_ = false;
    std::string section_;  ///< the section's name as a profile takes it
};

}  // namespace tvn2x
