#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "setup/SetupDocument.h"
#include "util/CodePage.h"
#include "util/FileSystem.h"
#include "util/MessageBox.h"
#include "util/modLocaleInfo.h"

namespace tvn2x {

/// What the setup file needs of its surroundings.
struct SetupEnvironment
{
    FileSystem& files;
    MessageBoxes& messages;
    const Locale& locale;
    const CodePage& codePage = SystemCodePage();
};

/// Fills the document from a setup file, current or version 1.4, and tells model and mode of the receiver it is for.
///
/// False where the file does not exist, is another product's or another model's; the document then has at most the
/// file's product name and version. Raises 13 where a frequency or a symbol rate is no number, and 380 where the file
/// names more channels or parameters than it can hold: the document then is as it was. A file that cannot be read
/// looks like one without keys. Integers that are none take their default.
bool LoadSetup(SetupDocument& document, const SetupEnvironment& environment, const std::wstring& productName,
               const std::wstring& fullPath, std::wstring& model, int32_t& mode);

/// Writes the document into a file (its own where the path is empty), in one step. Keys and sections that are not the
/// document's stay. The file becomes the document's and the document clean.
///
/// False where the document has no file, where LoadSetup would refuse what is to be written (a number without end, more
/// parameters than it takes), where a text cannot be written (a lone line end, more than 32,767 characters, a character
/// beyond the code page in a file with bytes that are none of its characters), or where the file cannot be replaced. A
/// text that cannot be written ends the file there: what comes before it is saved. A NUL ends a text. Where the code
/// page cannot hold a text the file becomes UTF-16LE.
bool SaveSetup(SetupDocument& document, const SetupEnvironment& environment, const std::wstring& productName,
               const std::wstring& appVersion, const std::wstring& fullPath = {});

/// Writes the document and what it belongs to into a backup file. The document stays as it is. False as SaveSetup.
bool BackupSetup(const SetupDocument& document, const SetupEnvironment& environment, const std::wstring& productName,
                 const std::wstring& appVersion, const std::wstring& fullPath);

/// Whether SaveSetup can write these notes: no lone line end, at most 32,767 characters with four for each line end.
bool CanStoreNotes(const std::wstring& notes);

/// Line ends of notes: mode 0 writes each CR LF as the four characters \r\n, mode 1 reads them back. A lone CR or LF
/// stays. Another mode raises 1000.
std::wstring ProcessCrLf(std::wstring_view text, int32_t mode);

}  // namespace tvn2x
