#include "compare/Diff.h"
#include "read/Reader.h"
#include "support/Corpus.h"
#include "support/CraftedKeys.h"
#include "support/ProcessorTime.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <functional>

using namespace vanlayout;

namespace
{

using Edit = std::function<void(Layout &layout)>;

Labels label(const QString &text, const QString &language = QString())
{
    return { { { language, text } } };
}

Value value(const QString &code, const QString &text, const QString &to = QString())
{
    Value result;
    result.labels = text.isEmpty() ? Labels() : label(text);
    result.ranges = { { code, to } };
    return result;
}

ValueSet valueSet(const QString &name, const QVector<Value> &values)
{
    ValueSet set;
    set.name = name;
    set.labels = label("Values");
    set.values = values;
    return set;
}

Item item(const QString &name, int start, int length, const QString &text)
{
    Item result;
    result.name = name;
    result.start = start;
    result.length = length;
    result.labels = text.isEmpty() ? Labels() : label(text);
    return result;
}

Item alpha(const QString &name, int start, int length, const QString &text)
{
    Item result = item(name, start, length, text);
    result.type = itemtype::alpha();
    return result;
}

// A dictionary of two records with elements of all kinds.
Layout survey()
{
    Layout layout;
    layout.format = Format::CSProText;
    layout.name = "SURVEY";
    layout.labels = label("Survey");
    layout.recordType = RecordTypeColumns{ 1, 1 };
    Level level;
    level.name = "LEVEL";
    level.labels = label("Level");
    level.ids = { item("ID", 2, 3, "Number") };
    Record person;
    person.name = "PERSON";
    person.labels = label("Person");
    person.recordType = "1";
    person.maximum = 9;
    person.length = 20;
    Item sex = item("SEX", 5, 1, "Sex");
    sex.valueSets = { valueSet("SEX_VS1", { value("1", "Male"), value("2", "Female") }) };
    Item birth = item("BIRTH", 6, 6, "Birth date");
    Item month = item("MONTH", 10, 2, "Month");
    month.isSubitem = true;
    month.subitemOf = "BIRTH";
    month.valueSets = { valueSet("MONTH_VS1", { value("1", "Any", "12"), value("99", "Unknown") }) };
    Item income = item("INCOME", 12, 6, "Income");
    income.decimals = 2;
    person.items = { sex, birth, month, income };
    Record house = person;
    house.name = "HOUSE";
    house.labels = label("House");
    house.recordType = "2";
    house.items = { alpha("ROOF", 5, 2, "Roof"), item("ROOMS", 7, 2, "Rooms") };
    level.records = { person, house };
    layout.levels = { level };
    layout.relations = { { "REL", {}, "PERSON", { { "SEX", "ROOF", QString() } } } };
    return layout;
}

// A statistical file with the items of the first record.
Layout statFile(Format format)
{
    Layout layout;
    layout.format = format;
    Level level;
    Record record;
    Item sex = item("SEX", 0, 8, "Sex");
    sex.storage = format == Format::Stata ? Storage::Int8 : Storage::Double;
    sex.format = format == Format::Stata ? "%8.0f" : "F8.0";
    sex.valueSets
        = { valueSet(format == Format::Stata ? "sexlbl" : "labels0", { value("1", "Male"), value("2", "Female") }) };
    Item name = alpha("NAME", 0, 12, "Name");
    name.format = format == Format::Stata ? "%12s" : "A12";
    name.storage = Storage::String;
    record.items = { sex, name };
    level.records = { record };
    layout.levels = { level };
    return layout;
}

Record &person(Layout &layout)
{
    return layout.levels[0].records[0];
}
Record &house(Layout &layout)
{
    return layout.levels[0].records[1];
}
Item &sex(Layout &layout)
{
    return person(layout).items[0];
}
Item &income(Layout &layout)
{
    return person(layout).items[3];
}
Value &male(Layout &layout)
{
    return sex(layout).valueSets[0].values[0];
}

Layout edited(Layout layout, const Edit &edit)
{
    edit(layout);
    return layout;
}

QStringList kindsOf(const LayoutDiff &diff)
{
    QStringList words;
    for (const Change &change : diff.changes)
        words.append(wordOf(change.kind));
    return words;
}

// A change as "kind record/item/set/code: before > after"; empty parts are omitted.
QString described(const Change &change)
{
    QStringList place = { change.record, change.item, change.valueSet, change.code, change.language };
    place.removeAll(QString());
    return wordOf(change.kind) + ' ' + place.join('/') + ": " + change.before + " > " + change.after;
}

QStringList described(const LayoutDiff &diff)
{
    QStringList lines;
    for (const Change &change : diff.changes)
        lines.append(described(change));
    return lines;
}

QStringList notComparedOf(const LayoutDiff &diff)
{
    QStringList names;
    for (const NotCompared &entry : diff.notCompared)
        names.append(entry.what);
    return names;
}

QString madeData(const char *name)
{
    return QStringLiteral(VAN_MADE_DATA "/") + name;
}

} // namespace

Q_DECLARE_METATYPE(Edit)
Q_DECLARE_METATYPE(vanlayout::Item)
Q_DECLARE_METATYPE(vanlayout::Layout)
Q_DECLARE_METATYPE(vanlayout::ValueSet)

/// Tests the comparison of two exact layouts.
class DiffTest : public QObject
{
    Q_OBJECT

private slots:
    void tableOfKindsIsInTheOrderOfTheEnumeration();
    void pageHasEveryKind();
    void everyEditIsOneChangeOfItsKind_data();
    void everyEditIsOneChangeOfItsKind();
    void everyKindHasAnEdit();
    void whatIsNoDifference_data();
    void whatIsNoDifference();
    void factsOfTheFileAreNotCompared_data();
    void factsOfTheFileAreNotCompared();
    void languagesAreMatchedByCode_data();
    void languagesAreMatchedByCode();
    void onlyOneLanguageCanBeCompared();
    void typeOfARecordCountsWhereLinesHaveOne();
    void codesAreCompared_data();
    void codesAreCompared();
    void codesOfOneValueAreOneChange();
    void valueWithoutCodesIsNoBlank();
    void codesAreWrittenAsInTheFile_data();
    void codesAreWrittenAsInTheFile();
    void aliasesAreComparedInAnyCaseAndOrder();
    void movedItemsNameBothPlaces();
    void lineOfAStatementDoesNotCount();
    void imagesAndColorsAreComparedAsCSProReadsThem_data();
    void imagesAndColorsAreComparedAsCSProReadsThem();
    void boundsOfFormatsAreKnown_data();
    void boundsOfFormatsAreKnown();
    void factsOfTwoProgramsAreThoseOfTheData();
    void recordIsFoundUnderAnotherNameOnce();
    void valueSetsAreMatchedByNameThenByContent_data();
    void valueSetsAreMatchedByNameThenByContent();
    void itemsAreFoundUnderAnotherName_data();
    void itemsAreFoundUnderAnotherName();
    void recordsAreFoundUnderAnotherName_data();
    void recordsAreFoundUnderAnotherName();
    void namesThatRepeatGoByTheirOrder();
    void subitemsFollowARenamedItem();
    void addedRecordHasItsItemsListed();
    void changesOfARecordAreNeighbours();
    void kindsAreSelected();
    void formatsAreComparedInWhatBothHold_data();
    void formatsAreComparedInWhatBothHold();
    void dictionaryIsComparedWithAStatisticalFile();
    void formatsOfNumbersAreWidthAndDecimals_data();
    void formatsOfNumbersAreWidthAndDecimals();
    void emptyLayoutsCanBeCompared();
    void ddiDocumentIsComparedAsADictionary();
    void bothFormsHaveNoDifference_data();
    void bothFormsHaveNoDifference();
    void realFormsHaveNoDifference();
    void realFilesAreTheSameAsThemselves();
    void plainAndCompressedSpssFilesAreTheSame();
    void madeSurveysAreComparedInEachFormat_data();
    void madeSurveysAreComparedInEachFormat();
    void sharedSetsAreBounded();
    void sharedSetAgainstManyOthersIsBounded();
    void craftedNamesTakeNoLonger();
    void timeGrowsWithTheSize_data();
    void timeGrowsWithTheSize();
};

void DiffTest::tableOfKindsIsInTheOrderOfTheEnumeration()
{
    const QRegularExpression word("^[a-z]+(-[a-z]+)*$");
    QSet<QString> words;
    for (int i = 0; i < diffKinds().size(); ++i) {
        const DiffKindInfo &info = diffKinds().at(i);
        QCOMPARE(int(info.kind), i);
        QVERIFY2(word.match(info.word).hasMatch(), qPrintable(info.word));
        QVERIFY2(!info.title.isEmpty() && info.meaning.endsWith('.'), qPrintable(info.word));
        QCOMPARE(info.side == DiffSide::After, info.word.endsWith("-added"));
        QCOMPARE(info.side == DiffSide::Before, info.word.endsWith("-removed"));
        QVERIFY(diffKindOf(info.word) == info.kind);
        QVERIFY(diffKindOf(info.word.toUpper()) == info.kind);
        words.insert(info.word);
    }
    QCOMPARE(words.size(), diffKinds().size());
    QVERIFY(!diffKindOf("item").has_value());
    QVERIFY(!diffKindOf(QString()).has_value());
}

void DiffTest::pageHasEveryKind()
{
    QFile page(QStringLiteral(VAN_EXAMPLES "/../docs/diff.md"));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    for (const DiffKindInfo &info : diffKinds())
        QVERIFY2(text.contains("| `" + info.word + "` | " + info.meaning + " |\n"), qPrintable(info.word));
}

