#include "editor/win32/NotesField.h"

#include <algorithm>

#include "editor/EditorKeys.h"
#include "editor/win32/GridLook.h"
#include "editor/win32/Menus.h"
#include "editor/win32/Theme.h"
#include "util/FloatingPoint.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr wchar_t fontName[] = L"Lucida Console";
constexpr LONG fontHeight = 9 * 20;  // in twentieths of a point

CHARFORMAT2W NewFormat(DWORD mask)
{
    CHARFORMAT2W format{};
    format.cbSize = sizeof format;
    format.dwMask = mask;
    return format;
}

/// Rich text for the control, in seven-bit bytes.
std::string InBytes(const std::wstring& richText)
{
    std::string bytes;
    bytes.reserve(richText.size());
    for (const wchar_t each : richText) {
        if (each < 0x80) {
            bytes += static_cast<char>(each);
        } else {
            bytes += "\\u" + std::to_string(static_cast<int16_t>(each)) + "?";
        }
    }
    return bytes;
}

/// What the notes call dark blue, and what shows it where the system's windows are dark.
constexpr std::string_view darkBlue = "\\red0\\green0\\blue128;";
constexpr std::string_view paleBlue = "\\red153\\green204\\blue255;";
constexpr COLORREF paleBlueColour = RGB(153, 204, 255);
/// The same for text that is black by its own colour; so near to white that nobody else uses it.
constexpr std::string_view black = "\\red0\\green0\\blue0;";
constexpr std::string_view nearlyWhite = "\\red254\\green255\\blue254;";

std::string Replaced(std::string text, std::string_view from, std::string_view to)
{
    for (size_t at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// Rich text with the colours of dark windows, or back with those of bright ones.
std::string Exchanged(std::string text, bool toDark)
{
    text = Replaced(std::move(text), toDark ? darkBlue : paleBlue, toDark ? paleBlue : darkBlue);
    return Replaced(std::move(text), toDark ? black : nearlyWhite, toDark ? nearlyWhite : black);
}

/// The same text with its protection as hidden text.
std::string ProtectedAsHidden(const std::string& richText)
{
    constexpr std::string_view word = "\\protect";
    std::string marked;
    marked.reserve(richText.size());
    for (size_t at = 0; at < richText.size();) {
        if (richText.compare(at, word.size(), word) == 0) {
            marked += "\\v";
            at += word.size();
            continue;
        }
        const size_t length = richText[at] == '\\' ? 2 : 1;  // an escaped backslash begins no word
        marked.append(richText, at, length);
        at += length;
    }
    return marked;
}

/// A text on its way into the control, piece by piece.
struct Reading
{
    const std::string& text;
    size_t at;
};

DWORD CALLBACK ReadPiece(DWORD_PTR cookie, BYTE* buffer, LONG room, LONG* done) noexcept
{
    const OwnFloatingPoint floatingPoint;
    auto& reading = *reinterpret_cast<Reading*>(cookie);
    const size_t size = std::min(static_cast<size_t>(room), reading.text.size() - reading.at);
    std::copy_n(reading.text.data() + reading.at, size, buffer);
    reading.at += size;
    *done = static_cast<LONG>(size);
    return 0;
}

DWORD CALLBACK WritePiece(DWORD_PTR cookie, BYTE* buffer, LONG size, LONG* done) noexcept
{
    const OwnFloatingPoint floatingPoint;
    try {
        reinterpret_cast<std::string*>(cookie)->append(reinterpret_cast<const char*>(buffer),
                                                       static_cast<size_t>(size));
    } catch (...) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    *done = size;
    return 0;
}

}  // namespace

NotesField::NotesField(Editor& editor)
    : editor_(editor),
      isDark_(WindowsAreDark()),
      library_(LoadLibraryExW(L"msftedit.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32))
{
}

HWND NotesField::Create(HWND parent, const RECT& place, int id)
{
    window_ =
        CreateWindowExW(WS_EX_CLIENTEDGE, MSFTEDIT_CLASS, L"",
                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN,
                        place.left, place.top, place.right - place.left, place.bottom - place.top, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), OwnModule(), nullptr);
    if (!window_) {
        throw RaisedError(HRESULT_FROM_WIN32(GetLastError()), L"clsSetup.Edit",
                          L"The system's rich-text control (msftedit.dll) cannot be created");
    }
    constexpr LPARAM most = 0x7FFFFFFE;
    SendMessageW(window_, EM_EXLIMITTEXT, 0, most);
    SendMessageW(window_, EM_SETEVENTMASK, 0, ENM_PROTECTED | ENM_CHANGE);
    CHARFORMAT2W format = NewFormat(CFM_FACE | CFM_SIZE | CFM_CHARSET | CFM_BOLD);
    format.yHeight = fontHeight;
    format.bCharSet = DEFAULT_CHARSET;
    format.bPitchAndFamily = FIXED_PITCH | FF_MODERN;  // where the system has no such font
    std::copy(std::begin(fontName), std::end(fontName), format.szFaceName);
    Format(format, SCF_DEFAULT);
    Format(format, SCF_ALL);
    return window_;
}

void NotesField::Format(const CHARFORMAT2W& format, WPARAM what) const
{
    SendMessageW(window_, EM_SETCHARFORMAT, what, reinterpret_cast<LPARAM>(&format));
}

void NotesField::Load(const std::wstring& text, bool isRichText)
{
    const FlagGuard updating(updating_);
    if (isRichText) {
        const std::string bytes = isDark_ ? Exchanged(InBytes(text), true) : InBytes(text);
        StreamIn(bytes);
        // There are versions of the control that write protection but do not read it.
        if (bytes.find("\\protect") != bytes.npos && !HasProtected({0, -1})) {
            StreamIn(ProtectedAsHidden(bytes));
            ProtectHidden();
        }
    } else {
        SetWindowTextW(window_, text.c_str());
    }
    SendMessageW(window_, EM_EMPTYUNDOBUFFER, 0, 0);
    const CHARRANGE start{0, 0};
    SendMessageW(window_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&start));
}

void NotesField::StreamIn(const std::string& richText) const
{
    Reading reading{richText, 0};
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&reading), 0, ReadPiece};
    SendMessageW(window_, EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&stream));
}

