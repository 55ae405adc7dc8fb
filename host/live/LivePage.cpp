#include "host/live/LivePage.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/live/LiveEvents.h"
#include "host/live/LiveParts.h"
#include "host/report/HtmlParts.h"
#include "host/report/Markup.h"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

/// What can be done with the grid; of no use without the script, which shows it.
constexpr const char* filters =
    R"html(<div class="filters" id="filters" role="group" aria-label="Channels shown" hidden="hidden">
<button type="button" data-show="all" aria-pressed="true">All</button>
<button type="button" data-show="fail" aria-pressed="false">Failing</button>
<button type="button" data-show="warning" aria-pressed="false">Warning</button>
<label>Label <input type="search" id="label" autocomplete="off"/></label> <span id="count" role="status"></span>
</div>
)html";

std::string DataLinks()
{
    return R"html(<p class="links">As files: <a href="/report.html">report</a>, <a href="/result.jsonl">result (JSON)</a>,
<a href="/result.csv">table</a>; for programs: <a href="/api/run">run</a>, <a href="/api/channels">channels</a>,
<a href="/metrics">metrics</a>.</p>
)html";
}

std::wstring PassesText(const LiveState& state)
{
    const FinishedRun& run = *state.run;
    std::wstring text = run.passes == 0 ? L"until it is stopped" : run.passes == 1 ? L"" : std::to_wstring(run.passes);
    if (run.interval > 0) {
        text += fmt::format(L"{}every {:g} s", text.empty() ? L"" : L", ", run.interval);
    }
    return text;
}

}  // namespace

std::string LivePage(const LiveState& state, double age)
{
    const FinishedRun& run = *state.run;
    const std::wstring& site = run.protocol.site;
    const std::string title = Escape((site.empty() ? L"Cable network" : site) + L": " + SetupNames(run));
    std::string text = PageHead(title) + fmt::format(
                                             "<main id=\"live\" data-version=\"{}\" data-show=\"all\">\n<h1>{}</h1>\n"
                                             "{}<p id=\"stale\" class=\"band\" role=\"alert\" hidden=\"hidden\"></p>\n",
                                             Escape(FromUtf8(EventId(state))), title, OriginBand(run.receiver));
    std::string rows;
    for (const LivePart& part : LiveParts(state, 0, age)) {
        (part.id.front() == 'c' && part.id != "changes" ? rows : text) += part.html + "\n";
    }
    text += "<section class=\"wide\" id=\"channels\">\n<h2>All channels</h2>\n" + std::string(filters) +
            "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"All channels\">\n<table><thead><tr>" +
            LiveHeads(state) + "</tr></thead><tbody>\n" + rows + "</tbody></table>\n</div>\n</section>\n";
    text += LivePlotsPart(state);
    text += "<section id=\"facts\"><h2>About this run</h2>\n" +
            RunFacts(run, state.verdict, state.limits.get(), L"since " + LocalText(run.began), PassesText(state)) +
            DataLinks() + "</section>\n</main>\n";
    return text + R"html(<p id="said" class="unseen" aria-live="polite"></p>
<dialog id="history" aria-label="History of a channel"></dialog>
<script src="/live.js" defer="defer"></script>
</body>
</html>
)html";
}

}  // namespace tvn2x