namespace
{

struct EditRow {
    Edit edit;
    const char *change;
};

Level secondLevel()
{
    Level level;
    level.name = "SECOND";
    level.labels = label("Second");
    return level;
}

// Edits of the survey, each with the change that is expected.
QVector<EditRow> edits()
{
    // clang-format off
    return {
        { [](Layout &l) { l.name = "OTHER"; }, "dictionary-name : SURVEY > OTHER" },
        { [](Layout &l) { l.labels = label("Other"); }, "dictionary-label : Survey > Other" },
        { [](Layout &l) { l.note = "Note"; }, "dictionary-note :  > Note" },
        { [](Layout &l) { l.aliases = QStringList{ "B", "A" }; }, "dictionary-aliases :  > A, B" },
        { [](Layout &l) { l.recordType = RecordTypeColumns{ 1, 2 }; }, "record-type-columns : 1 > 1 to 2" },
        { [](Layout &l) { l.weight = "W"; }, "weight-variable :  > W" },
        { [](Layout &l) { l.relations.append({ "MORE", {}, "PERSON", {} }); }, "relation-added MORE:  > PERSON" },
        { [](Layout &l) { l.relations.clear(); }, "relation-removed REL: PERSON.SEX = ROOF > " },
        { [](Layout &l) { l.relations[0].links[0].primaryLink.clear(); }, "relation-changed REL: PERSON.SEX = ROOF > PERSON = ROOF" },
        { [](Layout &l) { l.levels.append(secondLevel()); }, "level-added :  > Second" },
        { [](Layout &l) { l.levels[0].name = "FIRST"; }, "level-name : LEVEL > FIRST" },
        { [](Layout &l) { l.levels[0].labels = label("First"); }, "level-label : Level > First" },
        { [](Layout &l) { l.levels[0].note = "Note"; }, "level-note :  > Note" },
        { [](Layout &l) { l.levels[0].aliases = QStringList("A"); }, "level-aliases :  > A" },
        { [](Layout &l) { Record empty; empty.name = "EMPTY"; empty.labels = label("Empty"); l.levels[0].records.append(empty); }, "record-added EMPTY:  > Empty" },
        { [](Layout &l) { person(l).name = "MEMBER"; }, "record-renamed PERSON: PERSON > MEMBER" },
        { [](Layout &l) { person(l).labels = label("Member"); }, "record-label PERSON: Person > Member" },
        { [](Layout &l) { person(l).note = "Note"; }, "record-note PERSON:  > Note" },
        { [](Layout &l) { person(l).aliases = QStringList("A"); }, "record-aliases PERSON:  > A" },
        { [](Layout &l) { person(l).recordType = "3"; }, "record-type PERSON: 1 > 3" },
        { [](Layout &l) { person(l).required = false; }, "record-required PERSON: yes > no" },
        { [](Layout &l) { person(l).maximum = 10; }, "record-maximum PERSON: 9 > 10" },
        { [](Layout &l) { person(l).length = 21; }, "record-length PERSON: 20 > 21" },
        { [](Layout &l) { person(l).occurrenceLabels = { { 2, label("Second") } }; }, "record-occurrence-label PERSON/2:  > Second" },
        { [](Layout &l) { person(l).items.append(item("AGE", 18, 2, "Age")); }, "item-added PERSON/AGE:  > Age" },
        { [](Layout &l) { person(l).items.removeLast(); }, "item-removed PERSON/INCOME: Income > " },
        { [](Layout &l) { income(l).name = "EARNED"; }, "item-renamed PERSON/INCOME: INCOME > EARNED" },
        { [](Layout &l) { house(l).items.append(person(l).items.takeLast()); }, "item-moved PERSON/INCOME: PERSON > HOUSE" },
        { [](Layout &l) { sex(l).labels = label("Gender"); }, "item-label PERSON/SEX: Sex > Gender" },
        { [](Layout &l) { sex(l).note = "Note"; }, "item-note PERSON/SEX:  > Note" },
        { [](Layout &l) { sex(l).aliases = QStringList("A"); }, "item-aliases PERSON/SEX:  > A" },
        { [](Layout &l) { person(l).items[1].type = itemtype::alpha(); }, "item-type PERSON/BIRTH: numeric > alpha" },
        { [](Layout &l) { sex(l).start = 4; }, "item-start PERSON/SEX: 5 > 4" },
        { [](Layout &l) { sex(l).length = 2; }, "item-length PERSON/SEX: 1 > 2" },
        { [](Layout &l) { sex(l).occurrences = 2; }, "item-occurrences PERSON/SEX: 1 > 2" },
        { [](Layout &l) { sex(l).occurrenceLabels = { { 1, label("First") } }; }, "item-occurrence-label PERSON/SEX/1:  > First" },
        { [](Layout &l) { person(l).items[2].isSubitem = false; person(l).items[2].subitemOf.clear(); }, "item-parent PERSON/MONTH: BIRTH > " },
        { [](Layout &l) { income(l).decimals = 1; }, "item-decimals PERSON/INCOME: 2 > 1" },
        { [](Layout &l) { income(l).decimalMark = true; }, "item-decimal-mark PERSON/INCOME: no > yes" },
        { [](Layout &l) { sex(l).zeroFill = true; }, "item-zero-fill PERSON/SEX: no > yes" },
        { [](Layout &l) { sex(l).capture = Capture{ "date", "YYYYMMDD" }; }, "item-capture PERSON/SEX:  > date YYYYMMDD" },
        { [](Layout &l) { sex(l).valueSets.append(valueSet("MORE", { value("7", "Seven") })); }, "value-set-added PERSON/SEX/MORE:  > Values" },
        { [](Layout &l) { sex(l).valueSets.clear(); }, "value-set-removed PERSON/SEX/SEX_VS1: Values > " },
        { [](Layout &l) { sex(l).valueSets[0].name = "OTHER"; }, "value-set-renamed PERSON/SEX/SEX_VS1: SEX_VS1 > OTHER" },
        { [](Layout &l) { sex(l).valueSets[0].labels = label("Codes"); }, "value-set-label PERSON/SEX/SEX_VS1: Values > Codes" },
        { [](Layout &l) { sex(l).valueSets[0].note = "Note"; }, "value-set-note PERSON/SEX/SEX_VS1:  > Note" },
        { [](Layout &l) { sex(l).valueSets[0].aliases = QStringList("A"); }, "value-set-aliases PERSON/SEX/SEX_VS1:  > A" },
        { [](Layout &l) { sex(l).valueSets[0].values.append(value("3", "Other")); }, "value-added PERSON/SEX/SEX_VS1/3:  > Other" },
        { [](Layout &l) { sex(l).valueSets[0].values.removeFirst(); }, "value-removed PERSON/SEX/SEX_VS1/1: Male > " },
        { [](Layout &l) { male(l).labels = label("Man"); }, "value-label PERSON/SEX/SEX_VS1/1: Male > Man" },
        { [](Layout &l) { male(l).note = "Note"; }, "value-note PERSON/SEX/SEX_VS1/1:  > Note" },
        { [](Layout &l) { male(l).special = Special::Missing; }, "value-special PERSON/SEX/SEX_VS1/1:  > missing" },
        { [](Layout &l) { male(l).image = "a.png"; }, "value-image PERSON/SEX/SEX_VS1/1:  > a.png" },
        { [](Layout &l) { male(l).textColor = "#ff0000"; }, "value-color PERSON/SEX/SEX_VS1/1:  > #ff0000" },
    };
    // clang-format on
}

} // namespace

void DiffTest::everyEditIsOneChangeOfItsKind_data()
{
    QTest::addColumn<Layout>("before");
    QTest::addColumn<Layout>("after");
    QTest::addColumn<QString>("change");
    for (const EditRow &row : edits())
        QTest::newRow(row.change) << survey() << edited(survey(), row.edit) << QString(row.change);

    const Layout two = edited(survey(), [](Layout &l) { l.levels.append(secondLevel()); });
    QTest::newRow("level-removed") << two << survey() << "level-removed : Second > ";
    const Layout moved = edited(two, [](Layout &l) { l.levels[1].records.append(l.levels[0].records.takeLast()); });
    QTest::newRow("record-moved") << two << moved << "record-moved HOUSE: LEVEL > SECOND";
    const auto empty = [](Layout &l) { house(l).items.clear(); };
    QTest::newRow("record-removed") << edited(survey(), empty)
                                    << edited(survey(), [](Layout &l) { l.levels[0].records.removeLast(); })
                                    << "record-removed HOUSE: House > ";

    const auto speaking = [](const QVector<Language> &languages) {
        return edited(survey(), [&](Layout &l) { l.languages = languages; });
    };
    const Language english = { "EN", "English" };
    const Language french = { "FR", "French" };
    QTest::newRow("language-added") << speaking({ english }) << speaking({ english, french })
                                    << "language-added FR:  > French";
    QTest::newRow("language-removed") << speaking({ english, french }) << speaking({ english })
                                      << "language-removed FR: French > ";
    QTest::newRow("language-name") << speaking({ english }) << speaking({ { "EN", "Anglais" } })
                                   << "language-name EN: English > Anglais";
    QTest::newRow("language-name, code as it is")
        << speaking({ { "fr", "French" } }) << speaking({ { "FR", "Francais" } })
        << "language-name fr: French > Francais";
    const auto both = [](Layout &l) {
        l.languages = { { "EN", "English" }, { "FR", "French" } };
        l.levels.clear();
        l.relations.clear();
        l.labels = { { { "EN", "House" }, { "FR", "Maison" } } };
    };
    const auto turned = [&](Layout &l) {
        both(l);
        std::swap(l.languages[0], l.languages[1]);
    };
    QTest::newRow("language-order") << edited(survey(), both) << edited(survey(), turned)
                                    << "language-order : EN, FR > FR, EN";

    const auto stat = [](const Edit &edit) { return edited(statFile(Format::Spss), edit); };
    const Layout plain = statFile(Format::Spss);
    QTest::newRow("item-storage") << plain << stat([](Layout &l) { sex(l).storage = Storage::Float; })
                                  << "item-storage SEX: double > float";
    QTest::newRow("item-format") << plain << stat([](Layout &l) { sex(l).format = "F9.0"; })
                                 << "item-format SEX: F8.0 > F9.0";
    QTest::newRow("item-measure") << plain << stat([](Layout &l) { sex(l).measure = Measure::Nominal; })
                                  << "item-measure SEX:  > nominal";
    QTest::newRow("item-alignment") << plain << stat([](Layout &l) { sex(l).alignment = Alignment::Right; })
                                    << "item-alignment SEX:  > right";
    QTest::newRow("item-display-width") << plain << stat([](Layout &l) { sex(l).displayWidth = 9; })
                                        << "item-display-width SEX: 0 > 9";
    QTest::newRow("item-missing") << plain << stat([](Layout &l) {
        sex(l).missing = { { "9", "" }, { "-inf", "0" } };
    }) << "item-missing SEX:  > -inf to 0, 9";
}