void NotesField::ProtectHidden() const
{
    Quietly([&] {
        const auto length = static_cast<LONG>(GetWindowTextLengthW(window_));
        CHARFORMAT2W shown = NewFormat(CFM_HIDDEN | CFM_PROTECTED);
        shown.dwEffects = CFE_PROTECTED;
        for (LONG at = 0; at < length; ++at) {
            const CHARRANGE one{at, at + 1};
            SendMessageW(window_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&one));
            CHARFORMAT2W format = NewFormat(0);
            SendMessageW(window_, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
            if ((format.dwEffects & CFE_HIDDEN) != 0) {
                Format(shown, SCF_SELECTION);
            }
        }
    });
}

std::string NotesField::StreamOut(WPARAM format) const
{
    std::string bytes;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&bytes), 0, WritePiece};
    SendMessageW(window_, EM_STREAMOUT, format, reinterpret_cast<LPARAM>(&stream));
    if (stream.dwError != 0) {
        throw std::bad_alloc();
    }
    return isDark_ ? Exchanged(std::move(bytes), false) : bytes;
}

/// The control writes what its code page lacks as the letter that looks most like it, unless it writes UTF-8. That is
/// not rich text as everybody reads it, so what is beyond ASCII in it becomes rich text's own form.
std::wstring NotesField::AsRichText() const
{
    constexpr WPARAM inUtf8 = SF_RTF | SF_USECODEPAGE | (WPARAM{CP_UTF8} << 16);
    constexpr std::string_view otherHeader = "{\\urtf";
    std::string bytes = StreamOut(inUtf8);
    if (bytes.starts_with(otherHeader)) {
        bytes.erase(2, 1);
    }
    const int size = static_cast<int>(bytes.size());
    std::wstring streamed(bytes.size(), L'\0');
    streamed.resize(static_cast<size_t>(
        MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, streamed.data(), static_cast<int>(streamed.size()))));
    std::erase(streamed, L'\0');
    const std::string escaped = InBytes(streamed);
    return {escaped.begin(), escaped.end()};
}

