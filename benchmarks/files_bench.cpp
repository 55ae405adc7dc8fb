// Load and save of a setup beside four libraries for the same kind of file, on the same file in the same run, and
// beside the floor: reading its bytes, and replacing the file by them. One of the four has no writer.
//
// A save replaces the file in one step: a temporary, flushed, renamed, its folder flushed. So do the peers in two
// line-ups of savers: on a disk in memory, where nothing but the program's own work takes time, and on the real one. In
// the third they write over the file and flush it, as they come: there a crash can cost them the file.

#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <fcntl.h>
#include <glib.h>
#include <ini.h>
#include <unistd.h>

#include <array>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <unordered_map>

#include "Race.h"
#include "SetupSample.h"
#include "util/Encoding.h"

namespace {

using namespace tvn2x;
using namespace tvn2x::bench;
namespace ptree = boost::property_tree;

constexpr const char* list = "Frequency List";
constexpr const char* keyNames[] = {"Frequency   ", "User Field  ", "Symbol Rate "};

/// The key names of all rows, built once: every peer looks up the same texts.
std::vector<std::string> AllKeys(int32_t channels)
{
    std::vector<std::string> keys;
    for (int32_t channel = 1; channel <= channels; ++channel) {
        for (const char* name : keyNames) {
            keys.push_back(name + KeyNumber(channel));
        }
    }
    return keys;
}

std::string NewValue(const std::string& key, int round)
{
    return key[0] == 'U' ? "Channel " + std::to_string(round) : std::to_string(100 + round % 7) + ".5000000";
}

void FlushToDisk(const std::string& path, int flags = O_WRONLY)
{
    const int file = open(path.c_str(), flags);
    fsync(file);
    close(file);
}

using Writer = std::function<void(const std::string& path)>;

/// Replaces a file in one step by what `write` makes; when it returns, the new file is on the disk under its name.
void Replace(const std::string& path, const Writer& write)
{
    const std::string temporary = path + ".new";
    write(temporary);
    FlushToDisk(temporary);
    std::rename(temporary.c_str(), path.c_str());
    FlushToDisk(std::filesystem::path(path).parent_path().string(), O_RDONLY | O_DIRECTORY);
}

void WriteOver(const std::string& path, const Writer& write)
{
    write(path);
    FlushToDisk(path);
}

void WriteBytes(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

double LoadRace(const std::string& path, const std::vector<std::string>& keys, int32_t channels)
{
    Race race("Load with look-ups, " + std::to_string(channels) + " channels (per channel)", channels);
    race.Add("setup file", [&] {
        SetupDocument document;
        if (!Load(FromUtf8(path), document) || document.ListSize() != channels) {
            std::abort();
        }
    });
    race.Add("SimpleIni", [&] {
        CSimpleIniA ini;
        ini.LoadFile(path.c_str());
        for (const std::string& key : keys) {
            Keep(std::atof(ini.GetValue(list, key.c_str(), "")));
        }
    });
    race.Add("GKeyFile", [&] {
        GKeyFile* file = g_key_file_new();
        g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr);
        for (const std::string& key : keys) {
            char* value = g_key_file_get_value(file, list, key.c_str(), nullptr);
            Keep(std::atof(value));
            g_free(value);
        }
        g_key_file_free(file);
    });
    race.Add("inih", [&] {
        using Table = std::unordered_map<std::string, std::string>;
        Table table;
        ini_parse(
            path.c_str(),
            [](void* user, const char* section, const char* name, const char* value) {
                (*static_cast<Table*>(user))[std::string(section) + '=' + name] = value;
                return 1;
            },
            &table);
        for (const std::string& key : keys) {
            Keep(std::atof(table[std::string(list) + '=' + key].c_str()));
        }
    });
    race.Add("Boost.PropertyTree", [&] {
        ptree::ptree tree;
        ptree::read_ini(path, tree);
        const ptree::ptree& section = tree.get_child(list);
        for (const std::string& key : keys) {
            Keep(section.get<std::string>(ptree::path(key, '\x01')));
        }
    });
    race.Add("floor: the bytes read", [&] { Keep(ReadBytes(path)); });
    race.Run(5);
    return race.Median(0);
}

/// `put` brings what a peer has made to the disk.
double SaveRace(const std::string& path, const std::vector<std::string>& keys, int32_t channels, const std::string& how,
                void (*put)(const std::string& path, const Writer& write))
{
    int round = 0;
    SetupDocument documents[] = {SampleSetup(channels), SampleSetup(channels, 1)};
    Race race("Update with save, " + how + ", " + std::to_string(channels) + " channels (per channel)", channels);
    race.Add("setup file (always replaced in one step)", [&] {
        if (!SaveSetup(documents[++round % 2], SystemEnvironment(), L"TVN2x", L"2.0", FromUtf8(path))) {
            std::abort();
        }
    });
    race.Add("SimpleIni", [&] {
        CSimpleIniA ini;
        ini.LoadFile(path.c_str());
        ++round;
        for (const std::string& key : keys) {
            ini.SetValue(list, key.c_str(), NewValue(key, round).c_str());
        }
        put(path, [&](const std::string& target) { ini.SaveFile(target.c_str()); });
    });
    race.Add("GKeyFile", [&] {
        GKeyFile* file = g_key_file_new();
        g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
        ++round;
        for (const std::string& key : keys) {
            g_key_file_set_value(file, list, key.c_str(), NewValue(key, round).c_str());
        }
        gsize length = 0;
        char* const text = g_key_file_to_data(file, &length, nullptr);
        put(path, [&](const std::string& target) { WriteBytes(target, {text, length}); });
        g_free(text);
        g_key_file_free(file);
    });
    race.Add("Boost.PropertyTree", [&] {
        ptree::ptree tree;
        ptree::read_ini(path, tree);
        ptree::ptree& section = tree.get_child(list);
        ++round;
        for (const std::string& key : keys) {
            section.put(ptree::path(key, '\x01'), NewValue(key, round));
        }
        put(path, [&](const std::string& target) { ptree::write_ini(target, tree); });
    });
    const std::string bytes = ReadBytes(path);
    race.Add("floor: the bytes alone",
             [&] { put(path, [&](const std::string& target) { WriteBytes(target, bytes); }); });
    race.Run(5);
    return race.Median(0);
}

void PrintGrowth(const std::vector<std::array<double, 3>>& sizes)
{
    std::printf("\nGrowth of the setup file's times: per channel, in us\n  %10s %10s %10s\n", "channels", "load",
                "save");
    for (const auto& [channels, load, save] : sizes) {
        std::printf("  %10.0f %10.2f %10.2f\n", channels, load / 1e3, save / 1e3);
    }
}

/// All races on one disk.
void RaceIn(const std::filesystem::path& folder, bool isMemory)
{
    std::filesystem::create_directories(folder);
    const std::string path = (folder / "setup.ini").string();
    std::vector<std::array<double, 3>> sizes;
    for (const int32_t channels : {100, 1000, 10000, 100000}) {
        const std::vector<std::string> keys = AllKeys(channels);
        SetupDocument document = SampleSetup(channels);
        std::filesystem::remove(path);
        if (!SaveSetup(document, SystemEnvironment(), L"TVN2x", L"2.0", FromUtf8(path))) {
            std::abort();
        }
        if (isMemory) {
            const double load = LoadRace(path, keys, channels);
            sizes.push_back(
                {static_cast<double>(channels), load,
                 SaveRace(path, keys, channels, "replaced in one step, a disk that takes no time", Replace)});
        } else {
            SaveRace(path, keys, channels, "replaced in one step and flushed", Replace);
            SaveRace(path, keys, channels, "flushed, the peers writing over the file", WriteOver);
        }
    }
    if (isMemory) {
        PrintGrowth(sizes);
    }
    std::filesystem::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string name = "tvn2x-" + std::to_string(getpid());
    const std::filesystem::path memory = "/dev/shm";
    RaceIn((access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path()) / name, true);
    RaceIn(std::filesystem::temp_directory_path() / name, false);
    return Finish(argc, argv);
}