void DiffTest::everyEditIsOneChangeOfItsKind()
{
    QFETCH(Layout, before);
    QFETCH(Layout, after);
    QFETCH(QString, change);
    const LayoutDiff diff = compare(before, after);
    QCOMPARE(described(diff), QStringList(change));
    QVERIFY(!diff.isEmpty());
    QCOMPARE(diff.counts().size(), 1);
    QCOMPARE(diff.counts().at(0).kind, diff.changes.at(0).kind);
    QCOMPARE(diff.counts().at(0).count, 1);
    QVERIFY(compare(before, before).isEmpty());
    QVERIFY(compare(after, after).isEmpty());
    DiffOptions options;
    options.ignored = { diff.changes.at(0).kind };
    QVERIFY(compare(before, after, options).isEmpty());
}

void DiffTest::everyKindHasAnEdit()
{
    QSet<QString> words;
    for (const EditRow &row : edits())
        words.insert(QString(row.change).section(' ', 0, 0));
    for (const char *word : { "level-removed", "record-moved", "record-removed", "language-added", "language-removed",
                              "language-name", "language-order", "item-storage", "item-format", "item-measure",
                              "item-alignment", "item-display-width", "item-missing" })
        words.insert(word);
    for (const DiffKindInfo &info : diffKinds())
        QVERIFY2(words.contains(info.word), qPrintable(info.word));
}

void DiffTest::whatIsNoDifference_data()
{
    QTest::addColumn<Edit>("edit");
    const auto row = [](const char *name, const Edit &edit) { QTest::newRow(name) << edit; };
    row("nothing", [](Layout &) {});
    row("order of records", [](Layout &l) { std::swap(l.levels[0].records[0], l.levels[0].records[1]); });
    row("order of items", [](Layout &l) { std::swap(house(l).items[0], house(l).items[1]); });
    row("order of values", [](Layout &l) { std::swap(sex(l).valueSets[0].values[0], sex(l).valueSets[0].values[1]); });
    row("link of a value set", [](Layout &l) { sex(l).valueSets[0].link = "77"; });
    row("names in another case", [](Layout &l) {
        l.name = "Survey";
        person(l).name = "Person";
        sex(l).name = "Sex";
        sex(l).valueSets[0].name = "sex_vs1";
    });
    row("relation in another case", [](Layout &l) {
        l.relations = { { "Rel", {}, "Person", { { "Sex", "Roof", "" } } } };
    });
    row("blanks in a note", [](Layout &l) {
        l.note = " ";
        sex(l).note = "\n";
    });
    row("zero fill of a text", [](Layout &l) { house(l).items[0].zeroFill = true; });
    row("decimal mark without decimals", [](Layout &l) { sex(l).decimalMark = true; });
    row("empty parts of labels", [](Layout &l) { male(l).labels.parts.append({ QString(), QString() }); });
    row("language of the only labels", [](Layout &l) {
        l.languages = { { "EN", "English" } };
        sex(l).labels = label("Sex", "EN");
    });
}

void DiffTest::whatIsNoDifference()
{
    QFETCH(Edit, edit);
    QCOMPARE(described(compare(survey(), edited(survey(), edit))), QStringList());
    QCOMPARE(described(compare(edited(survey(), edit), survey())), QStringList());
}

void DiffTest::factsOfTheFileAreNotCompared_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QString>("what");
    const auto row = [](const char *what, const Edit &edit) { QTest::newRow(what) << edit << QString(what); };
    row("container", [](Layout &l) { l.container = "csdb"; });
    row("format version", [](Layout &l) { l.formatVersion = "7.7"; });
    row("encoding", [](Layout &l) { l.encoding = "utf-8"; });
    row("relative positions", [](Layout &l) { l.relativePositions = true; });
    row("defaults of new items", [](Layout &l) { l.zeroFill = true; });
    row("editable", [](Layout &l) { l.editable = false; });
    row("security", [](Layout &l) { l.security = Security(); });
    row("read optimization", [](Layout &l) { l.readOptimization = true; });
    row("binary items enabled", [](Layout &l) { l.enableBinaryItems = true; });
    row("value set images", [](Layout &l) { l.valueSetImages = "yes"; });
    row("further statements", [](Layout &l) { l.extras = { { "", "Key", "Value", 1 } }; });
    row("number of rows", [](Layout &l) { l.rows = 5; });
    row("creation date", [](Layout &l) { l.created = "2031-01-01T00:00:00"; });
    row("modification date", [](Layout &l) { l.modified = "2031-01-01T00:00:00"; });
}

void DiffTest::factsOfTheFileAreNotCompared()
{
    QFETCH(Edit, edit);
    QFETCH(QString, what);
    const LayoutDiff diff = compare(survey(), edited(survey(), edit));
    QVERIFY(diff.isEmpty());
    QCOMPARE(notComparedOf(diff), QStringList(what));
    QVERIFY(!diff.notCompared.at(0).why.isEmpty());
    QVERIFY(compare(survey(), survey()).notCompared.isEmpty());
}

void DiffTest::languagesAreMatchedByCode_data()
{
    QTest::addColumn<QStringList>("languagesBefore");
    QTest::addColumn<QStringList>("labelBefore"); // CODE:text
    QTest::addColumn<QStringList>("languagesAfter");
    QTest::addColumn<QStringList>("labelAfter");
    QTest::addColumn<QStringList>("changes");
    const QStringList none;
    const QStringList two = { "EN", "FR" };
    const QStringList houses = { "EN:House", "FR:Maison" };
    const auto row = [](const char *name) -> QTestData & { return QTest::newRow(name); };
    row("same") << two << houses << two << houses << none;
    row("one language changed") << two << houses << two << QStringList{ "EN:House", "FR:Foyer" }
                                << QStringList("dictionary-label FR: Maison > Foyer");
    row("both changed") << two << houses << two << QStringList{ "EN:Home", "FR:Foyer" }
                        << QStringList{ "dictionary-label EN: House > Home", "dictionary-label FR: Maison > Foyer" };
    row("code in another case") << two << houses << QStringList{ "en", "fr" } << houses << none;
    row("order of parts") << two << houses << two << QStringList{ "FR:Maison", "EN:House" } << none;
    row("part for all") << two << QStringList{ "EN:House", "FR:House" } << two << QStringList(":House") << none;
    row("part for all changed") << two << QStringList{ "EN:House", "FR:House" } << two << QStringList(":Home")
                                << QStringList("dictionary-label EN: House > Home");
    row("translation lost") << two << houses << two << QStringList("EN:House")
                            << QStringList("dictionary-label FR: Maison > House");
    row("empty part") << two << QStringList{ "EN:House", "FR:" } << two << QStringList("EN:House") << none;
    row("language added") << QStringList("EN") << QStringList("EN:House") << two << houses
                          << QStringList("language-added FR:  > ");
    row("language no longer declared") << two << houses << QStringList("EN") << houses
                                       << QStringList("language-removed FR:  > ");
    row("language declared at last") << QStringList("EN") << houses << two << houses
                                     << QStringList("language-added FR:  > ");
    row("first language no longer declared")
        << two << houses << QStringList("FR") << houses << QStringList("language-removed EN:  > ");
    row("other language declared") << two << houses << QStringList{ "EN", "ES" } << houses
                                   << QStringList{ "language-removed FR:  > ", "language-added ES:  > " };
    row("declared in one layout only") << two << houses << none << houses << none;
    row("language of labels only") << none << QStringList("EN:House") << none << houses
                                   << QStringList("language-added FR:  > ");
    row("other language") << QStringList("EN") << QStringList("EN:House") << QStringList("FR")
                          << QStringList("FR:Maison")
                          << QStringList{ "language-removed EN:  > ", "language-added FR:  > " };
    row("no language and one") << none << QStringList(":House") << QStringList("EN") << QStringList("EN:House") << none;
    row("no language and two") << none << QStringList(":House") << two << houses
                               << QStringList("language-added FR:  > ");
    row("first language counts twice") << two << QStringList{ "EN:House", "EN:Home", "FR:Maison" } << two << houses
                                       << none;
    row("parts without a language") << none << QStringList{ ":A", ":B" } << none << QStringList{ ":A", ":C" }
                                    << QStringList("dictionary-label #2: B > C");
    row("further part without a language") << none << QStringList{ ":A", ":B" } << none << QStringList(":A") << none;
}

void DiffTest::languagesAreMatchedByCode()
{
    QFETCH(QStringList, languagesBefore);
    QFETCH(QStringList, labelBefore);
    QFETCH(QStringList, languagesAfter);
    QFETCH(QStringList, labelAfter);
    QFETCH(QStringList, changes);
    const auto made = [](const QStringList &languages, const QStringList &parts) {
        Layout layout;
        layout.format = Format::CSProJson;
        for (const QString &code : languages)
            layout.languages.append({ code, QString() });
        for (const QString &part : parts)
            layout.labels.parts.append({ part.section(':', 0, 0), part.section(':', 1) });
        return layout;
    };
    const LayoutDiff diff = compare(made(languagesBefore, labelBefore), made(languagesAfter, labelAfter));
    QCOMPARE(described(diff), changes);
}

void DiffTest::onlyOneLanguageCanBeCompared()
{
    Layout before;
    before.format = Format::CSProText;
    before.languages = { { "EN", "" }, { "FR", "" } };
    before.labels = { { { "EN", "House" }, { "FR", "Maison" } } };
    Layout after = before;
    after.labels = { { { "EN", "Home" }, { "FR", "Foyer" } } };
    DiffOptions options;
    options.language = "fr";
    const LayoutDiff diff = compare(before, after, options);
    QCOMPARE(described(diff), QStringList("dictionary-label FR: Maison > Foyer"));
    QCOMPARE(diff.before.label, QString("Maison"));
    QCOMPARE(diff.after.label, QString("Foyer"));

    // An element that only one layout has is also named in this language.
    const Labels labels = { { { "EN", "Person" }, { "FR", "Personne" } } };
    Layout more = before;
    more.levels = { Level() };
    before.levels = more.levels;
    Record record;
    record.name = "R";
    record.labels = labels;
    record.items = { item("A", 1, 1, QString()) };
    record.items[0].labels = labels;
    more.levels[0].records = { record };
    QCOMPARE(described(compare(before, more, options)),
             (QStringList{ "record-added R:  > Personne", "item-added R/A:  > Personne" }));
    QCOMPARE(described(compare(more, before, options)),
             (QStringList{ "record-removed R: Personne > ", "item-removed R/A: Personne > " }));
    // With all languages, it is named by the text in the first one, even if that is empty.
    more.levels[0].records[0].labels.parts[0].text.clear();
    QCOMPARE(described(compare(before, more)).first(), QString("record-added R:  > "));
}

