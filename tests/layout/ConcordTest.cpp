#include "compare/Concord.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

namespace
{

Item labelled(const QString &name, const QString &label, const QVector<Value> &values = {})
{
    Item item = made::item(name, 2, values);
    item.labels = made::labels(label);
    return item;
}

Layout round(const QString &file, const QVector<Item> &items)
{
    Layout layout = made::layout(items);
    layout.format = Format::CSProText;
    layout.file = file;
    return layout;
}

// The variables as text: the names of the items of each round, `-` for none.
QStringList namesOf(const Concordance &concordance)
{
    QStringList rows;
    for (const ConcordVariable &variable : concordance.variables) {
        QStringList names;
        for (const std::optional<ConcordCell> &cell : variable.cells)
            names.append(cell ? cell->item : QStringLiteral("-"));
        rows.append(names.join(QLatin1Char(' ')));
    }
    return rows;
}

} // namespace

class ConcordTest : public QObject
{
    Q_OBJECT

private slots:
    void anItemThatALaterRoundAddsFollowsItsNeighbour()
    {
        const Concordance concordance = concord(
            { round("a", { labelled("SEX", "Sex"), labelled("AGE", "Age") }),
              round("b", { labelled("SEX", "Sex"), labelled("FAITH", "Religion"), labelled("AGE", "Age") }) });
        QCOMPARE(concordance.rounds, QStringList({ "a", "b" }));
        QCOMPARE(namesOf(concordance), QStringList({ "ID ID", "SEX SEX", "- FAITH", "AGE AGE" }));
    }
};

QTEST_APPLESS_MAIN(ConcordTest)

#include "ConcordTest.moc"
