#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "host/live/LiveState.h"
#include "host/serve/ListenAddress.h"
#include "host/serve/LiveSite.h"

namespace tvn2x {

/// How much readers may ask of a server.
struct HttpBounds
{
    size_t connections = 256;  ///< at one time; of more, those go first that have asked for nothing yet
    uint32_t head = 8192;      ///< bytes of a request; it has no body
    std::chrono::milliseconds request{10'000};    ///< until a request is there, and between two
    std::chrono::milliseconds write{20'000};      ///< until a reader has taken an answer, or what is new
    std::chrono::milliseconds keepAlive{15'000};  ///< between two signs of life on a stream of events
    std::chrono::milliseconds pace{100};          ///< between two pieces of it
};

/// Serves a run to readers over HTTP, on a thread of its own. Whatever readers do, Publish returns at once and the
/// server's memory has its bounds: each stream of events has one piece on its way, and what is new meanwhile is put
/// together from the newest state when that one is gone.
class HttpServer
{
public:
    /// Listens. Raises unusableInput where the port is taken, or the address is not this machine's.
    explicit HttpServer(const ListenAddress& where, const HttpBounds& bounds = {});
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    /// Ends all connections and the thread, in a moment.
    ~HttpServer();

    /// Where it listens, with the port that the system chose where none was given.
    const ListenAddress& Where() const;
    /// Begins to answer; the first state has to be published before.
    void Start(LiveSite site);
    /// From now on this is what is served. On any thread.
    void Publish(LiveStatePtr state);

private:
    class Core;
    std::unique_ptr<Core> core_;
};

}  // namespace tvn2x