void DiffTest::typeOfARecordCountsWhereLinesHaveOne()
{
    const Layout before = edited(survey(), [](Layout &l) { l.recordType.reset(); });
    const Layout after = edited(before, [](Layout &l) { person(l).recordType = "7"; });
    QCOMPARE(described(compare(before, after)), QStringList());
}

void DiffTest::codesAreCompared_data()
{
    QTest::addColumn<bool>("isNumeric");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<bool>("areSame");
    const auto row = [](const char *name, bool isNumeric, const QStringList &before, const QStringList &after,
                        bool areSame) { QTest::newRow(name) << isNumeric << before << after << areSame; };
    row("zero before a number", true, { "1" }, { "01" }, true);
    row("zero before a text", false, { "1" }, { "01" }, false);
    row("blanks around a number", true, { " 1 " }, { "1" }, true);
    row("blanks after a text", false, { "A  " }, { "A" }, true);
    row("blanks before a text", false, { " A" }, { "A" }, false);
    row("case of a text", false, { "a" }, { "A" }, false);
    row("zeros after the mark", true, { "1.50" }, { "1.5" }, true);
    row("whole number with decimals", true, { "2.0" }, { "2" }, true);
    row("decimal comma", true, { "1,5" }, { "1.5" }, true);
    row("without a digit at the beginning", true, { ".5" }, { "0.5" }, true);
    row("negative", true, { "-01" }, { "-1" }, true);
    row("plus sign", true, { "+1" }, { "1" }, true);
    row("negative zero", true, { "-0" }, { "0" }, true);
    row("sign matters", true, { "-1" }, { "1" }, false);
    row("all zeros", true, { "00" }, { "0" }, true);
    row("digit in the middle", true, { "10" }, { "1" }, false);
    row("fraction matters", true, { "1.5" }, { "1" }, false);
    row("no number", true, { "1x" }, { "01x" }, false);
    row("extended missing", true, { ".a" }, { ".a" }, true);
    row("range", true, { "01:05" }, { "1:5" }, true);
    row("range of one", true, { "1:1" }, { "1" }, true);
    row("end of a range", true, { "1:5" }, { "1:6" }, false);
    row("range and its codes", true, { "1:2" }, { "1", "2" }, false);
    row("order", true, { "1", "2" }, { "2", "1" }, true);
    row("once more", true, { "1", "1" }, { "1" }, false);
    row("blank and zero", true, { " " }, { "0" }, false);
}

void DiffTest::codesAreCompared()
{
    QFETCH(bool, isNumeric);
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(bool, areSame);
    const auto made = [&](const QStringList &codes) {
        return edited(survey(), [&](Layout &l) {
            sex(l).type = isNumeric ? itemtype::numeric() : itemtype::alpha();
            QVector<Value> &values = sex(l).valueSets[0].values;
            values.clear();
            for (const QString &code : codes)
                values.append(value(code.section(':', 0, 0), "Label", code.section(':', 1)));
        });
    };
    const QStringList kinds = kindsOf(compare(made(before), made(after)));
    QCOMPARE(kinds.isEmpty(), areSame);
    for (const QString &kind : kinds)
        QVERIFY2(kind == "value-added" || kind == "value-removed", qPrintable(kind));
}

void DiffTest::codesOfOneValueAreOneChange()
{
    const auto made = [](const QVector<Value> &values) {
        return edited(survey(), [&](Layout &l) { sex(l).valueSets[0].values = values; });
    };
    Value several = value("1", "Any");
    several.ranges = { { "01", "" }, { "5", "9" }, { "3", "" } };
    Value renamed = several;
    renamed.labels = label("Other");
    QCOMPARE(described(compare(made({ several }), made({ renamed }))),
             QStringList("value-label PERSON/SEX/SEX_VS1/01, 5 to 9, 3: Any > Other"));
    // A value with several codes is the same as several values that each have one of these codes.
    QCOMPARE(
        described(compare(made({ several }), made({ value("3", "Any"), value("1", "Any"), value("5", "Any", "9") }))),
        QStringList());
    // The code of "not applicable" is blank, whatever the file states.
    Value blank = value("   ", "None");
    blank.special = Special::NotApplicable;
    Value plain = value("NOTAPPL", "None");
    plain.special = Special::NotApplicable;
    QCOMPARE(described(compare(made({ blank }), made({ plain }))), QStringList());
    plain.labels = label("No");
    QCOMPARE(described(compare(made({ blank }), made({ plain }))),
             QStringList("value-label PERSON/SEX/SEX_VS1/(blank): None > No"));
}

void DiffTest::valueWithoutCodesIsNoBlank()
{
    const auto made = [](const QVector<Value> &values) {
        return edited(survey(), [&](Layout &l) { sex(l).valueSets[0].values = values; });
    };
    Value without;
    without.labels = label("Nothing");
    const QString set = "PERSON/SEX/SEX_VS1/";
    QCOMPARE(described(compare(made({}), made({ without }))),
             QStringList("value-added " + set + "(no code):  > Nothing"));
    QCOMPARE(
        described(compare(made({ value(" ", "Blank"), value("1", "One") }), made({ value(" ", "Blank"), without }))),
        (QStringList{ "value-removed " + set + "1: One > ", "value-added " + set + "(no code):  > Nothing" }));
    QCOMPARE(described(compare(made({ value(" ", "Nothing") }), made({ without }))),
             (QStringList{ "value-removed " + set + "(blank): Nothing > ",
                           "value-added " + set + "(no code):  > Nothing" }));
    // "Not applicable" is a blank code, even if no code is stated.
    Value blank = value(" ", "Nothing");
    blank.special = without.special = Special::NotApplicable;
    QCOMPARE(described(compare(made({ blank }), made({ without }))), QStringList());
}

void DiffTest::codesAreWrittenAsInTheFile_data()
{
    QTest::addColumn<bool>("isNumeric");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("written");
    QTest::newRow("zeros") << true << "01"
                           << "01";
    QTest::newRow("zeros at the end") << true << "1.50"
                                      << "1.50";
    QTest::newRow("blanks around a number") << true << " 1 "
                                            << "1";
    QTest::newRow("blanks before a text") << false << " A "
                                          << " A";
    QTest::newRow("zeros of a text") << false << "01"
                                     << "01";
    QTest::newRow("blanks") << false << "  "
                            << "(blank)";
}

void DiffTest::codesAreWrittenAsInTheFile()
{
    QFETCH(bool, isNumeric);
    QFETCH(QString, code);
    QFETCH(QString, written);
    const auto made = [&](const QVector<Value> &values) {
        return edited(survey(), [&](Layout &l) {
            sex(l).type = isNumeric ? itemtype::numeric() : itemtype::alpha();
            sex(l).valueSets[0].values = values;
        });
    };
    QCOMPARE(described(compare(made({}), made({ value(code, "Label") }))),
             QStringList("value-added PERSON/SEX/SEX_VS1/" + written + ":  > Label"));
    QCOMPARE(described(compare(made({}), made({ value(code, "Label", "5") }))),
             QStringList("value-added PERSON/SEX/SEX_VS1/" + written + " to 5:  > Label"));
}

void DiffTest::aliasesAreComparedInAnyCaseAndOrder()
{
    const auto made = [](const QStringList &aliases) {
        return edited(survey(), [&](Layout &l) {
            l.aliases = l.levels[0].aliases = person(l).aliases = sex(l).aliases = sex(l).valueSets[0].aliases
                = aliases;
        });
    };
    QCOMPARE(described(compare(made({ "B", "a" }), made({ "A", "b" }))), QStringList());
    QCOMPARE(described(compare(made({ "B", "a" }), made({ "c", "A" }))),
             (QStringList{ "dictionary-aliases : a, B > A, c", "level-aliases : a, B > A, c",
                           "record-aliases PERSON: a, B > A, c", "item-aliases PERSON/SEX: a, B > A, c",
                           "value-set-aliases PERSON/SEX/SEX_VS1: a, B > A, c" }));
}

void DiffTest::movedItemsNameBothPlaces()
{
    const Layout before = edited(survey(), [](Layout &l) {
        l.levels.append(secondLevel());
        l.levels[1].ids = { item("LINE", 5, 2, "Line") };
    });
    const Layout after = edited(before, [](Layout &l) { l.levels[0].ids.append(l.levels[1].ids.takeFirst()); });
    QCOMPARE(described(compare(before, after)), QStringList("item-moved (ids)/LINE: SECOND/(ids) > LEVEL/(ids)"));
    const Layout otherCase = edited(survey(), [](Layout &l) {
        house(l).items.append(person(l).items.takeLast());
        house(l).items.last().name = "income";
    });
    QCOMPARE(described(compare(survey(), otherCase)), QStringList("item-moved PERSON/INCOME: PERSON > HOUSE"));
    const Layout inRecord = edited(before, [](Layout &l) { person(l).items.append(l.levels[1].ids.takeFirst()); });
    QCOMPARE(described(compare(before, inRecord)), QStringList("item-moved (ids)/LINE: (ids) > PERSON"));
}

void DiffTest::lineOfAStatementDoesNotCount()
{
    const auto made = [](const Extra &extra) { return edited(survey(), [&](Layout &l) { l.extras = { extra }; }); };
    const Layout before = made({ "P", "Key", "Value", 1 });
    QVERIFY(compare(before, made({ "P", "Key", "Value", 2 })).notCompared.isEmpty());
    const QVector<Extra> others
        = { { "Q", "Key", "Value", 1 }, { "P", "Other", "Value", 1 }, { "P", "Key", "Other", 1 } };
    for (const Extra &other : others)
        QCOMPARE(notComparedOf(compare(before, made(other))), QStringList("further statements"));
    QCOMPARE(notComparedOf(compare(before, survey())), QStringList("further statements"));
}

void DiffTest::imagesAndColorsAreComparedAsCSProReadsThem_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("areSameImages");
    QTest::addColumn<bool>("areSameColors");
    QTest::newRow("slashes") << "directory\\a.png"
                             << "directory/a.png" << true << false;
    QTest::newRow("this directory") << ".\\a.png"
                                    << "a.png" << true << false;
    QTest::newRow("directory above") << "..\\a.png"
                                     << "a.png" << false << false;
    QTest::newRow("case") << "#FF0000"
                          << "#ff0000" << false << true;
    QTest::newRow("other") << "#ff0000"
                           << "#ff0001" << false << false;
}