void NotesField::ProtectSelection(bool protect)
{
    const FlagGuard updating(updating_);
    CHARFORMAT2W format = NewFormat(CFM_PROTECTED);
    format.dwEffects = protect ? CFE_PROTECTED : 0;
    Format(format, SCF_SELECTION);
    // Undoing it would be a way round the two buttons.
    SendMessageW(window_, EM_EMPTYUNDOBUFFER, 0, 0);
}

/// On a dark background, black is the colour of text that has none of its own, and dark blue a pale one.
void NotesField::ColourSelection(Colour colour)
{
    const FlagGuard updating(updating_);
    CHARFORMAT2W format = NewFormat(CFM_COLOR);
    format.crTextColor = isDark_ && colour == palette::darkBlue ? paleBlueColour : colour;
    format.dwEffects = colour == palette::black ? CFE_AUTOCOLOR : 0;
    Format(format, SCF_SELECTION);
}

CHARRANGE NotesField::Selection() const
{
    CHARRANGE range{};
    SendMessageW(window_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
    return range;
}

/// Does something that needs the selection without the user or the editor noticing.
template <class Work>
void NotesField::Quietly(Work work) const
{
    const CHARRANGE before = Selection();
    const LRESULT events = SendMessageW(window_, EM_SETEVENTMASK, 0, 0);
    SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    work();
    SendMessageW(window_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&before));
    SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    SendMessageW(window_, EM_SETEVENTMASK, 0, events);
}

