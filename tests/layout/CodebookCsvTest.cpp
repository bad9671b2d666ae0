#include "write/CodebookCsv.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Item)

class CodebookCsvTest : public QObject
{
    Q_OBJECT

private slots:
    void eachItemAndCodeHasALine();
    void statisticalItemsHaveTheirFormat();
    void textsThatNeedQuotesHaveThem_data();
    void textsThatNeedQuotesHaveThem();
    void labelsAreInOneLanguage();
    void excelGetsAByteOrderMark();
    void formulasAreGuardedOnlyForExcel_data();
    void formulasAreGuardedOnlyForExcel();
    void longFilesAreWhole();
    void aDeviceThatIsFullIsReported();
};

namespace
{

const QByteArray header = "level,record,name,label,type,start,length,occurrences,subitemOf,decimals,format,measure,"
                          "missing,note,valueSet,from,to,valueLabel,special,valueNote\r\n";

QByteArray csv(const Layout &layout, const CodebookCsvOptions &options = {})
{
    return made::written(writeCodebookCsv, layout, options);
}

// The lines after the header.
QByteArray linesOf(const Layout &layout)
{
    const QByteArray bytes = csv(layout);
    return bytes.startsWith(header) ? bytes.mid(header.size()) : bytes;
}

} // namespace

void CodebookCsvTest::eachItemAndCodeHasALine()
{
    Value several = made::range("1", "5", "Some");
    several.ranges.append(Range{ "7", "" });
    several.note = "Why";
    Value empty;
    empty.labels = made::labels("No code");
    Item codes = made::item("X", 2, { several, made::value("9", "None", Special::NotApplicable), empty });
    codes.start = 3;
    codes.occurrences = 4;
    Item sub = made::text("SUB", 1);
    sub.isSubitem = true;
    sub.subitemOf = "X";
    sub.note = "Part";
    Item withoutValues = made::item("Y", 5);
    withoutValues.decimals = 2;
    withoutValues.valueSets = { made::valueSet({}) };
    Layout layout = made::layout({ codes, sub, withoutValues });
    layout.levels[0].name = "L";
    QCOMPARE(linesOf(layout),
             QByteArray("L,(ids),ID,,numeric,,2,1,,0,,,,,,,,,,\r\n"
                        "L,R,X,,numeric,3,2,4,,0,,,,,VS1,1,5,Some,,Why\r\n"
                        "L,R,X,,numeric,3,2,4,,0,,,,,VS1,7,,Some,,Why\r\n"
                        "L,R,X,,numeric,3,2,4,,0,,,,,VS1,9,,None,not applicable,\r\n"
                        "L,R,X,,numeric,3,2,4,,0,,,,,VS1,,,No code,,\r\n"
                        "L,R,SUB,,alpha,,1,1,X,0,,,,Part,,,,,,\r\n"
                        "L,R,Y,,numeric,,5,1,,2,,,,,,,,,,\r\n"));
}

void CodebookCsvTest::statisticalItemsHaveTheirFormat()
{
    Item item = made::stored("X", "F8.2");
    item.decimals = 2;
    item.measure = Measure::Ordinal;
    item.missing = { { "9", "" }, { "97", "inf" } };
    Layout layout;
    layout.levels = { made::level({}, { made::record("", { item }) }) };
    QCOMPARE(linesOf(layout), QByteArray(",,X,,numeric,,0,1,,2,F8.2,ordinal,\"9, 97 to inf\",,,,,,,\r\n"));
}

void CodebookCsvTest::textsThatNeedQuotesHaveThem_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("cell");
    QTest::newRow("plain") << QString::fromUtf8("Âge d'un") << QByteArray("Âge d'un");
    QTest::newRow("comma") << "a,b" << QByteArray("\"a,b\"");
    QTest::newRow("quotation marks") << "a \"b\"" << QByteArray("\"a \"\"b\"\"\"");
    QTest::newRow("line feed") << "a\nb" << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return") << "a\rb" << QByteArray("\"a\rb\"");
    QTest::newRow("semicolon and blanks") << " a; " << QByteArray(" a; ");
}