void DiffTest::imagesAndColorsAreComparedAsCSProReadsThem()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(bool, areSameImages);
    QFETCH(bool, areSameColors);
    const auto images = [](const QString &text) { return edited(survey(), [&](Layout &l) { male(l).image = text; }); };
    const auto colors
        = [](const QString &text) { return edited(survey(), [&](Layout &l) { male(l).textColor = text; }); };
    QCOMPARE(kindsOf(compare(images(before), images(after))),
             areSameImages ? QStringList() : QStringList("value-image"));
    QCOMPARE(kindsOf(compare(colors(before), colors(after))),
             areSameColors ? QStringList() : QStringList("value-color"));
}

void DiffTest::boundsOfFormatsAreKnown_data()
{
    QTest::addColumn<Layout>("before");
    QTest::addColumn<Layout>("after");
    QTest::addColumn<QStringList>("kinds");
    const QStringList same;
    const auto labelled = [](Format format, int size) {
        return edited(statFile(format), [&](Layout &l) { sex(l).labels = label(QString(size, 'x')); });
    };
    const QStringList other("item-label");
    QTest::newRow("label of XPORT") << labelled(Format::Sas, 100) << labelled(Format::SasXport, 40) << same;
    QTest::newRow("short label of XPORT") << labelled(Format::Sas, 100) << labelled(Format::SasXport, 39) << other;
    QTest::newRow("label of Stata") << labelled(Format::Sas, 100) << labelled(Format::Stata, 40) << other;
    QTest::newRow("label of neither") << labelled(Format::Sas, 100) << labelled(Format::Spss, 80) << other;
    QTest::newRow("label of one format") << labelled(Format::Stata, 100) << labelled(Format::Stata, 80) << other;

    const auto named = [](Format format, const QString &name) {
        return edited(statFile(format), [&](Layout &l) { sex(l).name = name; });
    };
    const QStringList renamed("item-renamed");
    QTest::newRow("case of XPORT") << named(Format::Sas, "sex") << named(Format::SasXport, "SEX") << same;
    QTest::newRow("case of portable") << named(Format::Spss, "sex") << named(Format::SpssPortable, "SEX") << same;
    QTest::newRow("case of SAS and Stata") << named(Format::Sas, "sex") << named(Format::Stata, "SEX") << renamed;

    const auto edit = [](Format format, const Edit &change) { return edited(statFile(format), change); };
    const Edit text = [](Layout &l) { person(l).items[1].length = 0; };
    QTest::newRow("text of any length, one program")
        << statFile(Format::Stata) << edit(Format::Stata, text) << QStringList("item-length");
    QTest::newRow("text of any length, two programs") << statFile(Format::Spss) << edit(Format::Stata, text) << same;
    const Edit measured = [](Layout &l) { sex(l).measure = Measure::Scale; };
    QTest::newRow("measure of portable") << edit(Format::Spss, measured) << statFile(Format::SpssPortable) << same;
    const Edit aligned = [](Layout &l) { sex(l).alignment = Alignment::Left; };
    QTest::newRow("alignment of portable") << edit(Format::Spss, aligned) << statFile(Format::SpssPortable) << same;
    const Edit stored = [](Layout &l) { sex(l).storage = Storage::Float; };
    QTest::newRow("storage of XPORT") << statFile(Format::Sas) << edit(Format::SasXport, stored)
                                      << QStringList("item-storage");

    const Layout dictionary = edited(survey(), [](Layout &l) {
        person(l).items = { sex(l), item("PAID", 6, 8, "Paid") };
        person(l).items[1].decimals = 2;
        l.levels[0].ids.clear();
        l.levels[0].records.removeLast();
    });
    const auto withPaid = [](Format format, const QString &display, const QString &missing) {
        return edited(statFile(format), [&](Layout &l) {
            l.labels = label("Survey");
            person(l).items[1] = item("PAID", 0, 8, "Paid");
            person(l).items[1].format = display;
            sex(l).valueSets[0].values.append(value(missing, "Refused"));
        });
    };
    QTest::newRow("decimals of a date") << dictionary << withPaid(Format::Stata, "%td", ".a") << same;
    QTest::newRow("decimals of a number")
        << dictionary << withPaid(Format::Stata, "%8.0f", ".a") << QStringList("item-decimals");
    const Layout coded = edited(dictionary, [](Layout &l) {
        person(l).items[1].name = "EARNED";
        person(l).items[1].valueSets = { valueSet("EARNED_VS1", { value("0", "Nothing") }) };
    });
    QTest::newRow("renamed, values of one only")
        << coded << withPaid(Format::Stata, "%td", ".a") << QStringList{ "item-renamed", "value-set-removed" };
    const auto followed = [](const QString &name) {
        return edited(statFile(Format::Stata), [&](Layout &l) {
            sex(l).name = name;
            sex(l).valueSets[0].name = name + "_labels";
        });
    };
    QTest::newRow("value set follows the name") << followed("sex") << followed("gender") << renamed;
    Layout withoutCodes = dictionary;
    sex(withoutCodes).valueSets[0].values.append(Value());
    QTest::newRow("value without codes") << withoutCodes << withPaid(Format::Stata, "%td", ".a") << same;
    QTest::newRow("code of a dictionary")
        << dictionary << withPaid(Format::Stata, "%td", "9") << QStringList("value-added");
}

void DiffTest::boundsOfFormatsAreKnown()
{
    QFETCH(Layout, before);
    QFETCH(Layout, after);
    QFETCH(QStringList, kinds);
    QCOMPARE(kindsOf(compare(before, after)), kinds);
}

void DiffTest::factsOfTwoProgramsAreThoseOfTheData()
{
    const Layout before = edited(statFile(Format::Spss), [](Layout &l) {
        l.encoding = "windows-1252";
        l.rows = 5;
    });
    const QStringList all = notComparedOf(compare(before, statFile(Format::Stata)));
    QVERIFY(all.contains("number of rows"));
    QVERIFY(!all.contains("encoding"));
}

void DiffTest::recordIsFoundUnderAnotherNameOnce()
{
    const auto made = [](const QStringList &names) {
        Layout layout = survey();
        const Record record = house(layout);
        layout.levels[0].records.clear();
        for (const QString &name : names) {
            layout.levels[0].records.append(record);
            layout.levels[0].records.last().name = name;
        }
        return layout;
    };
    QCOMPARE(described(compare(made({ "A", "B" }), made({ "C" }))),
             (QStringList{ "record-renamed A: A > C", "record-removed B: House > ", "item-removed B/ROOF: Roof > ",
                           "item-removed B/ROOMS: Rooms > " }));
}

void DiffTest::valueSetsAreMatchedByNameThenByContent_data()
{
    QTest::addColumn<QVector<ValueSet>>("before");
    QTest::addColumn<QVector<ValueSet>>("after");
    QTest::addColumn<QStringList>("kinds");
    const ValueSet yesNo = valueSet("A", { value("1", "Yes"), value("2", "No") });
    const ValueSet ages = valueSet("B", { value("0", "Child", "14"), value("15", "Adult", "99") });
    const auto named = [](ValueSet set, const QString &name) {
        set.name = name;
        return set;
    };
    using Sets = QVector<ValueSet>;
    QTest::newRow("order") << Sets{ yesNo, ages } << Sets{ ages, yesNo } << QStringList();
    QTest::newRow("names changed places")
        << Sets{ yesNo, ages } << Sets{ named(yesNo, "B"), named(ages, "A") }
        << QStringList{ "value-removed", "value-removed", "value-added", "value-added",
                        "value-removed", "value-removed", "value-added", "value-added" };
    QTest::newRow("renamed, same content")
        << Sets{ yesNo, ages } << Sets{ named(ages, "X"), yesNo } << QStringList("value-set-renamed");
    QTest::newRow("renamed, same codes") << Sets{ yesNo, ages }
                                         << Sets{ valueSet("X", { value("01", "Ja"), value("2", "Nein") }), ages }
                                         << QStringList{ "value-set-renamed", "value-label", "value-label" };
    QTest::newRow("only set, some codes")
        << Sets{ yesNo } << Sets{ valueSet("X", { value("1", "Yes"), value("3", "Maybe") }) }
        << QStringList{ "value-set-renamed", "value-removed", "value-added" };
    QTest::newRow("only set, no code in common")
        << Sets{ yesNo } << Sets{ named(ages, "X") } << QStringList{ "value-set-removed", "value-set-added" };
    QTest::newRow("empty sets are not alike") << Sets{ valueSet("A", {}) } << Sets{ valueSet("X", {}) }
                                              << QStringList{ "value-set-removed", "value-set-added" };
    QTest::newRow("one name twice") << Sets{ named(yesNo, "A"), named(ages, "A") } << Sets{ named(yesNo, "A") }
                                    << QStringList("value-set-removed");
}

void DiffTest::valueSetsAreMatchedByNameThenByContent()
{
    QFETCH(QVector<ValueSet>, before);
    QFETCH(QVector<ValueSet>, after);
    QFETCH(QStringList, kinds);
    const auto made
        = [](const QVector<ValueSet> &sets) { return edited(survey(), [&](Layout &l) { sex(l).valueSets = sets; }); };
    QCOMPARE(kindsOf(compare(made(before), made(after))), kinds);
}

