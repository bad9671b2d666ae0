#ifndef LAYOUT_COMPARE_CONCORDASSIGNMENT_P_H
#define LAYOUT_COMPARE_CONCORDASSIGNMENT_P_H

#include <QtGlobal>

#include <utility>
#include <vector>

namespace vanlayout
{

/// The assignment of columns to rows whose sum of weights is max. Each row has at most one column, and each column at
/// most one row. Only pairs with an edge of positive weight are assigned.
///
/// Each row in turn is added along the shortest augmenting path, so the result is exact. The search for one path visits
/// at most `maxVisits` columns, and all searches together at most `maxVisitsOfAll`: beyond these, which only crafted
/// layouts reach, the remaining rows take their best free columns. Equal sums are resolved by the order of rows and
/// columns.
class ConcordAssignment
{
public:
    static constexpr int none = -1;
    static constexpr int maxVisits = 20000;
    static constexpr qint64 maxVisitsOfAll = 20000000;

    ConcordAssignment(int rowCount, int columnCount);

    /// Adds an edge. The weight is in thousandths.
    void addEdge(int row, int column, qint64 weight);
    /// The column of each row, or none.
    std::vector<int> solve();

private:
    struct Edge {
        int column;
        qint64 cost; // the negative weight
    };
    struct Visit {
        qint64 distance;
        int column; // own columns of rows come after the real ones
        bool operator>(const Visit &other) const
        {
            return std::pair(distance, column) > std::pair(other.distance, other.column);
        }
    };

    void addRow(int row);
    void addGreedily(int row);
    template <typename Queue> void expand(int row, qint64 distance, Queue &queue);
    void changePotentials(qint64 length);
    void assignAlong(int end, int row);
    qint64 costOf(int row, int column) const;

    int columns;
    std::vector<std::vector<Edge>> edges;
    std::vector<int> columnOf; // of each row; its own column if it is not assigned
    std::vector<int> rowOf;
    std::vector<qint64> potential;
    std::vector<qint64> distances;
    std::vector<int> previousRow;
    std::vector<int> touched;
    std::vector<int> settled;
    qint64 visits = 0;
    bool isExact = true;
};

} // namespace vanlayout

#endif
