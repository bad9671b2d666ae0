#include "layout/MadeLayout.h"
#include "load/Head_p.h"
#include "load/PlanLists_p.h"
#include "load/PlanMaker_p.h"
#include "load/PlanTexts_p.h"

#include <QTest>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::Layout)

class LoadPlanTest : public QObject
{
    Q_OBJECT

private slots:
    void tablesHaveIdsThenOccThenItems();
    void occIsOnlyInTablesOfRecordsThatRepeat();
    void recordsOfALevelHaveTheIdsOfTheLevelsAbove();
    void occurrencesAreColumnsByOccurrence();
    void numbersOfOccurrencesArePadded();
    void repeatingSubitemOfASingleItemSteps();
    void bothRepeatingHaveTwoNumbers();
    void longFormHasATableForEachRepeatingItem();
    void longFormOfASubitemHasItsOwnTable();
    void itemTablesComeAfterAllRecords();
    void recordsThatAreNotNamedAreKnown();
    void marksArePadded();
    void programIsNamedByTheDictionary_data();
    void programIsNamedByTheDictionary();
    void dataFileIsNamedByTheProgram();
    void ddiDocumentNamesItsDataFile();
    void userMissingValuesBecomeMissing();
    void binaryItemsHaveNoColumn();
    void binaryItemsHaveNoItemTable();
    void typesFollowDecimals();
    void labelsAreInTheLanguage();
    void labelsOfOccurrencesHaveTheirTextOrNumber();
    void labelsAreOneLine();
    void labelsAreCutAtACharacter();

    void numbersArePlain_data();
    void numbersArePlain();
    void codesHaveNoSurroundingBlanks();
    void codesOfTheFirstValueSetCount();
    void shortRangesHaveALabelAtEachCode();
    void otherRangesAreKeptAsRanges_data();
    void otherRangesAreKeptAsRanges();
    void firstLabelOfACodeCounts();
    void specialCountsBeforeAValueWithItsCode();
    void specialsBecomeMissing();
    void keptSpecialsAreValuesExceptNotApplicable();
    void earlierSpecialCounts();
    void blankCodesAreNoRules_data();
    void blankCodesAreNoRules();
    void textSpecialsMatchWithoutTrailingBlanks();

    void madeColumnsKeepTheirNames();
    void clashesAreNumberedInFileOrder_data();
    void clashesAreNumberedInFileOrder();
    void tableOfCodesKeepsItsName();
    void illegalCharactersBecomeUnderscores();
    void namesAreCutSoThatTheNumberFits();
    void reservedNamesAreNumbered();
    void namesWithAReservedBeginningGetALetter();
    void lowerCaseIsNoRename();
    void manyEqualNamesAreQuick();
    void filesHavePlainUniqueNames();

    void layoutsWithoutProgramsHaveAReason_data();
    void layoutsWithoutProgramsHaveAReason();
    void tooManyColumnsForTheTargetAreRefused();
    void linesThatAreTooLongForTheTargetAreRefused();
    void unknownLanguageIsRefused();
    void unknownRecordIsRefused();
    void hugeOccurrencesAreRefused();
    void manyIdsAndRecordsAreRefused();
    void commandInPlaceOfAFileIsRefusedForSpss();

    void headStartsWithFixedLines();
    void headHasRenamesAndRemarks();
    void commentsCannotBeEnded();
    void commentLinesAreShort();
    void rangeRemarksAreGivenOnce();
    void longCodesAreListedWhereCellsAreDoubles_data();
    void longCodesAreListedWhereCellsAreDoubles();
};

namespace
{

bool isNever(const QString & /*name*/)
{
    return false;
}

bool isEnd(const QString &name)
{
    return name == QLatin1String("end");
}

bool hasOwnPrefix(const QString &name)
{
    return name.startsWith(QLatin1String("own_"));
}

TargetRules exact()
{
    return { LoadTarget::R,
             "test",
             NameCharacters::All,
             NameStart::Any,
             NameCase::Exact,
             {},
             {},
             {},
             isNever,
             isNever,
             nullptr,
             0,
             0 };
}

TargetRules plain()
{
    TargetRules rules = exact();
    rules.characters = NameCharacters::Plain;
    rules.start = NameStart::Letter;
    rules.nameCase = NameCase::Ignored;
    return rules;
}

LoadPlan plan(const Layout &layout, const LoadOptions &options = {}, const TargetRules &rules = exact())
{
    return makeLoadPlan(layout, rules, options);
}

LoadOptions longForm()
{
    LoadOptions options;
    options.occurrences = OccurrenceForm::Long;
    return options;
}

LoadOptions kept()
{
    LoadOptions options;
    options.specials = SpecialForm::Keep;
    return options;
}

Item placed(Item item, int start, int occurrences = 1)
{
    item.start = start;
    item.occurrences = occurrences;
    return item;
}

Item number(const QString &name, int start, int length = 2, int occurrences = 1)
{
    return placed(made::item(name, length), start, occurrences);
}

Item sub(const QString &name, int start, int length = 1, int occurrences = 1)
{
    Item item = number(name, start, length, occurrences);
    item.isSubitem = true;
    return item;
}

/// One record R with the id ID and these items.
Layout layoutOf(const QVector<Item> &items, int maximum = 1)
{
    Layout layout;
    layout.name = QStringLiteral("DICT");
    layout.levels
        = { made::level({ number(QStringLiteral("ID"), 1) }, { made::record(QStringLiteral("R"), items, maximum) }) };
    return layout;
}

Layout layoutOfRecords(const QStringList &names)
{
    Layout layout = layoutOf({});
    layout.recordType = RecordTypeColumns{ 3, 2 };
    layout.levels[0].records.clear();
    for (int i = 0; i < names.size(); ++i) {
        Record record = made::record(names.at(i), { number(QStringLiteral("X"), 5) });
        record.recordType = QString::number(i);
        layout.levels[0].records.append(record);
    }
    return layout;
}

QString namesOf(const PlannedTable &table)
{
    QStringList names;
    for (const PlannedColumn &column : table.columns)
        names.append(column.name);
    return names.join(QLatin1Char(' '));
}

QString tablesOf(const LoadPlan &made)
{
    QStringList names;
    for (const PlannedTable &table : made.tables)
        names.append(table.name);
    return names.join(QLatin1Char(' '));
}

/// "NAME@start" of the items.
QString startsOf(const PlannedTable &table)
{
    QStringList texts;
    for (const PlannedColumn &column : table.columns) {
        if (column.role == ColumnRole::Item)
            texts.append(column.name + QLatin1Char('@') + QString::number(column.start));
    }
    return texts.join(QLatin1Char(' '));
}

/// The code list of an item X of this type with these values.
CodeList codesOf(const QVector<Value> &values, const LoadOptions &options = {},
                 const QString &type = itemtype::numeric())
{
    const Layout layout = layoutOf({ placed(made::item(QStringLiteral("X"), 4, values, type), 3) });
    const LoadPlan made = plan(layout, options);
    return made.codes.value(0);
}

QString labelsOf(const CodeList &codes)
{
    QStringList texts;
    for (const CodeLabel &label : codes.labels)
        texts.append(label.code + QLatin1Char('=') + label.text);
    return texts.join(QLatin1Char(' '));
}

/// "low-high:outcome" of each rule.
QString rulesOf(const CodeList &codes)
{
    QStringList texts;
    for (const SpecialRule &rule : codes.specials)
        texts.append(QStringLiteral("%1-%2:%3").arg(rule.low, rule.high).arg(int(rule.outcome)));
    return texts.join(QLatin1Char(' '));
}

Layout named(const QString &name)
{
    Layout layout = layoutOf({});
    layout.name = name;
    return layout;
}

} // namespace