void DiffTest::itemsAreFoundUnderAnotherName_data()
{
    QTest::addColumn<QVector<Item>>("before");
    QTest::addColumn<QVector<Item>>("after");
    QTest::addColumn<QStringList>("changes");
    using Items = QVector<Item>;
    const auto coded = [](Item ofItem, const QString &second) {
        ofItem.valueSets = { valueSet(ofItem.name + "_VS1", { value("1", "Yes"), value("2", second) }) };
        return ofItem;
    };
    const auto gone
        = [](const QString &one, const QString &textOfOne, const QString &other, const QString &textOfOther) {
              return QStringList{ "item-removed PERSON/" + one + ": " + textOfOne + " > ",
                                  "item-added PERSON/" + other + ":  > " + textOfOther };
          };
    const QString renamed = "item-renamed PERSON/A: A > B";
    QTest::newRow("columns and label") << Items{ item("A", 5, 2, "Age") } << Items{ item("B", 5, 2, "Age") }
                                       << QStringList(renamed);
    QTest::newRow("columns, no label") << Items{ item("A", 5, 2, "") } << Items{ item("B", 5, 2, "") }
                                       << QStringList(renamed);
    QTest::newRow("columns, other label")
        << Items{ item("A", 5, 2, "Age") } << Items{ item("B", 5, 2, "Sex") } << gone("A", "Age", "B", "Sex");
    QTest::newRow("columns, other values") << Items{ coded(item("A", 5, 1, ""), "No") }
                                           << Items{ coded(item("B", 5, 1, ""), "Never") } << gone("A", "", "B", "");
    QTest::newRow("width only") << Items{ item("A", 5, 2, "") } << Items{ item("B", 7, 2, "") }
                                << gone("A", "", "B", "");
    QTest::newRow("label at other columns") << Items{ item("A", 5, 2, "Age") } << Items{ item("B", 7, 2, "Age") }
                                            << QStringList{ renamed, "item-start PERSON/A: 5 > 7" };
    QTest::newRow("label at the start, wider") << Items{ item("A", 5, 2, "Age") } << Items{ item("B", 5, 3, "Age") }
                                               << QStringList{ renamed, "item-length PERSON/A: 2 > 3" };
    QTest::newRow("label, other columns and width")
        << Items{ item("A", 5, 2, "Age") } << Items{ item("B", 8, 3, "Age") } << gone("A", "Age", "B", "Age");
    QTest::newRow("columns and values, label with more words")
        << Items{ coded(item("A", 5, 1, "Owner"), "No") } << Items{ coded(item("B", 5, 1, "Owner of the house"), "No") }
        << QStringList{ renamed, "item-label PERSON/A: Owner > Owner of the house" };
    QTest::newRow("columns and values, most words")
        << Items{ item("A", 5, 1, "Age in years") } << Items{ item("B", 5, 1, "Years of age in 2031") }
        << QStringList{ renamed, "item-label PERSON/A: Age in years > Years of age in 2031" };
    QTest::newRow("columns and values, few words")
        << Items{ item("A", 5, 1, "Age at birth of child") } << Items{ item("B", 5, 1, "Place of work") }
        << gone("A", "Age at birth of child", "B", "Place of work");
    QTest::newRow("label with more words, other codes")
        << Items{ coded(item("A", 5, 1, "Owner"), "No") } << Items{ item("B", 5, 1, "Owner of it") }
        << gone("A", "Owner", "B", "Owner of it");
    QTest::newRow("label with more words, same codes")
        << Items{ coded(item("A", 5, 1, "Owner"), "No") } << Items{ coded(item("B", 5, 1, "Owner of it"), "Never") }
        << QStringList{ renamed, "item-label PERSON/A: Owner > Owner of it",
                        "value-label PERSON/A/A_VS1/2: No > Never" };
    QTest::newRow("other type") << Items{ item("A", 5, 2, "Age") } << Items{ alpha("B", 5, 2, "Age") }
                                << gone("A", "Age", "B", "Age");
    QTest::newRow("label that two have") << Items{ item("A", 5, 2, "Age") }
                                         << Items{ item("B", 7, 2, "Age"), item("C", 9, 2, "Age") }
                                         << gone("A", "Age", "B", "Age") + QStringList("item-added PERSON/C:  > Age");
    QTest::newRow("label that two have, columns decide")
        << Items{ item("A", 5, 2, "Age") } << Items{ item("C", 9, 2, "Age"), item("B", 5, 2, "Age") }
        << QStringList{ renamed, "item-added PERSON/C:  > Age" };
    QTest::newRow("name comes first") << Items{ item("A", 5, 2, "Age"), item("B", 7, 2, "Sex") }
                                      << Items{ item("B", 5, 2, "Age"), item("A", 7, 2, "Sex") }
                                      << QStringList{ "item-label PERSON/A: Age > Sex", "item-start PERSON/A: 5 > 7",
                                                      "item-label PERSON/B: Sex > Age", "item-start PERSON/B: 7 > 5" };
    QTest::newRow("value set follows the name")
        << Items{ coded(item("A", 5, 1, "Owner"), "No") } << Items{ coded(item("B", 5, 1, "Owner"), "No") }
        << QStringList(renamed);
    Item otherCase = coded(item("B", 5, 1, "Owner"), "No");
    otherCase.valueSets[0].name = "b_vs1";
    QTest::newRow("value set follows the name in another case")
        << Items{ coded(item("A", 5, 1, "Owner"), "No") } << Items{ otherCase } << QStringList(renamed);
    QTest::newRow("renamed and changed") << Items{ coded(item("A", 5, 1, "Owner"), "No") }
                                         << Items{ coded(item("B", 5, 1, "Owner"), "Never") }
                                         << QStringList{ renamed, "value-label PERSON/A/A_VS1/2: No > Never" };
}

void DiffTest::itemsAreFoundUnderAnotherName()
{
    QFETCH(QVector<Item>, before);
    QFETCH(QVector<Item>, after);
    QFETCH(QStringList, changes);
    const auto made = [](const QVector<Item> &items) {
        return edited(survey(), [&](Layout &l) {
            person(l).items = items;
            person(l).items.append(item("STAYS", 40, 5, "Stays"));
        });
    };
    const LayoutDiff diff = compare(made(before), made(after));
    QCOMPARE(described(diff), changes);
    for (const Change &change : diff.changes) {
        const bool isOfRenamed = changes.contains("item-renamed PERSON/A: A > B") && change.item == "A";
        QCOMPARE(change.otherName, isOfRenamed ? QString("B") : QString());
    }
}

void DiffTest::recordsAreFoundUnderAnotherName_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QStringList>("kinds");
    QTest::newRow("same items") << Edit([](Layout &l) {
        person(l).name = "MEMBER";
        person(l).labels = label("Member");
        person(l).recordType = "7";
    }) << QStringList{ "record-renamed", "record-label", "record-type" };
    QTest::newRow("half of the items") << Edit([](Layout &l) {
        person(l).name = "MEMBER";
        person(l).labels = label("Member");
        person(l).items.removeLast();
        person(l).items.removeLast();
    }) << QStringList{ "record-renamed", "record-label", "item-removed", "item-removed" };
    QTest::newRow("fewer items") << Edit([](Layout &l) {
        person(l).name = "MEMBER";
        person(l).labels = label("Member");
        person(l).items = person(l).items.mid(0, 1);
    }) << QStringList{ "record-removed", "item-moved", "item-removed", "item-removed", "item-removed", "record-added" };
    QTest::newRow("type and label") << Edit([](Layout &l) {
        house(l).name = "DWELLING";
        house(l).items = { alpha("D1", 5, 2, "Roof"), item("D2", 7, 2, "Rooms") };
    }) << QStringList{ "record-renamed", "item-renamed", "item-renamed" };
    QTest::newRow("label only") << Edit([](Layout &l) {
        house(l).name = "DWELLING";
        house(l).recordType = "9";
        house(l).items = { alpha("D1", 5, 2, "Roof") };
    }) << QStringList{ "record-removed", "item-removed", "item-removed", "record-added", "item-added" };
    QTest::newRow("type only") << Edit([](Layout &l) {
        house(l).name = "DWELLING";
        house(l).labels = label("Dwelling");
        house(l).items = { alpha("D1", 5, 2, "Roof") };
    }) << QStringList{ "record-removed", "item-removed", "item-removed", "record-added", "item-added" };
}

void DiffTest::recordsAreFoundUnderAnotherName()
{
    QFETCH(Edit, edit);
    QFETCH(QStringList, kinds);
    QCOMPARE(kindsOf(compare(survey(), edited(survey(), edit))), kinds);
}

void DiffTest::namesThatRepeatGoByTheirOrder()
{
    const auto made = [](const QStringList &labels) {
        return edited(survey(), [&](Layout &l) {
            house(l).items.clear();
            for (const QString &text : labels)
                house(l).items.append(item("X", 5, 1, text));
        });
    };
    QCOMPARE(described(compare(made({ "a", "b", "c" }), made({ "a", "z" }))),
             (QStringList{ "item-label HOUSE/X: b > z", "item-removed HOUSE/X: c > " }));
    QCOMPARE(described(compare(made({ "a", "z" }), made({ "a", "b", "c" }))),
             (QStringList{ "item-label HOUSE/X: z > b", "item-added HOUSE/X:  > c" }));
}

void DiffTest::subitemsFollowARenamedItem()
{
    const Layout renamed = edited(survey(), [](Layout &l) {
        person(l).items[1].name = "BORN";
        person(l).items[2].subitemOf = "BORN";
    });
    QCOMPARE(described(compare(survey(), renamed)), QStringList("item-renamed PERSON/BIRTH: BIRTH > BORN"));
    const Layout other = edited(survey(), [](Layout &l) {
        std::swap(person(l).items[2], person(l).items[3]);
        person(l).items[3].subitemOf = "INCOME";
    });
    QCOMPARE(described(compare(survey(), other)), QStringList("item-parent PERSON/MONTH: BIRTH > INCOME"));
    const Layout alone = edited(survey(), [](Layout &l) { house(l).items[0].isSubitem = true; });
    QCOMPARE(described(compare(survey(), alone)), QStringList("item-parent HOUSE/ROOF:  > (no item)"));
}

void DiffTest::addedRecordHasItsItemsListed()
{
    const Layout without = edited(survey(), [](Layout &l) { l.levels[0].records.removeLast(); });
    QCOMPARE(described(compare(without, survey())),
             (QStringList{ "record-added HOUSE:  > House", "item-added HOUSE/ROOF:  > Roof",
                           "item-added HOUSE/ROOMS:  > Rooms" }));
    QCOMPARE(described(compare(survey(), without)),
             (QStringList{ "record-removed HOUSE: House > ", "item-removed HOUSE/ROOF: Roof > ",
                           "item-removed HOUSE/ROOMS: Rooms > " }));
}

