#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include "editor/Editor.h"
#include "editor/EditorKeys.h"
#include "editor/ValidateChannel.h"
#include "setup/SetupFile.h"
#include "setup/catalogue/Patterns.h"
#include "util/RaisedError.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

constexpr double longestSettlingTime = 300;

/// Line ends as the setup file can keep them; in rich text they carry no meaning.
std::wstring WithWholeLineEnds(const std::wstring& text)
{
    std::wstring result;
    result.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isPair = text[at] == L'\r' && at + 1 < text.size() && text[at + 1] == L'\n';
        if (text[at] == L'\r' || text[at] == L'\n') {
            result += L"\r\n";
        } else if (text[at] != L'\0') {
            result += text[at];
        }
        at += isPair ? 1 : 0;
    }
    return result;
}

/// Messages that are preceded by something.
class MessagesAfter final : public MessageBoxes
{
public:
    MessagesAfter(MessageBoxes& messages, const std::function<void()>& before) : messages_(messages), before_(before) {}
    void Show(std::wstring_view text, std::wstring_view title, MessageIcon icon) override
    {
        before_();
        messages_.Show(text, title, icon);
    }

private:
    MessageBoxes& messages_;
    const std::function<void()>& before_;
};

}  // namespace

/// The number that a text shows, NaN where it shows none.
double Editor::NumberIn(std::wstring_view text) const
{
    try {
        return ParseNumber(text, decimalSeparator_);
    } catch (const RaisedError&) {
        return std::numeric_limits<double>::quiet_NaN();
    }
}

void Editor::Ok()
{
    CommitCellEdit(Leave::elsewhere);
    if (!CheckSettlingTime() || !CheckDefaultSymbolRate() || !CheckChannels()) {
        return;
    }
    // Notes that nobody has touched go back as they came, be they plain text or rich.
    std::wstring notes = notesTouched_ ? WithWholeLineEnds(view_.NotesAsRichText()) : document_.Notes();
    if (notesTouched_ && !CheckNotes(notes)) {
        return;
    }

    // Whatever fails on the way, the document is the old one or the new one.
    static_assert(std::is_nothrow_move_assignable_v<SetupDocument>);
    SetupDocument edited = document_;
    WriteChannels(edited);
    WriteSettings(edited);
    WriteParameters(edited);
    edited.Notes(std::move(notes));
    document_ = std::move(edited);
    tag_ = L"OK";
    view_.Close();
}

void Editor::RefuseField(Field field)
{
    SelectPage(Page::application);
    view_.Focus(field == Field::maxSettlingTime ? Control::maxSettlingTime : Control::defaultSymbolRate, 0);
}

bool Editor::CheckSettlingTime()
{
    // Whole seconds are kept, and they too must be within the limits.
    const double seconds = NumberIn(Text(Field::maxSettlingTime));
    if (seconds > 0 && seconds <= longestSettlingTime && std::nearbyint(seconds) > 0) {
        return true;
    }
    messages_.Show(
        L"Maximum settling time is out of range\r\n\r\n Please enter a value between 1 and 300, expressed in seconds",
        L"Setup", MessageIcon::warning);
    RefuseField(Field::maxSettlingTime);
    return false;
}

bool Editor::CheckDefaultSymbolRate()
{
    double symbolRate = NumberIn(Text(Field::defaultSymbolRate));
    if (ValidateChannel(nullptr, &symbolRate, messages_, locale_) != channel_status::valid) {
        RefuseField(Field::defaultSymbolRate);
        return false;
    }
    FieldText(Field::defaultSymbolRate) = FormatNumber(symbolRate, pattern::symbolRate, true, locale_);
    view_.FieldChanged(Field::defaultSymbolRate);
    return true;
}

/// Puts every channel onto its raster, up to the first that is out of range: that one stays as it was typed.
bool Editor::CheckChannels()
{
    const GridRows& channels = lists_.channels;
    int16_t status = channel_status::valid;
    int32_t row = 0;
    Change(Grid::channels, [&] {
        while (row <= channels.LastRow() && (status = PutOntoRaster(row)) == channel_status::valid) {
            ++row;
        }
    });
    if (status != channel_status::valid) {
        Reopen(status == channel_status::badFrequency ? MP_FREQUENCY : MP_SYMBOLRATE, row);
    }
    return status == channel_status::valid;
}