void LoadPlanTest::tablesHaveIdsThenOccThenItems()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3), number(QStringLiteral("B"), 5) }, 9);
    const LoadPlan made = plan(layout);
    QCOMPARE(made.tables.size(), 1);
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID occ A B"));
    QVERIFY(made.tables.at(0).columns.at(1).isMade());
    QVERIFY(made.tables.at(0).columns.at(0).role == ColumnRole::Id);
}

void LoadPlanTest::occIsOnlyInTablesOfRecordsThatRepeat()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3) }, 1);
    const LoadPlan made = plan(layout);
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID A"));
    QVERIFY(!made.tables.at(0).hasOccurrence);
}

void LoadPlanTest::recordsOfALevelHaveTheIdsOfTheLevelsAbove()
{
    Layout layout = layoutOfRecords({ QStringLiteral("ONE") });
    Record second = made::record(QStringLiteral("TWO"), { number(QStringLiteral("Y"), 9) });
    second.recordType = QStringLiteral("Z");
    layout.levels.append(made::level({ number(QStringLiteral("ID2"), 7) }, { second }));
    const LoadPlan made = plan(layout);
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID X"));
    QCOMPARE(namesOf(made.tables.at(1)), QStringLiteral("ID ID2 Y"));
    QCOMPARE(made.tables.at(1).level, 1);
}

void LoadPlanTest::occurrencesAreColumnsByOccurrence()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3, 2, 2), sub(QStringLiteral("S"), 3),
                                     sub(QStringLiteral("T"), 4), number(QStringLiteral("B"), 7) });
    const LoadPlan made = plan(layout);
    QCOMPARE(startsOf(made.tables.at(0)), QStringLiteral("A_1@3 S_1@3 T_1@4 A_2@5 S_2@5 T_2@6 B@7"));
}

void LoadPlanTest::numbersOfOccurrencesArePadded()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3, 1, 100) });
    const LoadPlan made = plan(layout);
    QCOMPARE(made.tables.at(0).columns.at(1).name, QStringLiteral("A_001"));
    QCOMPARE(made.tables.at(0).columns.at(100).name, QStringLiteral("A_100"));
}

void LoadPlanTest::repeatingSubitemOfASingleItemSteps()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3, 6), sub(QStringLiteral("S"), 4, 2, 2) });
    const LoadPlan made = plan(layout);
    QCOMPARE(startsOf(made.tables.at(0)), QStringLiteral("A@3 S_1@4 S_2@6"));
}

void LoadPlanTest::bothRepeatingHaveTwoNumbers()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3, 6, 2), sub(QStringLiteral("S"), 4, 2, 2) });
    QCOMPARE(startsOf(plan(layout).tables.at(0)), QStringLiteral("A_1@3 S_1_1@4 S_1_2@6 A_2@9 S_2_1@10 S_2_2@12"));
    const LoadPlan made = plan(layout, longForm());
    QCOMPARE(startsOf(made.tables.at(1)), QStringLiteral("A@3 S_1@4 S_2@6"));
}

void LoadPlanTest::longFormHasATableForEachRepeatingItem()
{
    const Layout layout
        = layoutOf({ number(QStringLiteral("A"), 3, 2, 4), sub(QStringLiteral("S"), 3), sub(QStringLiteral("T"), 4),
                     number(QStringLiteral("B"), 11), number(QStringLiteral("C"), 13, 3, 5) },
                   2);
    const LoadPlan made = plan(layout, longForm());
    QCOMPARE(tablesOf(made), QStringLiteral("R R_A R_C"));
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID occ B"));
    QCOMPARE(namesOf(made.tables.at(1)), QStringLiteral("ID occ item_occ A S T"));
    QCOMPARE(namesOf(made.tables.at(2)), QStringLiteral("ID occ item_occ C"));
    const PlannedTable &table = made.tables.at(2);
    QCOMPARE(table.recordTable, 0);
    QCOMPARE(table.occurrences, 5);
    QCOMPARE(table.start, 13);
    QCOMPARE(table.step, 3);
    QCOMPARE(table.length, 3);
}

void LoadPlanTest::longFormOfASubitemHasItsOwnTable()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3, 6), sub(QStringLiteral("S"), 4, 2, 2) });
    const LoadPlan made = plan(layout, longForm());
    QCOMPARE(tablesOf(made), QStringLiteral("R R_S"));
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID A"));
    QCOMPARE(namesOf(made.tables.at(1)), QStringLiteral("ID item_occ S"));
    QCOMPARE(made.tables.at(1).start, 4);
    QCOMPARE(made.tables.at(1).step, 2);
}

void LoadPlanTest::itemTablesComeAfterAllRecords()
{
    Layout layout = layoutOfRecords({ QStringLiteral("R"), QStringLiteral("R_A") });
    layout.levels[0].records[0].items = { number(QStringLiteral("A"), 5, 2, 3) };
    const LoadPlan made = plan(layout, longForm());
    QCOMPARE(tablesOf(made), QStringLiteral("R R_A R_A_2"));
    QCOMPARE(made.tables.at(2).recordTable, 0);
}

