#include "receivers/model/SettingRange.h"
#include "receivers/recordings/receiver/RecordedReceiver.h"
#include "setup/catalogue/Options.h"
#include "setup/catalogue/Settings.h"

namespace tvn2x::recordings {
namespace {

/// Refuses every value but the only one that there is.
void RequireOnly(int32_t only, int32_t value, std::wstring_view setting, const std::wstring& reason)
{
    RequireSetting(value == only, setting, reason);
}

}  // namespace

void RecordedReceiver::BeginMeasurement()
{
    if (channel_ && channel_->IsOver()) {
        Tune();
    }
}

void RecordedReceiver::SawBandwidth(int32_t megahertz)
{
    RequireSetting(IsChoice(setting::sawBandwidth, megahertz), L"SawBandwidth",
                   std::to_wstring(megahertz) + L" is none of 0, 2, 6, 7 and 8 MHz");
    settings_.sawBandwidth = megahertz;
}

void RecordedReceiver::ReferenceSource(int32_t source)
{
    RequireOnly(0, source, L"ReferenceSource", L"a recording has the reference that it was made with");
}

void RecordedReceiver::Mode(int32_t mode)
{
    RequireSetting(mode == dvbCDemodulator, L"Mode", L"recordings are measured in mode 4 alone", modeRefused);
}

void RecordedReceiver::Hold(bool hold)
{
    held_ = hold;
    if (channel_) {
        channel_->Rest(hold);
    }
}

void RecordedReceiver::DemodulatorGainControl(int32_t mode)
{
    RequireOnly(1, mode, L"DemodulatorGainControl", L"the gain control is automatic (1)");
}

void RecordedReceiver::Equaliser(int32_t mode)
{
    RequireOnly(1, mode, L"Equaliser", L"the equaliser is adaptive (1)");
}

void RecordedReceiver::Initialise()
{
    settings_ = {};
    held_ = false;
    Tune();
}

/// All filters and routes: a setup that asks for one is not about the recording. No reference input.
std::wstring RecordedReceiver::InstalledOptions() const
{
    return L"KTR-H2,KTR-H4,KTR-H5,KTR-H6,KTR-H8 (or KTR-H9),EAMOD,RB";
}

}  // namespace tvn2x::recordings
