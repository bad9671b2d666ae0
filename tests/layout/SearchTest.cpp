#include "layout/MadeLayout.h"

#include "search/Search.h"

#include <QtTest>

Q_DECLARE_METATYPE(vanlayout::Item)

using namespace vanlayout;

namespace
{

Labels inLanguages(const QVector<Label> &parts)
{
    return { parts };
}

Value valueIn(const QString &code, const QVector<Label> &parts)
{
    Value value = made::value(code);
    value.labels = inLanguages(parts);
    return value;
}

/// A layout with an id item and a record of items for the rules of the search.
Layout survey()
{
    Item religion = made::item("P309", 2,
                               { made::value("1", "Catholic"), made::range("2", "5", "Protestant, other"),
                                 made::value("98", "Don\u2019t know") });
    religion.labels = inLanguages({ { "EN", "Religion" }, { "FR", "Confession" } });
    religion.valueSets[0].name = "FAITH_VS1";
    religion.valueSets[0].labels = made::labels("Denominations");
    religion.note = "Ask the head\nof the household.";
    Item mother = made::item("P_MOTHER_LINE");
    mother.labels = made::labels("Mother\u2019s line number");
    mother.aliases = QStringList("OLD_MUM");
    mother.occurrenceLabels = { { 1, made::labels("Eldest") } };
    Item water = made::item("H2", 1, { valueIn("1", { { "EN", "Well" }, { "FR", "Puits \u00e0 l\u2019eau" } }) });
    water.labels = inLanguages({ { "EN", "Main source" }, { "FR", "Source de l\u2019eau" } });
    water.valueSets[0].note = "Piped is below.";
    water.valueSets[0].values[0].note = "Also boreholes.";

    Layout layout;
    layout.file = "survey.dcf";
    layout.languages = { { "EN", "English" }, { "FR", "Fran\u00e7ais" } };
    Level level;
    level.name = "QUEST";
    level.ids = { made::item("CLUSTER") };
    Record person;
    person.name = "PERSON";
    person.labels = made::labels("Persons of religion");
    person.items = { religion, mother, water };
    level.records = { person };
    layout.levels = { level };
    return layout;
}

SearchOptions words(const QStringList &wanted)
{
    SearchOptions options;
    options.words = wanted;
    return options;
}

SearchOptions codes(const QStringList &wanted)
{
    SearchOptions options;
    options.codes = wanted;
    return options;
}

QVector<SearchHit> hits(const SearchOptions &options, const Layout &layout = survey())
{
    return Search(options).hitsIn(layout).hits;
}

/// "ITEM where", one for each hit.
QStringList found(const SearchOptions &options, const Layout &layout = survey())
{
    QStringList texts;
    const QVector<SearchHit> all = hits(options, layout);
    for (const SearchHit &hit : all)
        texts.append(hit.item + QLatin1Char(' ') + wordOf(hit.where));
    return texts;
}

/// "from-to label", one for each value.
QStringList described(const QVector<SearchedValue> &values)
{
    QStringList texts;
    for (const SearchedValue &value : values)
        texts.append(value.from + QLatin1Char('-') + value.to + QLatin1Char(' ') + value.label);
    return texts;
}

} // namespace

class SearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsAreFoundInNamesLabelsValueLabelsAndNotes_data()
    {
        QTest::addColumn<QStringList>("wanted");
        QTest::addColumn<QStringList>("expected");
        // clang-format off
        QTest::newRow("label")                  << QStringList("religion")        << QStringList("P309 label");
        QTest::newRow("label in a language")    << QStringList("confession")      << QStringList("P309 label");
        QTest::newRow("beginning of a word")    << QStringList("relig")           << QStringList("P309 label");
        QTest::newRow("not the middle")         << QStringList("ligion")          << QStringList();
        QTest::newRow("not the end")            << QStringList("religions")       << QStringList();
        QTest::newRow("case and accents")       << QStringList("R\u00c9LIGION")   << QStringList("P309 label");
        QTest::newRow("name")                   << QStringList("p309")            << QStringList("P309 name");
        QTest::newRow("part of a name")         << QStringList("line")            << QStringList("P_MOTHER_LINE name");
        QTest::newRow("parts of a name")        << QStringList("mother_li")       << QStringList("P_MOTHER_LINE name");
        QTest::newRow("whole name")             << QStringList("p_mother_line")   << QStringList("P_MOTHER_LINE name");
        QTest::newRow("name with mark before")  << QStringList("_line")           << QStringList("P_MOTHER_LINE name");
        QTest::newRow("not across a mark")      << QStringList("pmother")         << QStringList();
        QTest::newRow("alias")                  << QStringList("mum")             << QStringList("P_MOTHER_LINE name");
        QTest::newRow("label of an occurrence") << QStringList("eldest")          << QStringList("P_MOTHER_LINE label");
        QTest::newRow("value label")            << QStringList("catholic")        << QStringList("P309 value");
        QTest::newRow("second word of a value") << QStringList("other")           << QStringList("P309 value");
        QTest::newRow("note of an item")        << QStringList("household")       << QStringList("P309 note");
        QTest::newRow("note of a value set")    << QStringList("piped")           << QStringList("H2 note");
        QTest::newRow("note of a value")        << QStringList("borehole")        << QStringList("H2 note");
        QTest::newRow("id item")                << QStringList("cluster")         << QStringList("CLUSTER name");
        QTest::newRow("name of a value set")    << QStringList("faith")           << QStringList();
        QTest::newRow("label of a value set")   << QStringList("denominations")   << QStringList();
        QTest::newRow("label of the record")    << QStringList("persons")         << QStringList();
        QTest::newRow("name of the level")      << QStringList("quest")           << QStringList();
        QTest::newRow("code")                   << QStringList("98")              << QStringList();
        // clang-format on
    }
    void wordsAreFoundInNamesLabelsValueLabelsAndNotes()
    {
        QFETCH(QStringList, wanted);
        QFETCH(QStringList, expected);
        QCOMPARE(found(words(wanted)), expected);
    }

    void apostrophesAreIgnored_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("word");
        QTest::addColumn<bool>("isFound");
        // clang-format off
        QTest::newRow("plain for typographic")      << "Source de l\u2019eau" << "l'eau"      << true;
        QTest::newRow("typographic for plain")      << "Source de l'eau"      << "l\u2019eau" << true;
        QTest::newRow("word after the article")     << "Source de l\u2019eau" << "eau"        << true;
        QTest::newRow("article left out")           << "Eau potable"          << "l\u2019eau" << true;
        QTest::newRow("article of two letters")     << "Il existe"            << "qu'il"      << true;
        QTest::newRow("apostrophe left out")        << "Mother\u2019s age"    << "mothers"    << true;
        QTest::newRow("apostrophe too many")        << "Mothers age"          << "mother's"   << true;
        QTest::newRow("beginning of the word")      << "Mother\u2019s age"    << "mother"     << true;
        QTest::newRow("longer than an article")     << "S school"             << "mother's"   << false;
        QTest::newRow("only the beginning")         << "Mother"               << "mother's"   << false;
        QTest::newRow("words in quotation marks")   << "\u201cEau\u201d"      << "'eau'"      << true;
        // clang-format on
    }
    void apostrophesAreIgnored()
    {
        QFETCH(QString, text);
        QFETCH(QString, word);
        QFETCH(bool, isFound);
        Item item = made::item("A");
        item.labels = made::labels(text);
        QCOMPARE(!hits(words({ word }), made::layout({ item })).isEmpty(), isFound);
    }

    void allWordsMustBeInOneItemInAnyOfItsTexts_data()
    {
        QTest::addColumn<QStringList>("wanted");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QStringList>("expectedOfAny");
        // clang-format off
        QTest::newRow("one text")              << QStringList{ "mother", "number" }    << QStringList("P_MOTHER_LINE label")  << QStringList("P_MOTHER_LINE label");
        QTest::newRow("name and label")        << QStringList{ "p309", "religion" }    << QStringList("P309 name")            << QStringList("P309 name");
        QTest::newRow("label and value label") << QStringList{ "catholic", "religion" } << QStringList("P309 label")          << QStringList("P309 label");
        QTest::newRow("two value labels")      << QStringList{ "catholic", "other" }   << QStringList("P309 value")           << QStringList("P309 value");
        QTest::newRow("label and note")        << QStringList{ "household", "religion" } << QStringList("P309 label")         << QStringList("P309 label");
        QTest::newRow("two languages")         << QStringList{ "confession", "religion" } << QStringList("P309 label")        << QStringList("P309 label");
        QTest::newRow("two words in one argument") << QStringList("number, mother")    << QStringList("P_MOTHER_LINE label")  << QStringList("P_MOTHER_LINE label");
        QTest::newRow("the same word twice")   << QStringList{ "p309", "p3" }          << QStringList("P309 name")            << QStringList("P309 name");
        QTest::newRow("two items")             << QStringList{ "religion", "eldest" }  << QStringList() << QStringList{ "P309 label", "P_MOTHER_LINE label" };
        QTest::newRow("one is nowhere")        << QStringList{ "religion", "island" }  << QStringList() << QStringList("P309 label");
        QTest::newRow("none is anywhere")      << QStringList{ "house", "island" }     << QStringList()                     << QStringList("P309 note");
        // clang-format on
    }
    void allWordsMustBeInOneItemInAnyOfItsTexts()
    {
        QFETCH(QStringList, wanted);
        QFETCH(QStringList, expected);
        QFETCH(QStringList, expectedOfAny);
        SearchOptions options = words(wanted);
        QCOMPARE(found(options), expected);
        options.isAny = true;
        QCOMPARE(found(options), expectedOfAny);
    }

    void aHitHasTheTextWithMostOfTheWords()
    {
        const SearchHit hit = hits(words({ "mother", "line", "number" })).value(0);
        QCOMPARE(hit.level, QStringLiteral("QUEST"));
        QCOMPARE(hit.record, QStringLiteral("PERSON"));
        QCOMPARE(hit.item, QStringLiteral("P_MOTHER_LINE"));
        QVERIFY(hit.where == SearchPlace::Label);
        QCOMPARE(hit.language, QString());
        QCOMPARE(hit.text, QString::fromUtf8("Mother\u2019s line number"));
        QCOMPARE(hit.label, hit.text);
        QVERIFY(hits(words({ "mother", "line" })).value(0).where == SearchPlace::Name);
        QCOMPARE(hits(words({ "cluster" })).value(0).record, QStringLiteral("(ids)"));
    }
    void aHitHasTheLanguageOfItsText()
    {
        SearchOptions options = words({ "confession" });
        QCOMPARE(hits(options).value(0).language, QStringLiteral("FR"));
        QCOMPARE(hits(options).value(0).text, QStringLiteral("Confession"));
        QCOMPARE(hits(options).value(0).label, QStringLiteral("Religion"));
        options.language = "fr";
        QCOMPARE(hits(options).value(0).label, QStringLiteral("Confession"));
        QCOMPARE(hits(words({ "puits" })).value(0).language, QStringLiteral("FR"));
        QCOMPARE(hits(words({ "p309" })).value(0).language, QString());
    }

    void valuesAreThoseWithOneOfTheWords()
    {
        QCOMPARE(described(hits(words({ "religion" })).value(0).values), QStringList());
        QCOMPARE(described(hits(words({ "religion", "catholic" })).value(0).values), QStringList("1- Catholic"));
        QCOMPARE(described(hits(words({ "catholic", "other" })).value(0).values),
                 QStringList({ "1- Catholic", "2-5 Protestant, other" }));
    }
    void labelsOfValuesAreInTheLanguageUnlessAnotherWasFound()
    {
        SearchOptions options = words({ "puits" });
        QCOMPARE(described(hits(options).value(0).values),
                 QStringList(QString::fromUtf8("1- Puits \u00e0 l\u2019eau")));
        options = words({ "well" });
        QCOMPARE(described(hits(options).value(0).values), QStringList("1- Well"));
        options.language = "FR";
        QCOMPARE(described(hits(options).value(0).values), QStringList("1- Well"));
        options = codes({ "1" });
        options.language = "FR";
        QCOMPARE(described(hits(options).value(1).values),
                 QStringList(QString::fromUtf8("1- Puits \u00e0 l\u2019eau")));
    }
    void valuesWithoutOrWithSeveralCodesAreListed()
    {
        Value several = made::value("1", "Yes");
        several.ranges = { { "1", QString() }, { "3", "4" } };
        Value none = made::value("1", "Yes, later");
        none.ranges.clear();
        const Layout layout = made::layout({ made::item("A", 1, { several, none }) });
        QCOMPARE(described(hits(words({ "yes" }), layout).value(0).values),
                 QStringList({ "1- Yes", "3-4 Yes", "- Yes, later" }));
        QCOMPARE(described(hits(codes({ "3" }), layout).value(0).values), QStringList("3-4 Yes"));
    }
    void aValueOfSeveralValueSetsIsListedOnce()
    {
        Item item = made::item("A", 1, { made::value("1", "Yes"), made::value("3", "Yes, early") });
        item.valueSets.append(made::valueSet({ made::value("1", "Yes"), made::value("1", "Yes, please") }));
        QCOMPARE(described(hits(words({ "yes" }), made::layout({ item })).value(0).values),
                 QStringList({ "1- Yes", "3- Yes, early", "1- Yes, please" }));
    }
    void itemsThatShareAListHaveTheSameValues()
    {
        const Item first = made::item("A", 1, { made::value("1", "Yes") });
        Item second = first;
        second.name = "B";
        Item text = first;
        text.name = "C";
        text.type = itemtype::alpha();
        QCOMPARE(found(words({ "yes" }), made::layout({ first, second, text })),
                 QStringList({ "A value", "B value", "C value" }));
        QCOMPARE(found(codes({ "01" }), made::layout({ first, text, second })), QStringList({ "A value", "B value" }));
    }

    void placesRestrictTheSearchOfWords_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QStringList>("expected"); // in names, labels, value labels, notes
        QTest::newRow("name and label") << "line" << QStringList{ "P_MOTHER_LINE name", "P_MOTHER_LINE label", "", "" };
        QTest::newRow("value") << "catholic" << QStringList{ "", "", "P309 value", "" };
        QTest::newRow("note") << "borehole" << QStringList{ "", "", "", "H2 note" };
    }
    void placesRestrictTheSearchOfWords()
    {
        QFETCH(QString, word);
        QFETCH(QStringList, expected);
        SearchOptions options = words({ word });
        for (int i = 0; i < expected.size(); ++i) {
            options.places = { SearchPlace(i) };
            QCOMPARE(found(options).join(','), expected.at(i));
        }
        options.places = { SearchPlace::Name, SearchPlace::Label, SearchPlace::Value, SearchPlace::Note };
        QCOMPARE(found(options), found(words({ word })));
    }

    void codesAreFoundInValuesRangesAndMissingValues_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("values");
        const Item number = made::item("A", 3,
                                       { made::value("098", "a"), made::range("10", "20", "b"), made::value("-1", "c"),
                                         made::value("1.50", "d") });
        const Item text = made::text("A", 3, { made::value("098", "a"), made::range("B", "D", "b") });
        Item stored = made::stored("A", "F8.0",
                                   { made::value("1", "a"), made::value(".a", "b"), made::range(".d", ".f", "c") });
        stored.missing = { { "95", "99" }, { "1", QString() }, { "-inf", "-5" }, { "200", "inf" } };
        // clang-format off
        QTest::newRow("with a zero")            << number << "98"   << "098- a";
        QTest::newRow("as written")             << number << "098"  << "098- a";
        QTest::newRow("more zeros")             << number << "0098.0" << "098- a";
        QTest::newRow("within a range")         << number << "15"   << "10-20 b";
        QTest::newRow("first of a range")       << number << "010"  << "10-20 b";
        QTest::newRow("last of a range")        << number << "20"   << "10-20 b";
        QTest::newRow("before a range")         << number << "9"    << "";
        QTest::newRow("after a range")          << number << "21"   << "";
        QTest::newRow("fraction in a range")    << number << "10,5" << "10-20 b";
        QTest::newRow("negative")               << number << "-1"   << "-1- c";
        QTest::newRow("decimals")               << number << "1.5"  << "1.50- d";
        QTest::newRow("no part of a code")      << number << "8"    << "";
        QTest::newRow("no number")              << number << "x"    << "";
        QTest::newRow("text as written")        << text   << "098"  << "098- a";
        QTest::newRow("text with blanks after") << text   << "098 " << "098- a";
        QTest::newRow("text as a number")       << text   << "98"   << "";
        QTest::newRow("text in a range")        << text   << "C"    << "B-D b";
        QTest::newRow("text after a range")     << text   << "E"    << "";
        QTest::newRow("case of texts")          << text   << "c"    << "";
        QTest::newRow("missing value")          << stored << "98"   << "95-99 ";
        QTest::newRow("missing with a label")   << stored << "1"    << "1- a";
        QTest::newRow("extended missing value") << stored << ".a"   << ".a- b";
        QTest::newRow("range of extended missing values") << stored << ".e" << ".d-.f c";
        QTest::newRow("after such a range")     << stored << ".g"   << "";
        QTest::newRow("text between numbers")   << number << "15x"  << "";
        QTest::newRow("open range below")       << stored << "-7"   << "-inf--5 ";
        QTest::newRow("open range above")       << stored << "1000" << "200-inf ";
        QTest::newRow("between the ranges")     << stored << "100"  << "";
        // clang-format on
    }
    void codesAreFoundInValuesRangesAndMissingValues()
    {
        QFETCH(Item, item);
        QFETCH(QString, code);
        QFETCH(QString, values);
        const QVector<SearchHit> all = hits(codes({ code }), made::layout({ item }));
        QCOMPARE(all.size(), values.isEmpty() ? 0 : 1);
        if (!all.isEmpty()) {
            QCOMPARE(described(all.first().values).join(','), values);
            QVERIFY(all.first().where == SearchPlace::Value);
            QCOMPARE(all.first().text, all.first().values.first().label);
        }
    }
    void allCodesAndWordsMustBeInOneItem()
    {
        SearchOptions options = codes({ "98", "3" });
        QCOMPARE(found(options), QStringList("P309 value"));
        options.codes.append("50");
        QCOMPARE(found(options), QStringList());
        options.isAny = true;
        QCOMPARE(found(options), QStringList("P309 value"));
        options = codes({ "1" });
        QCOMPARE(found(options), QStringList({ "P309 value", "H2 value" }));
        options.words = QStringList("source");
        QCOMPARE(found(options), QStringList("H2 label"));
        QCOMPARE(described(hits(options).value(0).values), QStringList("1- Well"));
        options.places = { SearchPlace::Label }; // codes are found nevertheless
        QCOMPARE(found(options), QStringList("H2 label"));
    }

    void patternsAreFoundAnywhereInTextsAsWritten_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("expected");
        // clang-format off
        QTest::newRow("middle of a word")      << "ligion"         << QStringList("P309 label");
        QTest::newRow("whole text")            << "^religion$"     << QStringList("P309 label");
        QTest::newRow("case")                  << "^P_MOTHER"      << QStringList("P_MOTHER_LINE name");
        QTest::newRow("other case")            << "^p_mother"      << QStringList("P_MOTHER_LINE name");
        QTest::newRow("accent left out")       << "puits a"        << QStringList();
        QTest::newRow("accent in other case")  << "PUITS \u00c0"   << QStringList("H2 value");
        QTest::newRow("typographic apostrophe") << "l'eau"         << QStringList();
        QTest::newRow("any apostrophe")        << "l['\u2019]eau"  << QStringList("H2 label");
        QTest::newRow("alternatives")          << "eldest|head"    << QStringList({ "P309 note", "P_MOTHER_LINE label" });
        QTest::newRow("blank")                 << "line number"    << QStringList("P_MOTHER_LINE label");
        QTest::newRow("letters of a script")   << "^\\w+ \\w$"     << QStringList();
        QTest::newRow("letters of all scripts") << "^\\w+ \\w l"   << QStringList("H2 value");
        // clang-format on
    }
    void patternsAreFoundAnywhereInTextsAsWritten()
    {
        QFETCH(QString, pattern);
        QFETCH(QStringList, expected);
        SearchOptions options = words({ pattern });
        options.isPattern = true;
        QCOMPARE(found(options), expected);
    }
    void allPatternsMustBeFound()
    {
        SearchOptions options = words({ "^P309", "holic" });
        options.isPattern = true;
        QCOMPARE(found(options), QStringList("P309 name"));
        options.words.append("island");
        QCOMPARE(found(options), QStringList());
    }
    void aPatternThatNeedsTooManyStepsIsGivenUpAndCounted()
    {
        Item hard = made::item("A");
        hard.labels = made::labels(QString(60, 'a') + '!');
        Item easy = made::item("B");
        easy.labels = made::labels("aaa");
        SearchOptions options = words({ "^(a+)+$" });
        options.isPattern = true;
        options.places = { SearchPlace::Label };
        const SearchResult result = Search(options).hitsIn(made::layout({ hard, easy }));
        QCOMPARE(result.unfinishedTexts, 1);
        QCOMPARE(result.hits.size(), 1);
        QCOMPARE(result.hits.first().item, QStringLiteral("B"));
    }

    void nothingToFindIsAProblem_data()
    {
        QTest::addColumn<QStringList>("wanted");
        QTest::addColumn<QStringList>("wantedCodes");
        QTest::addColumn<bool>("isPattern");
        QTest::addColumn<QString>("problem");
        const QStringList none;
        // clang-format off
        QTest::newRow("no word")      << none                          << none             << false << "there is no word to find";
        QTest::newRow("no pattern")   << none                          << none             << true  << "there is no word to find";
        QTest::newRow("empty word")   << QStringList("")               << none             << false << "the word \"\" has no letter or digit to find";
        QTest::newRow("punctuation")  << QStringList({ "a", "?!_" })   << none             << false << "the word \"?!_\" has no letter or digit to find";
        QTest::newRow("empty code")   << none                          << QStringList(" ") << false << "the code is empty";
        QTest::newRow("empty pattern") << QStringList("")              << none             << true  << "the pattern is empty";
        QTest::newRow("wrong pattern") << QStringList("ab(")           << none             << true  << "the pattern \"ab(\" is invalid at character 4: missing closing parenthesis";
        // clang-format on
    }
    void nothingToFindIsAProblem()
    {
        QFETCH(QStringList, wanted);
        QFETCH(QStringList, wantedCodes);
        QFETCH(bool, isPattern);
        QFETCH(QString, problem);
        SearchOptions options = words(wanted);
        options.codes = wantedCodes;
        options.isPattern = isPattern;
        options.isAny = true;
        QCOMPARE(Search(options).problem(), problem);
        QCOMPARE(found(options), QStringList());
        QCOMPARE(Search(words({ "a" })).problem(), QString());
    }

    void wordsOfAllScriptsAreFound_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("word");
        QTest::newRow("Arabic") << "\u0627\u0644\u062f\u0651\u064a\u0646"
                                << "\u0627\u0644\u062f\u064a\u0646";
        QTest::newRow("Cyrillic") << "\u0412\u0430\u0448\u0430 \u0420\u0415\u041b\u0418\u0413\u0418\u042f"
                                  << "\u0440\u0435\u043b\u0438";
        QTest::newRow("Chinese") << "\u60a8\u7684\u5b97\u6559\u4fe1\u4ef0"
                                 << "\u5b97\u6559";
        QTest::newRow("Amharic") << "905 \u12e8\u121a\u1296\u1229\u1260\u1275 \u12a0\u1205\u1309\u122d"
                                 << "\u12a0\u1205";
        QTest::newRow("right to left with marks") << "\u202b\u05d3\u05b8\u05ea\u202c"
                                                  << "\u05d3\u05ea";
        QTest::newRow("accents of their own") << "Re\u0301ligion"
                                              << "r\u00e9ligion";
    }
    void wordsOfAllScriptsAreFound()
    {
        QFETCH(QString, label);
        QFETCH(QString, word);
        Item item = made::item("A");
        item.labels = made::labels(label);
        QCOMPARE(found(words({ word }), made::layout({ item })), QStringList("A label"));
    }

    void thousandsOfWordsAreFoundInOnePass()
    {
        constexpr int count = 10000;
        QStringList wanted;
        QString label;
        for (int i = 0; i < count; ++i) {
            wanted.append("w" + QString::number(i));
            label += " w" + QString::number(count - 1 - i) + 'x';
        }
        Item item = made::item("A");
        item.labels = made::labels(label);
        QCOMPARE(found(words(wanted), made::layout(QVector<Item>(2, item))).size(), 2);
        wanted.append("y");
        QCOMPARE(found(words(wanted), made::layout(QVector<Item>(2, item))).size(), 0);
    }
};

QTEST_APPLESS_MAIN(SearchTest)
#include "SearchTest.moc"
