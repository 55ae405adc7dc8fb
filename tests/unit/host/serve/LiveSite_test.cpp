#include "host/serve/LiveSite.h"

#include <gmock/gmock.h>

#include "host/run/RunRecords.h"
#include "host/serve/ListenAddress.h"
#include "host/serve/ServedState.h"
#include "support/RaisedBy.h"
#include "support/TestFiles.h"
#include "support/TestTable.h"

namespace tvn2x {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string token = "0123456789abcdef";

class LiveSiteTest : public testing::Test
{
protected:
    Answer Ask(const std::string& target, const std::string& givenToken = "", const std::string& cookie = "")
    {
        Question question{.method = "GET", .target = target, .host = "localhost:8087", .cookie = cookie};
        question.authorization = givenToken.empty() ? "" : "Bearer " + givenToken;
        return (cookie + givenToken).empty() ? open.Ask(question, served.state, 0)
                                             : guarded.Ask(question, served.state, 0);
    }

    ServedState served;
    LiveSite open{Gate("", {"tv.example"}, 8087)};
    LiveSite guarded{Gate(token, {}, 8087)};
};

TEST_F(LiveSiteTest, TellsDataInTheRecordsOfTheResultFile)
{
    EXPECT_THAT(*Ask("/api/run").body, HasSubstr(R"("done":1,)"));
    EXPECT_THAT(*Ask("/api/channels").body, HasSubstr(R"("latest":{"record":"channel","pass":1,"number":1,)"));
    EXPECT_THAT(*Ask("/api/channels/1").body, HasSubstr(R"("history":[{"pass":1,"began":"2026-11-21T12:59:05.123Z")"));
    EXPECT_EQ(ReadRun(*Ask("/result.jsonl").body, L"result").run.Measured(), 1);
    EXPECT_EQ(Ask("/result.csv").status, 503U);
    served.Measure(2);
    served.live.EndPass(2, L"2026-11-21T13:00:00.000Z", "table");
    EXPECT_EQ(*Ask("/result.csv").body, "table");
    EXPECT_EQ(ReadRun(*Ask("/result.jsonl").body, L"result").run.Measured(), 2);
}

/// The status, the fields and the beginning of each answer, and the questions that get it: site, method, path, host,
/// token, cookie, accepted types and last event.
TEST_F(LiveSiteTest, AnswersEachQuestionAsWritten)
{
    std::vector<std::pair<std::string, std::string>> answers;
    for (const std::vector<std::string>& row : TestTable("serve-questions.tsv", 8)) {
        const Question question{.method = row[1],
                                .target = CellText(row[2]),
                                .host = row[3],
                                .authorization = row[4].empty() ? "" : "Bearer " + row[4],
                                .cookie = row[5],
                                .accept = row[6],
                                .lastEventId = row[7]};
        const Answer answer = (row[0] == "open" ? open : guarded).Ask(question, served.state, 0);
        std::string told = std::to_string(answer.status) + "\n";
        for (const auto& [name, value] : answer.fields) {
            told += name + ": " + value + "\n";
        }
        told += answer.eventsSince ? "events since " + std::to_string(*answer.eventsSince) : answer.body->substr(0, 90);
        auto known = std::ranges::find(answers, told, &std::pair<std::string, std::string>::first);
        if (known == answers.end()) {
            known = answers.insert(known, {told, ""});
        }
        known->second += "  <";
        for (const std::string& cell : row) {
            known->second += " " + cell;
        }
        known->second.erase(known->second.find_last_not_of(' ') + 1);
        known->second += "\n";
    }
    std::string all;
    for (const auto& [answer, questions] : answers) {
        all += questions + answer + "\n\n";
    }
    ExpectTold("serve-answers.txt", all);
}

TEST_F(LiveSiteTest, KeepsTheTokenFromThePage)
{
    EXPECT_THAT(*Ask("/?token=" + token, "", "x").body, Not(HasSubstr(token)));
}

TEST(ListenAddressTest, ReadsAddressesAndTellsWhatIsNone)
{
    EXPECT_EQ(ReadListenAddress(L"8087").Link(), "http://127.0.0.1:8087/");
    EXPECT_EQ(ReadListenAddress(L"localhost:1").Link(), "http://127.0.0.1:1/");
    EXPECT_EQ(ReadListenAddress(L"0.0.0.0:80").Link(), "http://127.0.0.1:80/");
    EXPECT_EQ(ReadListenAddress(L"[::1]:65535").Link(), "http://[::1]:65535/");
    EXPECT_TRUE(ReadListenAddress(L"[::1]:0").IsLoopback());
    EXPECT_TRUE(ReadListenAddress(L"127.9.9.9:0").IsLoopback());
    EXPECT_FALSE(ReadListenAddress(L"0.0.0.0:0").IsLoopback());
    EXPECT_FALSE(ReadListenAddress(L"[::]:0").IsLoopback());
    for (const wchar_t* wrong : {L"", L":", L"127.0.0.1", L"127.0.0.1:", L"127.0.0.1:65536", L"127.0.0.1:-1", L"::1:80",
                                 L"[::1]", L"[127.0.0.1]:80", L"tv.example:80", L"127.1:80", L"127.0.0.1:80x"}) {
        EXPECT_THAT(RaisedBy([&] { ReadListenAddress(wrong); }), HasSubstr(L"--listen: ")) << wrong;
    }
}

TEST(TokenTest, IsRandomOrAsGivenAndNeverShown)
{
    EXPECT_EQ(RandomToken().size(), 32U);
    EXPECT_NE(RandomToken(), RandomToken());
    EXPECT_EQ(RequireToken(token + "\r\nsecond line", L"F"), token);
    for (const std::string& wrong : {std::string(), token.substr(1), token + ";x", token + " "}) {
        const std::wstring told = RaisedBy([&] { RequireToken(wrong, L"F"); });
        EXPECT_THAT(told, HasSubstr(L"F has no token"));
        EXPECT_THAT(told, Not(HasSubstr(L"0123")));
    }
}

}  // namespace
}  // namespace tvn2x