/// What ValidateChannel says of a row. Whatever it tells the user, the row is in sight while it does.
int16_t Editor::PutOntoRaster(int32_t row)
{
    const std::function<void()> show = [&] {
        SelectPage(Page::frequencies);
        SelectRow(lists_.channels, row);
    };
    MessagesAfter messages(messages_, show);
    double frequency = NumberIn(lists_.channels.Text(MP_FREQUENCY, row));
    double symbolRate = NumberIn(lists_.channels.Text(MP_SYMBOLRATE, row));
    const int16_t status = ValidateChannel(&frequency, &symbolRate, messages, locale_);
    if (status == channel_status::valid) {
        SetCell(MP_FREQUENCY, row, FormatNumber(frequency, pattern::frequency, true, locale_));
        SetCell(MP_SYMBOLRATE, row, FormatNumber(symbolRate, pattern::symbolRate, true, locale_));
    }
    return status;
}

/// Notes that no setup file can hold would be lost with the next save.
bool Editor::CheckNotes(const std::wstring& notes)
{
    if (CanStoreNotes(notes)) {
        return true;
    }
    messages_.Show(L"The notes are too long to be saved: " + std::to_wstring(ProcessCrLf(notes, 0).size()) +
                       L" characters with their formatting, of at most 32767.\r\n\r\nPlease shorten them.",
                   L"Setup", MessageIcon::warning);
    SelectPage(Page::notes);
    view_.Focus(Control::notes, 0);
    return false;
}

void Editor::Reopen(Column column, int32_t row)
{
    SelectPage(Page::frequencies);
    view_.Focus(Control::list, column);
    BeginCellEdit(column, row, lists_.channels.top);
}

void Editor::WriteChannels(SetupDocument& document) const
{
    const int32_t count = lists_.channels.Count() - 1;
    document.ListSize(count);
    for (int32_t row = 0; row < count; ++row) {
        document.Frequency(row + 1, NumberIn(lists_.channels.Text(MP_FREQUENCY, row)));
        document.UserField(row + 1, lists_.channels.Text(MP_USERFIELD, row));
        document.SymbolRate(row + 1, NumberIn(lists_.channels.Text(MP_SYMBOLRATE, row)));
    }
}

void Editor::WriteSettings(SetupDocument& document) const
{
    for (int32_t choice = 0; choice < choiceCount; ++choice) {
        StoreChoice(document, static_cast<Choice>(choice), controls_.choices[static_cast<size_t>(choice)]);
    }
    document.DefaultSymbolRate(NumberIn(Text(Field::defaultSymbolRate)));
    document.MaxSettlingTime(static_cast<int32_t>(std::nearbyint(NumberIn(Text(Field::maxSettlingTime)))));
    document.CoupleDisplayAndSave(Checked(Check::couple));
    document.ShowNotesBefore(Checked(Check::showBefore));
    document.ShowNotesAfter(Checked(Check::showAfter));
}

/// The position of a parameter is its row. A catalogue parameter whose row was deleted keeps its number and caption,
/// neither displayed nor saved, behind the others.
void Editor::WriteParameters(SetupDocument& document) const
{
    document.Count(lists_.parameterCount);
    int32_t position = 0;
    const auto write = [&](int32_t parameter, bool displayed, bool saved) {
        constexpr int32_t last = std::numeric_limits<int16_t>::max();
        document.Order(parameter, static_cast<int16_t>(std::min(++position, last)));
        document.Parameter(1, parameter, displayed);
        document.Parameter(2, parameter, saved);
        // Whether it is measured follows from the two, and is in no file.
        const bool dirty = document.dirty;
        document.Parameter(0, parameter, displayed || saved);
        document.dirty = dirty;
    };

    std::vector<bool> hasRow(static_cast<size_t>(lists_.parameterCount) + 1);
    for (int32_t row = 1; row < lists_.parameters.Count(); ++row) {
        const GridRow& shown = lists_.parameters.At(row);
        hasRow[static_cast<size_t>(shown.itemData)] = true;
        write(shown.itemData, shown.checked[displayColumn], shown.checked[saveColumn]);
        if (document.Caption(shown.itemData) != shown.text[captionColumn]) {
            document.Caption(shown.itemData, shown.text[captionColumn]);
        }
    }
    for (int32_t parameter = MP_FIRST; parameter <= lists_.parameterCount; ++parameter) {
        if (!hasRow[static_cast<size_t>(parameter)]) {
            write(parameter, false, false);
        }
    }
}

}  // namespace tvn2x