void LoadPlanTest::recordsThatAreNotNamedAreKnown()
{
    const Layout layout = layoutOfRecords({ QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C") });
    LoadOptions options;
    options.records = QStringList{ QStringLiteral("C"), QStringLiteral("A") };
    const LoadPlan made = plan(layout, options);
    QCOMPARE(tablesOf(made), QStringLiteral("A C"));
    QCOMPARE(made.knownMarks, (QStringList{ QStringLiteral("0 "), QStringLiteral("1 "), QStringLiteral("2 ") }));
}

void LoadPlanTest::marksArePadded()
{
    const Layout layout = layoutOfRecords({ QStringLiteral("A") });
    const LoadPlan made = plan(layout);
    QCOMPARE(made.tables.at(0).mark, QStringLiteral("0 "));
    QCOMPARE(made.recordType->start, 3);
    Layout wide = layout;
    wide.levels[0].records[0].recordType = QStringLiteral("\U0001F600"); // one character
    QCOMPARE(plan(wide).tables.at(0).mark, QStringLiteral("\U0001F600 "));
    Layout withoutType = layoutOf({});
    withoutType.recordType = RecordTypeColumns{ 1, 0 };
    QVERIFY(!plan(withoutType).recordType);
    QVERIFY(plan(withoutType).tables.at(0).mark.isEmpty());
}

void LoadPlanTest::programIsNamedByTheDictionary_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QStringLiteral("CENSUS_7") << QString() << QStringLiteral("CENSUS_7");
    QTest::newRow("path") << QStringLiteral("../../x") << QString() << QStringLiteral("______x");
    QTest::newRow("not ASCII") << QStringLiteral("Né") << QString() << QStringLiteral("N_");
    QTest::newRow("file") << QString() << QStringLiteral("dir/my survey.v2.dcf") << QStringLiteral("my_survey_v2");
    QTest::newRow("neither") << QString() << QStringLiteral("-") << QStringLiteral("layout");
}

void LoadPlanTest::programIsNamedByTheDictionary()
{
    QFETCH(QString, name);
    QFETCH(QString, file);
    Layout layout = named(name);
    layout.file = file;
    QTEST(plan(layout).name, "expected");
}

void LoadPlanTest::dataFileIsNamedByTheProgram()
{
    const Layout layout = named(QStringLiteral("a b"));
    QCOMPARE(plan(layout).options.data, QStringLiteral("a_b.dat"));
    LoadOptions options;
    options.data = QStringLiteral("../my data.txt");
    QCOMPARE(plan(layout, options).options.data, options.data);
}

// The name of a DDI document is that of its data file, and a record may have no name.
void LoadPlanTest::ddiDocumentNamesItsDataFile()
{
    Layout layout = named(QStringLiteral("extract 7.dat"));
    layout.format = Format::Ddi;
    layout.levels[0].records[0].name.clear();
    const LoadPlan made = plan(layout);
    QCOMPARE(made.name, QStringLiteral("extract_7"));
    QCOMPARE(made.options.data, QStringLiteral("extract 7.dat"));
    QCOMPARE(made.dataKind, QStringLiteral("a data file"));
    QCOMPARE(made.tables.constFirst().name, QStringLiteral("extract_7"));
    layout.name = QStringLiteral("DICT");
    QCOMPARE(plan(layout).options.data, QStringLiteral("DICT.dat"));
}

void LoadPlanTest::userMissingValuesBecomeMissing()
{
    Item item = number(QStringLiteral("A"), 3, 2);
    item.missing = { { QStringLiteral("08"), QString() },
                     { QStringLiteral("-inf"), QStringLiteral("-1") },
                     { QStringLiteral("90"), QStringLiteral("inf") },
                     { QStringLiteral("x"), QString() } };
    QCOMPARE(rulesOf(plan(layoutOf({ item })).codes.value(0)), QStringLiteral("8-8:2 -99--1:2 90-99:2"));
    QVERIFY(plan(layoutOf({ item }), kept()).codes.value(0).specials.isEmpty());
    item.type = itemtype::alpha();
    item.missing = { { QStringLiteral("ZZ "), QString() } };
    QCOMPARE(rulesOf(plan(layoutOf({ item })).codes.value(0)), QStringLiteral("ZZ-ZZ:2"));
}

void LoadPlanTest::binaryItemsHaveNoColumn()
{
    Item image = number(QStringLiteral("FACE"), 0, 0);
    image.type = QStringLiteral("image");
    const Layout layout = layoutOf({ image, number(QStringLiteral("A"), 3) });
    const LoadPlan made = plan(layout);
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID A"));
    QCOMPARE(made.remarks,
             QStringList(QStringLiteral("R.FACE has no column: its content (image) is not in a text file.")));
}

void LoadPlanTest::binaryItemsHaveNoItemTable()
{
    Item image = number(QStringLiteral("FACE"), 1, 4);
    image.type = QStringLiteral("image");
    image.occurrences = 2;
    LoadOptions options;
    options.occurrences = OccurrenceForm::Long;
    const Layout layout = layoutOf({ image, number(QStringLiteral("A"), 3) });
    const LoadPlan made = plan(layout, options);
    QCOMPARE(tablesOf(made), QStringLiteral("R"));
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID A"));
    QCOMPARE(made.remarks.size(), 1);
}

void LoadPlanTest::typesFollowDecimals()
{
    Item decimal = number(QStringLiteral("D"), 3, 6);
    decimal.decimals = 2;
    const Layout layout
        = layoutOf({ decimal, placed(made::text(QStringLiteral("T")), 9), number(QStringLiteral("N"), 11) });
    const LoadPlan made = plan(layout);
    const QVector<PlannedColumn> &columns = made.tables.at(0).columns;
    QVERIFY(columns.at(1).type == CellType::Decimal);
    QCOMPARE(columns.at(1).decimals, 2);
    QVERIFY(columns.at(2).type == CellType::Text);
    QVERIFY(!columns.at(2).isNumber());
    QVERIFY(columns.at(3).type == CellType::Integer);
}

void LoadPlanTest::labelsAreInTheLanguage()
{
    Item item = number(QStringLiteral("X"), 3);
    item.labels
        = { { { QStringLiteral("EN"), QStringLiteral("Sex") }, { QStringLiteral("FR"), QStringLiteral("Sexe") } } };
    Item untranslated = number(QStringLiteral("Y"), 5);
    untranslated.labels = { { { QStringLiteral("EN"), QStringLiteral("Age") }, { QStringLiteral("FR"), QString() } } };
    Layout layout = layoutOf({ item, untranslated });
    layout.languages = { { QStringLiteral("EN"), QString() }, { QStringLiteral("FR"), QString() } };
    QCOMPARE(plan(layout).tables.at(0).columns.at(1).label, QStringLiteral("Sex"));
    QCOMPARE(plan(layout).options.language, QStringLiteral("EN"));
    LoadOptions french;
    french.language = QStringLiteral("fr");
    const LoadPlan made = plan(layout, french);
    QCOMPARE(made.options.language, QStringLiteral("FR"));
    QCOMPARE(made.tables.at(0).columns.at(1).label, QStringLiteral("Sexe"));
    QCOMPARE(made.tables.at(0).columns.at(2).label, QStringLiteral("Age"));
}

void LoadPlanTest::labelsOfOccurrencesHaveTheirTextOrNumber()
{
    Item item = number(QStringLiteral("X"), 3, 2, 2);
    item.labels = made::labels(QStringLiteral("Crop"));
    item.occurrenceLabels = { { 2, made::labels(QStringLiteral("rye")) } };
    const Layout layout = layoutOf({ item, number(QStringLiteral("Y"), 9, 1, 2) });
    const LoadPlan made = plan(layout);
    const QVector<PlannedColumn> &columns = made.tables.at(0).columns;
    QCOMPARE(columns.at(1).label, QStringLiteral("Crop (1)"));
    QCOMPARE(columns.at(2).label, QStringLiteral("Crop (rye)"));
    QCOMPARE(columns.at(3).label, QString());
    const LoadPlan ofItems = plan(layout, longForm());
    QCOMPARE(ofItems.tables.at(1).columns.at(2).label, QStringLiteral("Crop"));
    QCOMPARE(ofItems.tables.at(1).label, QStringLiteral("Crop"));
}

void LoadPlanTest::labelsAreOneLine()
{
    Item item = number(QStringLiteral("X"), 3);
    item.labels = made::labels(QStringLiteral("a\r\nb\tc\u2028d\u0085e"));
    const Layout layout = layoutOf({ item });
    QCOMPARE(plan(layout).tables.at(0).columns.at(1).label, QStringLiteral("a b c d e"));
}

void LoadPlanTest::labelsAreCutAtACharacter()
{
    const QString text = QStringLiteral("aé\U0001F600z");
    QCOMPARE(cutTo(text, { 2, LengthUnit::Bytes }), QStringLiteral("a"));
    QCOMPARE(cutTo(text, { 3, LengthUnit::Bytes }), QStringLiteral("aé"));
    QCOMPARE(cutTo(text, { 6, LengthUnit::Bytes }), QStringLiteral("aé"));
    QCOMPARE(cutTo(text, { 7, LengthUnit::Bytes }), QStringLiteral("aé\U0001F600"));
    QCOMPARE(cutTo(text, { 3, LengthUnit::Characters }), QStringLiteral("aé\U0001F600"));
    QCOMPARE(cutTo(text, {}), text);
    Item item = placed(made::item(QStringLiteral("X"), 2, { made::value(QStringLiteral("1"), text) }), 3);
    item.labels = made::labels(text);
    TargetRules rules = exact();
    rules.variableLabel = { 3, LengthUnit::Bytes };
    rules.valueLabel = { 2, LengthUnit::Characters };
    const Layout layout = layoutOf({ item });
    const LoadPlan made = plan(layout, {}, rules);
    QCOMPARE(made.tables.at(0).columns.at(1).label, QStringLiteral("aé"));
    QCOMPARE(made.codes.at(0).labels.at(0).text, QStringLiteral("aé"));
    QCOMPARE(made.codes.at(0).rows.at(0).label, text);
}

void LoadPlanTest::numbersArePlain_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected"); // null for a text that is no number
    QTest::newRow("zeros") << QStringLiteral(" 007 ") << QStringLiteral("7");
    QTest::newRow("zero") << QStringLiteral("000") << QStringLiteral("0");
    QTest::newRow("minus zero") << QStringLiteral("-0,0") << QStringLiteral("0");
    QTest::newRow("plus") << QStringLiteral("+12") << QStringLiteral("12");
    QTest::newRow("comma") << QStringLiteral("-9,50") << QStringLiteral("-9.5");
    QTest::newRow("mark first") << QStringLiteral(".5") << QStringLiteral("0.5");
    QTest::newRow("mark last") << QStringLiteral("5.") << QStringLiteral("5");
    QTest::newRow("long") << QStringLiteral("1234567890123456789012345678901234567890")
                          << QStringLiteral("1234567890123456789012345678901234567890");
    for (const char *text : { "", "  ", ".", "-", "- 5", "5-", "1E2", "0x1A", "1_0", "Inf", "NaN", "1d2", "1.2.3",
                              "1 2", "\t5", "NOTAPPL", "٣" })
        QTest::newRow(text) << QString::fromUtf8(text) << QString();
}

