#ifndef UTIL_NUMBERSSOFAR_P_H
#define UTIL_NUMBERSSOFAR_P_H

#include "util/KeyedHash_p.h"

#include <cmath>

/// The set of the numbers that have been added so far.
class NumbersSoFar
{
public:
    void clear() { numbers.clear(); }

    /// Adds a number and returns whether it is new. A NaN equals no number and is always new; none is kept, because all
    /// of them have one hash.
    bool isNew(double number) { return std::isnan(number) || numbers.insert(number).second; }

private:
    KeyedSet<double> numbers;
};

#endif
