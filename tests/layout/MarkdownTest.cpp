#include "write/Markdown.h"

#include "layout/MadeLayout.h"

#include <QTest>

using namespace vanlayout;

class MarkdownTest : public QObject
{
    Q_OBJECT

private slots:
    void aCodeBookHasFactsRecordsItemsAndValues();
    void statisticalFilesHaveVariables();
    void idsOfSeveralLevelsHaveTheirName();
    void columnsThatNoItemFillsAreLeftOut();
    void factsOfTheFileAreShown();
    void textsStayTexts_data();
    void textsStayTexts();
    void aNoteIsAParagraphWhateverItBeginsWith_data();
    void aNoteIsAParagraphWhateverItBeginsWith();
    void noTextBreaksATable();
    void labelsAreInOneLanguage();
    void theTitleIsThatOfTheFileOrTheGivenOne();
    void longFilesAreWhole();
    void aDeviceThatIsFullIsReported();
};

namespace
{

QByteArray markdown(const Layout &layout, const MarkdownOptions &options = {})
{
    return made::written(writeMarkdown, layout, options);
}

// The label of the one item of a layout, as its table shows it.
QString shownLabel(const QString &label)
{
    Item item = made::item("X");
    item.labels = made::labels(label);
    Layout layout;
    layout.levels = { made::level({}, { made::record("R", { item }) }) };
    const QString text = QString::fromUtf8(markdown(layout));
    const QString before = "| X | ";
    const int begin = text.indexOf(before) + before.size();
    return text.mid(begin, text.indexOf(" | 9(2) |\n", begin) - begin);
}

} // namespace

