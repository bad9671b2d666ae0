#ifndef UTIL_NUMBERSSOFAR_P_H
#define UTIL_NUMBERSSOFAR_P_H

#include "util/KeyedHash_p.h"

#include <cmath>
#include <vector>

/// Numbers that came before. They mostly come in ascending order, and then cost next to nothing.
class NumbersSoFar
{
public:
    void clear()
    {
        ascending.clear();
        all.clear();
    }

    /// Whether the number was not there before. A NaN equals nothing, and is always new.
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
    KeyedSet<double> all; ///< from the first on that was not above those before it
};

#endif
