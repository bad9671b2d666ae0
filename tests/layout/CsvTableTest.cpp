#include "read/CsvTable_p.h"

#include <QtTest>

using namespace vanlayout;

using Rows = QVector<QStringList>;
Q_DECLARE_METATYPE(Rows)

class CsvTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreSplitIntoCells_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Rows>("rows");
        const auto row
            = [](const char *name, const QByteArray &bytes, const Rows &rows) { QTest::newRow(name) << bytes << rows; };
        row("empty", "", {});
        row("one cell", "a", { { "a" } });
        row("commas", "a,b\nc,d\n", { { "a", "b" }, { "c", "d" } });
        row("CR LF", "a,b\r\nc,d\r\n", { { "a", "b" }, { "c", "d" } });
        row("semicolons", "a;b,c\nd;e\n", { { "a", "b,c" }, { "d", "e" } });
        row("tabs", "a\tb\nc\td", { { "a", "b" }, { "c", "d" } });
        row("separator after a quoted one", "\"a,b\";c\nd;e", { { "a,b", "c" }, { "d", "e" } });
        row("one column with a later separator", "a\nb;c,d", { { "a" }, { "b;c", "d" } });
        row("byte-order mark", "\xEF\xBB\xBF\"a\",b", { { "a", "b" } });
        row("empty cells", ",a,\n", { { "", "a", "" } });
        row("rows without a text are omitted", "a,b\n,\n\n\r\n\"\"\nc,d", { { "a", "b" }, { "c", "d" } });
        row("doubled quotation marks", "\"say \"\"a\"\"\",b", { { "say \"a\"", "b" } });
        row("quoted line breaks", "\"a\r\nb\",c", { { "a\r\nb", "c" } });
        row("carriage return in a cell", "a\rb,c", { { "a\rb", "c" } });
        row("UTF-8", "\xC3\xA9,b", { { QString::fromUtf8("\u00E9"), "b" } });
        row("Windows-1252", "\xE9,\x80", { { QString::fromUtf8("\u00E9"), QString::fromUtf8("\u20AC") } });
    }
    void rowsAreSplitIntoCells()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Rows, rows);
        const CsvTable table = readCsvTable(bytes);
        QCOMPARE(table.problem, QString());
        Rows found;
        for (const CsvRow &row : table.rows)
            found.append(row.cells);
        QCOMPARE(found, rows);
    }

    void rowHasTheLineAtWhichItBegins()
    {
        const CsvTable table = readCsvTable("a\n\"b\nc\"\n\nd\n");
        QCOMPARE(table.rows.size(), 3);
        QCOMPARE(table.rows.at(1).line, 2);
        QCOMPARE(table.rows.at(2).line, 5);
    }

    void problemsHaveTheirLine_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("problem");
        QTest::newRow("quotation mark within a cell")
            << QByteArray("a\nb\"c\"\n") << 2 << "a quotation mark is within a cell that does not begin with one";
        QTest::newRow("text after a quoted cell")
            << QByteArray("a\n\"b\nc\"d\n") << 3 << "a text follows a closing quotation mark";
        QTest::newRow("quotation mark that is not closed")
            << QByteArray("a\n\"b\nc\nd\n") << 2 << "a closing quotation mark is missing";
    }
    void problemsHaveTheirLine()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, line);
        QFETCH(QString, problem);
        const CsvTable table = readCsvTable(bytes);
        QCOMPARE(table.problem, problem);
        QCOMPARE(table.line, line);
    }
};

QTEST_APPLESS_MAIN(CsvTableTest)
#include "CsvTableTest.moc"
