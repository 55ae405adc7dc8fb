#include "host/report/ConstellationPlot.h"

#include <algorithm>
#include <cmath>

#include "fmt/format.h"
#include "host/report/Markup.h"

namespace tvn2x {
namespace {

constexpr double size = 320;  // of the picture, in its own units
constexpr double dot = 1.6;

/// Half the width of the picture in units of the constellation: half a field more than its outermost points.
double Reach(int32_t orderOfQam)
{
    constexpr double ofCross32 = 6;
    constexpr double ofCross128 = 12;
    return orderOfQam == 32 ? ofCross32 : orderOfQam == 128 ? ofCross128 : std::sqrt(orderOfQam);
}

double Place(double value, double reach)
{
    return std::clamp((value / reach + 1) / 2, 0.0, 1.0) * size;
}

/// The borders between the decisions.
std::string Fields(double reach)
{
    std::string path;
    for (int field = 0; field <= static_cast<int>(reach); ++field) {
        const double place = Place(2 * field - reach, reach);
        path += fmt::format("M{0:.1f} 0V{1}M0 {0:.1f}H{1}", place, size);
    }
    return R"(<path class="grid" stroke="#d0d0d0" stroke-width="0.7" fill="none" d=")" + path + "\"/>";
}

std::string Diagram(const ChannelResult& channel, const std::wstring& name)
{
    const double reach = Reach(channel.orderOfQam);
    std::string path;
    for (const Symbol& symbol : channel.details.symbols) {
        path += fmt::format("M{:.1f} {:.1f}h0", Place(symbol.inPhase / symbolScale, reach),
                            size - Place(symbol.quadrature / symbolScale, reach));
    }
    return fmt::format(
        R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="-4 -4 {0} {0}" role="img" style="max-width:22rem">)"
        "<title>Constellation of {1}</title>{2}"
        R"(<path class="pass-line" stroke="#0072B2" stroke-width="{3}" stroke-linecap="round" fill="none" d="{4}"/></svg>)",
        size + 8, Escape(name), Fields(reach), dot, path);
}

}  // namespace

std::string ConstellationSection(const FinishedRun& run, const std::vector<ReportRow>& rows)
{
    std::string text;
    for (const ReportRow& row : rows) {
        const ChannelDetails& details = row.channel.details;
        // What the instrument says of its own error is that channel's reason already.
        const bool hasFailed = row.judgement.verdict > Verdict::warning && row.channel.outcome != ChannelOutcome::error;
        if (!hasFailed || (details.symbols.empty() && details.remark.empty())) {
            continue;
        }
        const std::wstring name = run.NameOf(row.channel);
        text += "<figure>\n" + (details.symbols.empty() ? "" : Diagram(row.channel, name)) + "<figcaption><strong>" +
                Escape(name) + "</strong> " +
                (details.symbols.empty() ? "No constellation: there was no carrier lock. "
                                         : fmt::format("{} symbols. ", details.symbols.size())) +
                Escape(details.remark) + "</figcaption>\n</figure>\n";
    }
    return text.empty() ? ""
                        : "<section>\n<h2>Constellations of the channels that failed</h2>\n<div class=\"plots\">\n" +
                              text + "</div>\n</section>\n";
}

}  // namespace tvn2x
