#include "write/Recodeflow.h"

#include <QtTest>

#include "layout/MadeConcordance.h"
#include "layout/MadeLayout.h"
#include "read/CsvTable_p.h"

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Item)

namespace
{

// The columns that the documentation of the package describes.
const QStringList detailColumns = { "variable",
                                    "dummyVariable",
                                    "typeEnd",
                                    "databaseStart",
                                    "variableStart",
                                    "typeStart",
                                    "recEnd",
                                    "numValidCat",
                                    "catLabel",
                                    "catLabelLong",
                                    "units",
                                    "recStart",
                                    "catStartLabel",
                                    "variableStartShortLabel",
                                    "variableStartLabel",
                                    "notes" };
const QStringList variableColumns
    = { "variable",     "role",          "label", "labelLong",     "section",    "subject",
        "variableType", "databaseStart", "units", "variableStart", "description" };

Layout round(const QString &file, const QVector<Item> &items)
{
    Layout layout = made::layout(items);
    layout.file = file;
    layout.levels[0].name = "L";
    return layout;
}

Item labelled(const QString &name, const QString &label, const QVector<Value> &values = {})
{
    Item item = made::item(name, 2, values);
    item.labels = made::labels(label);
    return item;
}

using Rounds = QVector<Layout>;

QVector<CsvRow> tableOf(const Rounds &rounds,
                        bool (*write)(const Concordance &concordance, const QVector<Layout> &layouts,
                                      QIODevice &device))
{
    const Concordance concordance = concord(rounds);
    return readCsvTable(made::bytesOf([&](QIODevice &device) { return write(concordance, rounds, device); })).rows;
}

// The rules of a variable: "databaseStart | variableStart | recStart -> recEnd".
QStringList rulesOf(const Rounds &rounds, const QString &variable)
{
    QStringList rules;
    const QVector<CsvRow> rows = tableOf(rounds, writeRecodeflowDetails);
    for (const CsvRow &row : rows) {
        if (row.cells.at(0) == variable)
            rules.append(row.cells.at(3) + " | " + row.cells.at(4) + " | " + row.cells.at(11) + " -> "
                         + row.cells.at(6));
    }
    return rules;
}

// The cell of the first rule of a variable with a recEnd.
QString cellOf(const Rounds &rounds, const QString &variable, const QString &end, const char *column)
{
    const QVector<CsvRow> rows = tableOf(rounds, writeRecodeflowDetails);
    for (const CsvRow &row : rows) {
        if (row.cells.at(0) == variable && row.cells.at(6) == end)
            return row.cells.at(detailColumns.indexOf(column));
    }
    return "no such rule";
}

const QVector<Value> yesAndNo = { made::value("1", "Yes"), made::value("2", "No") };

} // namespace

class RecodeflowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsAreThoseOfThePackage()
    {
        const Rounds rounds = { round("a.dcf", { labelled("WORK", "Worked last week", yesAndNo) }),
                                round("b.dcf", { labelled("WORK", "Worked last week", yesAndNo) }) };
        const QVector<CsvRow> details = tableOf(rounds, writeRecodeflowDetails);
        QCOMPARE(details.at(0).cells, detailColumns);
        QCOMPARE(details.at(2).cells,
                 (QStringList{ "WORK", "WORK_cat2_1", "cat", "a, b", "[WORK]", "cat", "1", "2", "Yes", "Yes", "N/A",
                               "1", "Yes", "Worked last week", "Worked last week", "" }));
        const QVector<CsvRow> variables = tableOf(rounds, writeRecodeflowVariables);
        QCOMPARE(variables.at(0).cells, variableColumns);
        QCOMPARE(variables.size(), 3);
        QCOMPARE(variables.at(2).cells,
                 (QStringList{ "WORK", "", "Worked last week", "Worked last week", "R", "", "Categorical", "a, b",
                               "N/A", "[WORK]", "" }));
    }

    void renamedItemHasItsNameInEachRound()
    {
        const Rounds rounds = { round("a.dcf", { labelled("P1", "Worked in the last seven days", yesAndNo) }),
                                round("b.dcf", { labelled("P2", "Worked in the last seven days", yesAndNo) }) };
        QCOMPARE(rulesOf(rounds, "P1"),
                 (QStringList{ "a, b | a::P1, b::P2 | 1 -> 1", "a, b | a::P1, b::P2 | 2 -> 2",
                               "a, b | a::P1, b::P2 | else -> NA::b" }));
    }

    void meaningsAreNotMerged()
    {
        const auto religion = [](const QString &fourth) {
            return labelled("REL", "Religion",
                            { made::value("1", "Muslim"), made::value("2", "Christian"), made::value("3", "Hindu"),
                              made::value("4", fourth) });
        };
        const Rounds rounds = { round("a.dcf", { religion("Traditional") }), round("b.dcf", { religion("Nothing") }),
                                round("c.dcf", { religion("Traditional") }) };
        QCOMPARE(rulesOf(rounds, "REL").mid(3),
                 (QStringList{ "a, c | [REL] | 4 -> 4", "b | [REL] | 4 -> 5", "a, b, c | [REL] | else -> NA::b" }));
        const QString note = "meaning changed, check recEnd: \"Traditional\" in a, c; \"Nothing\" in b";
        QCOMPARE(cellOf(rounds, "REL", "4", "notes"), note);
        QCOMPARE(cellOf(rounds, "REL", "5", "notes"), note);
        QCOMPARE(cellOf(rounds, "REL", "5", "catLabel"), QString("Nothing"));
        QCOMPARE(cellOf(rounds, "REL", "5", "numValidCat"), QString("5"));
        QCOMPARE(cellOf(rounds, "REL", "1", "notes"), QString());
    }

    void codesOfSomeRoundsAreThoseOfTheirRounds()
    {
        QVector<Value> more = yesAndNo;
        more.append(made::value("3", "Not known"));
        const Rounds rounds = { round("a.dcf", { labelled("WORK", "Worked", yesAndNo) }),
                                round("b.dcf", { labelled("WORK", "Worked", more) }) };
        QCOMPARE(rulesOf(rounds, "WORK").at(2), QString("b | [WORK] | 3 -> 3"));
    }

    void valuesBecomeCodesCopiesOrMissing_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QStringList>("rules");
        const auto row = [](const char *name, const Item &item, const QStringList &rules) {
            QStringList whole;
            for (const QString &rule : rules)
                whole.append("a, b | [X] | " + rule);
            QTest::newRow(name) << item << whole;
        };
        row("number without codes", labelled("X", "x"), { "else -> copy" });
        row("text without codes", made::item("X", 9, {}, "alpha"), { "else -> copy" });
        row("codes", labelled("X", "x", yesAndNo), { "1 -> 1", "2 -> 2", "else -> NA::b" });
        row("leading zeros", labelled("X", "x", { made::value("01", "One") }), { "1 -> 1", "else -> NA::b" });
        row("range", labelled("X", "x", { made::range("0", "98", "Years") }), { "[0,98] -> copy", "else -> NA::b" });
        row("code besides a range",
            labelled("X", "x", { made::range("0", "97", "Years"), made::value("98", "98 or more") }),
            { "[0,97] -> copy", "98 -> copy", "else -> NA::b" });
        row("special codes",
            labelled("X", "x",
                     { made::value("1", "One"), made::value("8", "No answer", Special::Refused),
                       made::value("9", "Not known", Special::Missing) }),
            { "1 -> 1", "8 -> NA::b", "9 -> NA::b", "else -> NA::b" });
        row("only special codes", labelled("X", "x", { made::value("99", "Not known", Special::Missing) }),
            { "99 -> NA::b", "else -> copy" });
        row("blank", labelled("X", "x", { made::value("1", "One"), made::value(" ", "None", Special::NotApplicable) }),
            { "1 -> 1", "else -> NA::b" });
        row("text codes", made::item("X", 1, { made::value("A", "One"), made::value("B", "Two") }, "alpha"),
            { "A -> A", "B -> B", "else -> NA::b" });
        row("texts that are not codes",
            made::item("X", 5, { made::value("A", "One"), made::value("[1,2]", "Two") }, "alpha"),
            { "A -> A", "else -> NA::b" });
    }
    void valuesBecomeCodesCopiesOrMissing()
    {
        QFETCH(Item, item);
        QFETCH(QStringList, rules);
        QCOMPARE(rulesOf({ round("a.dcf", { item }), round("b.dcf", { item }) }, "X"), rules);
    }

    void codesThatAreNotApplicableHaveTheirOwnMissingValue()
    {
        const Rounds rounds = { round("a.dcf", { labelled("X", "x", yesAndNo) }) };
        Concordance concordance = concord(rounds);
        concordance.codes[1].special = Special::NotApplicable;
        const QByteArray bytes
            = made::bytesOf([&](QIODevice &device) { return writeRecodeflowDetails(concordance, rounds, device); });
        QVERIFY2(bytes.contains("\r\nX,X_cat1_NA::a,cat,a,[X],cat,NA::a,1,No,No,N/A,2,No,x,x,\r\n"), bytes.constData());
    }

    void textWithoutCodesHasNoCategories()
    {
        const Rounds rounds = { round("a.dcf", { made::item("X", 9, {}, "alpha") }) };
        QCOMPARE(cellOf(rounds, "X", "copy", "typeEnd"), QString("cat"));
        QCOMPARE(cellOf(rounds, "X", "copy", "numValidCat"), QString("N/A"));
        QCOMPARE(cellOf(rounds, "X", "copy", "dummyVariable"), QString("N/A"));
    }

    void codesThatCannotBeReadAreNoted()
    {
        const Item item
            = labelled("X", "x", { made::value("1", "One"), made::value(" ", "None", Special::NotApplicable) });
        QCOMPARE(cellOf({ round("a.dcf", { item }), round("b.dcf", { item }) }, "X", "NA::b", "notes"),
                 QString("includes codes that recodeflow cannot read: (blank) [not applicable]"));
    }

    void userMissingValuesAreMissing()
    {
        Item item = labelled("X", "x", { made::value("1", "One"), made::value("9", "Not known") });
        item.storage = Storage::Double;
        item.missing = { { "9", QString() } };
        Rounds rounds = { round("a.sav", { item }), round("b.sav", { item }) };
        rounds[0].format = rounds[1].format = Format::Spss;
        // Such a file may also have values without labels.
        QCOMPARE(rulesOf(rounds, "X"),
                 (QStringList{ "a, b | [X] | 1 -> 1", "a, b | [X] | 9 -> NA::b", "a, b | [X] | else -> copy" }));
    }

    void namesOfDatabasesAreNoPartsOfEachOther_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("names");
        const auto row = [](const char *name, const QStringList &files, const QStringList &names) {
            QTest::newRow(name) << files << names;
        };
        row("files", { "d/one.dcf", "two.sav" }, { "one", "two" });
        row("other characters", { "a b-c.dcf", QString::fromUtf8("\u00E9t\u00E9.dcf") }, { "a_b_c", "r_t_" });
        row("digits first", { "2001.dcf", "2006.dcf" }, { "r2001", "r2006" });
        row("equal", { "1/d.dcf", "2/d.dcf" }, { "d_1", "d_2" });
        row("part of another", { "d.dcf", "dd.dcf" }, { "d_1", "dd_2" });
        row("part of a numbered one", { "a.dcf", "a_1.dcf", "b.dcf" }, { "round_1", "round_2", "round_3" });
    }
    void namesOfDatabasesAreNoPartsOfEachOther()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, names);
        QCOMPARE(recodeflowDatabases(files), names);
    }

    void namesThatCannotBeReadAreOmitted_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : { "A,B", "A::B", "[A]", " A", "A ", "" })
            QTest::newRow(name) << QString(name);
    }
    void namesThatCannotBeReadAreOmitted()
    {
        QFETCH(QString, name);
        const Rounds rounds = { round("a.dcf", { labelled("B", "b"), labelled(name, "a") }) };
        QCOMPARE(recodeflowOmitted(concord(rounds)), QStringList(name));
        QCOMPARE(tableOf(rounds, writeRecodeflowVariables).size(), 3); // heads, id item and B
        QCOMPARE(tableOf(rounds, writeRecodeflowDetails).size(), 3);
    }

    void itemsWithoutALayoutAreNumbers()
    {
        Concordance concordance = made::hostileConcordance("X");
        concordance.variables.append(made::variable({ made::absent, made::absent }));
        const QByteArray bytes
            = made::bytesOf([&](QIODevice &device) { return writeRecodeflowVariables(concordance, {}, device); });
        QCOMPARE(readCsvTable(bytes).rows.size(), 3); // the variable without items has no row
        QVERIFY(!made::bytesOf([&](QIODevice &device) {
                     return writeRecodeflowDetails(concordance, {}, device);
                 }).isEmpty());
    }

    void resultsAreNamesOfR()
    {
        const Rounds rounds = { round("a.sav", { labelled("1.X", "x"), labelled("1$X", "y") }) };
        const QVector<CsvRow> rows = tableOf(rounds, writeRecodeflowVariables);
        QCOMPARE(rows.at(2).cells.at(0), QString("v1_X"));
        QCOMPARE(rows.at(3).cells.at(0), QString("v1_X_2"));
        QCOMPARE(rows.at(2).cells.at(9), QString("[1.X]"));
    }

    void hostileTextsStayTexts_data() { made::hostileTexts(); }
    void hostileTextsStayTexts()
    {
        QFETCH(QString, text);
        const Rounds rounds = { round("a.dcf", { labelled("X", text, { made::value("1", text) }) }) };
        const QString expected = QString::fromUtf8(text.toUtf8()); // half a surrogate pair is replaced
        QCOMPARE(cellOf(rounds, "X", "1", "catLabel"), expected);
        QCOMPARE(cellOf(rounds, "X", "1", "variableStartLabel"), expected);
    }

    void deviceThatRefusesIsReported()
    {
        const Rounds rounds = { round("a.dcf", { labelled("X", "x", yesAndNo) }) };
        const Concordance concordance = concord(rounds);
        QVERIFY(made::reportsFullDevice(
            [&](QIODevice &device) { return writeRecodeflowDetails(concordance, rounds, device); }));
        QVERIFY(made::reportsFullDevice(
            [&](QIODevice &device) { return writeRecodeflowVariables(concordance, rounds, device); }));
    }
};

QTEST_APPLESS_MAIN(RecodeflowTest)
#include "RecodeflowTest.moc"