void CodebookCsvTest::textsThatNeedQuotesHaveThem()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, cell);
    Item item = made::item("X");
    item.labels = made::labels(text);
    QCOMPARE(linesOf(made::layout({ item })).mid(int(qstrlen(",(ids),ID,,numeric,,2,1,,0,,,,,,,,,,\r\n"))),
             QByteArray(",R,X," + cell + ",numeric,,2,1,,0,,,,,,,,,,\r\n"));
}

void CodebookCsvTest::labelsAreInOneLanguage()
{
    const Labels labels = { { { "EN", "Yes" }, { "FR", "Oui" } } };
    Item item = made::item("X", 1, { made::value("1") });
    item.labels = labels;
    item.valueSets[0].values[0].labels = labels;
    QCOMPARE(csv(made::layout({ item })).count(",Yes,"), 2);
    QCOMPARE(csv(made::layout({ item }), { "FR", false }).count(",Oui,"), 2);
    QCOMPARE(csv(made::layout({ item }), { "FR", false }).count("Yes"), 0);
    QCOMPARE(csv(made::layout({ item }), { "ES", false }).count(",Yes,"), 2);
}

void CodebookCsvTest::excelGetsAByteOrderMark()
{
    const Layout layout = made::layout({});
    QVERIFY(csv(layout).startsWith(header));
    QCOMPARE(csv(layout, { QString(), true }), QByteArray("\xEF\xBB\xBF" + csv(layout)));
}

void CodebookCsvTest::formulasAreGuardedOnlyForExcel_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isGuarded");
    QTest::newRow("equals") << "=1+1" << true;
    QTest::newRow("plus") << "+cmd" << true;
    QTest::newRow("minus") << "-2+3" << true;
    QTest::newRow("at") << "@SUM(A1)" << true;
    QTest::newRow("tab") << "\t=1" << true;
    QTest::newRow("wide sign") << QString::fromUtf8("＝1+1") << true;
    QTest::newRow("negative number") << "-1" << false;
    QTest::newRow("number with a sign") << "+1.5" << false;
    QTest::newRow("after a blank") << " =1" << false;
    QTest::newRow("text") << "Age" << false;
    QTest::newRow("empty") << "" << false;
}

void CodebookCsvTest::formulasAreGuardedOnlyForExcel()
{
    QFETCH(QString, text);
    QFETCH(bool, isGuarded);
    Item item = made::item("X", 1, { made::value(text) });
    const Layout layout = made::layout({ item });
    const QByteArray cell = ",VS1," + text.toUtf8() + ",,,,\r\n";
    QVERIFY(csv(layout).endsWith(cell));
    QVERIFY(csv(layout, { QString(), true }).endsWith(isGuarded ? QByteArray(cell).insert(5, '\'') : cell));

    item.labels = made::labels("=\",\"\r");
    QVERIFY(csv(made::layout({ item }), { QString(), true }).contains(",\"'=\"\",\"\"\r\","));
}

void CodebookCsvTest::longFilesAreWhole()
{
    Layout layout;
    layout.levels = { made::level({}, { made::record("R") }) };
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i)
        layout.levels[0].records[0].items.append(made::item("X" + QString::number(i)));
    const QList<QByteArray> lines = linesOf(layout).split('\n');
    QCOMPARE(lines.size(), count + 1);
    QCOMPARE(lines.at(0), QByteArray(",R,X0,,numeric,,2,1,,0,,,,,,,,,,\r"));
    QCOMPARE(lines.at(count - 1), QByteArray(",R,X19999,,numeric,,2,1,,0,,,,,,,,,,\r"));
}

void CodebookCsvTest::aDeviceThatIsFullIsReported()
{
    made::FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeCodebookCsv(made::layout({}), device));
}

QTEST_MAIN(CodebookCsvTest)
#include "CodebookCsvTest.moc"
