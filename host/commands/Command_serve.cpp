#include <cstdlib>

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/commands/Commands.h"
#include "host/commands/ScanPreparation.h"
#include "host/console/Files.h"
#include "host/link/RunCollector.h"
#include "host/serve/HttpServer.h"
#include "text/InputError.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

constexpr const char* tokenVariable = "TVNHOST_TOKEN";

/// The token that readers have to show, "" for none: given by the user, or made where others than this machine may
/// read.
std::string TokenFor(const ServeOptions& options, const ListenAddress& where)
{
    if (!options.tokenFile.empty()) {
        return RequireToken(ReadInput(AbsolutePath(options.tokenFile)), options.tokenFile);
    }
    if (const char* const token = std::getenv(tokenVariable); token && *token) {
        return RequireToken(token, FromUtf8(tokenVariable));
    }
    return where.IsLoopback() ? "" : RandomToken();
}

void TellWhere(const ServeOptions& options, const ListenAddress& where, const std::string& token, Console& console)
{
    console.Notice(L"Serving at " + FromUtf8(where.Link()) + (token.empty() ? L"" : L" for those who have the token"));
    // Whoever gave the token has it; one that was made here is shown this once.
    if (!token.empty() && options.tokenFile.empty() && !std::getenv(tokenVariable)) {
        console.Notice(L"Open this link once, with this machine's address in it for other machines: " +
                       FromUtf8(where.Link() + "?token=" + token));
    }
}

/// Until Ctrl+C, when nothing is left to be measured: what was measured is still there to be read.
void ServeOn(StopRequest& stop, Console& console)
{
    constexpr double atOnce = 0.2;  // seconds
    if (!stop.Poll()) {
        console.Notice(L"All passes are done. Serving goes on until Ctrl+C");
    }
    while (!stop.Poll()) {
        HandleMessagesFor(atOnce);
    }
}

}  // namespace

int Serve(const ServeOptions& options, Console& console)
{
    const std::optional<Limits> read = LoadLimits(options.scan.reports.limits);
    const auto limits = read ? std::make_shared<const Limits>(*read) : nullptr;
    const ListenAddress wanted = ReadListenAddress(options.listen);
    const std::string token = TokenFor(options, wanted);
    std::vector<std::string> names;
    for (const std::wstring& name : options.hostNames) {
        names.push_back(ToUtf8(name));
    }
    // The port is taken before anything else is, and given back last.
    HttpServer server(wanted);
    std::optional<MetricsFile> metrics = MetricsFileOf(options.scan.reports, console);
    LiveStatePtr latest;
    LiveRun live(NowUtc(), limits, SystemClock(), [&](LiveStatePtr state) {
        latest = state;
        if (metrics) {
            metrics->Take(*state);
        }
        server.Publish(std::move(state));
    });
    PreparedScan scan(options.scan, limits.get(), &live, console);
    live.Begin(scan.Scan().run);
    server.Start(LiveSite(Gate(token, names, server.Where().port)));
    TellWhere(options, server.Where(), token, console);
    if (!scan.Measure()) {
        return exitStopped;
    }
    const bool wasStopped = scan.Scan().run.stopped;
    ServeOn(scan.Scan().stop, console);
    if (!scan.Scan().journal.IsWhole()) {
        RaiseInput(L"the journal lacks the last channels: it could not be written.");
    }
    return wasStopped ? exitStopped : latest->verdict.ExitCode();
}

}  // namespace tvn2x