void DiffTest::changesOfARecordAreNeighbours()
{
    const Layout after = edited(survey(), [](Layout &l) {
        l.name = "OTHER";
        l.levels[0].ids[0].length = 4;
        sex(l).labels = label("Gender");
        male(l).labels = label("Man");
        person(l).items.append(item("AGE", 18, 2, "Age"));
        house(l).maximum = 3;
    });
    const LayoutDiff diff = compare(survey(), after);
    QCOMPARE(described(diff),
             (QStringList{ "dictionary-name : SURVEY > OTHER", "item-length (ids)/ID: 3 > 4",
                           "item-label PERSON/SEX: Sex > Gender", "value-label PERSON/SEX/SEX_VS1/1: Male > Man",
                           "item-added PERSON/AGE:  > Age", "record-maximum HOUSE: 9 > 3" }));
    for (const Change &change : diff.changes)
        QCOMPARE(change.level, change.record.isEmpty() ? QString() : QString("LEVEL"));
    QCOMPARE(diff.before.items, 7);
    QCOMPARE(diff.after.items, 8);
    QCOMPARE(diff.before.name, QString("SURVEY"));
    QCOMPARE(diff.after.name, QString("OTHER"));
    QCOMPARE(diff.counts().size(), 6);
}

void DiffTest::kindsAreSelected()
{
    const Layout after = edited(survey(), [](Layout &l) {
        sex(l).labels = label("Gender");
        sex(l).start = 4;
        male(l).labels = label("Man");
    });
    const auto kinds = [&](const QVector<DiffKind> &only, const QVector<DiffKind> &ignored) {
        return kindsOf(compare(survey(), after, { QString(), only, ignored }));
    };
    QCOMPARE(kinds({}, {}), (QStringList{ "item-label", "item-start", "value-label" }));
    QCOMPARE(kinds({ DiffKind::ItemStart, DiffKind::ValueLabel }, {}), (QStringList{ "item-start", "value-label" }));
    QCOMPARE(kinds({}, { DiffKind::ItemStart }), (QStringList{ "item-label", "value-label" }));
    QCOMPARE(kinds({ DiffKind::ItemStart }, { DiffKind::ItemStart }), QStringList());
}

void DiffTest::formatsAreComparedInWhatBothHold_data()
{
    QTest::addColumn<Edit>("editSpss");
    QTest::addColumn<Edit>("editStata");
    QTest::addColumn<QStringList>("changes");
    const Edit none = [](Layout &) {};
    const QStringList same;
    const auto row = [](const char *name, const Edit &spss, const Edit &stata, const QStringList &changes) {
        QTest::newRow(name) << spss << stata << changes;
    };
    row("same data", none, none, same);
    row("label", none, [](Layout &l) { sex(l).labels = label("Gender"); }, { "item-label SEX: Sex > Gender" });
    row("label of the file", [](Layout &l) { l.labels = label("Data"); }, none, { "dictionary-label : Data > " });
    row(
        "white space of a label", [](Layout &l) { sex(l).labels = label(" Sex "); }, none, same);
    row("name in another case", none, [](Layout &l) { sex(l).name = "sex"; }, { "item-renamed SEX: SEX > sex" });
    row("other name, same texts", none, [](Layout &l) { sex(l).name = "gender"; },
        { "item-renamed SEX: SEX > gender" });
    row("type", none, [](Layout &l) { sex(l).type = itemtype::alpha(); }, { "item-type SEX: numeric > alpha" });
    row("length of a text", none, [](Layout &l) { person(l).items[1].length = 20; }, { "item-length NAME: 12 > 20" });
    row(
        "text of any length", none, [](Layout &l) { person(l).items[1].length = 0; }, same);
    row(
        "length of a number", none, [](Layout &l) { sex(l).length = 9; }, same);
    row("decimals", none, [](Layout &l) { sex(l).format = "%8.2f"; }, { "item-format SEX: 8.0 > 8.2" });
    row(
        "same decimals", [](Layout &l) { sex(l).format = "F8.2"; }, [](Layout &l) { sex(l).format = "%8.2f"; }, same);
    row(
        "general format", none, [](Layout &l) { sex(l).format = "%9.0g"; }, same);
    row(
        "measure of one", [](Layout &l) { sex(l).measure = Measure::Nominal; }, none, same);
    row(
        "measures", [](Layout &l) { sex(l).measure = Measure::Nominal; },
        [](Layout &l) { sex(l).measure = Measure::Scale; }, { "item-measure SEX: nominal > scale" });
    row(
        "display width", none, [](Layout &l) { sex(l).displayWidth = 5; }, same);
    row(
        "missing values",
        [](Layout &l) {
            sex(l).missing = { { "9", "" } };
        },
        none, same);
    row("value label", none, [](Layout &l) { male(l).labels = label("Man"); },
        { "value-label SEX/labels0/1: Male > Man" });
    row("value", none, [](Layout &l) { sex(l).valueSets[0].values.removeLast(); },
        { "value-removed SEX/labels0/2: Female > " });
    row(
        "extended missing", none, [](Layout &l) { sex(l).valueSets[0].values.append(value(".a", "Refused")); }, same);
    row(
        "code that is no whole number", [](Layout &l) { sex(l).valueSets[0].values.append(value("1.5", "Half")); },
        none, same);
    row(
        "values of a text",
        [](Layout &l) { person(l).items[1].valueSets = { valueSet("labels1", { value("A", "a") }) }; }, none, same);
    row("further variable", none, [](Layout &l) { person(l).items.append(item("MORE", 0, 8, "More")); },
        { "item-added MORE:  > More" });
    row(
        "label that is cut", [](Layout &l) { sex(l).labels = label(QString(100, 'x')); },
        [](Layout &l) { sex(l).labels = label(QString(80, 'x')); }, same);
    row(
        "label that is shorter", [](Layout &l) { sex(l).labels = label(QString(79, 'x')); },
        [](Layout &l) { sex(l).labels = label(QString(78, 'x')); },
        { "item-label SEX: " + QString(79, 'x') + " > " + QString(78, 'x') });
    row(
        "weight", [](Layout &l) { l.weight = "W"; }, none, same);
    row(
        "note", [](Layout &l) { l.note = "Note"; }, none, same);
}

void DiffTest::formatsAreComparedInWhatBothHold()
{
    QFETCH(Edit, editSpss);
    QFETCH(Edit, editStata);
    QFETCH(QStringList, changes);
    const LayoutDiff diff
        = compare(edited(statFile(Format::Spss), editSpss), edited(statFile(Format::Stata), editStata));
    QCOMPARE(described(diff), changes);
    QCOMPARE(notComparedOf(diff),
             (QStringList{ "storage", "user-missing values", "alignment", "display width",
                           "formats other than fixed numbers", "names of value sets",
                           "labels of codes that one cannot hold", "notes", "weight variable" }));
}

void DiffTest::dictionaryIsComparedWithAStatisticalFile()
{
    // All records are one list, and columns, ranges and special values are not compared.
    const Layout dictionary = edited(survey(), [](Layout &l) {
        l.languages = { { "EN", "English" }, { "FR", "French" } };
        sex(l).labels = { { { "EN", "Sex" }, { "FR", "Sexe" } } };
        sex(l).valueSets.append(valueSet("SECOND", { value("5", "Five") }));
        Item photo = item("PHOTO", 20, 1, "Photo");
        photo.type = "image";
        person(l).items.append(photo);
    });
    Layout file = statFile(Format::Spss);
    file.labels = label("Survey");
    person(file).items = { sex(file),
                           item("ID", 0, 3, "Number"),
                           item("BIRTH", 0, 6, "Birth date"),
                           item("MONTH", 0, 2, "Month"),
                           item("INCOME", 0, 9, "Income"),
                           alpha("roof", 0, 2, "Roof"),
                           item("ROOMS", 0, 2, "Rooms") };
    person(file).items[3].valueSets = { valueSet("labels1", { value("99", "Unknown") }) };
    person(file).items[4].format = "F9.2";
    person(file).items[4].decimals = 2;
    const LayoutDiff diff = compare(dictionary, file);
    QCOMPARE(described(diff), QStringList());
    QCOMPARE(notComparedOf(diff),
             (QStringList{ "levels", "records", "columns", "occurrences", "ranges of codes", "special values",
                           "value sets after the first", "languages after the first", "notes", "aliases", "capture",
                           "relations", "storage", "user-missing values", "weight variable" }));
    QCOMPARE(described(compare(file, dictionary)), QStringList());

    // A repeating item is compared with its first occurrence; the other occurrences in the file are not added
    // variables.
    const Layout repeating = edited(dictionary, [](Layout &l) {
        house(l).items[1].occurrences = 3;
        person(l).items[1].occurrences = 2;
    });
    Layout expanded = file;
    QVector<Item> &items = person(expanded).items;
    items[6].name = "ROOMS_1";
    items[3].name = "MONTH_1";
    items[2].name = "BIRTH_1";
    items.append(item("rooms_2", 0, 2, "Rooms"));
    items.append(item("MONTH_2", 0, 2, "Month"));
    QCOMPARE(described(compare(repeating, expanded)), QStringList());
    QCOMPARE(described(compare(expanded, repeating)), QStringList());
    items.append(item("ROOMS_4", 0, 2, "Rooms"));
    QCOMPARE(described(compare(repeating, expanded)), QStringList("item-added ROOMS_4:  > Rooms"));

    person(file).items[4].format = "F9.1";
    person(file).items[4].decimals = 1;
    person(file).items.removeLast();
    QCOMPARE(described(compare(dictionary, file)),
             (QStringList{ "item-decimals INCOME: 2 > 1", "item-removed ROOMS: Rooms > " }));
}

void DiffTest::formatsOfNumbersAreWidthAndDecimals_data()
{
    QTest::addColumn<QString>("spss");
    QTest::addColumn<QString>("stata");
    QTest::addColumn<bool>("isDifferent");
    QTest::newRow("width") << "F8.2"
                           << "%9.2f" << true;
    QTest::newRow("same") << "f8.2"
                          << "%8.2f" << false;
    QTest::newRow("commas") << "COMMA8.2"
                            << "%8.2fc" << false;
    QTest::newRow("decimal comma") << "DOT8.2"
                                   << "%8,2f" << false;
    QTest::newRow("left, zeros") << "F8"
                                 << "%-08.0f" << false;
    QTest::newRow("date") << "DATE11"
                          << "%td" << false;
    QTest::newRow("exponent") << "E8.2"
                              << "%9.3e" << false;
}

