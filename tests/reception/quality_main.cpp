// How good the receiver for recordings is: every quantity beside what was put in.
//   reception_quality                  the whole table (minutes)
//   reception_quality brief            the lines that are run with the other tests
//   reception_quality false-locks N    how often it locks to what is no signal, N tries of each kind
//   reception_quality against-simulator N  the readings of N drawn channels beside those of the simulated receiver
// Ends with 1 where a line misses its goal.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "reception/AgainstSimulator.h"
#include "reception/FalseLocks.h"
#include "reception/QualityRows.h"

namespace {

using namespace tvn2x::reception;

bool PrintRow(const Row& row)
{
    const double read = row.read();
    const bool good = read >= row.expected - row.below && read <= row.expected + row.above;
    std::printf("%-44s %-58s %12.4g %12.4g%s\n", row.quantity.c_str(), row.trial.c_str(), row.expected, read,
                good ? "" : "  MISSED");
    std::fflush(stdout);
    return good;
}

bool PrintTable(bool brief)
{
    bool met = true;
    std::printf("%-44s %-58s %12s %12s\n", "quantity", "signal", "put in", "read");
    for (const Row& row : QualityRows()) {
        met = ((brief && !row.brief) || PrintRow(row)) && met;
    }
    return met;
}

bool PrintAgainstSimulator(unsigned channels)
{
    bool met = true;
    std::printf("%-44s %-58s %12s %12s\n", "quantity", "channel", "simulated", "recorded");
    for (unsigned number = 1; number <= channels; ++number) {
        for (const Row& row : RowsAgainstSimulator(number)) {
            met = PrintRow(row) && met;
        }
    }
    return met;
}

bool PrintFalseLocks(int tries)
{
    bool none = true;
    CountFalseLocks(tries, [&](const FalseLocks& locks) {
        std::printf("locked to %s: %d of %d\n", locks.what.c_str(), locks.locked, locks.tries);
        std::fflush(stdout);
        none = none && locks.locked == 0;
    });
    return none;
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const std::string what = argumentCount > 1 ? arguments[1] : "";
    bool good = false;
    if (what == "false-locks") {
        good = PrintFalseLocks(argumentCount > 2 ? std::atoi(arguments[2]) : 1000);
    } else if (what == "against-simulator") {
        good = PrintAgainstSimulator(argumentCount > 2 ? static_cast<unsigned>(std::atoi(arguments[2])) : 30);
    } else {
        good = PrintTable(what == "brief");
        good = PrintFalseLocks(what == "brief" ? 5 : 20) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
