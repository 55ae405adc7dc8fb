#pragma once

#include <functional>
#include <string>
#include <vector>

#include "reception/Reception.h"

namespace tvn2x::reception {

/// One line of the table: what was put in, what was read, and how far the two may be apart.
struct Row
{
    std::string quantity;
    std::string trial;
    bool brief = false;  ///< is also run with the other tests
    double expected = 0;
    double below = 0;  ///< what is read may be less by as much
    double above = 0;  ///< or more
    std::function<double()> read;
};

std::vector<Row> QualityRows();

}  // namespace tvn2x::reception
