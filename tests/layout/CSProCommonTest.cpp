#include "read/CSProCommon_p.h"

#include <QTest>

using namespace vanlayout;

namespace
{

Value valueOf(const QString &code)
{
    Value value;
    value.ranges = { { code, QString() } };
    return value;
}

ValueSet setOf(const QString &link, int values)
{
    ValueSet set;
    set.link = link;
    for (int index = 0; index < values; ++index)
        set.values.append(valueOf(QString::number(index)));
    return set;
}

QVector<Problem> shareLinkedValues(Layout &layout)
{
    Diagnostics diagnostics(layout);
    cspro::shareLinkedValues(layout, diagnostics);
    return layout.problems;
}

Item itemWith(const QVector<ValueSet> &sets)
{
    Item item;
    item.valueSets = sets;
    return item;
}

} // namespace

class CSProCommonTest : public QObject
{
    Q_OBJECT

private slots:
    void whiteSpaceAtTheEndOfANoteIsCut_data();
    void whiteSpaceAtTheEndOfANoteIsCut();
    void onlyASinglePartWithoutTextIsNoLabel();
    void specialWordsAreKnownInAnyCase();
    void itemTypesAreKnownInAnyCase();
    void captureTypesHaveTheSpellingOfCSPro8();
    void occurrenceIsNoItemOfARelation();
    void setsWithoutValuesGetThoseOfTheFullestSetWithTheirLink();
    void setsWithoutALinkShareNothing();
    void linkedValuesAreBounded();
    void pathsAreNamesWithSlashes();
    void namesAreCutInPathsBetweenCharacters();
    void quotedTextIsOneShortLine_data();
    void quotedTextIsOneShortLine();
};

void CSProCommonTest::whiteSpaceAtTheEndOfANoteIsCut_data()
{
    QTest::addColumn<QString>("note");
    QTest::addColumn<QString>("clean");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("only white space") << " \t\n\v\f\r " << QString();
    QTest::newRow("at both ends") << " a b \n"
                                  << " a b";
    QTest::newRow("no-break space is a character")
        << QString("a") + QChar(QChar::Nbsp) << QString("a") + QChar(QChar::Nbsp);
}

void CSProCommonTest::whiteSpaceAtTheEndOfANoteIsCut()
{
    QFETCH(QString, note);
    QTEST(cspro::cleanNote(note), "clean");
}

void CSProCommonTest::onlyASinglePartWithoutTextIsNoLabel()
{
    Labels labels = { { { "EN", "" } } };
    cspro::dropEmptyLabel(labels);
    QVERIFY(labels.isEmpty());
    labels = { { { "EN", "" }, { "FR", "" } } };
    cspro::dropEmptyLabel(labels);
    QCOMPARE(labels.parts.size(), 2);
    labels = { { { "EN", " " } } };
    cspro::dropEmptyLabel(labels);
    QCOMPARE(labels.parts.size(), 1);
}

void CSProCommonTest::specialWordsAreKnownInAnyCase()
{
    QCOMPARE(cspro::specialOf(u"MISSING"), Special::Missing);
    QCOMPARE(cspro::specialOf(u"NotAppl"), Special::NotApplicable);
    QCOMPARE(cspro::specialOf(u"refused"), Special::Refused);
    QCOMPARE(cspro::specialOf(u"DEFAULT"), Special::Default);
    QVERIFY(!cspro::specialOf(u"MISS"));
    QVERIFY(!cspro::specialOf(u""));
}

void CSProCommonTest::itemTypesAreKnownInAnyCase()
{
    for (const char *word : { "numeric", "alpha", "document", "audio", "image", "geometry" }) {
        QCOMPARE(cspro::itemTypeOf(QString(word)), QString(word));
        QCOMPARE(cspro::itemTypeOf(QString(word).toUpper()), QString(word));
    }
    QVERIFY(!cspro::itemTypeOf(u"number"));
    QCOMPARE(cspro::lowerCased(QString::fromUtf8("AzZÉ[")), QString::fromUtf8("azzÉ["));
}

void CSProCommonTest::captureTypesHaveTheSpellingOfCSPro8()
{
    for (const char *word : { "textBox", "radioButton", "checkBox", "dropDown", "comboBox", "date", "numberPad",
                              "barcode", "slider", "toggleButton", "photo", "signature", "audio" }) {
        QCOMPARE(cspro::captureTypeOf(QString(word).toUpper()), QString(word));
    }
    QCOMPARE(cspro::captureTypeOf(u"Unspecified"), QString());
    QVERIFY(!cspro::captureTypeOf(u"box"));
}

void CSProCommonTest::occurrenceIsNoItemOfARelation()
{
    QCOMPARE(cspro::linkItemOf("(occurrence)"), QString());
    QCOMPARE(cspro::linkItemOf("LINE"), QString("LINE"));
}

