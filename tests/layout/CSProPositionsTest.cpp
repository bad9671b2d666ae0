#include "read/CSProPositions_p.h"

#include <QRegularExpression>
#include <QTest>

using namespace vanlayout;

namespace
{

struct Dictionary {
    Layout layout;
    std::vector<LevelColumns> columns;
};

// An item is "LENGTH", followed by "xOCCURRENCES", "@STORED_START", "+SUBITEM_OFFSET" (a subitem), "s" (a subitem), in
// this order.
void addItem(const QString &text, QVector<Item> &items, std::vector<StoredColumns> &columns)
{
    static const QRegularExpression form("^(-?\\d+)(?:x(-?\\d+))?(?:@(-?\\d+))?(?:\\+(-?\\d+))?(s)?$");
    const QRegularExpressionMatch match = form.match(text);
    QVERIFY2(match.hasMatch(), qPrintable(text));
    Item item;
    StoredColumns stored;
    item.length = match.captured(1).toInt();
    if (!match.captured(2).isEmpty())
        item.occurrences = match.captured(2).toInt();
    stored.hasStart = !match.captured(3).isEmpty();
    item.start = match.captured(3).toInt();
    if (!match.captured(4).isEmpty())
        stored.subitemOffset = match.captured(4).toInt();
    item.isSubitem = stored.subitemOffset || !match.captured(5).isEmpty();
    items.append(item);
    columns.push_back(stored);
}

// Levels are separated by " / ", their ids and records by " | ", items by blanks.
Dictionary dictionaryOf(const QString &text)
{
    Dictionary dictionary;
    for (const QString &levelText : text.split(" / ")) {
        Level level;
        LevelColumns columns;
        const QStringList lists = levelText.split(" | ");
        for (const QString &item : lists.at(0).split(' ', Qt::SkipEmptyParts))
            addItem(item, level.ids, columns.ids);
        for (const QString &list : lists.mid(1)) {
            level.records.append(Record());
            columns.records.emplace_back();
            for (const QString &item : list.split(' ', Qt::SkipEmptyParts))
                addItem(item, level.records.last().items, columns.records.back());
        }
        dictionary.layout.levels.append(level);
        dictionary.columns.push_back(columns);
    }
    return dictionary;
}

QString startsOf(const QVector<Item> &items)
{
    QStringList starts;
    for (const Item &item : items)
        starts.append(QString::number(item.start));
    return starts.join(' ');
}

QString startsOf(const Layout &layout)
{
    QStringList levels;
    for (const Level &level : layout.levels) {
        QStringList lists = { startsOf(level.ids) };
        for (const Record &record : level.records)
            lists.append(startsOf(record.items));
        levels.append(lists.join(" | "));
    }
    return levels.join(" / ");
}

} // namespace

/// Tests the columns of items that state none, in dictionaries in JSON form.
class CSProPositionsTest : public QObject
{
    Q_OBJECT

private slots:
    void itemsGetTheirColumns_data();
    void itemsGetTheirColumns();
    void positionsThatAreNotStatedToBeRelativeAreNotLaidOut();
};