void LoadPlanTest::numbersArePlain()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const std::optional<QString> number = plainNumberOf(text);
    QCOMPARE(number.has_value(), !expected.isNull());
    QCOMPARE(number.value_or(QString()), expected);
}

void LoadPlanTest::codesHaveNoSurroundingBlanks()
{
    const CodeList numbers
        = codesOf({ made::value(QStringLiteral(" 09 "), QStringLiteral("nine")),
                    made::range(QStringLiteral(" 1"), QStringLiteral("5 "), QStringLiteral("few")) });
    QCOMPARE(numbers.rows.at(0).from, QStringLiteral("09"));
    QVERIFY(numbers.rows.at(0).to.isNull());
    QCOMPARE(numbers.rows.at(0).low, QStringLiteral("9"));
    QCOMPARE(numbers.rows.at(1).to, QStringLiteral("5"));
    const CodeList texts = codesOf({ made::value(QStringLiteral(" a "), QStringLiteral("A")) }, {}, itemtype::alpha());
    QCOMPARE(texts.rows.at(0).from, QStringLiteral(" a"));
    QVERIFY(texts.rows.at(0).low.isNull());
}

void LoadPlanTest::codesOfTheFirstValueSetCount()
{
    Item item
        = placed(made::item(QStringLiteral("X"), 2, { made::value(QStringLiteral("1"), QStringLiteral("one")) }), 3, 2);
    item.valueSets.append(made::valueSet({ made::value(QStringLiteral("2"), QStringLiteral("two")) }));
    item.valueSets[1].name = QStringLiteral("OTHER");
    const Layout layout = layoutOf({ item });
    const LoadPlan made = plan(layout);
    QCOMPARE(made.codes.size(), 1);
    QCOMPARE(labelsOf(made.codes.at(0)), QStringLiteral("1=one"));
    QCOMPARE(made.tables.at(0).columns.at(1).codes, 0);
    QCOMPARE(made.tables.at(0).columns.at(2).codes, 0);
    QCOMPARE(made.tables.at(0).columns.at(0).codes, -1);
    QCOMPARE(made.remarks,
             QStringList(QStringLiteral("R.X has the labels of its first value set, VS1. Not used: OTHER.")));
}

