#include "host/serve/HttpServer.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <random>

#include "host/live/LiveEvents.h"
#include "host/serve/ServedState.h"
#include "support/RaisedBy.h"
#include "support/TestTable.h"

namespace tvn2x {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A connection to the server, with nothing between a test and the bytes.
class Reader
{
public:
    explicit Reader(uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in where{};
        where.sin_family = AF_INET;
        where.sin_port = htons(port);
        where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int narrow = 4096;  // so that what is not read soon stops the server
        setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &narrow, sizeof narrow);
        isOpen_ = connect(socket_, reinterpret_cast<const sockaddr*>(&where), sizeof where) == 0;
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { close(socket_); }

    void Send(std::string_view bytes) { send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT); }
    void Ask(const std::string& target, const std::string& fields = "", const std::string& method = "GET")
    {
        Send(method + " " + target + " HTTP/1.1\r\nHost: localhost\r\n" + fields + "\r\n");
    }

    /// What has come, as soon as `part` is in it; the rest is kept. All that came where the connection ends before.
    std::string Until(const std::string& part)
    {
        size_t found = std::string::npos;
        while ((found = kept_.find(part)) == std::string::npos && More()) {
        }
        const std::string text = kept_.substr(0, found == std::string::npos ? found : found + part.size());
        kept_.erase(0, text.size());
        return text;
    }
    /// Everything up to the end of the connection.
    std::string UntilEnd() { return Until(std::string("\0never", 6)); }

    bool IsEnded() const { return isEnded_; }

private:
    bool More()
    {
        constexpr int patience = 20'000;  // milliseconds
        pollfd waited{socket_, POLLIN, 0};
        char bytes[4096];
        const ssize_t got = isOpen_ && poll(&waited, 1, patience) == 1 ? recv(socket_, bytes, sizeof bytes, 0) : -1;
        isEnded_ = got == 0;
        kept_.append(bytes, got > 0 ? static_cast<size_t>(got) : 0);
        return got > 0;
    }

    int socket_;
    bool isOpen_ = false, isEnded_ = false;
    std::string kept_;
};

class HttpServerTest : public testing::Test
{
protected:
    void Start(const HttpBounds& bounds = {})
    {
        server = std::make_unique<HttpServer>(ListenAddress{"127.0.0.1", 0}, bounds);
        Publish();
        server->Start(LiveSite(Gate("", {}, server->Where().port)));
    }
    void Publish() { server->Publish(served.state); }
    uint16_t Port() const { return server->Where().port; }
    std::string IdLine() const { return "id: " + EventId(*served.state); }

    ServedState served;
    std::unique_ptr<HttpServer> server;
};

