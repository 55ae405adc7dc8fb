#include "host/serve/LiveSite.h"

#include <gmock/gmock.h>

#include "host/run/RunRecords.h"
#include "host/serve/ListenAddress.h"
#include "host/serve/ServedState.h"
#include "support/RaisedBy.h"

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

TEST_F(LiveSiteTest, AnswersEachPathWithItsTypeAndKeepsBrowsersOnIt)
{
    for (const auto& [path, type] :
         std::initializer_list<std::pair<const char*, const char*>>{{"/", "text/html; charset=utf-8"},
                                                                    {"/live.js", "text/javascript; charset=utf-8"},
                                                                    {"/live.css", "text/css; charset=utf-8"},
                                                                    {"/report.html", "text/html; charset=utf-8"},
                                                                    {"/result.jsonl", "application/x-ndjson"},
                                                                    {"/api/run?x=/etc/passwd", "application/json"},
                                                                    {"/api/channels", "application/json"},
                                                                    {"/api/channels/2", "application/json"},
                                                                    {"/live.schema.json", "application/schema+json"},
                                                                    {"/events", "text/event-stream"}}) {
        const Answer answer = Ask(path);
        EXPECT_EQ(answer.status, 200U) << path;
        EXPECT_THAT(answer.fields, Contains(Pair("Content-Type", type))) << path;
        EXPECT_THAT(answer.fields, Contains(Pair("X-Content-Type-Options", "nosniff"))) << path;
        EXPECT_THAT(answer.fields, Contains(Pair("Cache-Control", "no-store"))) << path;
        EXPECT_THAT(answer.fields, Contains(Pair("Content-Security-Policy", HasSubstr("default-src 'none'")))) << path;
    }
}

TEST_F(LiveSiteTest, HasNoWayToAFile)
{
    for (const char* path :
         {"/../etc/passwd", "/..%2f..%2fetc/passwd", "//etc/passwd", "/report.html/", "/api", "/api/", "/api/channels/",
          "/api/channels/3", "/api/channels/-1", "/api/channels/1x", "/channel/0", "/api/channels/99999999999",
          "/C:/autoexec.bat", "/\\\\server\\share", "*", "", "/%00", "http://localhost/api/run"}) {
        EXPECT_EQ(Ask(path).status, 404U) << path;
    }
}

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

TEST_F(LiveSiteTest, AnswersToKnownNamesAndAddressesAndToReadingAlone)
{
    for (const auto& [host, status] :
         std::initializer_list<std::pair<const char*, unsigned>>{{"localhost", 200},
                                                                 {"LocalHost.:8087", 200},
                                                                 {"127.0.0.1:8087", 200},
                                                                 {"[::1]:8087", 200},
                                                                 {"192.0.2.7", 200},
                                                                 {"TV.example:443", 200},
                                                                 {"evil.example", 421},
                                                                 {"localhost.evil.example:8087", 421},
                                                                 {"127.0.0.1.evil.example", 421},
                                                                 {"", 421}}) {
        EXPECT_EQ(open.Ask({.method = "GET", .target = "/", .host = host}, served.state, 0).status, status) << host;
    }
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "TRACE", "get"}) {
        EXPECT_EQ(open.Ask({.method = method, .target = "/", .host = "localhost"}, served.state, 0).status, 405U);
    }
}

TEST_F(LiveSiteTest, LetsNobodyInWithoutTheToken)
{
    const std::string mine = "tvnhost_8087=";
    EXPECT_EQ(Ask("/api/run", token).status, 200U);
    EXPECT_EQ(Ask("/metrics", token).status, 200U);
    EXPECT_EQ(Ask("/api/run", "", mine + token).status, 200U);
    EXPECT_EQ(Ask("/api/run", "", "tvnhost_9000=other; " + mine + token + "; x=y").status, 200U);
    for (const std::string& wrong : {token + "0", token.substr(1), token + token, std::string("x")}) {
        EXPECT_EQ(Ask("/api/run", wrong).status, 401U);
        EXPECT_EQ(Ask("/events", "", mine + wrong).status, 401U);
        EXPECT_EQ(Ask("/?token=" + wrong, "", "x").status, 401U);
    }
    EXPECT_EQ(Ask("/api/run?token=" + token, "", "x").status, 401U);
    EXPECT_THAT(Ask("/", "x").fields, Contains(Pair("WWW-Authenticate", "Bearer")));

    const Answer link = Ask("/?token=" + token, "", "x");
    EXPECT_EQ(link.status, 200U);
    EXPECT_THAT(*link.body, Not(HasSubstr(token)));
    EXPECT_THAT(link.fields,
                Contains(Pair("Set-Cookie", AllOf(HasSubstr(mine + token), HasSubstr("; HttpOnly; SameSite=Strict")))));
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
