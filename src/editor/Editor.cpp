#include "editor/Editor.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include "editor/EditorKeys.h"
#include "setup/catalogue/Patterns.h"
#include "util/modFormat.h"

namespace tvn2x {

Editor::Editor(SetupDocument& document, EditorView& view, MessageBoxes& messages, const Locale& locale)
    : document_(document),
      view_(view),
      messages_(messages),
      locale_(locale),
      decimalSeparator_(FormatNumber(1.2, true, locale)[1])
{
}

void Editor::Activate()
{
    edit_ = {};
    notesTouched_ = false;
    page_ = Page::settings;
    for (int32_t choice = 0; choice < choiceCount; ++choice) {
        choices_[static_cast<size_t>(choice)] = PositionIn(document_, static_cast<Choice>(choice));
    }
    levelUnit_ = ItemsOf(Choice::levelUnit)[static_cast<size_t>(SelectedItem(Choice::levelUnit))].text;
    FieldText(Field::defaultSymbolRate) =
        FormatNumber(document_.DefaultSymbolRate(), pattern::symbolRate, true, locale_);
    FieldText(Field::maxSettlingTime) = FormatNumber(document_.MaxSettlingTime(), L"#0", true, locale_);
    SetCheck(Check::couple, document_.CoupleDisplayAndSave());
    FillChannels();
    FillParameters();
    SetCheck(Check::showBefore, document_.ShowNotesBefore());
    SetCheck(Check::showAfter, document_.ShowNotesAfter());
    NotifyAll();
}

void Editor::FillChannels()
{
    const int32_t count = std::max(document_.ListSize(), 0);
    channels_.rows.clear();
    channels_.rows.reserve(static_cast<size_t>(count) + 1);
    for (int32_t channel = 1; channel <= count; ++channel) {
        std::array<std::wstring, 3>& text = channels_.rows.emplace_back().text;
        text[0] = document_.UserField(channel);
        AppendNumber(text[1], document_.Frequency(channel), pattern::frequency, true, locale_);
        AppendNumber(text[2], document_.SymbolRate(channel), pattern::symbolRate, true, locale_);
    }
    channels_.rows.push_back(PlaceholderRow());
    channels_.Select(0);
}

/// The catalogue in its display order; a parameter without a position follows behind the others.
void Editor::FillParameters()
{
    parameterCount_ = document_.Count();
    std::vector<int32_t> numbers(static_cast<size_t>(parameterCount_));
    std::iota(numbers.begin(), numbers.end(), int32_t{MP_FIRST});
    const auto position = [this](int32_t parameter) {
        const int32_t order = document_.Order(parameter);
        return order > 0 ? order : std::numeric_limits<int32_t>::max();
    };
    std::stable_sort(numbers.begin(), numbers.end(),
                     [&](int32_t left, int32_t right) { return position(left) < position(right); });

    parameters_.rows.clear();
    parameters_.rows.reserve(numbers.size() + 1);
    parameters_.rows.push_back({{L"Select/Deselect All", L" ", L" "}, {}, 0});
    for (const int32_t parameter : numbers) {
        const std::wstring& caption = document_.StoredCaption(parameter);
        parameters_.rows.push_back({{parameter == MP_RFLEV ? WithUnit(caption) : caption, L" ", L" "},
                                    {false, document_.Parameter(1, parameter), document_.Parameter(2, parameter)},
                                    parameter});
    }
    parameters_.At(0).checked = {false, AllAreSet(displayColumn), AllAreSet(saveColumn)};
    parameters_.Select(0);
}

void Editor::NotifyAll()
{
    for (int32_t choice = 0; choice < choiceCount; ++choice) {
        view_.ChoiceChanged(static_cast<Choice>(choice));
    }
    for (int32_t field = 0; field < fieldCount; ++field) {
        view_.FieldChanged(static_cast<Field>(field));
    }
    for (int32_t check = 0; check < checkCount; ++check) {
        view_.CheckChanged(static_cast<Check>(check));
    }
    for (const Grid grid : {Grid::channels, Grid::parameters}) {
        view_.GridChanged(grid);
        view_.SelectionChanged(grid);
    }
    view_.CellEditorChanged();
    ClearArrows();
    const FlagGuard updating(updating_);
    view_.LoadNotes(document_.Notes(), document_.Notes().starts_with(L"{\\rtf"));
    view_.PageChanged();
    view_.ButtonRolesChanged();
}

bool Editor::CellChecked(Column column, int32_t row) const
{
    const GridRows& grid = Rows(column);
    return grid.At(row).checked[grid.Index(column)];
}

void Editor::SelectPage(Page page)
{
    if (page == page_) {
        return;
    }
    CommitCellEdit(Leave::elsewhere);
    page_ = page;
    view_.PageChanged();
    if (notesFocused_) {
        FocusMoved(Control::other, 0);
    }
}

void Editor::FocusMoved(Control control, Column column)
{
    focus_ = control;
    focusColumn_ = column;
    if (control != Control::cellEditor || column != edit_.column) {
        CommitCellEdit(Leave::elsewhere);
    }
    const bool inNotes = control == Control::notes;
    if (inNotes != notesFocused_) {
        notesFocused_ = inNotes;
        view_.ButtonRolesChanged();
    }
}

void Editor::SelectItem(Choice choice, int32_t position)
{
    if (position < 0 || position >= static_cast<int32_t>(ItemsOf(choice).size())) {
        return;
    }
    if (choice == Choice::levelUnit) {
        CommitCellEdit(Leave::elsewhere);
        ShowLevelUnit(ItemsOf(choice)[static_cast<size_t>(position)].text);
    }
    choices_[static_cast<size_t>(choice)] = position;
}

/// Every caption that names the unit follows it.
void Editor::ShowLevelUnit(std::wstring_view unit)
{
    std::vector<std::wstring> captions;
    captions.reserve(parameters_.rows.size());
    for (const GridRow& row : parameters_.rows) {
        std::wstring& caption = captions.emplace_back(row.text[0]);
        for (size_t at = 0; (at = caption.find(levelUnit_, at)) != std::wstring::npos; at += unit.size()) {
            caption.replace(at, levelUnit_.size(), unit);
        }
    }
    levelUnit_ = unit;
    for (int32_t row = 1; row < parameters_.Count(); ++row) {
        SetCell(captionColumn, row, std::move(captions[static_cast<size_t>(row)]));
    }
}

bool Editor::IsNumericKey(wchar_t character) const
{
    return (character >= L'0' && character <= L'9') || character == decimalSeparator_;
}

bool Editor::FieldChar(Field field, wchar_t character)
{
    const bool fits =
        field == Field::maxSettlingTime ? character >= L'0' && character <= L'9' : IsNumericKey(character);
    if (fits || IsClipboardKey(character) || character == key::backspace) {
        return true;
    }
    view_.Beep();
    return false;
}

bool Editor::AllowNotesEdit(bool touchesProtected)
{
    if (!touchesProtected || updating_) {
        return true;
    }
    view_.Beep();
    return false;
}

void Editor::NotesButton(bool protect)
{
    {
        const FlagGuard updating(updating_);
        notesTouched_ = true;
        view_.ProtectNotesSelection(false);
        view_.ColourNotesSelection(protect ? palette::darkBlue : palette::black);
        if (protect) {
            view_.ProtectNotesSelection(true);
        }
    }
    view_.Focus(Control::notes, 0);
}

void Editor::Cancel()
{
    tag_ = L"Cancel";
    view_.Close();
}

}  // namespace tvn2x
