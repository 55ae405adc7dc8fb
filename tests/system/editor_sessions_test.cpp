// What a person does in the setup editor's window and sees there: the registered plug-in's own dialog, by keys and
// clicks.

#include <windows.h>

#include <richedit.h>

#include <memory>

#include "SetupEditor.h"
#include "support/TestSession.h"

namespace tvn2x::client {
namespace {

const std::map<std::string, int> controls = {
    {"ok", control_id::ok},
    {"notes", control_id::notes},
    {"insert", control_id::Of(RowCommand::insert, Grid::channels)},
    {"remove", control_id::Of(RowCommand::remove, Grid::channels)},
    {"move-down", control_id::Of(RowCommand::moveDown, Grid::channels)},
    {"list", control_id::List(Grid::channels)},
    {"cell", control_id::CellEditor(Grid::channels)},
    {"level-unit", control_id::Of(Choice::levelUnit)},
    {"roll-off", control_id::Of(Choice::rolloffFactor)},
    {"reference", control_id::Of(Choice::reference)},
    {"saw-filter", control_id::Of(Choice::sawFilter)},
    {"result-file", control_id::Of(Choice::resultFile)},
    {"settling-time", control_id::Of(Field::maxSettlingTime)},
};
const std::map<std::string, WPARAM> keys = {
    {"tab", VK_TAB},       {"enter", VK_RETURN}, {"escape", VK_ESCAPE}, {"back", VK_BACK},
    {"delete", VK_DELETE}, {"home", VK_HOME},    {"end", VK_END},       {"down", VK_DOWN},
    {"f2", VK_F2},         {"right", VK_RIGHT},  {"left", VK_LEFT},     {"shift", VK_SHIFT},
};
const std::map<std::string, Column> columns = {{"display", displayColumn},
                                               {"save", saveColumn},
                                               {"label", MP_USERFIELD},
                                               {"frequency", MP_FREQUENCY},
                                               {"rate", MP_SYMBOLRATE}};
const std::map<std::string, Page> pages = {{"settings", Page::settings},
                                           {"application", Page::application},
                                           {"frequencies", Page::frequencies},
                                           {"parameters", Page::parameters},
                                           {"notes", Page::notes},
                                           {"x-axis", Page::xAxis}};

template <class Value>
std::wstring WordOf(const std::map<std::string, Value>& words, Value value)
{
    for (const auto& [word, each] : words) {
        if (each == value) {
            return FromUtf8(word);
        }
    }
    return L"another";
}

/// A setup before, while and after it is edited, as it is written.
class Session final : public TestSession, public EditedSetup
{
    Column Named() const { return columns.at(words.at(0)); }
    HWND Control() const { return person.Find(controls.at(words.at(0))); }
    unsigned Held(size_t from) const
    {
        unsigned held = 0;
        for (; from < words.size(); ++from) {
            held |= words[from] == "shift" ? shift : words[from] == "control" ? control : 0;
        }
        return held;
    }
    void Press()
    {
        const auto key = keys.find(words.at(0));
        person.Press(key != keys.end() ? key->second : static_cast<WPARAM>(rest[0]), Held(1));
    }
    void PutChannels()
    {
        std::wistringstream labels(Text());
        Channels channels;
        for (std::wstring label; labels >> label;) {
            channels.emplace_back(label, 474, 6.9);
        }
        Put(channels);
    }
    void TurnWheel()
    {
        PostMessageW(person.Focus(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
        person.Press(VK_SHIFT);
    }
    std::wstring StoredChannels() const
    {
        std::wostringstream text;
        for (const auto& [userField, frequency, symbolRate] : Stored()) {
            text << userField << L'/' << frequency << L'/' << symbolRate << L' ';
        }
        return text.str();
    }
    std::wstring Defaults() const
    {
        std::wstring found;
        for (const auto& [word, id] : controls) {
            const HWND button = person.Find(id);
            wchar_t kind[20] = L"";
            GetClassNameW(button, kind, 20);
            const bool isDefault = (GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
            found += isDefault && std::wstring(kind) == L"Button" ? FromUtf8(word) : std::wstring();
        }
        return found;
    }

public:
    bool accepted = false;  ///< what the last dialog ended with

    const Deeds deeds{
        {"channels", [this] { PutChannels(); }},
        {"frequency", [this] { setup->put_Frequency(Number(0), Number(1)); }},
        {"set-notes", [this] { setup->put_Notes(Bstr(Text()).Get()); }},
        {"couple", [this] { setup->put_CoupleDisplayAndSave(VARIANT_TRUE); }},
        {"unmark", [this] { setup->put_Parameter(Number(0), ::MP_FIRST, VARIANT_FALSE); }},
        {"page", [this] { person.ClickTab(pages.at(rest)); }},
        {"alt", [this] { person.Alt(static_cast<wchar_t>(rest[0])); }},
        {"type", [this] { person.Type(Text()); }},
        {"press", [this] { Press(); }},
        {"click", [this] { person.Click(controls.at(rest)); }},
        {"row", [this] { person.ClickRow(Named(), Number(1), Held(2)); }},
        {"heading", [this] { person.ClickHeading(Named()); }},
        {"drag",
         [this] {
             person.Mouse(person.List(Named()), person.PointIn(Named(), Number(1)), person.PointIn(Named(), Number(2)));
         }},
        {"clipboard", [this] { person.PutOnClipboard(Text()); }},
        {"paste", [this] { SendMessageW(person.Focus(), WM_PASTE, 0, 0); }},
        {"clear", [this] { SendMessageW(person.Focus(), WM_CLEAR, 0, 0); }},
        {"replace",
         [this] { SendMessageW(person.Focus(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Text().c_str())); }},
        {"select",
         [this] { SendMessageW(person.Focus(), EM_SETSEL, static_cast<WPARAM>(Number(0)), LPARAM{Number(1)}); }},
        {"wheel", [this] { TurnWheel(); }},
    };
    const Sights sights{
        {"rows", [this] { return Told(person.Rows(MP_FREQUENCY)); }},
        {"cell", [this] { return person.NameOf(Named(), Number(1)); }},
        {"keyboard-at", [this] { return WordOf(controls, person.FocusId()); }},
        {"text", [this] { return person.FocusText(); }},
        {"lines", [this] { return Told(SendMessageW(person.Focus(), EM_GETLINECOUNT, 0, 0)); }},
        {"choice", [this] { return Told(SendMessageW(Control(), CB_GETCURSEL, 0, 0)); }},
        {"enabled", [this] { return Told(IsWindowEnabled(Control()) != FALSE); }},
        {"page-enabled", [this] { return Told(IsWindowEnabled(GetParent(Control())) != FALSE); }},
        {"default", [this] { return Defaults(); }},
        {"message", [this] { return person.AnswerMessageBox(); }},
        {"shown-page", [this] { return WordOf(pages, person.CurrentPage()); }},
        {"open", [this] { return Told(IsWindow(person.dialog) != FALSE); }},
        {"accepted", [this] { return Told(accepted); }},
        {"stored", [this] { return StoredChannels(); }},
        {"result", [this] { return Cell(setup.As<IMeasure>().Get(), 1, MP_FREQUENCY, Number(0)); }},
        {"notes", [this] { return Get(setup, &_clsSetup::get_Notes); }},
        {"level-unit", [this] { return Get(setup, &_clsSetup::get_LevelUnit); }},
        {"marked", [this] { return Told(Parameter(Number(0), ::MP_FIRST)); }},
        {"coupled", [this] { return Told(Get(setup, &_clsSetup::get_CoupleDisplayAndSave) != VARIANT_FALSE); }},
    };
};

/// Plays the lines of all sessions, or those up to the end of a dialog.
void Play(std::istream& lines, std::unique_ptr<Session>& session)
{
    for (std::string line; std::getline(lines, line) && line != "closed";) {
        SCOPED_TRACE(line);
        if (line.starts_with("=")) {
            session = std::make_unique<Session>();
        } else if (session && line == "edit") {
            session->accepted = session->Edit([&](EditorDriver&) { Play(lines, session); });
        } else if (session && !line.empty() && line[0] != '#') {
            PlayLine(*session, line);
        }
    }
}

TEST_F(SetupEditor, ShowsWhatEachSessionExpects)
{
    std::ifstream lines(std::string(TVN_TEST_DATA) + "/window-sessions.txt");
    std::unique_ptr<Session> session;
    Play(lines, session);
    EXPECT_TRUE(session && lines.eof());
}

}  // namespace
}  // namespace tvn2x::client
