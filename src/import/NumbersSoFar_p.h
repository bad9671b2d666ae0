#ifndef IMPORT_NUMBERSSOFAR_P_H
#define IMPORT_NUMBERSSOFAR_P_H

#include <QSet>

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

    bool isNew(double number)
    {
        if (all.isEmpty() && (ascending.empty() || number > ascending.back())) {
            ascending.push_back(number);
            return true;
        }
        if (all.isEmpty())
            all = QSet<double>(ascending.cbegin(), ascending.cend());
        const int before = all.size();
        all.insert(number);
        return all.size() > before;
    }

private:
    std::vector<double> ascending;
    QSet<double> all; ///< from the first on that was not above those before it
};

#endif
