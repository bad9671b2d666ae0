#ifndef UTIL_NUMBERSSOFAR_P_H
#define UTIL_NUMBERSSOFAR_P_H

#include "util/KeyedHash_p.h"

#include <cmath>
#include <vector>

/// The set of the numbers that have been added so far. Ascending numbers, which are the usual case, need no hash table.
class NumbersSoFar
{
public:
    void clear()
    {
        ascending.clear();
        all.clear();
    }

    /// Adds a number and returns whether it is new. A NaN equals no number and is always new.
    bool isNew(double number)
    {
        if (std::isnan(number))
            return true;
        if (all.empty() && (ascending.empty() || number > ascending.back())) {
            ascending.push_back(number);
            return true;
        }
        if (all.empty())
            all.insert(ascending.cbegin(), ascending.cend());
        return all.insert(number).second;
    }

private:
    std::vector<double> ascending;
    KeyedSet<double> all; ///< all numbers, once a number was not greater than those before it; empty until then
};

#endif
