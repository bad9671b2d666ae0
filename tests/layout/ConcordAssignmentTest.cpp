#include "compare/ConcordAssignment_p.h"

#include <QTest>

#include <algorithm>
#include <random>

using namespace vanlayout;

namespace
{

using Weights = std::vector<std::vector<qint64>>;

// The largest sum of the rows from \a row on, by trying all assignments.
qint64 largestSum(const Weights &weights, size_t row, unsigned usedColumns)
{
    if (row == weights.size())
        return 0;
    qint64 largest = largestSum(weights, row + 1, usedColumns);
    for (size_t column = 0; column < weights[row].size(); ++column) {
        const unsigned bit = 1U << column;
        if (weights[row][column] > 0 && !(usedColumns & bit))
            largest = std::max(largest, weights[row][column] + largestSum(weights, row + 1, usedColumns | bit));
    }
    return largest;
}

} // namespace

class ConcordAssignmentTest : public QObject
{
    Q_OBJECT

private slots:
    void theSumOfWeightsIsTheLargestPossible()
    {
        constexpr int count = 6;
        constexpr size_t size = count;
        std::mt19937 random(1);
        for (int attempt = 0; attempt < 500; ++attempt) {
            Weights weights(size, std::vector<qint64>(size, 0));
            ConcordAssignment assignment(count, count);
            for (size_t row = 0; row < size; ++row) {
                for (size_t column = 0; column < size; ++column) {
                    weights[row][column] = random() % 2 == 0 ? 0 : qint64(random() % 20) - 3;
                    assignment.addEdge(int(row), int(column), weights[row][column]);
                }
            }
            const std::vector<int> columns = assignment.solve();
            qint64 sum = 0;
            unsigned used = 0;
            for (size_t row = 0; row < size; ++row) {
                if (columns[row] == ConcordAssignment::none)
                    continue;
                const unsigned bit = 1U << unsigned(columns[row]);
                QVERIFY(!(used & bit));
                used |= bit;
                QVERIFY(weights[row][size_t(columns[row])] > 0);
                sum += weights[row][size_t(columns[row])];
            }
            QCOMPARE(sum, largestSum(weights, 0, 0));
        }
    }

    void aRowWithoutAPositiveWeightHasNoColumn()
    {
        ConcordAssignment assignment(2, 1);
        assignment.addEdge(0, 0, 0);
        assignment.addEdge(1, 0, -5);
        QCOMPARE(assignment.solve(), std::vector<int>({ ConcordAssignment::none, ConcordAssignment::none }));
    }
};

QTEST_APPLESS_MAIN(ConcordAssignmentTest)

#include "ConcordAssignmentTest.moc"
