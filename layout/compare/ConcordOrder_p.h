#ifndef LAYOUT_COMPARE_CONCORDORDER_P_H
#define LAYOUT_COMPARE_CONCORDORDER_P_H

#include <QVector>

#include <list>
#include <vector>

namespace vanlayout
{

/// The order of rows that come from several lists: those of the first list, and each row that a later list adds next
/// to its neighbour in that list.
class ConcordOrder
{
public:
    static constexpr int none = -1;

    /// Adds the row with the next number after the row \a neighbour, or at the beginning for `none`. Returns its
    /// number.
    int addAfter(int neighbour)
    {
        return insert(neighbour == none ? order.begin() : std::next(places[size_t(neighbour)]));
    }
    int addBefore(int neighbour) { return insert(places[size_t(neighbour)]); }
    int addAtEnd() { return insert(order.end()); }
    int size() const { return int(places.size()); }

    /// The numbers of the rows in their order.
    QVector<int> rows() const
    {
        QVector<int> sorted;
        sorted.reserve(size());
        for (const int row : order)
            sorted.append(row);
        return sorted;
    }

private:
    int insert(std::list<int>::iterator before)
    {
        places.push_back(order.insert(before, size()));
        return size() - 1;
    }

    std::list<int> order;
    std::vector<std::list<int>::iterator> places; // by number of the row
};

} // namespace vanlayout

#endif
