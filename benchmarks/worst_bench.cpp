// Files of 100 MB that nobody would make but to do harm: how long the loader takes until it has loaded or refused each,
// and how far the process grows meanwhile. Each is loaded by a process of its own. Fails where one grows beyond what is
// promised.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <tuple>

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
std::string Distinct(const std::string& opener,
                     std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789!#$%&()*+,-./:<>?@^_{|}~")
{
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

/// The file is written by the time the loading process begins, and no memory is held for it. Tells whether it stayed
/// below so many times the file's size, and what any process takes.
bool Measure(const char* name, const std::filesystem::path& path, double most)
{
    constexpr double any = 20'000'000;
    std::fflush(stdout);
    const pid_t child = fork();
    if (child != 0) {
        int status = 1;
        waitpid(child, &status, 0);
        return status == 0;
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
    const double peak = static_cast<double>(usage.ru_maxrss) * 1024;
    const bool isHeld = peak <= most * fileSize + any;
    std::printf("  %-44s %-8s %6.2f s %8.0f MB%s\n", name, result, seconds, peak / 1e6, isHeld ? "" : ", too much");
    std::fflush(stdout);
    _exit(isHeld ? 0 : 1);
}

}  // namespace

int main()
{
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("tvn2x-worst-" + std::to_string(getpid()) + ".ini");
    std::string beyond;
    for (int byte = 0x80; byte < 0x100; ++byte) {
        beyond += static_cast<char>(byte);
    }
    constexpr double most = 4.2, mostBeyondAscii = 6;
    const std::tuple<const char*, std::function<std::string()>, double> shapes[] = {
        {"rows, as many as there is room for", Rows, most},
        {"distinct keys", [] { return Distinct(""); }, most},
        {"distinct keys beyond ASCII", [&] { return Distinct("", beyond); }, mostBeyondAscii},
        {"distinct sections", [] { return Distinct("["); }, most},
        {"one key again and again", [] { return Filled("a\n"); }, most},
        {"one section again and again", [] { return Filled("[\n"); }, most},
        {"line ends", [] { return Filled("\n"); }, most},
        {"one line", [] { return Filled("x"); }, most},
        {"one line beyond ASCII", [] { return Filled("\x80"); }, mostBeyondAscii},
        {"no setup at all", [] { return std::string(fileSize, 'x'); }, most},
    };
    std::printf("\nWorst files of 100 MB: time to load or refuse, and the process's memory at its peak\n");
    bool isHeld = true;
    for (const auto& [name, make, limit] : shapes) {
        std::ofstream(path, std::ios::binary) << make();
        isHeld = Measure(name, path, limit) && isHeld;
    }
    std::filesystem::remove(path);
    return isHeld ? 0 : 1;
}
