#include "instrument/Identity.h"

#include <algorithm>

#include "util/RaisedError.h"

namespace tvn2x {
namespace {

constexpr std::wstring_view expectedManufacturer = L"KESTREL&BRAND";
constexpr std::wstring_view expectedModel = L"KTR";

/// Runs a statement; false where it raised an error.
template <class Statement>
bool Succeeds(Statement statement)
{
    try {
        statement();
        return true;
    } catch (const RaisedError&) {
        return false;
    }
}

/// What a question answers, or the empty answer where it fails.
template <class Question>
auto Answer(Question question)
{
    decltype(question()) answer{};
    Succeeds([&] { answer = question(); });
    return answer;
}

bool Same(std::wstring_view text, std::wstring_view upperCase)
{
    const auto upper = [](wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; };
    return std::ranges::equal(text, upperCase, {}, upper);
}

}  // namespace

bool Identify(Instrument& instrument, Receiver& receiver, std::wstring& identity, std::wstring& hardware, int32_t& mode)
{
    identity.clear();
    Succeeds([&] { instrument.Online(true); });
    if (!Answer([&] { return instrument.Online(); })) {
        return false;
    }

    bool result = Same(Answer([&] { return instrument.Manufacturer(); }), expectedManufacturer) &&
                  Same(Answer([&] { return instrument.Model(); }), expectedModel);
    if (result) {
        const bool hardwareKnown = Succeeds([&] { hardware = instrument.Hardware(); });
        const bool modeKnown = Succeeds([&] { mode = receiver.Mode(); });
        result = hardwareKnown && modeKnown;
    }
    if (result) {
        result = Succeeds([&] {
            std::wstring text = instrument.InstrumentName();
            text += L"," + instrument.BusAddress();
            text += L"," + instrument.Model();
            text += L"," + instrument.Manufacturer();
            identity = text;
        });
    }
    // Who the instrument is remains true where it cannot be taken off line.
    Succeeds([&] { instrument.Online(false); });
    return result;
}

}  // namespace tvn2x