void LoadPlanTest::shortRangesHaveALabelAtEachCode()
{
    const CodeList codes = codesOf({ made::range(QStringLiteral("-1"), QStringLiteral("01"), QStringLiteral("few")),
                                     made::range(QStringLiteral("100"), QStringLiteral("199"), QStringLiteral("x")) });
    QVERIFY(labelsOf(codes).startsWith(QStringLiteral("-1=few 0=few 1=few 100=x")));
    QCOMPARE(codes.labels.size(), 103);
    QVERIFY(codes.rangeLabels.isEmpty());
}

void LoadPlanTest::otherRangesAreKeptAsRanges_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::newRow("more than 100") << QStringLiteral("100") << QStringLiteral("200");
    QTest::newRow("backwards") << QStringLiteral("5") << QStringLiteral("1");
    QTest::newRow("decimals") << QStringLiteral("1.5") << QStringLiteral("3");
    QTest::newRow("no number") << QStringLiteral("1") << QStringLiteral("x");
    QTest::newRow("all numbers") << QStringLiteral("-9223372036854775808") << QStringLiteral("9223372036854775807");
}

void LoadPlanTest::otherRangesAreKeptAsRanges()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    const CodeList codes = codesOf({ made::range(from, to, QStringLiteral("some")), made::range(from, to) });
    QVERIFY(codes.labels.isEmpty());
    QCOMPARE(codes.rangeLabels.size(), 1);
    QCOMPARE(codes.rows.size(), 2);
}

void LoadPlanTest::firstLabelOfACodeCounts()
{
    const CodeList codes = codesOf({ made::value(QStringLiteral("1"), QStringLiteral("a")),
                                     made::range(QStringLiteral("01"), QStringLiteral("2"), QStringLiteral("b")),
                                     made::value(QStringLiteral("3")) });
    QCOMPARE(labelsOf(codes), QStringLiteral("1=a 2=b"));
}

void LoadPlanTest::specialCountsBeforeAValueWithItsCode()
{
    const CodeList codes = codesOf({ made::range(QStringLiteral("8"), QStringLiteral("10"), QStringLiteral("some")),
                                     made::value(QStringLiteral("9"), QStringLiteral("unknown"), Special::Missing) });
    QCOMPARE(labelsOf(codes), QStringLiteral("8=some 10=some 9=unknown"));
    QVERIFY(codes.labels.at(2).outcome == CellOutcome::NoAnswer);
}

void LoadPlanTest::specialsBecomeMissing()
{
    const CodeList codes
        = codesOf({ made::value(QStringLiteral("9.90"), QString(), Special::Missing),
                    made::value(QStringLiteral("98"), QString(), Special::Refused),
                    made::value(QStringLiteral("97"), QString(), Special::NotApplicable),
                    made::value(QStringLiteral("96"), QString(), Special::Default), made::value(QStringLiteral("1")) });
    QCOMPARE(rulesOf(codes), QStringLiteral("9.9-9.9:2 98-98:3 97-97:1 96-96:1"));
}

void LoadPlanTest::keptSpecialsAreValuesExceptNotApplicable()
{
    const CodeList codes = codesOf({ made::value(QStringLiteral("99"), QString(), Special::Missing),
                                     made::value(QStringLiteral("97"), QString(), Special::NotApplicable),
                                     made::value(QStringLiteral("96"), QString(), Special::Default) },
                                   kept());
    QCOMPARE(rulesOf(codes), QStringLiteral("99-99:0 97-97:1"));
    QVERIFY(codesOf({ made::value(QStringLiteral("9"), QString(), Special::Refused) }, kept()).specials.isEmpty());
}

void LoadPlanTest::earlierSpecialCounts()
{
    Value range = made::range(QStringLiteral("7"), QStringLiteral("9"));
    range.special = Special::Refused;
    const CodeList codes = codesOf({ range, made::value(QStringLiteral("8"), QString(), Special::Missing) });
    QCOMPARE(rulesOf(codes), QStringLiteral("7-9:3 8-8:2"));
}

void LoadPlanTest::blankCodesAreNoRules_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("cell");
    QTest::newRow("blank number") << QStringLiteral("  ") << itemtype::numeric() << QString();
    QTest::newRow("no number") << QStringLiteral("NOTAPPL") << itemtype::numeric() << QStringLiteral("NOTAPPL");
    QTest::newRow("blank text") << QStringLiteral("  ") << itemtype::alpha() << QString();
}

void LoadPlanTest::blankCodesAreNoRules()
{
    QFETCH(QString, code);
    QFETCH(QString, type);
    QFETCH(QString, cell);
    const Value value = made::value(code, QStringLiteral("none"), Special::NotApplicable);
    const CodeList codes = codesOf({ value }, {}, type);
    QVERIFY(codes.specials.isEmpty());
    QCOMPARE(codes.rows.at(0).from, cell);
    QCOMPARE(codes.rows.at(0).label, QStringLiteral("none"));
    QCOMPARE(codes.labels.size(), type == itemtype::alpha() ? 1 : 0);
    if (!codes.labels.isEmpty())
        QVERIFY(codes.labels.at(0).outcome == CellOutcome::Value);
}

void LoadPlanTest::textSpecialsMatchWithoutTrailingBlanks()
{
    const CodeList codes
        = codesOf({ made::value(QStringLiteral(" X "), QString(), Special::Missing) }, {}, itemtype::alpha());
    QCOMPARE(rulesOf(codes), QStringLiteral(" X- X:2"));
}

