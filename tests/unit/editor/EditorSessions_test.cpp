#include <cmath>
#include <sstream>

#include "TestEditor.h"
#include "editor/EditorKeys.h"
#include "support/DocumentParts.h"
#include "support/TestSession.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

const std::string columns = "caption display save - - - - - - - label frequency rate ";
const std::string controls = "other tabs list cell rate settling notes ";
const std::string commands =
    "insert remove moveUp moveDown undo redo cut copy paste pasteRows duplicate fillDown fillSeries addChannels find "
    "findNext goTo selectAll editCell sort ";
const std::string pages = "settings application frequencies parameters notes xAxis ";

/// The place of a word in a list of them.
int32_t PlaceOf(const std::string& word, const std::string& words)
{
    const size_t found = (" " + words).find(" " + word + " ");
    EXPECT_NE(found, std::string::npos) << word;
    return static_cast<int32_t>(std::count(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(found), ' '));
}

/// A user of the editor.
class Session : public TestSession
{
public:
    explicit Session(const std::wstring& decimal) : test(decimal) {}

    const Deeds deeds{
        {"document-caption", [this] { document.Caption(Number(0), Text(1)); }},
        {"document-order", [this] { document.Order(Number(0), static_cast<int16_t>(Number(1))); }},
        {"document-parameters", [this] { document.Count(Number(0)); }},
        {"document-mark", [this] { document.Parameter(1, Number(0), true); }},
        {"document-channels", [this] { document.ListSize(Number(0)); }},
        {"document-no-frequency", [this] { document.Frequency(1, std::nan("")); }},
        {"document-level-unit", [this] { document.LevelUnit(Text()); }},
        {"document-filter", [this] { document.SawBw(Number(0)); }},
        {"document-route", [this] { document.Zin(Number(0)); }},
        {"document-reference", [this] { document.ReferenceSource(Number(0)); }},
        {"document-file-axis", [this] { document.XAxis(1, Number(0)); }},
        {"document-order-of-qam", [this] { document.OrderOfQam(Number(0)); }},
        {"document-notes", [this] { document.Notes(Text()); }},
        {"activate", [this] { Activate(); }},
        {"open", [this] { Open(); }},
        {"visible", [this] { editor.SetVisibleRows(Shown(), Number(0)); }},
        {"page", [this] { editor.SelectPage(static_cast<Page>(PlaceOf(words[0], pages))); }},
        {"focus", [this] { test.view.Focus(Focused().first, 0); }},
        {"click", [this] { editor.CellClicked(ColumnOf(), Number(1)); }},
        {"press", [this] { taken = editor.CellPressed(ColumnOf(), Number(1), Held(2)); }},
        {"drag", [this] { editor.DraggedTo(Shown(), Number(0)); }},
        {"row", [this] { editor.RowSelected(ColumnOf(), Number(1)); }},
        {"menu", [this] { editor.MenuAsked(ColumnOf(), Number(1)); }},
        {"scroll", [this] { editor.Scrolled(ColumnOf(), Number(1)); }},
        {"heading", [this] { editor.HeadingClicked(ColumnOf()); }},
        {"access-key", [this] { editor.HeadingAccessKey(ColumnOf()); }},
        {"edit", [this] { editor.BeginCellEdit(ColumnOf(), Number(1), 0); }},
        {"key", [this] { Press(); }},
        {"character", [this] { taken = editor.ListChar(ColumnOf(), Text(1).at(0)); }},
        {"in-cell", [this] { taken = editor.CellKeyDown(Key(), Held(1) != 0); }},
        {"enter", [this] { test.Enter(); }},
        {"escape", [this] { test.Escape(); }},
        {"type", [this] { test.Type(Text()); }},
        {"text", [this] { editor.CellTextChanged(Text()); }},
        {"set", [this] { test.Set(ColumnOf(), Number(1), Text(2)); }},
        {"do", [this] { editor.Execute(Command(), Shown()); }},
        {"answer", [this] { Answer(); }},
        {"clipboard", [this] { test.view.clipboard = Text(); }},
        {"clipboard-held", [this] { test.view.clipboard.reset(); }},
        {"paste-over", [this] { taken = editor.PasteOverCell(); }},
        {"field", [this] { editor.TextChanged(FieldOf(), Text(1)); }},
        {"level-unit", [this] { test.Choose(Choice::levelUnit, Text()); }},
        {"roll-off", [this] { test.Choose(Choice::rolloffFactor, Text()); }},
        {"ber-samples", [this] { test.Choose(Choice::berIntegration, Text()); }},
        {"no-order-of-qam", [this] { editor.SelectItem(Choice::orderOfQam, 99); }},
        {"notes", [this] { WriteNotes(Text()); }},
        {"long-notes", [this] { WriteNotes(std::wstring(static_cast<size_t>(Number(0)), L'x')); }},
        {"protect", [this] { editor.NotesButton(true); }},
        {"unprotect", [this] { editor.NotesButton(false); }},
        {"edit-protected", [this] { taken = editor.AllowNotesEdit(true); }},
        {"edit-notes", [this] { taken = editor.AllowNotesEdit(false); }},
        {"uncouple", [this] { editor.SetCheck(Check::couple, false); }},
        {"close-sign", [this] { editor.CloseSign(); }},
        {"cancel", [this] { editor.Cancel(); }},
        {"ok", [this] { editor.Ok(); }},
    };
    void IsDone() const { test.view.ExpectWhatTheEditorHolds(); }
    const Sights sights{
        {"taken", [this] { return Told(taken); }},
        {"editing", [this] { return test.Editing(); }},
        {"marked-from", [this] { return Told(editor.CurrentEdit().selectionStart); }},
        {"marked", [this] { return Told(editor.CurrentEdit().selectionLength); }},
        {"enter-is-ok", [this] { return Told(editor.OkIsDefault()); }},
        {"escape-is-cancel", [this] { return Told(editor.CancelIsCancel()); }},
        {"column", [this] { return test.Texts(ColumnOf()); }},
        {"cell", [this] { return editor.CellText(ColumnOf(), Number(1)); }},
        {"checked", [this] { return Told(editor.CellChecked(ColumnOf(), Number(1))); }},
        {"passing", [this] { return Passing(Text(), [this](wchar_t c) { return editor.CellChar(c); }); }},
        {"passing-field",
         [this] { return Passing(Text(1), [this](wchar_t c) { return editor.FieldChar(FieldOf(), c); }); }},
        {"selected", [this] { return Selected(); }},
        {"rows", [this] { return Told(editor.RowCount(Shown())); }},
        {"top", [this] { return Told(editor.TopRow(Shown())); }},
        {"arrow", [this] { return std::wstring(1, L"-^v"[static_cast<size_t>(editor.Arrow(ColumnOf()))]); }},
        {"keyboard-at", [this] { return Told(test.view.focus == Focused()); }},
        {"shown-page", [this] { return Told(editor.CurrentPage() == static_cast<Page>(PlaceOf(words[0], pages))); }},
        {"beeps", [this] { return Told(std::exchange(test.view.beeps, 0)); }},
        {"can", [this] { return Told(editor.CanExecute(Command(), Shown())); }},
        {"asked", [this] { return test.view.asked; }},
        {"fault", [this] { return test.view.answerFault; }},
        {"confirmed", [this] { return Told(test.view.confirmed); }},
        {"remark", [this] { return editor.RemarkOn(Shown(), Number(0)); }},
        {"messages", [this] { return Told(test.messages.messages.size()); }},
        {"message", [this] { return test.messages.messages.back().text; }},
        {"row-at-message", [this] { return Told(rowAtMessage); }},
        {"clipboard", [this] { return *test.view.clipboard; }},
        {"closed", [this] { return Told(test.view.closed); }},
        {"outcome", [this] { return std::wstring(editor.Tag()); }},
        {"channels", [this] { return Channels(); }},
        {"document", [this] { return Parameter(); }},
        {"coupled", [this] { return Told(document.CoupleDisplayAndSave()); }},
        {"settling-time", [this] { return Told(document.MaxSettlingTime()); }},
        {"settings", [this] { return Settings(); }},
        {"stored-notes", [this] { return document.Notes(); }},
        {"shown-notes", [this] { return test.view.notes; }},
        {"notes-calls", [this] { return test.view.notesCalls; }},
        {"shown-controls", [this] { return Told(test.view.shown - checkCount - choiceCount); }},
        {"unchanged", [this] { return Told(Everything(document) == opened); }},
        {"document-dirty", [this] { return Told(document.dirty); }},
    };

private:
    Column ColumnOf(size_t word = 0) const { return PlaceOf(words.at(word), columns); }
    RowCommand Command() const { return static_cast<RowCommand>(PlaceOf(words[0], commands)); }
    Field FieldOf() const { return static_cast<Field>(PlaceOf(words[0], "rate settling ")); }
    Grid Shown() const { return editor.CurrentPage() == Page::parameters ? Grid::parameters : Grid::channels; }
    unsigned Held(size_t from) const
    {
        unsigned all = 0;
        for (size_t i = from; i < words.size() && !words[i].empty(); ++i) {
            all |= 1U << PlaceOf(words[i], "shift control alt ");
        }
        return all;
    }
    int32_t Key() const
    {
        constexpr const char* names = "pageUp pageDown end home left up right down - - - - insert remove ";
        return words[0].size() == 1 ? words[0][0] : words[0] == "tab" ? 9 : key::pageUp + PlaceOf(words[0], names);
    }
    void Press()
    {
        const std::wstring before = test.view.Place(Shown());
        taken = editor.ListKeyDown(Shown(), Key(), Held(1));
        EXPECT_TRUE(taken || test.view.Place(Shown()) == before) << "who does something with a key has taken it";
    }
    void Open()
    {
        std::vector<double> frequencies;
        std::istringstream each(rest);
        for (double frequency = 0; each >> frequency;) {
            frequencies.push_back(frequency);
        }
        test.Put(frequencies);
        Activate();
        editor.SelectPage(Page::frequencies);
    }
    void Activate()
    {
        test.messages.onShow = [this] { rowAtMessage = editor.SelectedRow(Grid::channels); };
        test.Open();
        opened = Everything(document);
    }
    void WriteNotes(const std::wstring& richText)
    {
        test.view.richText = richText;
        editor.NotesChanged();
    }
    void Answer()
    {
        std::vector<std::wstring>& answers = test.view.answers = {{}};
        for (const wchar_t c : Text(1)) {
            c == L'|' ? static_cast<void>(answers.emplace_back()) : answers.back().push_back(c);
        }
        editor.Execute(Command(), Shown());
    }
    /// The characters of a text that a filter lets pass.
    template <class Filter>
    static std::wstring Passing(const std::wstring& text, const Filter& filter)
    {
        std::wstring passing;
        for (const wchar_t character : text) {
            passing += filter(character) ? std::wstring(1, character) : std::wstring();
        }
        return passing;
    }
    /// "0 1 4 @4/11": the selected rows, and the current row and column.
    std::wstring Selected() const
    {
        const std::wstring place = test.view.Place(Shown());
        return place.substr(0, place.find(L" from"));
    }
    /// Of the document each channel's frequency and symbol rate.
    std::wstring Channels() const
    {
        std::wstring channels;
        for (int32_t channel = 1; channel <= document.ListSize(); ++channel) {
            channels += (channel == 1 ? L"" : L" ") + FormatNumber(document.Frequency(channel), false, test.locale) +
                        L"/" + FormatNumber(document.SymbolRate(channel), false, test.locale);
        }
        return channels;
    }
    /// Of the document a parameter's caption, place and marks.
    std::wstring Parameter() const
    {
        const int32_t number = Number(0);
        std::wstring text = document.Caption(number) + L" @" + std::to_wstring(document.Order(number));
        for (const auto& [flag, word] : {std::pair(0, L" measured"), {1, L" displayed"}, {2, L" saved"}}) {
            text += document.Parameter(flag, number) ? word : L"";
        }
        return text;
    }
    /// Of the document what its choices made of it: level unit, reference, samples, filter, order, roll-off, route,
    /// axes.
    std::wstring Settings() const
    {
        std::wstring text = document.LevelUnit();
        for (const int32_t number :
             {document.ReferenceSource(), document.BerSamples(), document.SawBw(), document.OrderOfQam(),
              document.RollOffFactor(), document.Zin(), document.XAxis(0), document.XAxis(1)}) {
            text += L" " + std::to_wstring(number);
        }
        return text;
    }
    std::pair<Control, Column> Focused() const
    {
        return {static_cast<Control>(PlaceOf(words[0], controls)), words[1].empty() ? 0 : ColumnOf(1)};
    }

    TestEditor test;
    Editor& editor = test.editor;
    SetupDocument& document = test.document;
    bool taken = false;  ///< whether the editor took the last key
    int32_t rowAtMessage = -1;
    decltype(Everything(document)) opened{};  ///< the document when the editor opened
};

TEST(Editor, ShowsWhatEachSessionExpects)
{
    PlaySessions("editor-sessions.txt", [](const std::string& title) {
        return std::make_unique<Session>(title.starts_with("=,") ? L"," : L".");
    });
}

}  // namespace
}  // namespace tvn2x
