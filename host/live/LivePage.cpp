#include "host/live/LivePage.h"

#include "fmt/format.h"
#include "host/judge/VerdictText.h"
#include "host/report/Markup.h"

namespace tvn2x {

std::string LivePage(const LiveState& state, double)
{
    std::string text = fmt::format(
        "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n<meta "
        "charset=\"utf-8\"/>\n<title>{0}</title>\n</head>\n<body>\n<h1>{0}</h1>\n<p>{1}</p>\n<table>\n",
        Escape(SetupNames(*state.run)), Escape(state.sentence));
    for (const LiveChannel& channel : state.channels) {
        text += fmt::format("<tr><td>{}</td><td>{}</td></tr>\n",
                            Escape(ChannelName(channel.planned.label, channel.planned.frequency)),
                            channel.latest ? Escape(VerdictName(channel.latest->judgement.verdict)) : "");
    }
    return text + "</table>\n</body>\n</html>\n";
}

std::string LiveChannelPage(const LiveState&, int32_t)
{
    return {};
}

std::string_view LiveStyle()
{
    return {};
}

std::string_view LiveScript()
{
    return {};
}

}  // namespace tvn2x