bool NotesField::HasProtected(CHARRANGE range) const
{
    if (range.cpMin == range.cpMax) {
        return false;
    }
    bool found = false;
    Quietly([&] {
        SendMessageW(window_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
        CHARFORMAT2W format = NewFormat(0);
        SendMessageW(window_, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
        const bool isSame = (format.dwMask & CFM_PROTECTED) != 0;
        found = !isSame || (format.dwEffects & CFE_PROTECTED) != 0;
    });
    return found;
}

LONG NotesField::WordEdge(LONG from, WPARAM direction) const
{
    return static_cast<LONG>(SendMessageW(window_, EM_FINDWORDBREAK, direction, from));
}

/// What a key or a command of the clipboard takes away or replaces; an empty range is where it inserts.
CHARRANGE NotesField::Affected(UINT message, WPARAM wParam) const
{
    CHARRANGE range = Selection();
    if (range.cpMin != range.cpMax) {
        return range;
    }
    const bool wholeWord = GetKeyState(VK_CONTROL) < 0;
    if (message == WM_KEYDOWN && wParam == VK_DELETE) {
        range.cpMax = wholeWord ? WordEdge(range.cpMin, WB_MOVEWORDRIGHT) : range.cpMin + 1;
    } else if (message == WM_KEYDOWN && wParam == VK_BACK && range.cpMin > 0) {
        range.cpMin = wholeWord ? WordEdge(range.cpMin, WB_MOVEWORDLEFT) : range.cpMin - 1;
    }
    return range;
}

/// An empty range splits protected text where there is some on both of its sides.
bool NotesField::TouchesProtected(CHARRANGE range) const
{
    if (range.cpMin != range.cpMax) {
        return HasProtected(range);
    }
    return range.cpMin > 0 && HasProtected({range.cpMin - 1, range.cpMin}) &&
           HasProtected({range.cpMin, range.cpMin + 1});
}

/// What is typed behind protected text does not become part of it, and neither does what is typed in front of it, where
/// a line begins with it and has no other text that could lend its look.
void NotesField::TypeUnprotected()
{
    const CHARRANGE range = Selection();
    const bool isBeside = (range.cpMin > 0 && HasProtected({range.cpMin - 1, range.cpMin})) ||
                          HasProtected({range.cpMin, range.cpMin + 1});
    if (range.cpMin != range.cpMax || !isBeside) {
        return;
    }
    const FlagGuard updating(updating_);
    CHARFORMAT2W format = NewFormat(CFM_PROTECTED | CFM_COLOR);
    format.dwEffects = CFE_AUTOCOLOR;
    Format(format, SCF_SELECTION);
}

/// Not every version of the control asks before it changes protected text, so each way to do that is stopped here.
LRESULT NotesField::OnMessage(const Subclass& control, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_GETDLGCODE) {
        const auto* const pending = reinterpret_cast<const MSG*>(lParam);
        const bool isEnter = pending && pending->message == WM_KEYDOWN && pending->wParam == VK_RETURN;
        return DLGC_WANTCHARS | DLGC_WANTARROWS | (isEnter ? DLGC_WANTALLKEYS : 0);
    }
    const bool isKey = message == WM_KEYDOWN && (wParam == VK_DELETE || wParam == VK_BACK || wParam == VK_RETURN);
    const bool isText = message == WM_CHAR && (wParam >= L' ' || wParam == L'\r' || wParam == L'\t');
    const bool isCommand = message == WM_PASTE || message == WM_CUT || message == WM_CLEAR || message == EM_REPLACESEL;
    const bool isControlKey =
        message == WM_KEYDOWN && GetKeyState(VK_CONTROL) < 0 && (wParam == L'V' || wParam == L'X');
    const bool isShiftKey = message == WM_KEYDOWN && GetKeyState(VK_SHIFT) < 0 && wParam == VK_INSERT;
    if (updating_ || !(isKey || isText || isCommand || isControlKey || isShiftKey)) {
        return control.Default(message, wParam, lParam);
    }
    if (!editor_.AllowNotesEdit(TouchesProtected(Affected(message, wParam)))) {
        return 0;
    }
    TypeUnprotected();
    return control.Default(message, wParam, lParam);
}

LRESULT NotesField::OnProtected(const ENPROTECTED& question)
{
    const bool isHarmless = updating_ || question.msg == WM_COPY || !TouchesProtected(question.chrg);
    return isHarmless || editor_.AllowNotesEdit(true) ? 0 : 1;
}

void NotesField::ShowMenu(HWND owner, const POINT* where)
{
    const CHARRANGE range = Selection();
    POINT place{};
    if (where) {
        place = *where;
    } else {
        SendMessageW(window_, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), range.cpMax);
        ClientToScreen(window_, &place);
    }
    const auto send = [this](UINT message, WPARAM wParam, LPARAM lParam) {
        SendMessageW(window_, message, wParam, lParam);
    };
    const auto chosen =
        ChooseNotesCommand(owner, place, SendMessageW(window_, EM_CANUNDO, 0, 0) != FALSE, range.cpMin != range.cpMax,
                           IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE);
    switch (chosen.value_or(NotesCommand{})) {
        case NotesCommand::undo:
            return send(EM_UNDO, 0, 0);
        case NotesCommand::cut:
            return send(WM_CUT, 0, 0);
        case NotesCommand::copy:
            return send(WM_COPY, 0, 0);
        case NotesCommand::paste:
            return send(WM_PASTE, 0, 0);
        case NotesCommand::selectAll:
            return send(EM_SETSEL, 0, -1);
        case NotesCommand::protect:
        case NotesCommand::unprotect:
            return editor_.NotesButton(*chosen == NotesCommand::protect);
    }
}

void NotesField::OnChanged()
{
    if (!updating_) {
        editor_.NotesChanged();
    }
}

}  // namespace tvn2x
