#include "host/serve/LiveSite.h"

#include <gmock/gmock.h>

#include "host/run/RunRecords.h"
#include "host/serve/ListenAddress.h"
#include "host/serve/ServedState.h"
#include "support/RaisedBy.h"
#include "support/TestTable.h"

namespace tvn2x {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

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

/// Of a site that is open or asks for a token: method, path, host, token and cookie, then the status and the type.
TEST_F(LiveSiteTest, AnswersEachQuestionAsTheTableSays)
{
    for (const std::vector<std::string>& row : TestTable("serve-questions.tsv", 8)) {
        const Question question{.method = row[1],
                                .target = CellText(row[2]),
                                .host = row[3],
                                .authorization = row[4].empty() ? "" : "Bearer " + row[4],
                                .cookie = row[5]};
        const Answer answer = (row[0] == "open" ? open : guarded).Ask(question, served.state, 0);
        EXPECT_EQ(answer.status, std::stoul(row[6])) << testing::PrintToString(row);
        if (answer.status == 200) {
            EXPECT_THAT(answer.fields, Contains(Pair("Content-Type", row[7]))) << row[2];
            EXPECT_THAT(answer.fields, Contains(Pair("X-Content-Type-Options", "nosniff"))) << row[2];
            EXPECT_THAT(answer.fields, Contains(Pair("Cache-Control", "no-store"))) << row[2];
            EXPECT_THAT(answer.fields, Contains(Pair("Content-Security-Policy", HasSubstr("default-src 'none'"))));
        }
    }
}

TEST_F(LiveSiteTest, TakesTheTokenOfALinkAndKeepsItFromThePage)
{
    EXPECT_THAT(Ask("/", "x").fields, Contains(Pair("WWW-Authenticate", "Bearer")));
    const Answer link = Ask("/?token=" + token, "", "x");
    EXPECT_EQ(link.status, 200U);
    EXPECT_THAT(*link.body, Not(HasSubstr(token)));
    EXPECT_THAT(link.fields, Contains(Pair("Set-Cookie", AllOf(HasSubstr("tvnhost_8087=" + token),
                                                               HasSubstr("; HttpOnly; SameSite=Strict")))));
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