void CSProCommonTest::setsWithoutValuesGetThoseOfTheFullestSetWithTheirLink()
{
    Layout layout;
    Level level;
    level.ids = { itemWith({ setOf("1", 0) }) };
    Record record;
    record.items = { itemWith({ setOf("1", 2), setOf("2", 0) }), itemWith({ setOf("1", 3), setOf("1", 0) }) };
    record.items[1].valueSets[0].values[0].note = "first of the fullest";
    record.items.append(itemWith({ setOf("1", 3) }));
    level.records = { record };
    layout.levels = { level };
    shareLinkedValues(layout);
    const QVector<Item> &items = layout.levels.at(0).records.at(0).items;
    const QVector<Value> &fullest = items.at(1).valueSets.at(0).values;
    QCOMPARE(layout.levels.at(0).ids.at(0).valueSets.at(0).values, fullest);
    QVERIFY2(layout.levels.at(0).ids.at(0).valueSets.at(0).values.constData() == fullest.constData(),
             "the list is in memory once");
    QCOMPARE(items.at(0).valueSets.at(0).values.size(), 2);
    QVERIFY(items.at(0).valueSets.at(1).values.isEmpty());
    QCOMPARE(items.at(1).valueSets.at(1).values, fullest);
    QCOMPARE(items.at(1).valueSets.at(1).link, QString("1"));
}

void CSProCommonTest::setsWithoutALinkShareNothing()
{
    Layout layout;
    Level level;
    level.ids = { itemWith({ setOf("", 2), setOf("", 0) }) };
    layout.levels = { level };
    shareLinkedValues(layout);
    QVERIFY(layout.levels.at(0).ids.at(0).valueSets.at(1).values.isEmpty());
}

void CSProCommonTest::linkedValuesAreBounded()
{
    constexpr int size = 1'000;
    constexpr int fits = cspro::maxLinkedValues / size;
    Layout layout;
    Level level;
    level.ids = { itemWith({ setOf("1", size) }) };
    level.ids.resize(1 + fits);
    for (int index = 1; index <= fits; ++index)
        level.ids[index].valueSets = { setOf("1", 0) };
    layout.levels = { level };
    Layout larger = layout;
    QVERIFY(shareLinkedValues(layout).isEmpty());
    QCOMPARE(layout.levels.at(0).ids.last().valueSets.at(0).values.size(), size);

    larger.levels[0].ids.append(itemWith({ setOf("1", 0) }));
    const QVector<Problem> problems = shareLinkedValues(larger);
    QCOMPARE(problems.size(), 1);
    QCOMPARE(problems.at(0).id, QString("too-many-linked-values"));
    QCOMPARE(larger.levels.at(0).ids.at(fits).valueSets.at(0).values.size(), size);
    QVERIFY(larger.levels.at(0).ids.last().valueSets.at(0).values.isEmpty());
}

void CSProCommonTest::pathsAreNamesWithSlashes()
{
    const QString ids = cspro::childPath("LEVEL", cspro::idsName());
    QCOMPARE(ids, QString("LEVEL/(ids)"));
    QCOMPARE(cspro::valuePath(cspro::childPath(cspro::childPath(ids, "ITEM"), "SET"), 2),
             QString("LEVEL/(ids)/ITEM/SET/#2"));
    QCOMPARE(cspro::relationPath("REL"), QString("relations/REL"));
}

void CSProCommonTest::namesAreCutInPathsBetweenCharacters()
{
    const QString pair = QString::fromUtf8("\U0001F600");
    QCOMPARE(cspro::nameInPath(QString(200, 'a')), QString(200, 'a'));
    QCOMPARE(cspro::nameInPath(QString(201, 'a')), QString(200, 'a'));
    QCOMPARE(cspro::nameInPath(QString(199, 'a') + pair), QString(199, 'a'));
    QCOMPARE(cspro::nameInPath(QString(198, 'a') + pair + 'b'), QString(198, 'a') + pair);
    QCOMPARE(cspro::childPath("L", QString(300, 'a')), "L/" + QString(200, 'a'));
}

void CSProCommonTest::quotedTextIsOneShortLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("empty") << ""
                           << "\"\"";
    QTest::newRow("as long as may be") << QString(40, 'a') << '"' + QString(40, 'a') + '"';
    QTest::newRow("longer") << QString(41, 'a') << '"' + QString(40, 'a') + "...\"";
    QTest::newRow("cut within a pair") << QString(39, 'a') + QString::fromUtf8("\U0001F600")
                                       << '"' + QString(39, 'a') + "...\"";
    QTest::newRow("control characters") << "a\n\r\t\x1b\x7f" + QString(QChar(0x85)) << "\"a      \"";
    QTest::newRow("ends of lines") << QString::fromUtf8("a\u2028b\u2029c\u00a0")
                                   << QString::fromUtf8("\"a b c\u00a0\"");
}

void CSProCommonTest::quotedTextIsOneShortLine()
{
    QFETCH(QString, text);
    QTEST(cspro::quoted(text), "quoted");
}

QTEST_APPLESS_MAIN(CSProCommonTest)
#include "CSProCommonTest.moc"
