#include "simulator/model/FaultScript.h"

#include <algorithm>
#include <optional>

namespace tvn2x {
namespace {

constexpr std::wstring_view anyOperation = L"*";

constexpr std::wstring_view operations[] = {
#define RECEIVER_OPERATION(name) L"" #name,
#include "setup/catalogue/ReceiverOperations.h"
};

std::wstring_view Prefix(Access access)
{
    return access == Access::get ? L"get " : access == Access::let ? L"let " : L"";
}

bool Matches(std::wstring_view wanted, std::wstring_view name, Access access)
{
    if (wanted == anyOperation || wanted == name) {
        return true;
    }
    const std::wstring_view prefix = Prefix(access);
    return !prefix.empty() && wanted.starts_with(prefix) && wanted.substr(prefix.size()) == name;
}

bool IsKnown(std::wstring_view wanted)
{
    return wanted == anyOperation || std::ranges::any_of(operations, [&](std::wstring_view name) {
               return Matches(wanted, name, Access::get) || Matches(wanted, name, Access::let);
           });
}

}  // namespace

void FaultScript::FailAt(std::wstring_view operation, int32_t count, RaisedError error)
{
    constexpr const wchar_t* source = L"ISimulatorSettings.FailAt";
    if (count < 1) {
        throw RaisedError(error::invalidPropertyValue, source,
                          L"The count is " + std::to_wstring(count) + L"; calls are counted from 1");
    }
    if (!IsKnown(operation)) {
        std::wstring text = L"There is no operation \"" + std::wstring(operation) + L"\"; use \"*\" or one of ";
        for (const std::wstring_view name : operations) {
            text.append(name == operations[0] ? L"" : L", ").append(name);
        }
        throw RaisedError(error::invalidPropertyValue, source,
                          text + L", with \"get \" or \"let \" before it for one half of a property");
    }
    faults_.push_back({std::wstring(operation), count, std::move(error)});
}

void FaultScript::Check(std::wstring_view name, Access access)
{
    std::optional<RaisedError> due;
    for (auto fault = faults_.begin(); fault != faults_.end();) {
        if (!Matches(fault->operation, name, access) || --fault->callsLeft > 0) {
            ++fault;
            continue;
        }
        due = fault->error;
        fault = faults_.erase(fault);
    }
    if (due) {
        throw RaisedError(*due);
    }
}

}  // namespace tvn2x
