#include "TestScan.h"
#include "measure/ResultFile.h"
#include "setup/catalogue/Parameters.h"
#include "support/TestFiles.h"
#include "support/TestSession.h"
#include "util/modFormat.h"

namespace tvn2x {
namespace {

/// Two channels, a receiver in order on both, the table of their results and the file that it becomes.
class Session : public TestSession, private TestScan
{
public:
    explicit Session(FixedLocale userLocale) : TestScan(std::move(userLocale)) {}

    const Deeds deeds{
        {"want", [this] { Choose(0); }},
        {"save", [this] { Choose(2); }},
        {"belongs-to", [this] { std::tie(document.productName, document.appVersion) = std::pair(Text(1), Word(0)); }},
        {"list", [this] { document.ListSize(Number(0)); }},
        {"frequency", [this] { document.Frequency(Number(0), Value(1)); }},
        {"rate", [this] { document.SymbolRate(Number(0), Value(1)); }},
        {"label", [this] { document.UserField(Number(0), Text(1)); }},
        {"reference", [this] { document.ReferenceSource(Number(0)); }},
        {"samples", [this] { document.BerSamples(Number(0)); }},
        {"order-of-qam", [this] { document.OrderOfQam(Number(0)); }},
        {"level-unit", [this] { document.LevelUnit(Text()); }},
        {"filter", [this] { document.SawBw(Number(0)); }},
        {"route", [this] { document.Zin(Number(0)); }},
        {"uncouple", [this] { document.CoupleDisplayAndSave(false); }},
        {"grid-axis", [this] { document.XAxis(0, Number(0)); }},
        {"file-axis", [this] { document.XAxis(1, Number(0)); }},
        {"caption", [this] { document.Caption(Parameter(), Text(1)); }},
        {"place", [this] { document.Order(Parameter(), static_cast<int16_t>(Number(1))); }},
        {"notes", [this] { document.measurementNotes = Text(); }},

        {"reset", [this] { table.Reset(document, locale, words[0].empty() ? 0 : Number(0)); }},
        {"no-table", [this] { table = ResultTable(); }},
        {"put", [this] { table.Result(Number(1), Parameter(), Number(2), Text(3)); }},
        {"read", [this] { table.Reading(Parameter(), Number(1), Text(3), Value(2)); }},
        {"clear", [this] { table.ClearColumn(Parameter(), Number(1)); }},
        {"set-measured", [this] { table.Measured(Number(0), true); }},

        {"measure", [this] { isWhole = Measure(Number(0)); }},
        {"measure-alone", [this] { isWhole = scan.Measure(Number(0), receiver, host, nullptr); }},
        {"forget-tuning", [this] { scan.ForgetTuning(); }},
        {"clock", [this] { clock.Set(Value(0)); }},
        {"clock-step", [this] { clock.step = Value(0); }},
        {"advance", [this] { clock.Advance(Value(0)); }},
        {"set-wall", [this] { clock.SetWallBy(Value(0)); }},
        {"at", [this] { At(true); }},
        {"each", [this] { At(false); }},
        {"number-the-result", [this] { receiver.answers.BerResult = Told(log.Count("ReadBer")) + L".0E-8"; }},
        {"marker", [this] { receiver.markers[words[0]] = Text(1); }},
#define RECEIVER_READING(name, parameter) {#name, [this] { Answer(receiver.answers.name); }},
#define RECEIVER_STATE(Type, name) {#name, [this] { Answer(receiver.answers.name); }},
#include "setup/catalogue/ReceiverOperations.h"
    };
    const Sights sights{
        {"whole", [this] { return Told(isWhole); }},
        {"calls", [this] { return Told(log.Count(rest)); }},
        {"cell", [this] { return Cell(Parameter(), Word(1).empty() ? 0 : Number(1), Channel()); }},
        {"number", [this] { return Shown(table.Value(Parameter(), words[1].empty() ? 1 : Number(1))); }},
        {"status", [this] { return Status(words[0].empty() ? 1 : Number(0)); }},
        {"measured", [this] { return Told(table.Measured(Number(0))); }},
        {"filled", [this] { return Told(Filled(Number(0))); }},
        {"row", [this] { return Rows().at(static_cast<size_t>(Number(0))); }},
        {"results", [this] { return Results(); }},
        {"file-is", [this] { return Told(ResultFileContent(document, table, locale) == TestFile(rest)); }},
        {"error-of", [this] { return ErrorOf(*this, std::string(rest)); }},
    };

private:
    using TestSession::Value;

    /// The number of a parameter by its name, or as it is.
    int32_t Parameter(size_t word = 0) const
    {
        for (const auto& parameter : Parameters()) {
            if (parameter.name == words.at(word)) {
                return parameter.number;
            }
        }
        return Number(word);
    }
    int32_t Channel() const
    {
        return words.size() > 2 ? Number(2) : 1;
    }
    void Choose(int32_t flag)
    {
        for (int32_t parameter = flag == 0 ? MP_STATUS : MP_FIRST; parameter <= MP_LAST; ++parameter) {
            document.Parameter(flag, parameter, false);
        }
        for (size_t i = 0; i < words.size() && !words[i].empty(); ++i) {
            document.Parameter(flag, Parameter(i), true);
        }
    }
    /// What happens in each call that begins so, or in the first one; "_" stands for a blank.
    void At(bool once)
    {
        const size_t space = rest.find(' ');
        std::string begin = rest.substr(0, space);
        std::ranges::replace(begin, '_', ' ');
        happenings.push_back({begin, rest.substr(space + 1), once});
        log.onCall = [this](const std::string& call) {
            for (Happening& each : happenings) {
                if (!each.isOver && call.starts_with(each.call)) {
                    each.isOver = each.once;
                    PlayLine(*this, each.line);
                }
            }
        };
    }
    using TestSession::Answer;
    void Answer(dvbc::ErroredTime& answer)
    {
        answer = {Value(0), Value(1), Value(2)};
    }

    static std::wstring Shown(std::optional<double> number)
    {
        return number ? FormatNumber(*number, false, SystemLocale()) : L"none";
    }
    int32_t Filled(int32_t channel) const
    {
        int32_t filled = 0;
        for (int32_t parameter = MP_FIRSTFIXED; parameter <= MP_LAST; ++parameter) {
            for (int32_t field = 0; field < ResultTable::fieldCount; ++field) {
                filled += table.Result(field, parameter, channel).empty() ? 0 : 1;
            }
        }
        return filled;
    }
    std::vector<std::wstring> Rows() const
    {
        std::istringstream content(ResultFileContent(document, table, locale));
        std::vector<std::wstring> rows;
        for (std::string row; std::getline(content, row);) {
            EXPECT_TRUE(row.ends_with('\r'));
            rows.push_back(FromUtf8(row.substr(0, row.size() - 1)));
        }
        return rows;
    }
    /// What follows the first blank row: the results, and the notes where there are any.
    std::wstring Results() const
    {
        const std::vector<std::wstring> rows = Rows();
        std::wstring results;
        for (auto row = std::ranges::find(rows, std::wstring()) + 1; row != rows.end(); ++row) {
            results += (results.empty() ? L"" : L" | ") + *row;
        }
        return results;
    }

    struct Happening
    {
        std::string call, line;
        bool once, isOver = false;
    };
    std::vector<Happening> happenings;
    bool isWhole = false;
};

TEST(Measure, GivesWhatEachSessionExpects)
{
    PlaySessions("measure-sessions.txt", [](const std::string& title) {
        return std::make_unique<Session>(title.starts_with("=,") ? CommaLocale() : FixedLocale());
    });
}

}  // namespace
}  // namespace tvn2x