void MarkdownTest::aCodeBookHasFactsRecordsItemsAndValues()
{
    Value remarked = made::value("9", "Unknown", Special::Missing);
    remarked.note = "Why";
    remarked.image = "a.png";
    Item item = made::item(
        "X", 2, { made::range("1", "5", "Some"), remarked, made::value("  ", "No one", Special::NotApplicable) });
    item.labels = made::labels("Label");
    item.note = "Note of X";
    item.start = 3;
    item.occurrences = 2;
    item.occurrenceLabels = { { 2, made::labels("Second") } };
    item.valueSets[0].labels = made::labels("Set");
    item.valueSets[0].note = "Note of the set";
    Item sub = made::text("SUB", 1);
    sub.start = 3;
    sub.isSubitem = true;
    sub.subitemOf = "X";
    Layout layout = made::layout({ item, sub });
    layout.file = "directory/survey.dcf";
    layout.format = Format::CSProJson;
    layout.formatVersion = "8.0";
    layout.labels = made::labels("Survey");
    layout.note = "About";
    Record &record = layout.levels[0].records[0];
    record.labels = made::labels("Record");
    record.note = "Note of R";
    record.recordType = "P";
    record.required = false;
    record.maximum = 20;
    record.occurrenceLabels = { { 1, made::labels("First") } };
    QCOMPARE(QString::fromUtf8(markdown(layout)), QString(R"(# Survey

| File | survey.dcf |
|---|---|
| Format | CSPro dictionary, JSON form 8.0 |

About

## Ids

| Name | Label | Type |
|---|---|---|
| ID | | 9(2) |

## R: Record

Record: type P, not required, at most 20 in a case

Note of R

| Occurrence | Label |
|---|---|
| 1 | First |

| Name | Label | Type | Columns | Occurrences | Part of |
|---|---|---|---|---|---|
| X | Label | 9(2) | 3-4 | 2 | |
| SUB | | A(1) | 3 | | X |

### X: Label

Note of X

| Occurrence | Label |
|---|---|
| 2 | Second |

Value set VS1: Set

Note of the set

| Code | Label | Remark |
|---|---|---|
| 1 to 5 | Some | |
| 9 | Unknown | missing; Why; image a.png |
| (blank) | No one | not applicable |

)"));
    layout.format = Format::Ddi; // a document of another program does not state the number of records
    layout.levels[0].records[0].maximum = 0;
    QVERIFY(markdown(layout).contains("\nRecord: type P\n\nNote of R\n"));
    layout.levels[0].records[0].recordType.clear();
    QVERIFY(markdown(layout).contains("\n## R: Record\n\nNote of R\n"));
}

void MarkdownTest::statisticalFilesHaveVariables()
{
    Item item = made::stored("X", "F8.2", { made::value("1", "One") });
    item.measure = Measure::Nominal;
    item.missing = { { "-inf", "0" }, { "9", "" } };
    Layout layout;
    layout.file = "a.sav";
    layout.format = Format::Spss;
    layout.rows = 12;
    layout.levels = { made::level({}, { made::record("", { item }) }) };
    QCOMPARE(QString::fromUtf8(markdown(layout)), QString(R"(# Codebook

| File | a.sav |
|---|---|
| Format | SPSS file |
| Rows | 12 |

## Variables

| Name | Label | Type | Measure | Missing |
|---|---|---|---|---|
| X | | F8.2 | nominal | -inf to 0, 9 |

### X

| Code | Label |
|---|---|
| 1 | One |

)"));
}

void MarkdownTest::idsOfSeveralLevelsHaveTheirName()
{
    Layout layout = made::layout({});
    layout.levels.append(made::level({ made::item("VISIT") }, {}));
    layout.levels[0].name = "HOUSE";
    layout.levels[1].labels = made::labels("Visit");
    const QByteArray text = markdown(layout);
    QVERIFY(text.contains("\n## Ids of HOUSE\n\n| Name"));
    QVERIFY(text.contains("\n## Ids of Visit\n\n| Name"));
}

void MarkdownTest::columnsThatNoItemFillsAreLeftOut()
{
    Item placed = made::item("X");
    placed.start = 7;
    QVERIFY(markdown(made::layout({ made::item("Y"), placed })).contains("| Y | | 9(2) | |\n| X | | 9(2) | 7-8 |\n"));
    QVERIFY(!markdown(made::layout({ made::item("Y") })).contains("Columns"));
}

void MarkdownTest::factsOfTheFileAreShown()
{
    Layout layout;
    layout.encoding = "utf-8";
    layout.name = "D";
    layout.languages = { { "EN", "English" }, { "FR", "" } };
    layout.recordType = RecordTypeColumns{ 2, 3 };
    layout.created = "2020-01-02T03:04:05";
    layout.modified = "2021-01-02T03:04:05";
    layout.weight = "W_1";
    QCOMPARE(QString::fromUtf8(markdown(layout)), QString(R"(# D

| File | |
|---|---|
| Encoding | utf-8 |
| Name | D |
| Languages | English (EN), FR |
| Record type | columns 2-4 |
| Created | 2020-01-02T03:04:05 |
| Modified | 2021-01-02T03:04:05 |
| Weight | W\_1 |

)"));
}

void MarkdownTest::textsStayTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << QString::fromUtf8("Âge, en années (a-b)!") << QString::fromUtf8("Âge, en années (a-b)!");
    QTest::newRow("pipe") << "a|b"
                          << "a\\|b";
    QTest::newRow("escaped pipe") << "a\\|b"
                                  << "a\\\\\\|b";
    QTest::newRow("backslash at the end") << "a\\"
                                          << "a\\\\";
    QTest::newRow("HTML") << "<script>x</script> &lt;"
                          << "&lt;script&gt;x&lt;/script&gt; &amp;lt;";
    QTest::newRow("emphasis") << "*a* _b_ ~c~"
                              << "\\*a\\* \\_b\\_ \\~c\\~";
    QTest::newRow("code") << "`a`"
                          << "\\`a\\`";
    QTest::newRow("link") << "[a](http://b)"
                          << "\\[a\\](http://b)";
    QTest::newRow("image") << "![a](b)"
                           << "!\\[a\\](b)";
    QTest::newRow("heading and formula") << "#1 $x$"
                                         << "\\#1 \\$x\\$";
    QTest::newRow("line feed") << "a\nb"
                               << "a<br>b";
    QTest::newRow("line breaks of all kinds") << QString("a\r\nb\rc\vd\fe") + QChar(0x85) + QChar(0x2028) + "f"
                                              << "a<br>b<br>c<br>d<br>e<br><br>f";
    QTest::newRow("tab") << "a\tb"
                         << "a b";
    QTest::newRow("control characters") << QString("a\x01\x1B[0m\x7F") + QChar(0x9B)
                                        << QString::fromUtf8("a␁␛\\[0m␡\uFFFD");
    QTest::newRow("zero") << QString(QChar(0)) << QString::fromUtf8("␀");
}

void MarkdownTest::textsStayTexts()
{
    QFETCH(QString, text);
    QTEST(shownLabel(text), "shown");
}

void MarkdownTest::aNoteIsAParagraphWhateverItBeginsWith_data()
{
    QTest::addColumn<QString>("note");
    QTest::addColumn<QByteArray>("paragraph");
    QTest::newRow("plain") << "About" << QByteArray("About");
    QTest::newRow("list") << "- a" << QByteArray("\\- a");
    QTest::newRow("list of another sign") << "+ a" << QByteArray("\\+ a");
    QTest::newRow("numbered list") << "12. a" << QByteArray("12\\. a");
    QTest::newRow("bracket") << "1) a" << QByteArray("1\\) a");
    QTest::newRow("number") << "12 a" << QByteArray("12 a");
    QTest::newRow("underline of a heading") << "===" << QByteArray("\\===");
    QTest::newRow("rule") << "---" << QByteArray("\\---");
    QTest::newRow("quotation") << "> a" << QByteArray("&gt; a");
    QTest::newRow("code") << "    a" << QByteArray("a");
    QTest::newRow("lines") << "a\n\n- b" << QByteArray("a<br><br>- b");
}

void MarkdownTest::aNoteIsAParagraphWhateverItBeginsWith()
{
    QFETCH(QString, note);
    QFETCH(QByteArray, paragraph);
    Layout layout;
    layout.note = note;
    QVERIFY(markdown(layout).endsWith("|\n\n" + paragraph + "\n\n"));
}

void MarkdownTest::noTextBreaksATable()
{
    const QString hostile = "a | b\n| c \\| </td>\r\n\n# d\n";
    Value value = made::value(hostile, hostile, Special::Missing);
    value.note = hostile;
    value.image = hostile;
    Item item = made::item(hostile, 2, { value });
    item.labels = made::labels(hostile);
    item.subitemOf = hostile;
    item.format = hostile;
    item.missing = { { hostile, hostile } };
    item.occurrenceLabels = { { 1, made::labels(hostile) } };
    Layout layout = made::layout({ item });
    layout.file = hostile;
    layout.name = hostile;
    layout.encoding = hostile;
    layout.weight = hostile;
    layout.created = hostile;
    layout.languages = { { hostile, hostile } };
    const QList<QByteArray> lines = markdown(layout).split('\n');
    int cells = 0;
    for (const QByteArray &line : lines) {
        if (!line.startsWith('|')) {
            cells = 0;
            continue;
        }
        QByteArray unescaped = line;
        unescaped.replace("\\\\", "").replace("\\|", "");
        cells = cells == 0 ? unescaped.count('|') : cells;
        QCOMPARE(unescaped.count('|'), cells);
        QVERIFY(line.endsWith('|'));
    }
    QCOMPARE(markdown(layout).count("\n#"), 3); // ids, record, item
    QCOMPARE(markdown(layout).count("</td>"), 0);
}

void MarkdownTest::labelsAreInOneLanguage()
{
    const Labels labels = { { { "EN", "Yes" }, { "FR", "Oui" } } };
    Item item = made::item("X", 1, { made::value("1") });
    item.labels = labels;
    item.occurrenceLabels = { { 1, labels } };
    item.valueSets[0].labels = labels;
    item.valueSets[0].values[0].labels = labels;
    Layout layout = made::layout({ item });
    layout.labels = labels;
    layout.levels[0].records[0].labels = labels;
    for (const char *code : { "", "FR", "ES" }) {
        const QString language = code;
        MarkdownOptions options;
        options.language = language;
        const QByteArray text = markdown(layout, options);
        QCOMPARE(text.count(language == "FR" ? "Oui" : "Yes"), 7);
        QCOMPARE(text.count("Oui") + text.count("Yes"), 7);
    }
}

void MarkdownTest::theTitleIsThatOfTheFileOrTheGivenOne()
{
    Layout layout = made::layout({});
    layout.file = "directory/survey.dcf";
    QVERIFY(markdown(layout).startsWith("# Codebook\n"));
    layout.name = "SURVEY_1";
    QVERIFY(markdown(layout).startsWith("# SURVEY\\_1\n"));
    layout.labels = made::labels("Survey");
    QVERIFY(markdown(layout).startsWith("# Survey\n"));
    MarkdownOptions options;
    options.title = "Given";
    QVERIFY(markdown(layout, options).startsWith("# Given\n"));
}

void MarkdownTest::longFilesAreWhole()
{
    Layout layout = made::layout({});
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i)
        layout.levels[0].records[0].items.append(made::item("X" + QString::number(i)));
    const QByteArray text = markdown(layout);
    QCOMPARE(text.count("\n| X"), count);
    QVERIFY(text.endsWith("\n| X19999 | | 9(2) |\n\n"));
}

void MarkdownTest::aDeviceThatIsFullIsReported()
{
    made::FullDevice device;
    device.open(QIODevice::WriteOnly);
    QVERIFY(!writeMarkdown(made::layout({}), device));
}

QTEST_MAIN(MarkdownTest)
#include "MarkdownTest.moc"
