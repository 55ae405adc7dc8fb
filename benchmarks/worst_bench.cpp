// Files of 100 MB that nobody would make but to do harm: how long the loader takes until it has loaded or refused each,
// and how far the process grows meanwhile. Each is loaded by a process of its own.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

#include "SetupSample.h"
#include "util/Encoding.h"
#include "util/RaisedError.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;

constexpr size_t fileSize = 100'000'000;
const std::string head =
    "[Application]\nName=TVN2x\nVersion=2.0\n[Hardware]\nModel=2x\n[Frequency List]\nCount=5000000\n";

std::string Filled(const std::string& shape)
{
    std::string content = head;
    content.reserve(fileSize);
    while (content.size() + shape.size() <= fileSize) {
        content += shape;
    }
    return content;
}

/// Lines as short as can be, each with a name of its own.
std::string Distinct(const std::string& opener)
{
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789!#$%&()*+,-./:<>?@^_{|}~";
    std::string content = head;
    content.reserve(fileSize);
    for (size_t number = 1; content.size() + 10 <= fileSize; ++number) {
        content += opener;
        for (size_t rest = number; rest != 0; rest /= letters.size()) {
            content += letters[rest % letters.size()];
        }
        content += '\n';
    }
    return content;
}

std::string Rows()
{
    constexpr int32_t channels = 3'800'000;
    std::string content = head.substr(0, head.find("Count=")) + "Count=" + std::to_string(channels) + "\n";
    for (int32_t row = 1; row <= channels; ++row) {
        content += "Frequency   " + KeyNumber(row) + "=47\n";
    }
    return content;
}

/// The file is written by the time the loading process begins, and no memory is held for it.
void Measure(const char* name, const std::filesystem::path& path)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child != 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    const char* result = "refused";
    const auto begin = std::chrono::steady_clock::now();
    SetupDocument document;
    try {
        result = Load(FromUtf8(path.string()), document) ? "loaded" : "refused";
    } catch (const RaisedError&) {
        result = "refused";
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("  %-44s %-8s %6.2f s %8ld MB\n", name, result, seconds, usage.ru_maxrss * 1024 / 1'000'000);
    std::fflush(stdout);
    _exit(0);
}

}  // namespace

int main()
{
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("tvn2x-worst-" + std::to_string(getpid()) + ".ini");
    const std::pair<const char*, std::function<std::string()>> shapes[] = {
        {"rows, as many as there is room for", Rows},
        {"distinct keys", [] { return Distinct(""); }},
        {"distinct sections", [] { return Distinct("["); }},
        {"one key again and again", [] { return Filled("a\n"); }},
        {"one section again and again", [] { return Filled("[\n"); }},
        {"line ends", [] { return Filled("\n"); }},
        {"one line", [] { return Filled("x"); }},
        {"no setup at all", [] { return std::string(fileSize, 'x'); }},
    };
    std::printf("\nWorst files of 100 MB: time to load or refuse, and the process's memory at its peak\n");
    for (const auto& [name, make] : shapes) {
        std::ofstream(path, std::ios::binary) << make();
        Measure(name, path);
    }
    std::filesystem::remove(path);
}
