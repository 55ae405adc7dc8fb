#include "host/serve/HttpServer.h"

#include <array>
#include <atomic>
#include <list>
#include <map>
#include <mutex>
#include <thread>

#include "boost/asio/io_context.hpp"
#include "boost/asio/ip/tcp.hpp"
#include "boost/asio/post.hpp"
#include "boost/asio/steady_timer.hpp"
#include "boost/asio/write.hpp"
#include "boost/beast/core/flat_buffer.hpp"
#include "boost/beast/core/tcp_stream.hpp"
#include "boost/beast/http.hpp"
#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/live/LiveEvents.h"
#include "host/serve/ListeningPort.h"
#include "text/InputError.h"
#include "util/Clock.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;
using boost::system::error_code;

std::string Field(const http::fields& fields, http::field name)
{
    return std::string(fields[name]);
}

Question QuestionOf(const http::request<http::empty_body>& request)
{
    return {.method = std::string(request.method_string()),
            .target = std::string(request.target()),
            // Two of them would let one be checked and the other be meant.
            .host = request.count(http::field::host) == 1 ? Field(request, http::field::host) : "",
            .authorization = Field(request, http::field::authorization),
            .cookie = Field(request, http::field::cookie),
            .accept = Field(request, http::field::accept),
            .lastEventId = std::string(request["Last-Event-ID"])};
}

/// A socket that listens.
tcp::acceptor Listen(asio::io_context& context, const ListenAddress& where)
{
    const tcp::endpoint endpoint(asio::ip::make_address(where.address), where.port);
    tcp::acceptor acceptor(context);
    error_code error;
    acceptor.open(endpoint.protocol(), error);
    if (!error) {
        KeepPortToOneself(static_cast<uintptr_t>(acceptor.native_handle()));
        acceptor.bind(endpoint, error);
    }
    if (!error) {
        acceptor.listen(asio::socket_base::max_listen_connections, error);
    }
    if (error) {
        const std::wstring reason =
            error == asio::error::address_in_use || error == asio::error::access_denied
                ? L"another program has this port. End it, or choose another port with --listen"
            : error == boost::system::errc::address_not_available
                ? L"the address is none of this machine's. Choose one that is, or 0.0.0.0 for all of them"
                : FromUtf8(error.message());
        RaiseInput(fmt::format(L"--listen: cannot serve at {}: {}.", FromUtf8(where.Link()), reason));
    }
    return acceptor;
}

}  // namespace

/// The server's side that lives on its thread. Connections hold themselves while an operation of theirs is under way.
class HttpServer::Core
{
public:
    class Connection;

    Core(const ListenAddress& where, const HttpBounds& bounds);
    ~Core();

    void Start(LiveSite site);
    void Publish(LiveStatePtr state);

    ListenAddress where;
    const HttpBounds bounds;

    /// What readers are told: the newest state of the last tick of the pace, so that many who come at once share the
    /// making of their answers.
    const LiveStatePtr& State() const { return told_; }
    Answer Ask(const Question& question);
    /// What a reader of events who knows a version has to be told; one text for all who know the same.
    std::shared_ptr<const std::string> Events(const LiveStatePtr& state, uint64_t since);

    std::list<Connection*> connections;  ///< the oldest first

private:
    void Accept();
    bool HasRoom();
    void Run();
    void Tell();
    void KeepAlive();

    asio::io_context context_{1};
    tcp::acceptor acceptor_;
    asio::steady_timer pace_{context_}, keepAlive_{context_}, again_{context_};
    std::optional<LiveSite> site_;
    std::mutex mutex_;
    LiveStatePtr state_;  ///< the newest; with the mutex
    LiveStatePtr told_;
    std::atomic<bool> isTold_;
    LiveStatePtr eventsOf_;
    double eventsAge_ = 0;
    std::map<uint64_t, std::shared_ptr<const std::string>> events_;  ///< of eventsOf_, by the version that is known
    std::thread thread_;
};

