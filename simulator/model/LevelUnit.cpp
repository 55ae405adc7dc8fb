#include "simulator/model/LevelUnit.h"

#include <cmath>

namespace tvn2x {

double LevelIn(LevelUnit unit, double dBuV)
{
    switch (unit) {
        case LevelUnit::dBmV:
            return dBuV - 60;
        case LevelUnit::dBpW:
            return dBuV - 18.75;
        case LevelUnit::dBuW:
            return dBuV - 78.75;
        case LevelUnit::dBm:
            return dBuV - 108.75;
        case LevelUnit::dBuV:
            return dBuV;
        case LevelUnit::mV:
            return std::pow(10, (dBuV - 60) / 20);
    }
    return dBuV;
}

}  // namespace tvn2x
