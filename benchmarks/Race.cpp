#include "Race.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace tvn2x::bench {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double shortestRound = 0.01;  // seconds: well above the clock's resolution

std::string allFigures;

double TimeOf(const std::function<void()>& run, int repetitions)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < repetitions; ++i) {
        run();
    }
    return Seconds(std::chrono::steady_clock::now() - begin).count();
}

int RepetitionsFor(const std::function<void()>& run)
{
    int repetitions = 1;
    while (TimeOf(run, repetitions) < shortestRound && repetitions < 1 << 24) {
        repetitions *= 2;
    }
    return repetitions;
}

std::string Quoted(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted + "\"";
}

std::string Scaled(double nanoseconds)
{
    char text[32];
    if (nanoseconds < 1e3) {
        std::snprintf(text, sizeof text, "%.1f ns", nanoseconds);
    } else if (nanoseconds < 1e6) {
        std::snprintf(text, sizeof text, "%.2f us", nanoseconds / 1e3);
    } else {
        std::snprintf(text, sizeof text, "%.2f ms", nanoseconds / 1e6);
    }
    return text;
}

void KeepFigures(const std::string& race, const std::string& contestant, const std::string& figures)
{
    allFigures += (allFigures.empty() ? "" : ",\n") + ("  {\"race\": " + Quoted(race)) +
                  ", \"contestant\": " + Quoted(contestant) + ", " + figures + "}";
}

}  // namespace

void Race::Measure(int rounds)
{
    std::vector<int> repetitions;
    std::vector<std::vector<double>> times(contestants_.size());
    for (const Contestant& contestant : contestants_) {
        repetitions.push_back(RepetitionsFor(contestant.run));
    }
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < contestants_.size(); ++i) {
            times[i].push_back(TimeOf(contestants_[i].run, repetitions[i]) / repetitions[i] / items_ * 1e9);
        }
    }
    for (size_t i = 0; i < contestants_.size(); ++i) {
        std::sort(times[i].begin(), times[i].end());
        contestants_[i].least = times[i].front();
        contestants_[i].median = times[i][times[i].size() / 2];
    }
}

void Race::Print(double limit) const
{
    std::printf("\n%s\n", title_.c_str());
    for (const Contestant& contestant : contestants_) {
        std::printf("  %-44s %12s  %8.2f", contestant.name.c_str(), Scaled(contestant.median).c_str(),
                    contestant.median / contestants_[0].median);
        if (limit > 0 && &contestant == &contestants_[0]) {
            std::printf("   limit %s, least %s: %s", Scaled(limit * 1e3).c_str(), Scaled(contestant.least).c_str(),
                        contestant.least <= limit * 1e3 ? "kept" : "MISSED");
        }
        std::printf("\n");
    }
    std::fflush(stdout);
}

void Race::Run(int rounds, double limit)
{
    Measure(rounds);
    Print(limit);
    for (const Contestant& contestant : contestants_) {
        char figures[96];
        std::snprintf(figures, sizeof figures, "\"nanoseconds\": %.3f, \"ratio\": %.4f", contestant.median,
                      contestant.median / contestants_[0].median);
        KeepFigures(title_, contestant.name, figures);
    }
}

void Size(const std::string& title, const std::string& what, double bytes)
{
    std::printf("  %-44s %9.0f bytes\n", what.c_str(), bytes);
    char figures[48];
    std::snprintf(figures, sizeof figures, "\"bytes\": %.0f", bytes);
    KeepFigures(title, what, figures);
}

int Finish(int argc, char** argv)
{
    if (argc < 2) {
        return 0;
    }
    std::FILE* file = std::fopen(argv[1], "wb");
    if (!file) {
        std::fprintf(stderr, "%s cannot be written\n", argv[1]);
        return 1;
    }
    std::fprintf(file, "[\n%s\n]\n", allFigures.c_str());
    return std::fclose(file) == 0 ? 0 : 1;
}

}  // namespace tvn2x::bench
