#include "compare/ConcordAssignment_p.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <queue>

namespace vanlayout
{

namespace
{
constexpr qint64 unreached = std::numeric_limits<qint64>::max();
}

// Each row has a column of its own, with weight 0, for the case that it remains without a partner.
ConcordAssignment::ConcordAssignment(int rowCount, int columnCount)
    : columns(columnCount)
    , edges(size_t(rowCount))
    , columnOf(size_t(rowCount), none)
    , rowOf(size_t(rowCount + columnCount), none)
    , potential(size_t(rowCount + columnCount), 0)
    , distances(size_t(rowCount + columnCount), unreached)
    , previousRow(size_t(rowCount + columnCount), none)
{
}

void ConcordAssignment::addEdge(int row, int column, qint64 weight)
{
    if (weight > 0)
        edges[size_t(row)].push_back({ column, -weight });
}

std::vector<int> ConcordAssignment::solve()
{
    for (size_t row = 0; row < edges.size(); ++row) {
        if (!edges[row].empty())
            addRow(int(row));
    }
    std::vector<int> result(edges.size(), none);
    for (size_t row = 0; row < edges.size(); ++row)
        result[row] = columnOf[row] < columns ? columnOf[row] : none;
    return result;
}

qint64 ConcordAssignment::costOf(int row, int column) const
{
    if (column >= columns)
        return 0;
    const std::vector<Edge> &ofRow = edges[size_t(row)];
    return std::find_if(ofRow.begin(), ofRow.end(), [&](const Edge &edge) { return edge.column == column; })->cost;
}

template <typename Queue> void ConcordAssignment::expand(int row, qint64 distance, Queue &queue)
{
    const auto reach = [&](int column, qint64 cost) {
        const qint64 length = distance + cost - potential[size_t(column)];
        if (length >= distances[size_t(column)])
            return;
        if (distances[size_t(column)] == unreached)
            touched.push_back(column);
        distances[size_t(column)] = length;
        previousRow[size_t(column)] = row;
        queue.push({ length, column });
    };
    for (const Edge &edge : edges[size_t(row)])
        reach(edge.column, edge.cost);
    reach(columns + row, 0);
}

void ConcordAssignment::addRow(int row)
{
    if (!isExact) {
        addGreedily(row);
        return;
    }
    std::priority_queue<Visit, std::vector<Visit>, std::greater<>> queue;
    touched.clear();
    settled.clear();
    expand(row, 0, queue);
    int end = none;
    qint64 length = 0;
    while (int(settled.size()) < maxVisits && visits < maxVisitsOfAll) {
        const Visit visit = queue.top();
        queue.pop();
        if (visit.distance > distances[size_t(visit.column)])
            continue;
        ++visits;
        const int owner = rowOf[size_t(visit.column)];
        if (owner == none) {
            end = visit.column;
            length = visit.distance;
            break;
        }
        settled.push_back(visit.column);
        const qint64 ofOwner = costOf(owner, visit.column) - potential[size_t(visit.column)];
        expand(owner, visit.distance - ofOwner, queue);
    }
    if (end != none) {
        changePotentials(length);
        assignAlong(end, row);
    }
    for (const int column : touched)
        distances[size_t(column)] = unreached;
    if (end == none) {
        isExact = false; // the potentials would no longer be those of a shortest path
        addGreedily(row);
    }
}

void ConcordAssignment::changePotentials(qint64 length)
{
    for (const int column : settled)
        potential[size_t(column)] += distances[size_t(column)] - length;
}

void ConcordAssignment::assignAlong(int end, int row)
{
    int column = end;
    while (true) {
        const int owner = previousRow[size_t(column)];
        const int next = columnOf[size_t(owner)];
        rowOf[size_t(column)] = owner;
        columnOf[size_t(owner)] = column;
        if (owner == row)
            return;
        column = next;
    }
}

void ConcordAssignment::addGreedily(int row)
{
    int best = columns + row;
    qint64 cost = 0;
    for (const Edge &edge : edges[size_t(row)]) {
        if (rowOf[size_t(edge.column)] == none && edge.cost < cost) {
            best = edge.column;
            cost = edge.cost;
        }
    }
    rowOf[size_t(best)] = row;
    columnOf[size_t(row)] = best;
}

} // namespace vanlayout