/// One reader.
class HttpServer::Core::Connection : public std::enable_shared_from_this<Connection>
{
public:
    Connection(tcp::socket socket, Core& core)
        : core_(core), stream_(std::move(socket)), place_(core.connections.insert(core.connections.end(), this))
    {
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { core_.connections.erase(place_); }

    void Read()
    {
        isWaiting_ = true;
        parser_.emplace();
        parser_->header_limit(core_.bounds.head);
        stream_.expires_after(core_.bounds.request);
        http::async_read_header(stream_, buffer_, *parser_,
                                [self = shared_from_this()](error_code error, size_t) { self->OnRead(error); });
    }

    void Close()
    {
        isWaiting_ = false;
        error_code ignored;
        stream_.socket().shutdown(tcp::socket::shutdown_both, ignored);
        stream_.socket().close(ignored);
    }

    /// Sends what is new, unless the reader has not taken the last piece yet.
    void Tell()
    {
        const LiveStatePtr state = core_.State();
        if (since_ && !isWriting_ && (state->version > *since_ || *since_ == 0)) {
            const uint64_t since = *since_;
            since_ = state->version;
            Send(core_.Events(state, since));
        }
    }

    /// A comment, by which the reader's side tells a silent server from a lost connection.
    void KeepAlive()
    {
        if (since_ && !isWriting_) {
            // No comment: the page itself has to see that it is not out of date.
            static const auto sign = std::make_shared<const std::string>("event: alive\ndata: 1\n\n");
            Send(sign);
        }
    }

    /// Has asked for nothing yet, or not again.
    bool IsWaiting() const { return isWaiting_; }

private:
    void OnRead(error_code error)
    {
        isWaiting_ = false;
        if (error.category() == http::make_error_code(http::error::bad_method).category() &&
            error != http::error::end_of_stream && error != http::error::partial_message) {
            const bool isLong = error == http::error::header_limit || error == http::error::buffer_overflow;
            Answer answer{.status = isLong ? 431U : 400U};
            Reply(std::move(answer), false, true);
        } else if (!error) {
            const auto& request = parser_->get();
            const Question question = QuestionOf(request);
            // What follows a head that announces a body is never read.
            const bool keeps = request.keep_alive() && parser_->is_done();
            Reply(core_.Ask(question), keeps, question.method != "HEAD");
        }
    }

    void Reply(Answer answer, bool keeps, bool hasBody)
    {
        const bool isStream = answer.eventsSince.has_value();
        keeps = keeps && !isStream && answer.status < 400;
        auto head = std::make_shared<http::response<http::empty_body>>();
        head->result(answer.status);
        for (const auto& [name, value] : answer.fields) {
            head->insert(name, value);
        }
        head->keep_alive(keeps);
        if (!isStream && answer.status != 204) {
            head->content_length(answer.body->size());
        }
        auto serializer = std::make_shared<http::response_serializer<http::empty_body>>(*head);
        stream_.expires_after(core_.bounds.write);
        http::async_write_header(stream_, *serializer,
                                 [self = shared_from_this(), head, serializer, answer = std::move(answer), keeps,
                                  hasBody](error_code error, size_t) {
                                     if (!error) {
                                         self->OnHead(answer, keeps, hasBody);
                                     }
                                 });
    }

    void OnHead(const Answer& answer, bool keeps, bool hasBody)
    {
        if (!hasBody) {
            OnReplied(keeps);
        } else if (answer.eventsSince) {
            Follow(*answer.eventsSince);
        } else {
            asio::async_write(stream_, asio::buffer(*answer.body),
                              [self = shared_from_this(), body = answer.body, keeps](error_code error, size_t) {
                                  if (!error) {
                                      self->OnReplied(keeps);
                                  }
                              });
        }
    }

    void OnReplied(bool keeps)
    {
        if (keeps) {
            Read();
            return;
        }
        error_code ignored;
        stream_.socket().shutdown(tcp::socket::shutdown_send, ignored);
        stream_.expires_after(std::chrono::seconds(1));
        ReadOut();
    }

    /// Lets the reader send to his end for a moment: a connection that is closed before takes the answer along.
    void ReadOut()
    {
        buffer_.clear();
        stream_.async_read_some(buffer_.prepare(1024), [self = shared_from_this()](error_code error, size_t) {
            if (!error) {
                self->ReadOut();
            }
        });
    }

    /// From now on the reader is told of each state. Whatever he says, the end of the connection among it, ends that.
    void Follow(uint64_t since)
    {
        error_code ignored;
        stream_.socket().set_option(asio::socket_base::send_buffer_size(1 << 16), ignored);
        stream_.expires_never();
        stream_.async_read_some(asio::buffer(said_),
                                [self = shared_from_this()](error_code, size_t) { self->Close(); });
        since_ = since;
        Tell();
    }

    void Send(const std::shared_ptr<const std::string>& text)
    {
        isWriting_ = true;
        stream_.expires_after(core_.bounds.write);
        asio::async_write(stream_, asio::buffer(*text), [self = shared_from_this(), text](error_code error, size_t) {
            self->isWriting_ = false;
            if (error) {
                self->Close();
            } else {
                self->Tell();
            }
        });
    }

    Core& core_;
    beast::tcp_stream stream_;
    std::list<Connection*>::iterator place_;
    beast::flat_buffer buffer_{1 << 14};
    std::optional<http::request_parser<http::empty_body>> parser_;
    std::optional<uint64_t> since_;  ///< the version that the reader of events knows; nothing for other readers
    bool isWaiting_ = true;
    bool isWriting_ = false;
    std::array<char, 1> said_{};
};

HttpServer::Core::Core(const ListenAddress& wanted, const HttpBounds& allowed)
    : where(wanted), bounds(allowed), acceptor_(Listen(context_, wanted))
{
    where.port = acceptor_.local_endpoint().port();
}

HttpServer::Core::~Core()
{
    asio::post(context_, [this] {
        Tell();
        error_code ignored;
        acceptor_.close(ignored);
        context_.stop();
    });
    if (thread_.joinable()) {
        thread_.join();
    }
}

void HttpServer::Core::Start(LiveSite site)
{
    site_.emplace(std::move(site));
    Tell();
    Accept();
    KeepAlive();
    thread_ = std::thread([this] { Run(); });
}

/// What fails for one reader, want of memory among it, ends his connection alone.
void HttpServer::Core::Run()
{
    while (!context_.stopped()) {
        try {
            context_.run();
        } catch (const std::exception&) {
            continue;
        }
    }
}

void HttpServer::Core::Publish(LiveStatePtr state)
{
    {
        const std::lock_guard lock(mutex_);
        state_ = std::move(state);
    }
    // However fast states come, one notice is on its way.
    if (!isTold_.exchange(true)) {
        asio::post(context_, [this] {
            pace_.expires_after(bounds.pace);
            pace_.async_wait([this](error_code) { Tell(); });
        });
    }
}

Answer HttpServer::Core::Ask(const Question& question)
{
    return site_->Ask(question, told_, SystemClock().SteadySeconds() - told_->at);
}

std::shared_ptr<const std::string> HttpServer::Core::Events(const LiveStatePtr& state, uint64_t since)
{
    constexpr double oldest = 1;  // seconds, by which ages may be wrong
    const double age = SystemClock().SteadySeconds() - state->at;
    if (eventsOf_ != state || age - eventsAge_ > oldest) {
        events_.clear();
        eventsOf_ = state;
        eventsAge_ = age;
    }
    auto& text = events_[since];
    if (!text) {
        text = std::make_shared<const std::string>(LiveEvents(*state, since, age));
    }
    return text;
}

void HttpServer::Core::Accept()
{
    acceptor_.async_accept([this](error_code error, tcp::socket socket) {
        if (error == asio::error::operation_aborted) {
            return;
        }
        if (error) {
            // Out of sockets: others will be closed meanwhile.
            again_.expires_after(std::chrono::milliseconds(100));
            again_.async_wait([this](error_code) { Accept(); });
            return;
        }
        Accept();
        if (HasRoom()) {
            std::make_shared<Connection>(std::move(socket), *this)->Read();
        }
    });
}

/// Makes room for one more where there is somebody to send away.
bool HttpServer::Core::HasRoom()
{
    if (connections.size() < bounds.connections) {
        return true;
    }
    for (Connection* const connection : connections) {
        if (connection->IsWaiting()) {
            connection->Close();
            return true;
        }
    }
    return false;
}

void HttpServer::Core::Tell()
{
    isTold_ = false;
    {
        const std::lock_guard lock(mutex_);
        told_ = state_;
    }
    for (Connection* const connection : connections) {
        connection->Tell();
    }
}

void HttpServer::Core::KeepAlive()
{
    keepAlive_.expires_after(bounds.keepAlive);
    keepAlive_.async_wait([this](error_code error) {
        if (!error) {
            KeepAlive();
            for (Connection* const connection : connections) {
                connection->KeepAlive();
            }
        }
    });
}

HttpServer::HttpServer(const ListenAddress& where, const HttpBounds& bounds)
    : core_(std::make_unique<Core>(where, bounds))
{
}

HttpServer::~HttpServer() = default;

const ListenAddress& HttpServer::Where() const
{
    return core_->where;
}

void HttpServer::Start(LiveSite site)
{
    core_->Start(std::move(site));
}

void HttpServer::Publish(LiveStatePtr state)
{
    core_->Publish(std::move(state));
}

}  // namespace tvn2x