void LoadPlanTest::madeColumnsKeepTheirNames()
{
    const QVector<Item> items = { number(QStringLiteral("OCC"), 3), number(QStringLiteral("occ"), 5) };
    const Layout repeated = layoutOf(items, 5);
    QCOMPARE(namesOf(plan(repeated, {}, plain()).tables.at(0)), QStringLiteral("ID occ OCC_2 occ_3"));
    QCOMPARE(namesOf(plan(repeated).tables.at(0)), QStringLiteral("ID occ OCC occ_2"));
    const Layout single = layoutOf(items);
    QCOMPARE(namesOf(plan(single).tables.at(0)), QStringLiteral("ID OCC occ"));
}

void LoadPlanTest::clashesAreNumberedInFileOrder_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("columns");
    QTest::newRow("twice") << QStringList{ QStringLiteral("A"), QStringLiteral("a"), QStringLiteral("A") }
                           << QStringLiteral("ID A a_2 A_3");
    QTest::newRow("with the id") << QStringList{ QStringLiteral("id") } << QStringLiteral("ID id_2");
    QTest::newRow("number in use") << QStringList{ QStringLiteral("A_2"), QStringLiteral("A"), QStringLiteral("A") }
                                   << QStringLiteral("ID A_2 A A_3");
    QTest::newRow("number wanted later") << QStringList{ QStringLiteral("A"), QStringLiteral("A"),
                                                         QStringLiteral("A_2") }
                                         << QStringLiteral("ID A A_2 A_2_2");
}

void LoadPlanTest::clashesAreNumberedInFileOrder()
{
    QFETCH(QStringList, items);
    QVector<Item> list;
    for (const QString &name : qAsConst(items))
        list.append(number(name, 3));
    const Layout layout = layoutOf(list);
    QTEST(namesOf(plan(layout, {}, plain()).tables.at(0)), "columns");
}

void LoadPlanTest::tableOfCodesKeepsItsName()
{
    const Layout layout = layoutOfRecords({ QStringLiteral("CODES"), QStringLiteral("CODES_2") });
    QCOMPARE(tablesOf(plan(layout, {}, plain())), QStringLiteral("CODES_2 CODES_2_2"));
    const LoadPlan made = plan(layout);
    QCOMPARE(tablesOf(made), QStringLiteral("CODES_2 CODES_2_2"));
    QCOMPARE(made.renames.at(0).original, QStringLiteral("CODES"));
    QCOMPARE(made.renames.at(0).name, QStringLiteral("CODES_2"));
}

void LoadPlanTest::illegalCharactersBecomeUnderscores()
{
    const Layout layout = layoutOf({ number(QStringLiteral("é-\U0001F600x"), 3), number(QStringLiteral("1a"), 5),
                                     number(QStringLiteral("_b"), 7), number(QString(), 9) });
    const LoadPlan made = plan(layout, {}, plain());
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("ID V___x V1a V_b V4"));
    QCOMPARE(made.renames.at(0).original, QStringLiteral("R.é-\U0001F600x"));
    QCOMPARE(namesOf(plan(layout).tables.at(0)), QStringLiteral("ID é-\U0001F600x 1a _b V4"));
    const Layout withNull = layoutOf({ number(QStringLiteral("a") + QChar(0) + QStringLiteral("b"), 3) });
    QCOMPARE(namesOf(plan(withNull).tables.at(0)), QStringLiteral("ID a_b"));
}

void LoadPlanTest::namesAreCutSoThatTheNumberFits()
{
    QVector<Item> items;
    for (int i = 0; i < 12; ++i)
        items.append(number(QStringLiteral("abcdé"), 3));
    const Layout layout = layoutOf(items);
    TargetRules rules = exact();
    rules.name = { 6, LengthUnit::Bytes };
    QCOMPARE(namesOf(plan(layout, {}, rules).tables.at(0)),
             QStringLiteral("ID abcdé abcd_2 abcd_3 abcd_4 abcd_5 abcd_6 abcd_7 abcd_8 abcd_9 abc_10 abc_11 abc_12"));
}

void LoadPlanTest::reservedNamesAreNumbered()
{
    TargetRules rules = exact();
    rules.isReservedColumn = isEnd;
    const Layout layout = layoutOf({ number(QStringLiteral("end"), 3) });
    QCOMPARE(namesOf(plan(layout, {}, rules).tables.at(0)), QStringLiteral("ID end_2"));
}

void LoadPlanTest::namesWithAReservedBeginningGetALetter()
{
    TargetRules rules = exact();
    rules.isReservedTable = hasOwnPrefix;
    const Layout layout = layoutOfRecords({ QStringLiteral("own_a"), QStringLiteral("Vown_a") });
    QCOMPARE(tablesOf(plan(layout, {}, rules)), QStringLiteral("Vown_a Vown_a_2"));
}

void LoadPlanTest::lowerCaseIsNoRename()
{
    TargetRules rules = exact();
    rules.nameCase = NameCase::Lower;
    const Layout layout = layoutOf({ number(QStringLiteral("Age"), 3), number(QStringLiteral("AGE"), 5) });
    const LoadPlan made = plan(layout, {}, rules);
    QCOMPARE(namesOf(made.tables.at(0)), QStringLiteral("id age age_2"));
    QCOMPARE(made.renames.size(), 1);
    QCOMPARE(made.renames.at(0).original, QStringLiteral("R.AGE"));
    QCOMPARE(made.renames.at(0).name, QStringLiteral("age_2"));
}

// Counting the attempts is not possible from here: with a search from the start, this takes minutes.
void LoadPlanTest::manyEqualNamesAreQuick()
{
    constexpr int count = 50000;
    const Layout layout = layoutOf({ QVector<Item>(count, number(QString(40, QLatin1Char('x')), 3)) });
    TargetRules rules = plain();
    rules.name = { 32, LengthUnit::Characters };
    const LoadPlan made = plan(layout, {}, rules);
    QCOMPARE(made.tables.at(0).columns.last().name, QString(26, QLatin1Char('x')) + QStringLiteral("_50000"));
}

void LoadPlanTest::filesHavePlainUniqueNames()
{
    const Layout layout = layoutOfRecords(
        { QStringLiteral("../x"), QStringLiteral("a/../x"), QStringLiteral("A"), QStringLiteral("a") });
    const LoadPlan made = plan(layout);
    QStringList files;
    for (const PlannedTable &table : made.tables)
        files.append(table.file);
    QCOMPARE(
        files,
        (QStringList{ QStringLiteral("___x"), QStringLiteral("a____x"), QStringLiteral("A"), QStringLiteral("a_2") }));
    QCOMPARE(tablesOf(made), QStringLiteral("../x a/../x A a"));
}

