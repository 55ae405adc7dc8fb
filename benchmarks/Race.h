#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tvn2x::bench {

/// Several ways to do the same work, timed in turn, round by round, so that whatever else the machine does falls on all
/// of them alike. The first contestant is the one that the others are compared with.
class Race
{
public:
    /// items: how much work one call of a contestant does; times are given per item.
    Race(std::string title, double items = 1) : title_(std::move(title)), items_(items) {}

    void Add(std::string name, std::function<void()> run) { contestants_.push_back({std::move(name), std::move(run)}); }

    /// Runs the rounds, prints a table (median time per item, ratio to the first contestant) and keeps the figures.
    /// limit: what the first contestant may take per item, in microseconds; 0 for none. Its fastest round is held
    /// against it: what else a machine does makes rounds slower and none faster.
    void Run(int rounds = 9, double limit = 0);

    /// The median of a contestant in nanoseconds per item.
    double Median(size_t contestant) const { return contestants_[contestant].median; }

private:
    struct Contestant
    {
        std::string name;
        std::function<void()> run;
        double least = 0;
        double median = 0;
    };

    void Measure(int rounds);
    void Print(double limit) const;

    std::string title_;
    double items_;
    std::vector<Contestant> contestants_;
};

/// Prints a size in bytes and keeps it with the figures.
void Size(const std::string& title, const std::string& what, double bytes);

/// Writes the figures of all races of this program as JSON to the file named by the first argument, if there is one.
/// The result of main.
int Finish(int argc, char** argv);

/// Keeps the compiler from leaving out work whose result nobody reads.
template <class T>
void Keep(const T& value)
{
    asm volatile("" : : "r,m"(value) : "memory");
}

}  // namespace tvn2x::bench
