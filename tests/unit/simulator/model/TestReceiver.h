#pragma once

#include <string>

#include "simulator/model/ReceiverModel.h"
#include "simulator/model/SimulatedTime.h"

namespace tvn2x {

/// Time that passes only when it is told to.
class FakeTime : public SimulatedTime
{
public:
    double Seconds() override { return now; }
    void Wait(double seconds) override { now += seconds; }
    double Scale() const override { return scale; }
    double SecondsOfCalendar() override { return calendar; }

    double now = 1000;
    double scale = 1;
    double calendar = 0;
};

/// A receiver without noise in its readings at a network of two channels: 64-QAM at 474 MHz, and 256-QAM at 602 MHz.
struct TestReceiver
{
    TestReceiver() { Renew(); }

    void Renew()
    {
        receiver.Physics().Network(
            NetworkModel::Parse("[Network]\nReading Noise=0\n[Channel 1]\nFrequency (MHz)=474\n[Channel 2]\n"
                                "Frequency (MHz)=602\nOrder of QAM=256\nLevel (dBuV)=66\n",
                                L"net.ini"));
    }
    /// Changes "Key=Value" of a section.
    void Set(const std::wstring& section, const std::wstring& line)
    {
        NetworkModel model = receiver.Physics().Network();
        const size_t sign = line.find(L'=');
        model.Set(section, line.substr(0, sign), line.substr(sign + 1));
        receiver.Physics().Network(model);
    }
    /// "R" RF, "S" symbol clock, "C" carrier, "T" transport stream, for the locks that hold.
    std::wstring Locks()
    {
        return std::wstring(receiver.RfSignalPresent() ? L"R" : L"") + (receiver.SymbolClockUnlocked() ? L"" : L"S") +
               (receiver.CarrierUnlocked() ? L"" : L"C") + (receiver.TsError() ? L"" : L"T");
    }

    FakeTime time;
    ReceiverModel receiver{time};
};

}  // namespace tvn2x