void LoadPlanTest::layoutsWithoutProgramsHaveAReason_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<QString>("problem");
    Layout stata = layoutOf({ number(QStringLiteral("A"), 3) });
    stata.format = Format::Stata;
    QTest::newRow("statistical") << stata << QStringLiteral("already holds its data");
    Layout files = layoutOf({ number(QStringLiteral("A"), 3) });
    files.format = Format::Ddi;
    files.recordType.reset();
    files.levels[0].records.append(files.levels[0].records.at(0));
    files.levels[0].records[1].name = QStringLiteral("S");
    QTest::newRow("several files") << files
                                   << QStringLiteral(
                                          "describes lines of several kinds that have no record type: R and S;"
                                          " make a document for each");
    Layout empty;
    QTest::newRow("empty") << empty << QStringLiteral("has no records");
    QTest::newRow("no start") << layoutOf({ number(QStringLiteral("A"), 0) })
                              << QStringLiteral("has an item without columns: A");
    QTest::newRow("no length") << layoutOf({ number(QStringLiteral("A"), 3, 0) })
                               << QStringLiteral("has an item without columns: A");
    QTest::newRow("far") << layoutOf({ number(QStringLiteral("A"), std::numeric_limits<int>::max()) })
                         << QStringLiteral("has an item with columns beyond any line: A");
    constexpr int farStart = std::numeric_limits<int>::max() - 10;
    QTest::newRow("far occurrence") << layoutOf({ number(QStringLiteral("A"), farStart, 5, 3) })
                                    << QStringLiteral("has an item with columns beyond any line: A");
    Item farPart = number(QStringLiteral("B"), farStart, 2);
    farPart.isSubitem = true;
    QTest::newRow("far subitem") << layoutOf({ number(QStringLiteral("A"), 3, 5, 3), farPart })
                                 << QStringLiteral("has an item with columns beyond any line: B");
    Layout farMark = layoutOfRecords({ QStringLiteral("A") });
    farMark.recordType->start = std::numeric_limits<int>::max();
    QTest::newRow("far mark") << farMark << QStringLiteral("has a record type with columns beyond any line");
    Item exact = number(QStringLiteral("A"), 3);
    exact.decimals = 101;
    QTest::newRow("decimals") << layoutOf({ exact }) << QStringLiteral("has an item with more than 100 decimals: A");
    QTest::newRow("long number") << layoutOf({ number(QStringLiteral("A"), 3, 1001) })
                                 << QStringLiteral("has a number of more than 1000 characters: A");
    Layout repeatedId = layoutOf({});
    repeatedId.levels[0].ids[0].occurrences = 2;
    QTest::newRow("repeating id") << repeatedId << QStringLiteral("has an id item that repeats: ID");
    Layout twins = layoutOfRecords({ QStringLiteral("A"), QStringLiteral("B") });
    twins.levels[0].records[1].recordType = QStringLiteral("0 ");
    QTest::newRow("same mark") << twins << QStringLiteral("has two records with the record type '0 ': A and B");
    Layout untyped = layoutOfRecords({ QStringLiteral("A"), QStringLiteral("B") });
    untyped.recordType.reset();
    QTest::newRow("no marks") << untyped << QStringLiteral("has two records with the record type '': A and B");
    Layout wideMark = layoutOfRecords({ QStringLiteral("A") });
    wideMark.recordType->length = std::numeric_limits<int>::max();
    QTest::newRow("long mark") << wideMark
                               << QStringLiteral(
                                      "has a record type of 2147483647 characters; at most 1000 can be loaded");
    Layout unplacedMark = layoutOfRecords({ QStringLiteral("A") });
    unplacedMark.recordType->start = 0;
    QTest::newRow("mark without start") << unplacedMark
                                        << QStringLiteral("has no start for the columns of the record type");
    Layout bare = layoutOf({});
    bare.levels[0].ids.clear();
    QTest::newRow("record without items")
        << bare << QStringLiteral("has a record without items: R; name the others with --records");
}

void LoadPlanTest::layoutsWithoutProgramsHaveAReason()
{
    QFETCH(Layout, layout);
    QTEST(plan(layout).problem, "problem");
}

void LoadPlanTest::tooManyColumnsForTheTargetAreRefused()
{
    TargetRules rules = exact();
    rules.maxColumns = 10;
    const Layout nine = layoutOf({ number(QStringLiteral("A"), 3, 1, 9) });
    QCOMPARE(plan(nine, {}, rules).problem, QString());
    const Layout ten = layoutOf({ number(QStringLiteral("A"), 3, 1, 10) });
    QCOMPARE(plan(ten, {}, rules).problem,
             QStringLiteral("has 11 columns in the table R, and test holds 10; use --occurrences long, or leave the "
                            "record out with --records"));
    QCOMPARE(plan(ten, longForm(), rules).problem, QString());
}

void LoadPlanTest::linesThatAreTooLongForTheTargetAreRefused()
{
    TargetRules rules = exact();
    rules.maxLine = 12;
    QCOMPARE(plan(layoutOf({ number(QStringLiteral("A"), 3, 2, 5) }), {}, rules).problem, QString());
    const QString problem
        = QStringLiteral("has lines of 13 characters, and test reads at most 12; leave records out with "
                         "--records");
    const Layout longer = layoutOf({ number(QStringLiteral("A"), 4, 2, 5) });
    QCOMPARE(plan(longer, {}, rules).problem, problem);
    QCOMPARE(plan(longer, longForm(), rules).problem, problem);
    Layout marked = layoutOf({ number(QStringLiteral("A"), 3) });
    marked.recordType = RecordTypeColumns{ 12, 2 };
    QCOMPARE(plan(marked, {}, rules).problem, problem);
}

void LoadPlanTest::unknownLanguageIsRefused()
{
    Layout layout = layoutOf({});
    LoadOptions options;
    options.language = QStringLiteral("FR");
    QCOMPARE(plan(layout, options).problem, QStringLiteral("has no language FR; it declares no languages"));
    layout.languages = { { QStringLiteral("EN"), QString() }, { QStringLiteral("ES"), QString() } };
    QCOMPARE(plan(layout, options).problem, QStringLiteral("has no language FR; it has EN, ES"));
}

void LoadPlanTest::unknownRecordIsRefused()
{
    LoadOptions options;
    options.records = QStringList{ QStringLiteral("A"), QStringLiteral("b") };
    const Layout layout = layoutOfRecords({ QStringLiteral("A"), QStringLiteral("B") });
    QCOMPARE(plan(layout, options).problem, QStringLiteral("has no record b; it has A, B"));
}