void DiffTest::formatsOfNumbersAreWidthAndDecimals()
{
    QFETCH(QString, spss);
    QFETCH(QString, stata);
    QFETCH(bool, isDifferent);
    const LayoutDiff diff = compare(edited(statFile(Format::Spss), [&](Layout &l) { sex(l).format = spss; }),
                                    edited(statFile(Format::Stata), [&](Layout &l) { sex(l).format = stata; }));
    QCOMPARE(kindsOf(diff), isDifferent ? QStringList("item-format") : QStringList());
}

void DiffTest::emptyLayoutsCanBeCompared()
{
    QVERIFY(compare(Layout(), Layout()).isEmpty());
    QVERIFY(!compare(Layout(), survey()).isEmpty());
    QVERIFY(!compare(survey(), Layout()).isEmpty());
    Layout dictionary;
    dictionary.format = Format::CSProJson;
    QCOMPARE(compare(dictionary, survey()).counts().size(), compare(survey(), dictionary).counts().size());
}

// The levels, records, columns and codes of a DDI document are compared with those of its dictionary.
void DiffTest::ddiDocumentIsComparedAsADictionary()
{
    const QString directory = QStringLiteral(VAN_TEST_DATA);
    const Layout dictionary = readLayout(directory + "/ddi/trips.dcf");
    Layout document = readLayout(directory + "/layout/ddi-own.xml");
    QCOMPARE(document.format, Format::Ddi);
    QCOMPARE(described(compare(dictionary, document)), QStringList());
    QCOMPARE(described(compare(document, dictionary)), QStringList());
    QVERIFY(notComparedOf(compare(dictionary, document)).contains("capture"));
    Layout changed = document;
    Item &item = changed.levels[0].records[0].items[0];
    item.start += 1;
    item.missing = { { "9", QString() } };
    item.capture = Capture{ "date", "YYYY" };
    QCOMPARE(kindsOf(compare(dictionary, changed)), QStringList({ "item-start" }));
    QCOMPARE(kindsOf(compare(document, changed)), QStringList({ "item-start", "item-capture", "item-missing" }));
    Layout silent = document;
    silent.levels[0].records[0].required = false;
    silent.levels[0].records[0].maximum = 0;
    for (const LayoutDiff &diff : { compare(dictionary, silent), compare(silent, dictionary) }) {
        QCOMPARE(kindsOf(diff), QStringList());
        QVERIFY(notComparedOf(diff).contains("number of records in a case"));
    }
    QVERIFY(!notComparedOf(compare(dictionary, document)).contains("number of records in a case"));
}

void DiffTest::bothFormsHaveNoDifference_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("json");
    const QString examples = QStringLiteral(VAN_EXAMPLES);
    QTest::newRow("census") << examples + "/census.dcf" << examples + "/census8.dcf";
    const QDir directory(QStringLiteral(VAN_TEST_DATA "/layout"));
    const QString suffix = QStringLiteral(".json8.dcf");
    const QStringList names = directory.entryList({ '*' + suffix });
    QVERIFY(names.size() >= 20);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << directory.filePath(name.chopped(suffix.size()) + ".dcf")
                                        << directory.filePath(name);
}

void DiffTest::bothFormsHaveNoDifference()
{
    QFETCH(QString, text);
    QFETCH(QString, json);
    const Layout one = readLayout(text);
    const Layout other = readLayout(json);
    QCOMPARE(one.format, Format::CSProText);
    QCOMPARE(other.format, Format::CSProJson);
    QCOMPARE(described(compare(one, other)), QStringList());
    QCOMPARE(described(compare(other, one)), QStringList());
}

void DiffTest::realFormsHaveNoDifference()
{
    if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
        QSKIP("the corpus is not available");
    int twins = 0;
    for (const QString &text : corpusFiles("cspro-text")) {
        const QString json = QString(text).replace("/cspro-text/", "/cspro-json/");
        if (!QFile::exists(json))
            continue;
        QCOMPARE(described(compare(readLayout(text), readLayout(json))), QStringList());
        ++twins;
    }
    QVERIFY(twins >= 7);
}

void DiffTest::realFilesAreTheSameAsThemselves()
{
    if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
        QSKIP("the corpus is not available");
    int compared = 0;
    for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" }) {
        for (const QString &file : corpusFiles(kind)) {
            const LayoutDiff diff = compare(readLayout(file), readLayout(file));
            QVERIFY2(diff.isEmpty() && diff.notCompared.isEmpty(), qPrintable(file));
            ++compared;
        }
    }
    QVERIFY(compared > 0);
}

void DiffTest::plainAndCompressedSpssFilesAreTheSame()
{
    QCOMPARE(described(compare(readLayout(madeData("types.sav")), readLayout(madeData("types.zsav")))), QStringList());
}

void DiffTest::madeSurveysAreComparedInEachFormat_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QStringList>("changes");
    const QStringList longTexts = { "item-removed REMARK: A very long text > ", "item-removed WORD: A long text > " };
    QTest::newRow("SPSS and Stata") << "survey.sav"
                                    << "survey.dta" << longTexts;
    QTest::newRow("SPSS and portable") << "survey.sav"
                                       << "survey.por" << longTexts;
    QTest::newRow("Stata and portable") << "survey.dta"
                                        << "survey.por" << QStringList();
    QTest::newRow("Stata and SAS") << "survey.dta"
                                   << "survey.sas7bdat" << QStringList();
    QTest::newRow("SAS and its transport form") << "survey.sas7bdat"
                                                << "survey-8.xpt" << QStringList();
    QTest::newRow("versions of the transport form") << "survey-5.xpt"
                                                    << "survey-8.xpt" << QStringList();
}

void DiffTest::madeSurveysAreComparedInEachFormat()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QStringList, changes);
    const Layout one = readLayout(madeData(qPrintable(before)));
    const Layout other = readLayout(madeData(qPrintable(after)));
    QVERIFY(one.isRead() && other.isRead());
    const LayoutDiff diff = compare(one, other);
    QCOMPARE(described(diff), changes);
    const bool isSas = one.format == Format::Sas || other.format == Format::Sas || one.format == Format::SasXport;
    QCOMPARE(notComparedOf(diff).contains("value labels"), isSas);
}

// A small file can have a label set that all items share, so it differs in each of them.
void DiffTest::sharedSetsAreBounded()
{
    constexpr int items = 1100;
    constexpr int codes = 1000;
    const auto made = [](const QString &text) {
        QVector<Value> values;
        for (int i = 0; i < codes; ++i)
            values.append(value(QString::number(i), text));
        Layout layout = statFile(Format::Stata);
        for (int i = 0; i < items; ++i) {
            person(layout).items.append(item("V" + QString::number(i), 0, 8, "Variable"));
            person(layout).items.last().valueSets = { valueSet("set", values) };
        }
        return layout;
    };
    const LayoutDiff diff = compare(made("before"), made("after"));
    QCOMPARE(diff.changes.size(), 1000000);
    QCOMPARE(notComparedOf(diff), QStringList("further differences"));
    QVERIFY(diff.notCompared.at(0).why.contains("1000000"));
}

void DiffTest::sharedSetAgainstManyOthersIsBounded()
{
    constexpr int items = 3000;
    constexpr int codes = 3000;
    QVector<Value> all;
    for (int i = 0; i < codes; ++i)
        all.append(value(QString::number(i), "Label"));
    Layout before = statFile(Format::Stata);
    Layout after = before;
    for (int i = 0; i < items; ++i) {
        person(before).items.append(item("V" + QString::number(i), 0, 8, "Variable"));
        person(after).items.append(person(before).items.last());
        person(before).items.last().valueSets = { valueSet("set", all) };
        person(after).items.last().valueSets = { valueSet("set", { value("0", "Label") }) };
    }
    const LayoutDiff diff = compare(before, after);
    QCOMPARE(diff.changes.size(), 1000000);
    QCOMPARE(notComparedOf(diff), QStringList("further differences"));
    // Values are not visited if no kind of change of values is kept.
    DiffOptions options;
    options.only = { DiffKind::ItemLabel };
    const TimeRatio ratio([&] { QVERIFY(compare(before, after, options).isEmpty()); },
                          [&] { QVERIFY(compare(after, after, options).isEmpty()); });
    QVERIFY2(ratio.isAtMost(4), ratio.inWords().c_str());
}

namespace
{

// All items are renamed and in another order, so that all rules are applied to them.
Layout withItemsNamed(const QStringList &names, const QString &prefix, const QString &labelPrefix)
{
    Layout layout = survey();
    QVector<Item> items;
    for (const QString &name : names) {
        Item ofName = item(prefix + name, 0, 1, labelPrefix + name);
        ofName.valueSets = { valueSet(name, { value("1", name), value("2", "No") }) };
        items.append(ofName);
    }
    person(layout).items = items;
    return layout;
}

QStringList reversed(QStringList names)
{
    std::reverse(names.begin(), names.end());
    return names;
}

} // namespace

void DiffTest::craftedNamesTakeNoLonger()
{
    constexpr int count = 10000;
    LayoutDiff diff;
    const auto run = [&](bool collide) {
        const QStringList names = crafted::names(count, collide);
        return [&diff, before = withItemsNamed(names, QString(), QString()),
                after = withItemsNamed(reversed(names), "X", QString())] { diff = compare(before, after); };
    };
    const TimeRatio ratio(run(true), run(false));
    QCOMPARE(diff.counts().size(), 1);
    QCOMPARE(diff.counts().at(0).kind, DiffKind::ItemRenamed);
    QCOMPARE(diff.counts().at(0).count, count);
    QVERIFY2(ratio.isAtMost(2), ratio.inWords().c_str());
}

void DiffTest::timeGrowsWithTheSize_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("label");
    QTest::newRow("same names") << ""
                                << "";
    QTest::newRow("renamed") << "X"
                             << "";
    QTest::newRow("no partner at all") << "X"
                                       << "Other ";
}

void DiffTest::timeGrowsWithTheSize()
{
    QFETCH(QString, prefix);
    QFETCH(QString, label);
    const auto run = [&](int count) {
        QStringList names;
        for (int i = 0; i < count; ++i)
            names.append("N" + QString::number(i));
        return [before = withItemsNamed(names, QString(), QString()),
                after = withItemsNamed(reversed(names), prefix, label)] { compare(before, after); };
    };
    constexpr int few = 4000;
    constexpr int times = 8;
    const TimeRatio ratio(run(few * times), run(few));
    QVERIFY2(ratio.isAtMost(4 * times), ratio.inWords().c_str());
}

QTEST_APPLESS_MAIN(DiffTest)
#include "DiffTest.moc"
