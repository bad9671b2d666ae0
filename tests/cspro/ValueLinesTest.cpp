#include "cspro/CSPro_p.h"
#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/Thrown.h"

#include <QApplication>
#include <QTest>

#include <new>

struct TestAccess {
    static void splitOtherRanges(const TCSPro &reader, TCSProValueSet *set, const TValueSetItem *pending)
    {
        reader.splitOtherRanges(set, pending);
    }
};

namespace
{

QStringList numericItem(const QStringList &valueSetLines)
{
    return QStringList{ "[Item]", "Name=N", "[ValueSet]" } + valueSetLines;
}

// Its set keeps any code, sorted as text.
QStringList alphaItem(const QStringList &valueSetLines)
{
    return QStringList{ "[Item]", "DataType=Alpha", "[ValueSet]" } + valueSetLines;
}

// "code|label" for each value of the first item's set.
QStringList valuesOf(const OwnedDictionary &dictionary)
{
    QStringList values = dictionary.codesOf(0);
    const QStringList labels = dictionary.labelsOf(0);
    for (int i = 0; i < values.size(); ++i)
        values[i] += "|" + labels.at(i);
    return values;
}

QString invalidContentsMessage(int line)
{
    return QStringLiteral("Class : CSPro\r\nError : \u00F2\r\n\r\nMessage : Invalid contents in line\r\n[%1 ]")
        .arg(QChar(ushort(line)));
}

// Performs, one by one, the steps that replace the colons of a code by blanks. Returns false if a text is left whose
// reading never ends.
bool stepsEndWithABlankText(QString text)
{
    const int n = text.size();
    for (int i = 0; i < n; ++i) {
        if (text.mid(i, 1) == ":") {
            const QString front = i == 0 ? text : text.mid(0, i - 1);
            text = front + " " + text.mid(i + 1, n + 1 - i);
        }
    }
    return text.trimmed().isEmpty();
}

// One value that no list frees, and the set that it is added to.
class Split
{
public:
    explicit Split(const QString &code)
    {
        pending.code = code;
        pending.name = QStringLiteral("label");
    }
    Split(const Split &) = delete;
    Split &operator=(const Split &) = delete;
    ~Split() { qDeleteAll(*set.items); }

    // Returns whether the reading ends.
    bool run()
    {
        const OwnedDictionary dictionary;
        try {
            TestAccess::splitOtherRanges(dictionary, &set, &pending);
        } catch (const std::bad_alloc &) {
            return false;
        }
        return true;
    }

    TCSProValueSet set;
    TValueSetItem pending;
};

} // namespace

class ValueLinesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueLineHasOneOfFiveShapes_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("values");

        // clang-format off
        // a value with a label
        QTest::newRow("value and label")                    << QStringList{"Value=1;one"}          << QStringList{"1|one"};
        QTest::newRow("colon in the label")                 << QStringList{"Value=1;a:b"}          << QStringList{"1|a:b"};
        QTest::newRow("semicolon in the label")             << QStringList{"Value=1;a;b"}          << QStringList{"1|a;b"};
        QTest::newRow("empty label")                        << QStringList{"Value=1;"}             << QStringList{"1|"};
        QTest::newRow("blank before the semicolon stays")   << QStringList{"Value=1 ;x"}           << QStringList{"1 |x"};
        QTest::newRow("blank after the semicolon stays")    << QStringList{"Value=1; x"}           << QStringList{"1| x"};
        QTest::newRow("blank before the value stays")       << QStringList{"Value= 1;x"}           << QStringList{" 1|x"};
        QTest::newRow("blank at the end goes")              << QStringList{"Value=1;x "}           << QStringList{"1|x"};
        QTest::newRow("blanks without a colon")             << QStringList{"Value=1 2;x"}          << QStringList{"1 2|x"};
        QTest::newRow("colon at the beginning is part of the code") << QStringList{"Value=:5;x"}           << QStringList{":5|x"};
        QTest::newRow("equals sign in the code")            << QStringList{"Value=a=b;x"}          << QStringList{"a=b|x"};
        QTest::newRow("closing apostrophe stays")           << QStringList{"Value='A';x"}          << QStringList{"A'|x"};
        QTest::newRow("one apostrophe goes")                << QStringList{"Value=';x"}            << QStringList{"|x"};
        QTest::newRow("two apostrophes leave one")          << QStringList{"Value='';x"}           << QStringList{"'|x"};
        QTest::newRow("blank before the apostrophe")        << QStringList{"Value= 'A';x"}         << QStringList{" 'A'|x"};
        QTest::newRow("apostrophe after stays")             << QStringList{"Value=A';x"}           << QStringList{"A'|x"};
        QTest::newRow("double quotes stay")                 << QStringList{"Value=\"A\";x"}        << QStringList{"\"A\"|x"};
        QTest::newRow("apostrophes of the label stay")      << QStringList{"Value=A;'x'"}          << QStringList{"A|'x'"};
        // a range with a label
        QTest::newRow("range with a label")                 << QStringList{"Value=1:5;r"}          << QStringList{"1|r", "5|r"};
        QTest::newRow("range, colon in the label")          << QStringList{"Value=1:5;a:b"}        << QStringList{"1|a:b", "5|a:b"};
        QTest::newRow("range, semicolon in the label")      << QStringList{"Value=1:5;a;b"}        << QStringList{"1|a;b", "5|a;b"};
        QTest::newRow("range, empty label")                 << QStringList{"Value=1:5;"}           << QStringList{"1|", "5|"};
        QTest::newRow("range is not unquoted")              << QStringList{"Value='A':'C';r"}      << QStringList{"'A'|r", "'C'|r"};
        QTest::newRow("range, second colon")                << QStringList{"Value=1:5:9;r"}        << QStringList{"1|r", "5:9|r"};
        QTest::newRow("range, blank after the colon")       << QStringList{"Value=1: 5;r"}         << QStringList{" 5|r", "1|r"};
        QTest::newRow("range, tab before the colon")        << QStringList{"Value=1\t2:5;r"}       << QStringList{"1\t2|r", "5|r"};
        QTest::newRow("semicolon right after the colon")    << QStringList{"Value=1:;r"}           << QStringList{"1|", ";r|"};
        QTest::newRow("two semicolons after the colon")     << QStringList{"Value=1:;r;s"}         << QStringList{"1|", ";r;s|"};
        // several values and ranges with a label
        QTest::newRow("several")                            << QStringList{"Value=1 3:5 7;x"}      << QStringList{" 3|x", " 7|x", "1|x", ":5|x"};
        QTest::newRow("value and range")                    << QStringList{"Value=1 2:3;x"}        << QStringList{" 2|x", "1|x", ":3|x"};
        QTest::newRow("two values and a range")             << QStringList{"Value=1 2 3:4;x"}      << QStringList{" 2 3|x", "1|x", ":4|x"};
        QTest::newRow("two ranges after a value")           << QStringList{"Value=1 2:3 4:5;x"}    << QStringList{" 2|x", " 4|x", "1|x", ":3|x", ":5|x"};
        QTest::newRow("several, colon in the label")        << QStringList{"Value=1 3:5;a:b"}      << QStringList{" 3|a:b", "1|a:b", ":5|a:b"};
        QTest::newRow("several are not unquoted")           << QStringList{"Value='A' 'B':'C';x"}  << QStringList{" 'B'|x", "'A'|x", ":'C'|x"};
        QTest::newRow("blank at the beginning: one piece")  << QStringList{"Value= 1:2;x"}         << QStringList{" 1:2|x"};
        QTest::newRow("several, blank before the colon")    << QStringList{"Value=1 :2;x"}         << QStringList{" |x", "1|x", ":2|x"};
        // a range without a label
        QTest::newRow("range without a label")              << QStringList{"Value=1:5"}            << QStringList{"1|", ":5|"};
        QTest::newRow("open range without a label")         << QStringList{"Value=1:"}             << QStringList{"1|", ":|"};
        QTest::newRow("range without a label, quoted")      << QStringList{"Value='A':'C'"}        << QStringList{"'A'|", ":'C'|"};
        QTest::newRow("semicolon before a range")           << QStringList{"Value=;1:5"}           << QStringList{":5|", ";1|"};
        QTest::newRow("label with its semicolon")           << QStringList{"Value=;1:5;x"}         << QStringList{":5|;x", ";1|;x"};
        QTest::newRow("label after an open range")          << QStringList{"Value=;1:;x"}          << QStringList{":|;x", ";1|;x"};
        QTest::newRow("blank before the colon, no label")   << QStringList{"Value=1 2:5"}          << QStringList{"1 2|", ":5|"};
        // a value without a label
        QTest::newRow("value only")                         << QStringList{"Value=1"}              << QStringList{"1|"};
        QTest::newRow("nothing")                            << QStringList{"Value="}               << QStringList{"|"};
        QTest::newRow("semicolon at the beginning")         << QStringList{"Value=;x"}             << QStringList{";x|"};
        QTest::newRow("colon at the beginning")             << QStringList{"Value=:5"}             << QStringList{":5|"};
        QTest::newRow("colon and blank at the beginning")   << QStringList{"Value=: 5"}            << QStringList{": 5|"};
        QTest::newRow("blanks, no colon")                   << QStringList{"Value=1 2"}            << QStringList{"1 2|"};
        QTest::newRow("closing apostrophe stays, no label") << QStringList{"Value='A'"}            << QStringList{"A'|"};
        QTest::newRow("apostrophe only goes")               << QStringList{"Value='"}              << QStringList{"|"};
        // clang-format on
    }

    void valueLineHasOneOfFiveShapes()
    {
        QFETCH(QStringList, lines);
        QFETCH(QStringList, values);
        const DebugCapture log;
        const OwnedDictionary dictionary(alphaItem(lines));
        QCOMPARE(valuesOf(dictionary), values);
        QCOMPARE(log.taken(), QStringList());
    }

    void labelOfAnEarlierLineStaysForSomeShapes_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("values");

        // clang-format off
        QTest::newRow("range without a label")
            << QStringList{"Value=9;nine", "Value=1:5"}        << QStringList{"1|nine", "9|nine", ":5|nine"};
        QTest::newRow("semicolon right after the colon")
            << QStringList{"Value=7;seven", "Value=1:;r"}      << QStringList{"1|seven", "7|seven", ";r|seven"};
        QTest::newRow("semicolon before a range")
            << QStringList{"Value=7;seven", "Value=;1:5"}      << QStringList{"7|seven", ":5|seven", ";1|seven"};
        QTest::newRow("value without a label clears it")
            << QStringList{"Value=9;nine", "Value=2"}          << QStringList{"2|", "9|nine"};
        QTest::newRow("range after a value without a label")
            << QStringList{"Value=9;nine", "Value=2", "Value=4:5"} << QStringList{"2|", "4|", "9|nine", ":5|"};
        QTest::newRow("label of a range")
            << QStringList{"Value=1:2;r", "Value=4:5"}         << QStringList{"1|r", "2|r", "4|r", ":5|r"};
        QTest::newRow("label of several values")
            << QStringList{"Value=1 3:4;s", "Value=6:7"}       << QStringList{" 3|s", "1|s", "6|s", ":4|s", ":7|s"};
        QTest::newRow("label with its semicolon")
            << QStringList{"Value=;1:5;x", "Value=6:7"}        << QStringList{"6|;x", ":5|;x", ":7|;x", ";1|;x"};
        QTest::newRow("name line with a comma leaves the comma and what follows in upper case")
            << QStringList{"Value=1;one", "Name=foo ,bar", "Value=3:5"} << QStringList{"1|one", "3|,BAR", ":5|,BAR"};
        QTest::newRow("name line without a comma leaves it")
            << QStringList{"Value=1;one", "Name=foo", "Value=3:5"} << QStringList{"1|one", "3|one", ":5|one"};
        QTest::newRow("label of a mark")
            << QStringList{"Value=1;one", "Name=MISSING ,Special", "Value=3:5"} << QStringList{"3|,SPECIAL", ":5|,SPECIAL"};
        // clang-format on
    }

    void labelOfAnEarlierLineStaysForSomeShapes()
    {
        QFETCH(QStringList, lines);
        QFETCH(QStringList, values);
        const OwnedDictionary dictionary(alphaItem(lines));
        QCOMPARE(valuesOf(dictionary), values);
    }

    void labelOfAnEarlierSectionIsGone()
    {
        const OwnedDictionary dictionary(
            alphaItem({ "Value=9;nine", "[Item]", "DataType=Alpha", "[ValueSet]", "Value=1:5" }));
        QCOMPARE(dictionary.codesOf(1), QStringList({ "1", ":5" }));
        QCOMPARE(dictionary.labelsOf(1), QStringList({ "", "" }));
    }

    void lineIsAValueLineByItsFirstSixCharacters_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("isValue");
        QTest::newRow("Value") << "Value=1;one" << true;
        QTest::newRow("upper case") << "VALUE=1;one" << true;
        QTest::newRow("lower case") << "value=1;one" << true;
        QTest::newRow("after blanks") << "  Value=1;one" << true;
        QTest::newRow("blank before the equals sign") << "Value =1;one" << false;
        QTest::newRow("longer word") << "Values=1;one" << false;
        QTest::newRow("shorter word") << "Valu=1;one" << false;
        QTest::newRow("further on in the line") << "Note=Value=1;one" << false;
        QTest::newRow("no equals sign") << "Value" << false;
        QTest::newRow("another key") << "Link=1;one" << false;
    }

    void lineIsAValueLineByItsFirstSixCharacters()
    {
        QFETCH(QString, line);
        QFETCH(bool, isValue);
        const OwnedDictionary dictionary(numericItem({ line }));
        QVERIFY(dictionary.setOf(0));
        QCOMPARE(dictionary.codesOf(0), isValue ? QStringList("1") : QStringList());
    }

    void setKeepsNameAndLabelOfItsSection()
    {
        const OwnedDictionary dictionary(numericItem({ "Label=Sex", "Name=SEX_VS1", "Value=1;male" }));
        QCOMPARE(dictionary.setOf(0)->label, QString("Sex"));
        QCOMPARE(dictionary.setOf(0)->name, QString("SEX_VS1"));
        QCOMPARE(dictionary.setOf(0)->extra, QString());
        QCOMPARE(dictionary.setOf(0)->isNumeric, true);
        QCOMPARE(dictionary.getItem(0)->name, QString("N"));
    }

    void setOfAnAlphanumericItemIsNotNumeric()
    {
        const OwnedDictionary dictionary(alphaItem({ "Value=1;one" }));
        QCOMPARE(dictionary.setOf(0)->isNumeric, false);
    }

    void nameAndLabelOfASetAreFoundBySubstring()
    {
        const OwnedDictionary dictionary(
            numericItem({ "Value=1;Label of Name", "Name=9 ,x", "Label=Sex", "Name=SEX_VS1" }));
        QCOMPARE(dictionary.setOf(0)->label, QString("1;Label of Name"));
        QCOMPARE(dictionary.setOf(0)->name, QString("1;Label of Name"));
    }

    void valuesInTheSetAreOfPlainType()
    {
        const OwnedDictionary dictionary(numericItem({ "Value=1:3;r", "Name=x ,SPECIAL", "Value=5" }));
        QCOMPARE(dictionary.setOf(0)->Count(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(dictionary.setOf(0)->getItem(i)->type, 0);
            QCOMPARE(dictionary.setOf(0)->getItem(i)->special, false);
        }
    }

    void markIsOneCharacterBeforeTheComma_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QString>("notApplicable");

        // clang-format off
        QTest::newRow("missing")                       << "Name=MISSING ,SPECIAL"  << "9" << "";
        QTest::newRow("not applicable")                << "Name=NOTAPPL ,SPECIAL"  << ""  << "9";
        QTest::newRow("any case")                      << "Name=Missing ,special"  << "9" << "";
        QTest::newRow("any case, not applicable")      << "Name=notAppl ,special"  << ""  << "9";
        QTest::newRow("key in any case")               << "nAME=MISSING ,SPECIAL"  << "9" << "";
        QTest::newRow("line after blanks")             << "  Name=MISSING ,SPECIAL" << "9" << "";
        QTest::newRow("any character before the comma") << "Name=MISSINGx,SPECIAL" << "9" << "";
        QTest::newRow("any character, not applicable") << "Name=NOTAPPL;,SPECIAL"  << ""  << "9";
        QTest::newRow("nothing after the comma")       << "Name=MISSING ,"         << "9" << "";
        QTest::newRow("another word after the comma") << "Name=MISSING ,x"        << "9" << "";
        QTest::newRow("second comma")                  << "Name=MISSING ,a ,b"     << "9" << "";
        QTest::newRow("comma follows the word")        << "Name=MISSING,SPECIAL"   << ""  << "";
        QTest::newRow("comma follows not applicable")  << "Name=NOTAPPL,SPECIAL"   << ""  << "";
        QTest::newRow("two blanks before the comma")   << "Name=MISSING  ,SPECIAL" << ""  << "";
        QTest::newRow("two blanks, not applicable")    << "Name=NOTAPPL  ,SPECIAL" << ""  << "";
        QTest::newRow("blank before the word")         << "Name= MISSING ,SPECIAL" << ""  << "";
        QTest::newRow("no comma")                      << "Name=MISSING"           << ""  << "";
        QTest::newRow("comma at the beginning")        << "Name=,MISSING ,"        << ""  << "";
        QTest::newRow("one character and a comma")     << "Name=x,SPECIAL"         << ""  << "";
        QTest::newRow("special has no effect")         << "Name=DEFAULT ,SPECIAL"  << ""  << "";
        QTest::newRow("special before the comma")      << "Name=SPECIAL ,SPECIAL"  << ""  << "";
        QTest::newRow("longer word")                   << "Name=NOTAPPLICABLE ,x"  << ""  << "";
        QTest::newRow("nothing")                       << "Name="                  << ""  << "";
        QTest::newRow("blank before the equals sign")  << "Name =MISSING ,SPECIAL" << ""  << "";
        QTest::newRow("not at the line's start")       << "xName=MISSING ,SPECIAL" << ""  << "";
        // clang-format on
    }

    void markIsOneCharacterBeforeTheComma()
    {
        QFETCH(QString, line);
        QFETCH(QString, missing);
        QFETCH(QString, notApplicable);
        const bool isMark = !missing.isEmpty() || !notApplicable.isEmpty();

        // at the end of the section
        const OwnedDictionary last(numericItem({ "Value=1;one", "Value=9;nine", line }));
        QCOMPARE(last.getItem(0)->missingValue, missing);
        QCOMPARE(last.getItem(0)->notApplicable, notApplicable);
        QCOMPARE(last.codesOf(0), isMark ? QStringList("1") : QStringList({ "1", "9" }));
        // before another value line
        const OwnedDictionary inside(numericItem({ "Value=9;nine", line, "Value=1;one" }));
        QCOMPARE(inside.getItem(0)->missingValue, missing);
        QCOMPARE(inside.getItem(0)->notApplicable, notApplicable);
        QCOMPARE(valuesOf(inside), isMark ? QStringList("1|one") : QStringList({ "1|one", "9|nine" }));
    }

    void nameLineBeforeTheFirstValueIsNoMark()
    {
        const OwnedDictionary dictionary(numericItem({ "Name=MISSING ,SPECIAL", "Value=1;one" }));
        QCOMPARE(dictionary.setOf(0)->name, QString("MISSING ,SPECIAL"));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString());
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
    }

    void severalNameLinesOfOneValue_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("codes");
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QString>("notApplicable");

        // clang-format off
        QTest::newRow("a comma and no mark puts the value back")
            << QStringList{"Name=MISSING ,S", "Name=other ,x"} << QStringList{"1", "9"} << "9" << "";
        QTest::newRow("a comma and no mark puts the other value back")
            << QStringList{"Name=NOTAPPL ,S", "Name=other ,x"} << QStringList{"1", "9"} << "" << "9";
        QTest::newRow("no comma leaves the value out")
            << QStringList{"Name=MISSING ,S", "Name=other"}    << QStringList{"1"}      << "9" << "";
        QTest::newRow("comma at the beginning leaves the value out")
            << QStringList{"Name=MISSING ,S", "Name=,x"}       << QStringList{"1"}      << "9" << "";
        QTest::newRow("both marks")
            << QStringList{"Name=MISSING ,S", "Name=NOTAPPL ,S"} << QStringList{"1"}    << "9" << "9";
        QTest::newRow("mark after a plain name")
            << QStringList{"Name=other ,x", "Name=MISSING ,S"} << QStringList{"1"}      << "9" << "";
        // clang-format on
    }

    void severalNameLinesOfOneValue()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, codes);
        QFETCH(QString, missing);
        QFETCH(QString, notApplicable);
        const OwnedDictionary dictionary(numericItem(QStringList{ "Value=9;nine" } + names + QStringList{ "Value=1" }));
        QCOMPARE(dictionary.codesOf(0), codes);
        QCOMPARE(dictionary.getItem(0)->missingValue, missing);
        QCOMPARE(dictionary.getItem(0)->notApplicable, notApplicable);
        for (const TValueSetItem *value : qAsConst(*dictionary.setOf(0)->items)) {
            QCOMPARE(value->type, 0);
            QCOMPARE(value->special, false);
        }
    }

    void valueThatIsPutBackKeepsItsCodeAndLabel()
    {
        const OwnedDictionary dictionary(numericItem({ "Value=9;nine", "Name=MISSING ,S", "Name=other ,x" }));
        QCOMPARE(valuesOf(dictionary), QStringList("9|nine"));
    }

    void laterMarkReplacesTheCodeOfTheItem()
    {
        const OwnedDictionary dictionary(
            numericItem({ "Value=8;eight", "Name=MISSING ,S", "Value=9;nine", "Name=MISSING ,S", "Value=6;six",
                          "Name=NOTAPPL ,S", "Value=7;seven", "Name=NOTAPPL ,S" }));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("9"));
        QCOMPARE(dictionary.getItem(0)->notApplicable, QString("7"));
        QCOMPARE(dictionary.codesOf(0), QStringList());
        QVERIFY(dictionary.setOf(0));
    }

    void markOfARangeTakesItsUpperBound()
    {
        const OwnedDictionary dictionary(numericItem({ "Value=97:99;out", "Name=MISSING ,S" }));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("99"));
        QCOMPARE(valuesOf(dictionary), QStringList("97|out"));
    }

    void markKeepsTheCodeAsTheShapeLeftIt()
    {
        const OwnedDictionary dictionary(
            alphaItem({ "Value='B';x", "Name=MISSING ,S", "Value= 9;y", "Name=NOTAPPL ,S" }));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("B'"));
        QCOMPARE(dictionary.getItem(0)->notApplicable, QString(" 9"));
    }

    void markedValueIsNotSplit()
    {
        const DebugCapture log;
        const OwnedDictionary dictionary(numericItem({ "Value= 1:2;x", "Name=MISSING ,S", "Value=3;three" }));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString(" 1:2"));
        QCOMPARE(valuesOf(dictionary), QStringList("3|three"));
        QCOMPARE(log.taken(), QStringList());
    }

    void marksStayWhereTheSetIsDropped()
    {
        const OwnedDictionary dictionary(
            numericItem({ "Value=9;nine", "Name=MISSING ,S", "Value=8;eight", "Name=NOTAPPL ,S", "Value=x;letter" }));
        QVERIFY(!dictionary.setOf(0));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("9"));
        QCOMPARE(dictionary.getItem(0)->notApplicable, QString("8"));
    }

    void codeWithABlankAndAColonEndsInCode242BeforeAnotherValue_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("two ranges") << "Value=1:2 3:4;x";
        QTest::newRow("upper part with blank and colon") << "Value=1: 2:3;x";
        QTest::newRow("range without a label, then a value") << "Value=1:2 3";
        QTest::newRow("range without a label, blank in it") << "Value=1: 2";
        QTest::newRow("several with a blank at the beginning") << "Value= 1:2;x";
        QTest::newRow("value with a label, colon at the beginning") << "Value=:1 2;x";
        QTest::newRow("value without a label, colon at the beginning") << "Value=:1 2";
    }

    void codeWithABlankAndAColonEndsInCode242BeforeAnotherValue()
    {
        QFETCH(QString, line);
        for (const bool isAlpha : { true, false }) {
            const QStringList section = { line, "Name=y", "Value=5;five", "" };
            OwnedDictionary dictionary({ "[Item]", "Name=A", "[ValueSet]", "Value=1;one" });
            const DebugCapture log;
            const auto error = thrownBy([&] {
                dictionary.read((isAlpha ? alphaItem(section) : numericItem(section)) + QStringList{ "[Item]" });
            });
            QVERIFY(error);
            QCOMPARE(error->getClassName(), QString("CSPro"));
            QCOMPARE(error->getCode(), 242);
            // three lines before the section's four
            QCOMPARE(error->getText(), QStringLiteral("\u0006"));
            QCOMPARE(log.taken(), QStringList({ "PROCESAR OTROS RANGOS", invalidContentsMessage(6) }));
            QCOMPARE(dictionary.getItemsCount(), 2);
            QVERIFY(!dictionary.setOf(1));
            QCOMPARE(dictionary.codesOf(0), QStringList("1"));
            QCOMPARE(dictionary.currentItem, dictionary.getItem(1));
        }
    }

    void lastCodeOfASectionIsAddedUnsplit_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("values");

        // clang-format off
        QTest::newRow("two ranges")                << "Value=1:2 3:4;x"  << QStringList{"1|x", "2 3:4|x"};
        QTest::newRow("range without a label")     << "Value=1:2 3"      << QStringList{"1|", ":2 3|"};
        QTest::newRow("blank at the beginning")    << "Value= 1:2;x"     << QStringList{" 1:2|x"};
        QTest::newRow("colon at the beginning")    << "Value=:1 2;x"     << QStringList{":1 2|x"};
        // clang-format on
    }

    void lastCodeOfASectionIsAddedUnsplit()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, values);
        const DebugCapture log;
        const OwnedDictionary alpha(alphaItem({ line, "Name=y" }));
        QCOMPARE(valuesOf(alpha), values);
        const OwnedDictionary numeric(numericItem({ line, "Name=y" }));
        QVERIFY(!numeric.setOf(0));
        QCOMPARE(log.taken(), QStringList());
    }

    void codeOfBlanksAndColonsSplitsIntoOneEmptyCode_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("values");

        // clang-format off
        QTest::newRow("blank and colon")                       << "Value= :;x"     << QStringList{"|x", "5|five"};
        QTest::newRow("a colon takes the character before it") << "Value=1:a: ;x"  << QStringList{"|x", "1|x", "5|five"};
        QTest::newRow("two such")                              << "Value=1: a:b:;x" << QStringList{"|x", "1|x", "5|five"};
        // clang-format on
    }

    void codeOfBlanksAndColonsSplitsIntoOneEmptyCode()
    {
        QFETCH(QString, line);
        QFETCH(QStringList, values);
        const DebugCapture log;
        const OwnedDictionary alpha(alphaItem({ line, "Value=5;five" }));
        QCOMPARE(valuesOf(alpha), values);
        QCOMPARE(log.taken(), QStringList("PROCESAR OTROS RANGOS"));
        const OwnedDictionary numeric(numericItem({ line, "Value=5;five" }));
        QVERIFY(!numeric.setOf(0));
    }

    void codeWithOnlyABlankOrOnlyAColonIsNotSplit()
    {
        const DebugCapture log;
        const OwnedDictionary dictionary(alphaItem({ "Value=1 2;x", "Value=:3;y", "Value=4\t:5;z", "Value=6" }));
        QCOMPARE(dictionary.codesOf(0), QStringList({ "1 2", "4\t", "5", "6", ":3" }));
        QCOMPARE(log.taken(), QStringList());
    }

    void splittingATextThatIsNotBlankFails_data()
    {
        QTest::addColumn<QString>("code");
        QTest::newRow("one code") << "1";
        QTest::newRow("two codes") << "1 2";
        QTest::newRow("range") << "1:2";
        QTest::newRow("ranges") << "1:2 3:4";
        QTest::newRow("colon after two characters") << "12:";
        QTest::newRow("colon at the beginning") << ":";
        QTest::newRow("colon before a blank") << ": ";
        QTest::newRow("two colons") << "::";
        QTest::newRow("the character after a colon is skipped") << "a::";
        QTest::newRow("colon after two more characters") << "a:bc:";
    }

    void splittingATextThatIsNotBlankFails()
    {
        QFETCH(QString, code);
        QVERIFY(!Split(code).run());
    }

    void splittingABlankTextAddsOneEmptyCode_data()
    {
        QTest::addColumn<QString>("code");
        QTest::newRow("nothing") << "";
        QTest::newRow("blank") << " ";
        QTest::newRow("tab") << "\t";
        QTest::newRow("blank and colon") << " :";
        QTest::newRow("a colon takes the character before it") << "1:";
        QTest::newRow("each colon takes one") << "a:b:";
        QTest::newRow("each of three takes one") << "a:b:c:";
        QTest::newRow("colons take colons") << "a:::";
        QTest::newRow("colon at the beginning") << "::a:";
    }

    void splittingABlankTextAddsOneEmptyCode()
    {
        QFETCH(QString, code);
        Split split(code);
        QVERIFY(split.run());
        QCOMPARE(split.set.Count(), 1);
        QCOMPARE(split.set.getItem(0)->code, QString());
        QCOMPARE(split.set.getItem(0)->name, QString("label"));
        QVERIFY(split.set.getItem(0) != &split.pending);
        QCOMPARE(split.pending.code, code);
    }

    void everyShortTextSplitsByTheSteps()
    {
        const QString alphabet = QStringLiteral("a: ");
        QStringList texts = { QString() };
        for (int i = 0; i < texts.size(); ++i) {
            const QString text = texts.at(i);
            Split split(text);
            QVERIFY2(split.run() == stepsEndWithABlankText(text), qPrintable(text));
            for (const QChar next : alphabet) {
                if (text.size() < 7)
                    texts.append(text + next);
            }
        }
        QCOMPARE(texts.size(), 1 + 3 + 9 + 27 + 81 + 243 + 729 + 2187);
    }

    void numericSetWithACodeThatIsNoIntegerIsDroppedWithoutAWord_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<bool>("isKept");

        // clang-format off
        QTest::newRow("integers")               << QStringList{"Value=1;a", "Value=2;b"}       << true;
        QTest::newRow("no values")              << QStringList{}                               << true;
        QTest::newRow("blank before the code")  << QStringList{"Value= 3;a"}                   << true;
        QTest::newRow("blank after the code")   << QStringList{"Value=3 ;a"}                   << true;
        QTest::newRow("signs")                  << QStringList{"Value=-3;a", "Value=+4;b"}     << true;
        QTest::newRow("leading zeros")          << QStringList{"Value=007;a"}                  << true;
        QTest::newRow("range with a label")     << QStringList{"Value=1:5;a"}                  << true;
        QTest::newRow("signed range")           << QStringList{"Value=-5:-1;a"}                << true;
        QTest::newRow("text")                   << QStringList{"Value=1;a", "Value=x;b"}       << false;
        QTest::newRow("signed decimal")         << QStringList{"Value=-2.5;a"}                 << false;
        QTest::newRow("range without a label")  << QStringList{"Value=1:5"}                    << false;
        QTest::newRow("several")                << QStringList{"Value=1 3:5 7;a"}              << false;
        QTest::newRow("quoted")                 << QStringList{"Value='1';a"}                  << false;
        QTest::newRow("nothing")                << QStringList{"Value="}                       << false;
        QTest::newRow("semicolon after colon") << QStringList{"Value=1:;a"}                   << false;
        QTest::newRow("two values")             << QStringList{"Value=1 2;a"}                  << false;
        QTest::newRow("beyond an int")          << QStringList{"Value=2147483648;a"}           << false;
        QTest::newRow("text, marked")           << QStringList{"Value=x;a", "Name=MISSING ,S"} << true;
        // clang-format on
    }

    void numericSetWithACodeThatIsNoIntegerIsDroppedWithoutAWord()
    {
        QFETCH(QStringList, lines);
        QFETCH(bool, isKept);
        const DebugCapture log;
        const OwnedDictionary dictionary(numericItem(lines + QStringList{ "[Item]", "Name=NEXT" }));
        QCOMPARE(dictionary.setOf(0) != nullptr, isKept);
        QCOMPARE(dictionary.itemNames(), QStringList({ "N", "NEXT" }));
        QCOMPARE(log.taken(), QStringList());
    }

    void setOfAnAlphanumericItemKeepsAnyCode()
    {
        const OwnedDictionary dictionary(
            alphaItem({ "Value=x;a", "Value=2.5;b", "Value=10;c", "Value=9;d", "Value=" }));
        QCOMPARE(valuesOf(dictionary), QStringList({ "|", "10|c", "2.5|b", "9|d", "x|a" }));
        QVERIFY(!dictionary.messageBox);
    }

    void setWithoutValuesIsAttachedEmpty()
    {
        const OwnedDictionary dictionary(numericItem({ "Label=Nothing", "Name=VS" }));
        QVERIFY(dictionary.setOf(0));
        QCOMPARE(dictionary.setOf(0)->Count(), 0);
        QCOMPARE(dictionary.getItem(0)->getValueSetsCount(), 1);
    }

    void valuesAreSortedAndNeverMerged_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("values");

        // clang-format off
        QTest::newRow("by number")          << QStringList{"Value=10;c", "Value=9;b", "Value=1;a"} << QStringList{"1|a", "9|b", "10|c"};
        QTest::newRow("descending range")   << QStringList{"Value=9:1;r"}                          << QStringList{"1|r", "9|r"};
        QTest::newRow("range of one")       << QStringList{"Value=4:4;r"}                          << QStringList{"4|r", "4|r"};
        QTest::newRow("overlapping ranges") << QStringList{"Value=1:5;a", "Value=3:8;b"}           << QStringList{"1|a", "3|b", "5|a", "8|b"};
        QTest::newRow("repeated values")    << QStringList{"Value=2;a", "Value=1;b", "Value=2;c"}  << QStringList{"1|b", "2|a", "2|c"};
        QTest::newRow("blank is kept")      << QStringList{"Value=4;a", "Value= 3;b"}              << QStringList{" 3|b", "4|a"};
        QTest::newRow("negative")           << QStringList{"Value=0;a", "Value=-2:-10;b"}          << QStringList{"-10|b", "-2|b", "0|a"};
        // clang-format on
    }

    void valuesAreSortedAndNeverMerged()
    {
        QFETCH(QStringList, lines);
        QFETCH(QStringList, values);
        const OwnedDictionary dictionary(numericItem(lines));
        QCOMPARE(valuesOf(dictionary), values);
    }

    void copiesOfAnOccurringItemShareOneSet()
    {
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "[Item]", "Name=B", "Occurrences=2", "[Item]", "Name=C",
                                           "Occurrences=3", "[ValueSet]", "Value=1;one" });
        QVERIFY(!dictionary.setOf(0) && !dictionary.setOf(1) && !dictionary.setOf(2));
        QVERIFY(dictionary.setOf(3));
        QCOMPARE(dictionary.setOf(4), dictionary.setOf(3));
        QCOMPARE(dictionary.setOf(5), dictionary.setOf(3));
        QCOMPARE(dictionary.codesOf(3), QStringList("1"));
    }

    void everyGroupHasItsOwnSet()
    {
        const OwnedDictionary dictionary({ "[Item]", "[Item]", "Occurrences=2", "[ValueSet]", "Value=1;one", "[Item]",
                                           "Occurrences=2", "[ValueSet]", "Value=2;two", "[Item]", "[ValueSet]",
                                           "Value=3;three" });
        QVERIFY(!dictionary.setOf(0));
        QCOMPARE(dictionary.codesOf(1), QStringList("1"));
        QCOMPARE(dictionary.codesOf(2), QStringList("1"));
        QCOMPARE(dictionary.codesOf(3), QStringList("2"));
        QCOMPARE(dictionary.codesOf(4), QStringList("2"));
        QCOMPARE(dictionary.codesOf(5), QStringList("3"));
    }

    void onlyTheLastCopyOfTheFirstItemHasTheSet()
    {
        const OwnedDictionary dictionary({ "[Item]", "Occurrences=3", "[ValueSet]", "Value=1;one" });
        QVERIFY(!dictionary.setOf(0) && !dictionary.setOf(1));
        QCOMPARE(dictionary.codesOf(2), QStringList("1"));
    }

    void onlyTheLastCopyHasTheMarks()
    {
        const OwnedDictionary dictionary({ "[Item]", "[Item]", "Occurrences=3", "[ValueSet]", "Value=1;one",
                                           "Value=9;nine", "Name=MISSING ,S", "Value=8;eight", "Name=NOTAPPL ,S" });
        for (int i = 1; i <= 2; ++i) {
            QCOMPARE(dictionary.getItem(i)->missingValue, QString());
            QCOMPARE(dictionary.getItem(i)->notApplicable, QString());
            QCOMPARE(dictionary.codesOf(i), QStringList("1"));
        }
        QCOMPARE(dictionary.getItem(3)->missingValue, QString("9"));
        QCOMPARE(dictionary.getItem(3)->notApplicable, QString("8"));
    }

    void furtherSetOfAnItemIsSkipped()
    {
        const OwnedDictionary dictionary(numericItem({ "Value=1;one", "[ValueSet]", "Name=SECOND", "Value=2;two",
                                                       "Value=9;nine", "Name=MISSING ,S", "[Item]" }));
        QCOMPARE(valuesOf(dictionary), QStringList("1|one"));
        QCOMPARE(dictionary.setOf(0)->name, QString());
        QCOMPARE(dictionary.getItem(0)->getValueSetsCount(), 1);
        QCOMPARE(dictionary.getItem(0)->missingValue, QString());
        QCOMPARE(dictionary.getItemsCount(), 2);
    }

    void furtherSetAfterAnEmptyOneIsSkipped()
    {
        const OwnedDictionary dictionary(numericItem({ "[ValueSet]", "Value=1;one" }));
        QCOMPARE(dictionary.codesOf(0), QStringList());
    }

    void furtherSetOfAGroupIsSkipped()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "[Item]", "Occurrences=2", "[ValueSet]", "Value=1;one", "[ValueSet]", "Value=2;two" });
        QCOMPARE(dictionary.codesOf(1), QStringList("1"));
        QCOMPARE(dictionary.codesOf(2), QStringList("1"));
        QCOMPARE(dictionary.getItem(1)->getValueSetsCount(), 1);
    }

    void setAfterADroppedOneIsReadInFull()
    {
        const OwnedDictionary dictionary(
            numericItem({ "Name=FIRST", "Value=x;letter", "Value=9;nine", "Name=MISSING ,S", "[ValueSet]",
                          "Name=SECOND", "Value=2;two", "Value=8;eight", "Name=NOTAPPL ,S" }));
        QCOMPARE(valuesOf(dictionary), QStringList("2|two"));
        QCOMPARE(dictionary.setOf(0)->name, QString("SECOND"));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("9"));
        QCOMPARE(dictionary.getItem(0)->notApplicable, QString("8"));
    }

    void setAfterADroppedOneIsSharedByTheGroup()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "[Item]", "Occurrences=2", "[ValueSet]", "Value=x;letter", "[ValueSet]", "Value=2;two" });
        QCOMPARE(dictionary.codesOf(1), QStringList("2"));
        QCOMPARE(dictionary.setOf(1), dictionary.setOf(2));
    }

    void setBelongsToTheItemBeforeOtherSections()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "Name=A", "[Record]", "Name=R", "[Level]", "[Dictionary]", "[ValueSet]", "Value=1;one" });
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
    }

    void withoutAnApplicationTheAnswerIsNoAndNoDialogIsMade()
    {
        QVERIFY(!qobject_cast<QApplication *>(QCoreApplication::instance()));
        const OwnedDictionary dictionary(numericItem(
            { "Value=2.5;half", "Value=9;nine", "Name=MISSING ,S", "[Item]", "[ValueSet]", "Value=1;one" }));
        QVERIFY(!dictionary.messageBox);
        QVERIFY(!dictionary.setOf(0));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("9"));
        QCOMPARE(dictionary.lastButton, 65536);
        QCOMPARE(dictionary.decimalAnswer, 0);
        QCOMPARE(dictionary.codesOf(1), QStringList("1"));
    }
};

QTEST_GUILESS_MAIN(ValueLinesTest)
#include "ValueLinesTest.moc"
