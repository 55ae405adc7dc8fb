// How good the receiver for recordings is: every quantity beside what was put in.
//   reception_quality                  the whole table (minutes)
//   reception_quality brief            the lines that are run with the other tests
//   reception_quality false-locks N    how often it locks to what is no signal, N tries of each kind
//   reception_quality against-simulator N  the readings of N drawn channels beside those of the simulated receiver
// Ends with 1 where a line misses its goal.
#include <cstdio>
#include <cstdlib>
#include <string>

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

bool Print(const std::vector<Row>& rows, bool brief = false)
{
    bool met = true;
    for (const Row& row : rows) {
        met = ((brief && !row.brief) || PrintRow(row)) && met;
    }
    return met;
}

}  // namespace

int main(int argumentCount, char** arguments)
{
    const std::string what = argumentCount > 1 ? arguments[1] : "";
    const auto number = [&](int otherwise) { return argumentCount > 2 ? std::atoi(arguments[2]) : otherwise; };
    std::printf("%-44s %-58s %12s %12s\n", "quantity", "signal", "expected", "read");
    bool good = true;
    if (what == "false-locks") {
        good = Print(FalseLockRows(number(1000)));
    } else if (what == "against-simulator") {
        for (int channel = 1; channel <= number(30); ++channel) {
            good = Print(RowsAgainstSimulator(static_cast<unsigned>(channel))) && good;
        }
    } else {
        good = Print(QualityRows(), what == "brief");
        good = Print(FalseLockRows(what == "brief" ? 5 : 20)) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
