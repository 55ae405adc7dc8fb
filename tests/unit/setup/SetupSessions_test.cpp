#include <array>
#include <tuple>

#include "setup/SetupDocument.h"
#include "setup/SetupFile.h"
#include "setup/SystemProfile.h"
#include "setup/clsIniFile.h"
#include "support/FixedLocale.h"
#include "support/MemoryFiles.h"
#include "support/RaisedBy.h"
#include "support/RecordingMessageBoxes.h"
#include "support/ShiftedCodePage.h"
#include "support/TestSession.h"
#include "util/FileText.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

const std::wstring path = L"C:\\data\\net.ini";

/// A program with an initialisation file, which may be a setup, and what others do to the file meanwhile.
class Session : public TestSession
{
public:
    Session()
    {
        for (clsIniFile* const each : {&western, &japanese}) {
            each->FullPath(path);
            each->SectionName(L"s");
        }
    }

    const Deeds deeds{
        // The file.
        {"file", [this] { files.Put(path, Bytes()); }},
        {"file-utf16", [this] { files.Put(path, "\xFF\xFE" + file_text::ToUtf16(Utf8Text(), SystemCodePage())); }},
        {"setup", [this] { files.Put(path, header + Bytes()); }},
        {"before", [this] { files.Put(path, Bytes() + files.Content(path)); }},
        {"folder", [this] { files.current = Text(); }},
        {"fails", [this] { files.FailOn(static_cast<FileOperation>(Number(0)), 1, FileFault::inUse, true); }},
        {"heals", [this] { files.Heal(); }},
        {"store", [this] { ini->IniWrite(Part(0), Part(1), Part(2), path); }},
        {"japanese", [this] { ini = &japanese; }},
        // Its sections and keys.
        {"section", [this] { ini->SectionName(Text()); }},
        {"begin-batch", [this] { ini->BeginBatch(); }},
        {"flush", [this] { ini->FlushCache(); }},
        {"empty-key", [this] { ini->DeleteStrEntry(Word(0)); }},
        {"delete-section", [this] { ini->DeleteSection(); }},
        {"win-ini", [this] { ini->UseWinINI(true); }},
        // The setup in it.
        {"product", [this] { product = Text(); }},
        {"model", [this] { model = Text(); }},
        {"mode", [this] { mode = Number(0); }},
        {"new-document", [this] { document = SetupDocument(); }},
        {"clean", [this] { document.dirty = false; }},
        {"belongs-to", [this] { std::tie(document.productName, document.appVersion) = std::pair(Word(0), Word(1)); }},
        {"remarks", [this] { document.measurementNotes = Text(); }},
        {"remarks-show", [this] { document.measurementShowNotesAfter = true; }},
        {"channels", [this] { document.ListSize(Number(0)); }},
        {"frequency", [this] { document.Frequency(Number(0), Value(1)); }},
        {"symbol-rate", [this] { document.SymbolRate(Number(0), Value(1)); }},
        {"default-rate", [this] { document.DefaultSymbolRate(Value(0)); }},
        {"uncouple", [this] { document.CoupleDisplayAndSave(false); }},
        {"order", [this] { document.Order(Number(0), static_cast<int16_t>(Number(1))); }},
        {"axis", [this] { document.XAxis(Number(0), Number(1)); }},
        {"mark", [this] { document.Parameter(Number(0), Number(1), true); }},
        {"shown-caption", [this] { document.Caption(Number(0), Text(1)); }},
        {"show-unit", [this] { document.LevelUnitDirect(Text()); }},
        {"parameters", [this] { document.Count(Number(0)); }},
        {"label", [this] { document.UserField(Number(0), Text(1)); }},
        {"caption", [this] { document.StoredCaption(Number(0), Text(1)); }},
        {"notes", [this] { document.Notes(Text()); }},
        {"real-path", [this] { document.fullPath = Text(); }},
        {"route", [this] { document.Zin(Number(0)); }},
    };
    const Sights sights{
        {"content", [this] { return Shown(files.Content(path)); }},
        {"content-of-win-ini", [this] { return Shown(files.Content(WindowsFolder() + L"/WIN.INI")); }},
        {"writes", [this] { return Told(files.Count(FileOperation::rename)); }},
        {"files", [this] { return Told(files.Paths().size()); }},

        {"get", [this] { return ini->GetString(Word(0), Word(1)); }},
        {"get-int", [this] { return Told(ini->GetInt(Word(0), static_cast<int16_t>(Number(1)))); }},
        {"get-long", [this] { return Told(ini->GetLong(Word(0), Number(1))); }},
        {"get-flag", [this] { return Told(ini->GetTF(Word(0), static_cast<int16_t>(Number(1)))); }},
        {"put", [this] { return Told(ini->PutString(Word(0), Text(1)) != 0); }},
        {"put-int", [this] { return Told(ini->PutInt(Word(0), Number(1)) != 0); }},
        {"put-flag", [this] { return Told(ini->PutTF(Word(0), static_cast<int16_t>(Number(1)))); }},
        {"delete-key", [this] { return Told(ini->DeleteNumEntry(Word(0))); }},
        {"commit", [this] { return Told(ini->CommitBatch()); }},
        {"entries", [this] { return ini->GetSectEntries(); }},
        {"pairs", [this] { return Pairs(); }},
        {"sections", [this] { return ini->GetSections(); }},
        {"has-section", [this] { return Told(ini->SectExist(Text())); }},
        {"exists", [this] { return Told(ini->Exists(Text())); }},
        {"full-path", [this] { return ini->FullPath(); }},
        {"section-name", [this] { return ini->SectionName(); }},
        {"stored", [this] { return Stored(path, Part(0), Part(1)); }},
        {"stored-in", [this] { return Stored(Part(0), Part(1), Part(2)); }},
        {"write-once", [this] { return Told(ini->IniWrite(L"t", Word(0), Text(1), L"C:\\other.ini") != 0); }},
        {"read-once", [this] { return ReadOnce(); }},
        {"messages", [this] { return Told(messages.messages.size()); }},
        {"message", [this] { return Message(); }},

        {"load", [this] { return Load(path); }},
        {"load-from", [this] { return Load(Text()); }},
        {"save", [this] { return Told(Save(path)); }},
        {"save-to", [this] { return Told(Save(Text())); }},
        {"product", [this] { return document.productName + L" " + document.appVersion; }},
        {"model", [this] { return model + L" " + std::to_wstring(mode) + L" " + std::to_wstring(document.mode); }},
        {"channels", [this] { return Told(document.ListSize()); }},
        {"parameters", [this] { return Told(document.Count()); }},
        {"channel", [this] { return Channel(); }},
        {"order", [this] { return Told(document.Order(Number(0))); }},
        {"caption", [this] { return document.StoredCaption(Number(0)); }},
        {"error-of", [this] { return ErrorOf(*this, std::string(rest)); }},
        {"title", [this] { return document.FileTitle() + L" in " + document.FolderOfFile(); }},
        {"default-rate", [this] { return FormatNumber(document.DefaultSymbolRate(), false, locale); }},
        {"marks", [this] { return Marks(); }},
        {"mark", [this] { return Told(document.Parameter(Number(0), Number(1))); }},
        {"shown-caption", [this] { return document.Caption(Number(0)); }},
        {"shows-notes", [this] { return Told(document.ShowNotesBefore()) + L" " + Told(document.ShowNotesAfter()); }},
        {"coupled", [this] { return Told(document.CoupleDisplayAndSave()); }},
        {"backup-to", [this] { return Told(BackupSetup(document, environment, product, L"2.1", Text())); }},
        {"backup-in",
         [this] { return Shown("[B" + files.Content(Text()).substr(files.Content(Text()).find("ackup]"))); }},
        {"is-backup", [this] { return Told(document.isBackup); }},
        {"remarks", [this] { return document.measurementNotes; }},
        {"remarks-show", [this] { return Told(document.measurementShowNotesAfter); }},
        {"notes", [this] { return document.Notes(); }},
        {"full-path-of-setup", [this] { return document.fullPath; }},
        {"dirty", [this] { return Told(document.dirty); }},
        {"numbers", [this] { return Numbers(); }},
        {"level-unit", [this] { return document.LevelUnit(); }},
    };

private:
    std::string Utf8Text() const { return file_text::FromWide(Text()); }
    /// The bytes of a file as text, of one in UTF-16 behind the word.
    static std::wstring Shown(const std::string& bytes)
    {
        return bytes.starts_with("\xFF\xFE")
                   ? L"UTF-16 " + file_text::ToWide(file_text::FromUtf16(bytes.substr(2)), SystemCodePage())
                   : SystemCodePage().Decode(bytes);
    }
    std::wstring Message() const
    {
        const RecordingMessageBoxes::Message& message = messages.messages.at(0);
        return (message.icon == MessageIcon::information ? L"(i) " : L"(!) ") + message.title + L": " + message.text;
    }
    /// A piece of the text that is divided by "|".
    std::wstring Part(size_t number) const
    {
        std::istringstream parts(rest);
        std::string part;
        for (size_t i = 0; i <= number; ++i) {
            std::getline(parts, part, '|');
        }
        return FromUtf8(part);
    }
    std::wstring Stored(const std::wstring& file, const std::wstring& section, const std::wstring& key)
    {
        std::wstring text;
        ini->IniRead(section, key, 0, L"(none)", text, false, file);
        return text;
    }
    std::wstring Pairs()
    {
        std::vector<std::array<std::wstring, 2>> entries;
        ini->GetSectEntriesEx(entries);
        std::wstring text;
        for (const auto& [key, value] : entries) {
            text += key + L" -> " + value + L";";
        }
        return text;
    }
    /// Number and text of a key in another file, whose default is 7 and "d".
    std::wstring ReadOnce()
    {
        std::wstring text;
        const int32_t number = ini->IniRead(L"t", Word(0), 7, L"d", text, true, L"C:\\other.ini");
        return std::to_wstring(number) + L" " + text;
    }
    /// Whether a setup is loaded, or the error that it ends with.
    std::wstring Load(const std::wstring& from)
    {
        bool isLoaded = false;
        const std::wstring raised =
            RaisedBy([&] { isLoaded = LoadSetup(document, environment, product, from, model, mode); });
        return raised.empty() ? Told(isLoaded) : raised;
    }
    /// Of each parameter whether it is displayed, saved, both, or none of it.
    std::wstring Marks() const
    {
        std::wstring marks;
        for (int32_t parameter = 1; parameter <= document.Count(); ++parameter) {
            marks += L"-dsb"[document.Parameter(1, parameter) + 2 * document.Parameter(2, parameter)];
        }
        return marks;
    }
    bool Save(const std::wstring& target) { return SaveSetup(document, environment, product, L"2.1", target); }
    std::wstring Channel() const
    {
        const int32_t number = Number(0);
        std::wstring text = FormatNumber(document.Frequency(number), false, locale);
        text += L" " + FormatNumber(document.SymbolRate(number), false, locale);
        return text + L" " + document.UserField(number);
    }
    /// Reference, samples, filter, order of QAM, roll-off, route, settling time and the two axes.
    std::wstring Numbers() const
    {
        std::wstring text;
        for (const int32_t number : {document.ReferenceSource(), document.BerSamples(), document.SawBw(),
                                     document.OrderOfQam(), document.RollOffFactor(), document.Zin(),
                                     document.MaxSettlingTime(), document.XAxis(0), document.XAxis(1)}) {
            text += (text.empty() ? L"" : L" ") + std::to_wstring(number);
        }
        return text;
    }

    const std::string header = "[Application]\r\nName=P\r\nVersion=2.0\r\n[Hardware]\r\nModel=2x\r\n";
    MemoryFiles files;
    RecordingMessageBoxes messages;
    FixedLocale locale;
    const ShiftedCodePage shifted{};
    clsIniFile western{files, messages}, japanese{files, messages, shifted};
    clsIniFile* ini = &western;
    SetupEnvironment environment{files, messages, locale};
    SetupDocument document;
    std::wstring product = L"P";
    std::wstring model;
    int32_t mode = 0;
};

TEST(Setup, IsReadAndWrittenAsEachSessionExpects)
{
    PlaySessions("setup-sessions.txt", [](const std::string&) { return std::make_unique<Session>(); });
}

}  // namespace
}  // namespace tvn2x
