// Load and save of a setup beside the system's own profile functions, which read and write one key at a time.

#include <windows.h>

#include <cstdlib>

#include "Race.h"
#include "SetupSample.h"
#include "util/Encoding.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;

constexpr int32_t channels = 1000;
constexpr const char* list = "Frequency List";
constexpr const char* keyNames[] = {"Frequency   ", "User Field  ", "Symbol Rate "};

void ReadAll(const std::string& path)
{
    for (int32_t channel = 1; channel <= channels; ++channel) {
        for (const char* name : keyNames) {
            char value[256];
            GetPrivateProfileStringA(list, (name + KeyNumber(channel)).c_str(), "", value, sizeof value, path.c_str());
            Keep(std::atof(value));
        }
    }
}

void WriteAll(const std::string& path, int round)
{
    for (int32_t channel = 1; channel <= channels; ++channel) {
        for (const char* name : keyNames) {
            const std::string value = std::to_string(round) + ".5";
            if (!WritePrivateProfileStringA(list, (name + KeyNumber(channel)).c_str(), value.c_str(), path.c_str())) {
                std::abort();
            }
        }
    }
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
}

}  // namespace

int main(int argc, char** argv)
{
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    const std::wstring path = std::wstring(folder) + L"tvn2x-bench.ini";
    const std::string bytes = ToCodePage(path);
    DeleteFileW(path.c_str());
    SetupDocument documents[] = {SampleSetup(channels), SampleSetup(channels, 1)};
    if (!SaveSetup(documents[0], SystemEnvironment(), L"TVN2x", L"2.0", path)) {
        return 1;
    }

    int round = 0;
    Race load("Load, 1000 channels (per channel)", channels);
    load.Add("setup file", [&] {
        SetupDocument document;
        if (!Load(path, document) || document.ListSize() != channels) {
            std::abort();
        }
    });
    load.Add("the system's profile functions", [&] { ReadAll(bytes); });
    load.Run(3);

    Race save("Save, 1000 channels (per channel)", channels);
    save.Add("setup file", [&] {
        if (!SaveSetup(documents[++round % 2], SystemEnvironment(), L"TVN2x", L"2.0", path)) {
            std::abort();
        }
    });
    save.Add("the system's profile functions", [&] { WriteAll(bytes, ++round); });
    save.Run(3);
    DeleteFileW(path.c_str());
    return Finish(argc, argv);
}