void CSProPositionsTest::itemsGetTheirColumns_data()
{
    QTest::addColumn<int>("typeStart");
    QTest::addColumn<int>("typeLength");
    QTest::addColumn<bool>("isRelative");
    QTest::addColumn<QString>("items");
    QTest::addColumn<QString>("starts");
    const auto add
        = [](const char *name, int typeStart, int typeLength, bool isRelative, const char *items, const char *starts) {
              QTest::newRow(name) << typeStart << typeLength << isRelative << items << starts;
          };
    const bool relative = true;
    const bool absolute = false;
    // clang-format off
    add("no record type",                        0, 0, relative, "3 2 | 4 1",          "1 4 | 6 10");
    add("record type first",                     1, 2, relative, "3 2 | 4 1",          "3 6 | 8 12");
    add("record type between ids",               4, 1, relative, "3 2 | 4",            "1 5 | 7");
    add("record type where an id would begin later", 3, 1, relative, "3 2 | 4",        "1 5 | 7");
    add("record type after the ids",            6, 2, relative, "3 2 | 4",            "1 4 | 8");
    add("record type far after the ids",        60, 2, relative, "3 2 | 4",           "1 4 | 8");
    add("record type without a start",           0, 2, relative, "3 2 | 4",            "1 4 | 6");
    add("record type without ids",               1, 2, relative, " | 4 1",             " | 3 7");
    add("neither record type nor ids",           0, 0, relative, " | 4 1",             " | 1 5");
    add("each record begins anew",               1, 1, relative, "1 | 4 1 | 2 2",      "2 | 3 7 | 3 5");
    add("ids of all levels are kept free",       1, 1, relative, "2 | 4 / 3 | 1 / 1 | 5", "2 | 8 / 4 | 8 / 7 | 8");
    add("occurrences",                           0, 0, relative, "2x2 | 3x4 1",        "1 | 5 17");
    add("a stored start counts",                 0, 0, relative, "2 | 3@30 1@7 1",     "1 | 30 7 7");
    add("a stored start of an id counts",        1, 1, relative, "2@2 3@4 | 1",        "2 4 | 7");
    add("ids with a gap",                        1, 1, relative, "2@2 3@14 | 1",       "2 14 | 17");
    add("subitem",                               0, 0, relative, "1 | 5 2+0 1+3 4",    "1 | 2 2 5 7");
    add("subitem of an item with a stored start", 0, 0, relative, "1 | 5@40 2+1 4",    "1 | 40 41 7");
    add("subitem of an item that repeats",       0, 0, relative, "1 | 5x3 2+1 4",      "1 | 2 3 17");
    add("subitem with a stored start",           0, 0, relative, "1 | 5 2@9+1 4",      "1 | 2 9 7");
    add("subitem without offset",                0, 0, relative, "1 | 5 2s 4",         "1 | 2 0 7");
    add("subitem without item",                  0, 0, relative, "1 | 2+1 4",          "1 | 0 2");
    add("subitem of an id",                      0, 0, relative, "3 1+1 2 | 1",        "1 2 4 | 6");
    add("offset before the item",           0, 0, relative, "9 | 5 2+-3",         "1 | 10 7");
    add("absolute",                              1, 1, absolute, "2@2 | 3@5 1@9",      "2 | 5 9");
    add("absolute without start",                1, 1, absolute, "2 | 3@5 1 2+1",      "0 | 5 0 0");
    add("absolute, subitem without start",       1, 1, absolute, "2@2 | 3@5 2+1 1s",   "2 | 5 6 0");
    add("lengths below zero take no room",       0, 0, relative, "-3 2x-1 | 4 1",      "1 1 | 1 5");
    add("columns beyond an int",                 0, 0, relative, "2147483647x2147483647 1 | 2147483647x2147483647 2+5 1", "1 2147483647 | 2147483647 2147483647 2147483647");
    // clang-format on
}

void CSProPositionsTest::itemsGetTheirColumns()
{
    QFETCH(QString, items);
    QFETCH(int, typeStart);
    QFETCH(int, typeLength);
    QFETCH(bool, isRelative);
    Dictionary dictionary = dictionaryOf(items);
    if (typeStart != 0 || typeLength != 0)
        dictionary.layout.recordType = RecordTypeColumns{ typeStart, typeLength };
    dictionary.layout.relativePositions = isRelative;
    layOutColumns(dictionary.layout, dictionary.columns);
    QTEST(startsOf(dictionary.layout), "starts");
}

void CSProPositionsTest::positionsThatAreNotStatedToBeRelativeAreNotLaidOut()
{
    Dictionary dictionary = dictionaryOf("2 | 3@5 1+1");
    layOutColumns(dictionary.layout, dictionary.columns);
    QCOMPARE(startsOf(dictionary.layout), QString("0 | 5 6"));
}

QTEST_APPLESS_MAIN(CSProPositionsTest)
#include "CSProPositionsTest.moc"