TEST_F(HttpServerTest, AnswersOneQuestionAfterTheOther)
{
    Start();
    Reader reader(Port());
    reader.Ask("/api/run", "", "HEAD");
    EXPECT_THAT(reader.Until("\r\n\r\n"), AllOf(StartsWith("HTTP/1.1 200 OK\r\n"), HasSubstr("Content-Length: ")));
    reader.Ask("/favicon.ico");
    EXPECT_THAT(reader.Until("\r\n\r\n"), AllOf(StartsWith("HTTP/1.1 204 "), Not(HasSubstr("Content-Length"))));
    reader.Ask("/api/run");
    reader.Ask("/nothing");
    EXPECT_THAT(reader.Until("\r\n\r\n"), StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(reader.Until("}}}\n"), HasSubstr("\"phase\":\"measuring\""));
    EXPECT_THAT(reader.UntilEnd(), AllOf(StartsWith("HTTP/1.1 404 "), HasSubstr("Connection: close")));
    for (const char* const fields : {"Connection: close\r\n", "Content-Length: 5\r\n"}) {
        Reader once(Port());
        once.Ask("/favicon.ico", fields);
        EXPECT_THAT(once.UntilEnd(), HasSubstr("Connection: close")) << fields;
    }
}

TEST_F(HttpServerTest, TellsEachReaderWhatIsNewToHim)
{
    Start();
    Reader reader(Port());
    reader.Ask("/events");
    EXPECT_THAT(reader.Until(IdLine()),
                AllOf(HasSubstr("Content-Type: text/event-stream"), Not(HasSubstr("Content-Length"))));
    const std::string known = EventId(*served.state);
    served.Measure(2);
    Publish();
    const std::string news = reader.Until(IdLine());
    EXPECT_THAT(news, HasSubstr(IdLine()));

    Reader returned(Port()), stranger(Port());
    returned.Ask("/events", "Last-Event-ID: " + known + "\r\n");
    stranger.Ask("/events", "Last-Event-ID: 2020-01-01T00:00:00.000Z/1\r\n");
    returned.Until("\r\n\r\n");
    stranger.Until("\r\n\r\n");
    const std::string rest = returned.Until(IdLine()), all = stranger.Until(IdLine());
    EXPECT_THAT(all, HasSubstr("C1 314 MHz</a></th>"));
    EXPECT_THAT(rest, Not(HasSubstr("C1 314 MHz</a></th>")));
    server.reset();
    reader.UntilEnd();
    EXPECT_TRUE(reader.IsEnded());
}

/// The scan is not held up by readers who take nothing. Who reads learns the newest all the same, also who begins late.
TEST_F(HttpServerTest, LeavesBehindWhoDoesNotRead)
{
    Start({.pace = std::chrono::milliseconds(1)});
    std::vector<std::unique_ptr<Reader>> mute;
    for (int i = 0; i < 200; ++i) {
        mute.push_back(std::make_unique<Reader>(Port()));
        mute.back()->Ask("/events");
    }
    Reader reader(Port());
    reader.Ask("/events");
    for (int pass = 2; pass < 400; ++pass) {
        served.Measure(1, pass);
        Publish();
        EXPECT_THAT(reader.Until(IdLine()), HasSubstr(IdLine()));
    }
    EXPECT_THAT(mute.front()->Until(IdLine()), HasSubstr(IdLine()));
}

/// A stream without news has signs of life, for longer than a piece of it may take to be sent.
TEST_F(HttpServerTest, KeepsAStreamAlive)
{
    Start({.write = std::chrono::milliseconds(500), .keepAlive = std::chrono::milliseconds(20)});
    Reader reader(Port());
    reader.Ask("/events");
    for (int sign = 0; sign < 30; ++sign) {
        EXPECT_THAT(reader.Until("alive\ndata: 1\n\n"), EndsWith("event: alive\ndata: 1\n\n"));
    }
}

TEST_F(HttpServerTest, SendsAwayWhoAsksForNothing)
{
    Start({.connections = 4, .request = std::chrono::hours(1)});
    Reader follower(Port());
    follower.Ask("/events");
    follower.Until(IdLine());
    std::vector<std::unique_ptr<Reader>> idle;
    for (int i = 0; i < 3; ++i) {
        idle.push_back(std::make_unique<Reader>(Port()));
        idle.back()->Send("GET / HT");
    }
    Reader reader(Port());
    reader.Ask("/api/run");
    EXPECT_THAT(reader.Until("\r\n"), HasSubstr("200 OK"));
    EXPECT_EQ(idle.front()->UntilEnd(), "");
    EXPECT_TRUE(idle.front()->IsEnded());
    served.Measure(2);
    Publish();
    EXPECT_THAT(follower.Until(IdLine()), HasSubstr(IdLine()));
}

TEST_F(HttpServerTest, EndsHalfAndWrongRequests)
{
    for (const auto& [request, answer] : std::initializer_list<std::pair<std::string, const char*>>{
             {"GET / HTTP/1.1\r\nHost: localhost\r\n", ""},
             {"", ""},
             {std::string("\x16\x03\x01\0\xff\r\n\r\n", 9), "HTTP/1.1 400 "},
             {"GET / HTTP/9.9\r\n\r\n", "HTTP/1.1 400 "},
             {"GET / HTTP/1.1\r\n\r\n", "HTTP/1.1 421 "},
             {"GET / HTTP/1.1\r\nHost: localhost\r\nHost: elsewhere.example\r\n\r\n", "HTTP/1.1 421 "},
             {"GET / HTTP/1.1\r\nHost: localhost\r\nX: " + std::string(10'000, 'x'), "HTTP/1.1 431 "},
             {"POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100\r\n\r\nx", "HTTP/1.1 405 "}}) {
        // What is answered is answered in time also on a machine that has much else to do.
        Start({.request = std::chrono::milliseconds(*answer == '\0' ? 50 : 10'000)});
        Reader reader(Port());
        reader.Send(request);
        EXPECT_THAT(reader.UntilEnd(), StartsWith(answer)) << request.substr(0, 80);
        EXPECT_TRUE(reader.IsEnded()) << request.substr(0, 80);
    }
}

/// Garbage, pieces of requests and readers that go away at any moment, for TVN_FUZZ_SECONDS.
TEST_F(HttpServerTest, OutlivesGarbage)
{
    Start({.connections = 32, .request = std::chrono::milliseconds(200)});
    const auto pieces = TestTable("request-pieces.tsv", 1);
    std::minstd_rand random(7);
    const char* const wanted = std::getenv("TVN_FUZZ_SECONDS");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(wanted ? std::atoi(wanted) : 1);
    std::vector<std::unique_ptr<Reader>> readers(64);
    int32_t pass = 1;
    while (std::chrono::steady_clock::now() < end) {
        auto& reader = readers[random() % readers.size()];
        if (!reader || random() % 8 == 0) {
            reader = std::make_unique<Reader>(Port());
        }
        reader->Send(CellText(pieces[random() % pieces.size()][0]));
        if (random() % 64 == 0) {
            served.Measure(1, ++pass);
            Publish();
        }
    }
    readers.clear();
    Reader reader(Port());
    reader.Ask("/api/channels/1");
    EXPECT_THAT(reader.Until("\r\n"), HasSubstr("200 OK"));
}

TEST_F(HttpServerTest, TellsWhoCannotListen)
{
    Start();
    EXPECT_THAT(RaisedBy([&] {
                    HttpServer(ListenAddress{"127.0.0.1", Port()});
                }),
                HasSubstr(L": another program has this port. End it, or choose another port with --listen."));
    EXPECT_THAT(RaisedBy([&] {
                    HttpServer(ListenAddress{"192.0.2.1", 0});
                }),
                HasSubstr(L": the address is none of this machine's."));
}

}  // namespace
}  // namespace tvn2x
