#pragma once

#include "instrument/Receiver.h"
#include "support/ReceiverAnswers.h"

namespace tvn2x::bench {

/// A synchronised receiver that answers at once, so that a scan costs what the scan itself costs. No bit error count
/// runs: it would take its time. No option is installed.
class NullReceiver final : public Receiver
{
public:
    NullReceiver()
    {
        answers_.BerState = L"---";
        answers_.InstalledOptions.clear();
    }

#define RECEIVER_READING(name, parameter) \
    double name() override                \
    {                                     \
        return answers_.name;             \
    }
#define RECEIVER_STATE(Type, name) \
    Type name() override           \
    {                              \
        return answers_.name;      \
    }
#define RECEIVER_SETTING(Type, name) \
    Type name() override             \
    {                                \
        return answers_.name;        \
    }                                \
    void name(Type) override {}
#define RECEIVER_ACTION(name) \
    void name() override {}
#include "setup/catalogue/ReceiverOperations.h"

private:
    ReceiverAnswers answers_ = GoodAnswers();
};

class NullRunControl final : public RunControl
{
public:
    bool StopFlag() override { return false; }
    void Pause(float) override {}
};

class NullParent final : public HostParent
{
public:
    void Status(const std::wstring&) override {}
    void Progress(double) override {}
    void Progress(double, int16_t) override {}
    void CellChanged(int32_t, int16_t) override {}
    void ChannelStart(double, double) override {}
};

}  // namespace tvn2x::bench
