#include "host/report/Diagnosis.h"

#include "fmt/format.h"
#include "fmt/xchar.h"
#include "host/terminal/TextGrid.h"
#include "nlohmann/json.hpp"
#include "util/Encoding.h"

namespace tvn2x {
namespace {

const wchar_t* Owner(const RegisteredItem& item)
{
    return item.isUsers ? L"user" : L"machine";
}

}  // namespace

std::wstring DiagnosisText(const Diagnosis& diagnosis, int32_t maxWidth)
{
    std::wstring text;
    for (const auto& [name, value] : diagnosis.facts) {
        text += fmt::format(L"{:<18}{}\n", name, value);
    }
    TextGrid grid({L"Registered", L"Bits", L"For", L"Version", L"State", L"File"}, 2);
    for (const RegisteredItem& item : diagnosis.items) {
        grid.AddRow({item.name, std::to_wstring(item.bits), Owner(item), item.version,
                     item.fault.empty() ? L"good" : item.fault, item.file});
    }
    if (!diagnosis.items.empty()) {
        text += grid.Render(maxWidth);
    }
    for (const Complaint& complaint : diagnosis.complaints) {
        text += complaint.what + L"\n    " + complaint.remedy + L"\n";
    }
    const size_t wrong = diagnosis.complaints.size();
    return text + (wrong == 0   ? L"Nothing is wrong\n"
                   : wrong == 1 ? L"1 thing is wrong\n"
                                : fmt::format(L"{} things are wrong\n", wrong));
}

std::string DiagnosisJson(const Diagnosis& diagnosis)
{
    using Json = nlohmann::ordered_json;
    Json json{{"healthy", diagnosis.IsHealthy()}, {"facts", Json::object()}};
    for (const auto& [name, value] : diagnosis.facts) {
        json["facts"][ToUtf8(name)] = ToUtf8(value);
    }
    json["registered"] = Json::array();
    for (const RegisteredItem& item : diagnosis.items) {
        json["registered"].push_back({{"name", ToUtf8(item.name)},
                                      {"bits", item.bits},
                                      {"for", ToUtf8(Owner(item))},
                                      {"file", ToUtf8(item.file)},
                                      {"version", ToUtf8(item.version)},
                                      {"fault", ToUtf8(item.fault)}});
    }
    json["complaints"] = Json::array();
    for (const Complaint& complaint : diagnosis.complaints) {
        json["complaints"].push_back({{"what", ToUtf8(complaint.what)}, {"remedy", ToUtf8(complaint.remedy)}});
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace tvn2x