void LoadPlanTest::hugeOccurrencesAreRefused()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3, 1, std::numeric_limits<int>::max()) });
    QCOMPARE(plan(layout).problem, QStringLiteral("has more than 1000000 variables, counting each occurrence"));
}

// PSPP runs a path that begins or ends with | as a command. No path begins so in a program.
void LoadPlanTest::commandInPlaceOfAFileIsRefusedForSpss()
{
    const Layout layout = layoutOf({ number(QStringLiteral("A"), 3) });
    LoadOptions options;
    options.data = QStringLiteral("touch x|");
    TargetRules rules = plain();
    QCOMPARE(plan(layout, options, rules).problem, QString());
    rules.target = LoadTarget::Spss;
    QCOMPARE(
        plan(layout, options, rules).problem,
        QStringLiteral("needs another name of the data file: PSPP would run a path with | at its end as a command"));
}

void LoadPlanTest::manyIdsAndRecordsAreRefused()
{
    constexpr int ids = 2000;
    constexpr int records = 600;
    QStringList names;
    for (int i = 0; i < records; ++i)
        names.append(QStringLiteral("R%1").arg(i));
    Layout layout = layoutOfRecords(names);
    layout.recordType->length = 4;
    layout.levels[0].ids = QVector<Item>(ids, number(QStringLiteral("ID"), 1));
    QCOMPARE(plan(layout).problem, QStringLiteral("has more than 1000000 columns, counting the ids of each record"));
    LoadOptions one;
    one.records = QStringList(names.constFirst());
    QCOMPARE(plan(layout, one).problem, QString());
}

void LoadPlanTest::headStartsWithFixedLines()
{
    Layout layout = named(QStringLiteral("D"));
    layout.labels = made::labels(QStringLiteral("coding: utf-7"));
    layout.format = Format::CSProText;
    layout.formatVersion = QStringLiteral("7.7");
    const QByteArray head
        = programHead(plan(layout), { "# ", "", "" },
                      { QStringLiteral("Engine"), QStringList(QStringLiteral("engine D.x")), {}, {} });
    const QList<QByteArray> lines = head.split('\n');
    QCOMPARE(lines.at(0), QByteArray("# Loads a CSPro data file with Engine."));
    QVERIFY(lines.at(1).startsWith("# Made by vanlayout "));
    QCOMPARE(lines.at(2), QByteArray("#"));
    QCOMPARE(lines.at(3), QByteArray("# Dictionary: D, \"coding: utf-7\" (CSPro dictionary, text form 7.7)"));
    QCOMPARE(lines.at(4), QByteArray("# Data file:  D.dat"));
    QVERIFY(head.contains("# To run it:\n#   engine D.x\n"));
    QVERIFY(head.contains("# Tables:\n#   R\n"));
    QVERIFY(!head.contains("Remarks"));
}

void LoadPlanTest::headHasRenamesAndRemarks()
{
    Item image = number(QStringLiteral("FACE"), 0, 0);
    image.type = QStringLiteral("image");
    const Layout layout = layoutOf({ image, number(QStringLiteral("OCC"), 3) }, 2);
    const QByteArray head = programHead(plan(layout, {}, plain()), { "-- ", "", "" }, {});
    QVERIFY(head.contains("\n--   R.OCC  OCC_2\n"));
    QVERIFY(head.contains("\n-- Remarks:\n--   R.FACE has no column"));
}

void LoadPlanTest::commentsCannotBeEnded()
{
    const CommentStyle style = { "/* ", " */", "*/" };
    QCOMPARE(comment({ QStringLiteral("a*/b**//c\nd") }, style), QByteArray("/* a* /b** //c d */\n"));
}

void LoadPlanTest::commentLinesAreShort()
{
    const QString words = QStringLiteral("  ") + QStringLiteral("word ").repeated(100);
    const QString text = words + QStringLiteral("é").repeated(5000) + QStringLiteral("\U0001F600").repeated(1001);
    const QByteArray lines = comment({ text }, { "# ", "", "" });
    const QList<QByteArray> list = lines.split('\n');
    QVERIFY(list.size() > 20);
    QString joined;
    for (const QByteArray &line : list) {
        QVERIFY2(line.size() < 1000, line.constData());
        joined += QString::fromUtf8(line.mid(4));
    }
    QCOMPARE(joined.count(QStringLiteral("\U0001F600")), 1001);
    QCOMPARE(joined.count(QStringLiteral("é")), 5000);
    QCOMPARE(joined.count(QStringLiteral("word")), 100);
}

void LoadPlanTest::rangeRemarksAreGivenOnce()
{
    const Item item
        = placed(made::item(QStringLiteral("X"), 3,
                            { made::range(QStringLiteral("0"), QStringLiteral("999"), QStringLiteral("all")) }),
                 3, 2);
    const Layout layout = layoutOf({ item });
    QCOMPARE(rangeRemarks(plan(layout)), QStringList(QStringLiteral("R.X_1: 0 to 999 is \"all\"")));
}

void LoadPlanTest::longCodesAreListedWhereCellsAreDoubles_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isListed");
    const QString digits(15, QLatin1Char('9'));
    QTest::newRow("whole") << 19 << 0 << digits + QLatin1Char('9') << true;
    QTest::newRow("exact type") << 18 << 0 << digits + QLatin1Char('9') << false;
    QTest::newRow("short code") << 19 << 0 << QLatin1Char('-') + digits << false;
    QTest::newRow("decimals") << 16 << 1 << digits + QLatin1String(".9") << true;
    QTest::newRow("few digits") << 15 << 1 << digits + QLatin1String(".9") << false;
}

void LoadPlanTest::longCodesAreListedWhereCellsAreDoubles()
{
    QFETCH(int, length);
    QFETCH(int, decimals);
    QFETCH(QString, code);
    Value missing = made::value(code, QStringLiteral("Not known"));
    missing.special = Special::Missing;
    Item item = placed(made::item(QStringLiteral("X"), length, { missing }), 3);
    item.decimals = decimals;
    const QStringList remarks = longCodeRemarks(plan(layoutOf({ item })), 18, 15);
    QTEST(!remarks.isEmpty(), "isListed");
}

QTEST_MAIN(LoadPlanTest)
#include "LoadPlanTest.moc"
