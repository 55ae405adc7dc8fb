#include "editor/Editor.h"

#include <algorithm>
#include <functional>
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
    history_ = {};
    marksAreOld_ = true;
    notesTouched_ = false;
    page_ = Page::settings;
    for (int32_t choice = 0; choice < choiceCount; ++choice) {
        controls_.choices[static_cast<size_t>(choice)] = PositionIn(document_, static_cast<Choice>(choice));
    }
    lists_.levelUnit = SelectedItem(Choice::levelUnit);
    FieldText(Field::defaultSymbolRate) =
        FormatNumber(document_.DefaultSymbolRate(), pattern::symbolRate, true, locale_);
    FieldText(Field::maxSettlingTime) = FormatNumber(document_.MaxSettlingTime(), L"#0", true, locale_);
    controls_.checks = {document_.CoupleDisplayAndSave(), document_.ShowNotesBefore(), document_.ShowNotesAfter()};
    FillChannels();
    FillParameters();
    opened_ = controls_;
    NotifyAll();
}

void Editor::FillChannels()
{
    const int32_t count = std::max(document_.ListSize(), 0);
    GridRows& channels = lists_.channels;
    channels.rows.clear();
    channels.rows.reserve(static_cast<size_t>(count) + 1);
    for (int32_t channel = 1; channel <= count; ++channel) {
        const auto row = std::make_shared<GridRow>();
        row->text[0] = document_.UserField(channel);
        AppendNumber(row->text[1], document_.Frequency(channel), pattern::frequency, true, locale_);
        AppendNumber(row->text[2], document_.SymbolRate(channel), pattern::symbolRate, true, locale_);
        channels.rows.push_back(row);
    }
    channels.rows.push_back(PlaceholderRow());
    channels.Select(0);
    channels.column = MP_USERFIELD;
}

/// The catalogue in its display order; a parameter without a position follows behind the others.
void Editor::FillParameters()
{
    lists_.parameterCount = document_.Count();
    std::vector<int32_t> numbers(static_cast<size_t>(lists_.parameterCount));
    std::iota(numbers.begin(), numbers.end(), int32_t{MP_FIRST});
    const auto position = [this](int32_t parameter) {
        const int32_t order = document_.Order(parameter);
        return order > 0 ? order : std::numeric_limits<int32_t>::max();
    };
    std::stable_sort(numbers.begin(), numbers.end(),
                     [&](int32_t left, int32_t right) { return position(left) < position(right); });

    GridRows& parameters = lists_.parameters;
    parameters.rows.clear();
    parameters.rows.reserve(numbers.size() + 1);
    const auto add = [&](GridRow row) { parameters.rows.push_back(std::make_shared<const GridRow>(std::move(row))); };
    add({{L"Select/Deselect All", L" ", L" "}, {}, 0});
    for (const int32_t parameter : numbers) {
        const std::wstring& caption = document_.StoredCaption(parameter);
        add({{parameter == MP_RFLEV ? WithUnit(caption) : caption, L" ", L" "},
             {false, document_.Parameter(1, parameter), document_.Parameter(2, parameter)},
             parameter});
    }
    parameters.Select(0);
    parameters.column = captionColumn;
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

std::wstring_view Editor::LevelUnit() const
{
    return ItemsOf(Choice::levelUnit)[static_cast<size_t>(lists_.levelUnit)].text;
}

CheckState Editor::CheckOf(Column column, int32_t row) const
{
    const GridRows& grid = Rows(column);
    if (row >= grid.Pinned() || !IsCheckColumn(column)) {
        return grid.At(row).checked[grid.Index(column)] ? CheckState::on : CheckState::off;
    }
    int32_t set = 0;
    for (int32_t each = grid.FirstRow(); each <= grid.LastRow(); ++each) {
        set += grid.At(each).checked[grid.Index(column)] ? 1 : 0;
    }
    const int32_t all = grid.LastRow() - grid.FirstRow() + 1;
    return set == 0 ? CheckState::off : set == all ? CheckState::on : CheckState::mixed;
}

size_t Editor::Changes() const
{
    size_t changes = history_.Done() + (notesTouched_ ? 1 : 0) + (edit_.open ? 1 : 0);
    const auto count = [&](const auto& present, const auto& opened) {
        changes += static_cast<size_t>(std::inner_product(present.begin(), present.end(), opened.begin(), 0,
                                                          std::plus<>(), std::not_equal_to<>()));
    };
    // The level unit is one of the lists' changes.
    count(std::span(controls_.choices).subspan(1), std::span(opened_.choices).subspan(1));
    count(controls_.fields, opened_.fields);
    count(controls_.checks, opened_.checks);
    return changes;
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
    if (control == Control::list) {
        Rows(column).column = column;
    }
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
    int32_t& selected = controls_.choices[static_cast<size_t>(choice)];
    if (position < 0 || position >= static_cast<int32_t>(ItemsOf(choice).size()) || position == selected) {
        return;
    }
    if (choice == Choice::levelUnit) {
        CommitCellEdit(Leave::elsewhere);
        Change(Grid::parameters, [&] { ShowLevelUnit(position); });
    }
    selected = position;
    marksAreOld_ = marksAreOld_ || choice == Choice::rolloffFactor;
}

/// Every caption that names the unit follows it.
void Editor::ShowLevelUnit(int32_t position)
{
    const std::wstring_view before = LevelUnit();
    const std::wstring_view unit = ItemsOf(Choice::levelUnit)[static_cast<size_t>(position)].text;
    lists_.levelUnit = position;
    for (int32_t row = 1; row < lists_.parameters.Count(); ++row) {
        std::wstring caption = lists_.parameters.Text(captionColumn, row);
        for (size_t at = 0; (at = caption.find(before, at)) != std::wstring::npos; at += unit.size()) {
            caption.replace(at, before.size(), unit);
        }
        SetCell(captionColumn, row, std::move(caption));
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

void Editor::CloseSign()
{
    if (Changes() < 2 || view_.Confirm(L"Close the editor and lose what was changed in it?")) {
        Cancel();
    }
}

}  // namespace tvn2x
