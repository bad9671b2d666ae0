#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "cspro/DecimalQuestion.h"
#include "import/ReadReport.h"
#include "lookup/Lookup.h"
#include "support/Thrown.h"
#include "support/ImportedText.h"

#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

// Kind, line, variable and text of every note; the numbers of occurrences as digits.
QStringList inWords(const ReadReport &report)
{
    QStringList words;
    for (const ReadNote &note : report.notes()) {
        QString variable = note.variable;
        for (int code = 1; code < 4; ++code)
            variable.replace(QChar(code), QString::number(code));
        words += QStringList{ note.id(), QString::number(note.line), variable, note.text }.join(QLatin1Char('|'));
    }
    return words;
}

QByteArray item(const QByteArray &keys)
{
    return "[IdItems]\n[Item]\n" + keys;
}

// An alphanumeric item, whose value sets are never dropped, with the lines of its set, the first of which is line 8.
QByteArray alpha(const QByteArray &lines)
{
    return item("Name=A\nStart=1\nLen=9\nDataType=Alpha\n[ValueSet]\n" + lines);
}

QByteArray json(const QByteArray &items,
                const QByteArray &recordType = "\"recordType\": {\"start\": 1, \"length\": 1}, ")
{
    return "{\"name\": \"D\", " + recordType
        + "\"levels\": [{\"name\": \"L\", \"records\": [{\"name\": \"R\", "
          "\"recordType\": \"1\", \"labels\": [{\"text\": \"R\"}, {\"text\": \"S\"}], \"items\": ["
        + items + "]}]}]}";
}

QByteArray jsonItem(const QByteArray &keys)
{
    return json("{\"name\": \"A\", \"start\": 2, " + keys + "}");
}

QByteArray jsonCodes(const QByteArray &type, const QByteArray &values)
{
    return jsonItem("\"length\": 7, \"contentType\": \"" + type + "\", \"valueSets\": [{\"name\": \"V\", \"values\": ["
                    + values + "]}]");
}

// A number that is too long for an integer, with its values.
QByteArray realWithCodes(const QByteArray &values)
{
    return jsonItem("\"length\": 12, \"contentType\": \"numeric\", \"valueSets\": [{\"name\": \"V\", \"values\": ["
                    + values + "]}]");
}

QByteArray value(const QByteArray &pair)
{
    return "{\"labels\": [{\"text\": \"x\"}], \"pairs\": [{" + pair + "}]}";
}

} // namespace

/// Tests that the readers of dictionaries and lookups add these notes about odd files, and no others.
class DictionaryNotesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        QVERIFY(directory.isValid());
    }
    void init()
    {
        setDecimalAnswer([](const DecimalQuestion & /*question*/) { return DecimalAnswer::noToAll; });
    }

    void textDictionaryReports_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("notes");
        const QByteArray number = item("Name=A\nStart=1\nLen=9\n[ValueSet]\n");

        QTest::newRow("keys of a further value set are not read")
            << alpha("Name=V\nValue=1;x\n[ValueSet]\nLabel=a=b\nName=W\nValue=1;Name\n")
            << QStringList{ "further-value-set|10|A|W" };
        QTest::newRow("name of a further value set is not that of the one after it")
            << alpha("Name=V\nValue=1;x\n[ValueSet]\n [ValueSet]\nName=W\n")
            << QStringList{ "further-value-set|10|A|", "further-value-set|11|A|W" };
        QTest::newRow("a range of a dropped set is not kept as end points") << number + "Value=1:5;x\nValue=y;z\n"
                                                                            << QStringList{ "value-set-dropped|8|A|y" };
        QTest::newRow("a range of a kept set does") << number + "Value=1:5;x\n"
                                                    << QStringList{ "range-as-end-points|7|A|1:5;x" };
        QTest::newRow("more than an upper bound after the colon, with blanks")
            << alpha("Value=1:7 10 11;x\n")
            << QStringList{ "several-in-a-line|8|A|1:7 10 11;x", "label-entry-parted|0|A|7 10 11 x" };
        QTest::newRow("more than an upper bound after the colon, with a colon")
            << alpha("Value=1:7:9;x\n") << QStringList{ "several-in-a-line|8|A|1:7:9;x" };
        QTest::newRow("blank around an upper bound")
            << alpha("Value=1: 7;x\n")
            << QStringList{ "range-as-end-points|8|A|1: 7;x", "label-entry-parted|0|A| 7 x" };
        QTest::newRow("the line that ends the reading, not the last of its section")
            << alpha("Value=1:5 7:9;x\nValue=1;a\nValue=2;b\nValue=3;c\n")
            << QStringList{ "several-in-a-line|8|A|1:5 7:9;x", "layout-given-up|8|A|1:5 7:9;x" };
        QTest::newRow("opening apostrophe only")
            << alpha("Value='tis;x\n") << QStringList{ "kept-apostrophe|8|A|'tis;x" };
        QTest::newRow("blank after the closing apostrophe")
            << alpha("Value='A' ;x\n") << QStringList{ "kept-apostrophe|8|A|'A' ;x", "label-entry-parted|0|A|A'  x" };
        QTest::newRow("mark that the next line takes back")
            << alpha("Value=9;x\nName=MISSING ,Special\nName=Other,\n")
            << QStringList{ "mark-not-recognised|10|A|Other,", "marked-value|9|A|9 x" };
        QTest::newRow("mark that the next line leaves")
            << alpha("Value=9;x\nName=MISSING ,Special\nName=Other\n")
            << QStringList{ "mark-not-recognised|10|A|Other", "marked-value|9|A|9 x" };
        QTest::newRow("word that is no mark, one that lacks its character, one that has two, one without a comma")
            << alpha("Value=6;x\nName=REFUSED ,Special\nValue=7;x\nName=MISSING,x\nValue=8;x\nName=MISSING  ,x\n"
                     "Value=9;x\nName=MISSING\n")
            << QStringList{ "mark-not-recognised|9|A|REFUSED ,Special", "mark-not-recognised|11|A|MISSING,x",
                            "mark-not-recognised|13|A|MISSING  ,x", "mark-not-recognised|15|A|MISSING" };
        QTest::newRow("both marks at one value, the first of them at an earlier one too")
            << alpha("Value=8;x\nName=MISSING ,x\nValue=9;y\nName=MISSING ,x\nName=NOTAPPL ,x\n")
            << QStringList{ "further-mark|9|A|8 x", "marked-value|11|A|9 y", "marked-value|12|A|9 y" };
        QTest::newRow("one mark twice at one value is one")
            << alpha("Value=9;x\nName=MISSING ,x\nName=MISSING ,y\n") << QStringList{ "marked-value|9|A|9 x" };
        QTest::newRow("mark in a dropped set, and in the set that counts")
            << number + "Value=99;x\nName=MISSING ,x\nValue=X;y\n[ValueSet]\nValue=98;z\nName=MISSING ,x\n"
            << QStringList{ "value-set-dropped|9|A|X", "further-mark|8|A|99 x", "marked-value|12|A|98 z" };
        QTest::newRow("mark in a dropped set with no other after it")
            << number
                + "Value=99;x\nName=MISSING ,x\nValue=X;y\n[Item]\nName=B\nStart=10\nLen=1\n[ValueSet]\n"
                  "Value=8;z\nName=MISSING ,x\n"
            << QStringList{ "value-set-dropped|9|A|X", "marked-value|8|A|99 x", "marked-value|16|B|8 z" };
        QTest::newRow("mark in a dropped set, and in one after an absent item")
            << number
                + "Value=99;x\nName=MISSING ,x\nValue=X;y\n[Item]\nName=B\nStart=10\nLen=1\nOccurrences=0\n"
                  "[ValueSet]\nName=V\nValue=98;z\nName=MISSING ,x\n"
            << QStringList{ "value-set-dropped|9|A|X", "no-occurrences|10|B|B", "value-set-misplaced|15|A|V",
                            "further-mark|8|A|99 x", "marked-value|18|A|98 z" };
        QTest::newRow("mark of the first item, whose set is dropped, where it occurs several times")
            << item("Name=A\nStart=1\nLen=9\nOccurrences=3\n[ValueSet]\nValue=99;x\nName=MISSING ,x\nValue=X;y\n")
            << QStringList{ "occurrence-names|2|A_1|A", "value-set-dropped|10|A_3|X", "marked-value|9|A_3|99 x",
                            "mark-of-last-occurrence|9|A_3|99 x" };
        QTest::newRow("one mark each is no further mark")
            << alpha("Value=8;x\nName=NOTAPPL ,Special\nValue=9;y\nName=MISSING ,Special\n")
            << QStringList{ "marked-value|9|A|8 x", "marked-value|11|A|9 y" };
        QTest::newRow("a million is written with an exponent") << number
                + "Value=1000000;x\n" << QStringList{ "code-rounded|0|A|1000000", "bound-rounded|0|A|1000000" };
        QTest::newRow("minimum and maximum are reported for each")
            << number + "Value=-1234567;x\nValue=1;y\nValue=1234567;z\n"
            << QStringList{ "code-rounded|0|A|-1234567", "code-rounded|0|A|1234567", "bound-rounded|0|A|-1234567",
                            "bound-rounded|0|A|1234567" };
        QTest::newRow("bounds that are rounded to one number")
            << number + "Value=1234567;x\nValue=1234568;y\n"
            << QStringList{ "code-rounded|0|A|1234567", "code-rounded|0|A|1234568", "bound-rounded|0|A|1234567",
                            "bound-rounded|0|A|1234568" };
        QTest::newRow("blank in a code, before it, and tabs")
            << alpha("Value=A B;Both\nValue= C;x\nValue=D\tE;x\nValue=F;x\ty\nValue=G;x y\n")
            << QStringList{ "label-entry-parted|0|A| C x", "label-entry-parted|0|A|A B Both",
                            "label-entry-parted|0|A|D\tE x", "label-entry-parted|0|A|F x\ty" };
        QTest::newRow("blank before the code of an integer, which is written without it") << number + "Value= 7;x\n"
                                                                                          << QStringList();
        QTest::newRow("blank before the code of a real number, which is written unchanged")
            << item("Name=A\nStart=1\nLen=10\n[ValueSet]\nValue= 7;x\n")
            << QStringList{ "label-entry-parted|0|A| 7 x" };
        QTest::newRow("long code with zeros at the beginning") << number + "Value=0000001;x\n" << QStringList();
        QTest::newRow("words in any case")
            << item("Name=A\nStart=1\nLen=9\nDataType=nUMERIC\nItemType=ITEM\nZeroFill=no\nDecimalChar=YES\n")
            << QStringList();
        QTest::newRow("a key that holds the word of another, which is not there")
            << item("Name=A\nStart=1\nLen=9\nDecimalChar=Yes\n") << QStringList();
        QTest::newRow("a key that holds the word of another, which is below")
            << item("Name=A\nStart=1\nLen=9\nDecimalChar=Yes\nDecimal=2\n")
            << QStringList{ "key-by-substring|6|A|Decimal: DecimalChar=Yes",
                            "number-not-converted|6|A|DecimalChar=Yes" };
        QTest::newRow("bracket only") << item("Name=A\nLen=9\n[\nStart=3\n")
                                      << QStringList{ "missing-key|2|A|Start", "line-outside-section|5||[" };
        QTest::newRow("old line ends") << QByteArray("[Item]\rName=A\rStart=1\rLen=2\r")
                                       << QStringList{ "text-behind-header|1||[Item]Name=AStart=1Len=2",
                                                       "missing-key|1||Name", "missing-key|1||Start",
                                                       "missing-key|1||Len", "item-outside-record|1||" };
        QTest::newRow("value set after an absent item, where the one before has its own")
            << alpha("Value=1;x\n[Item]\nName=B\nStart=1\nLen=1\nOccurrences=0\n[ValueSet]\nName=V\nValue=2;y\n")
            << QStringList{ "no-occurrences|9|B|B", "value-set-without-item|14|B|V" };
        QTest::newRow("decimals and codes of occurrences once, and under the first of them")
            << item("Name=A\nStart=1\nLen=1\n[Item]\nName=B\nStart=2\nLen=9\nDecimal=2\nOccurrences=3\n"
                    "[ValueSet]\nValue=1234567\n")
            << QStringList{ "occurrence-names|6|B_1|B", "value-without-label|13|B_1|1234567", "decimals-lost|0|B_1|2",
                            "bound-rounded|0|B_1|1234567" };
        QTest::newRow("decimals of the first item once, where it occurs several times")
            << item("Name=A\nStart=1\nLen=9\nDecimal=2\nOccurrences=3\n")
            << QStringList{ "occurrence-names|2|A_1|A", "decimals-lost|0|A_1|2" };
        QTest::newRow("codes of the first item, where it occurs several times, at the one that has them")
            << item("Name=A\nStart=1\nLen=9\nOccurrences=3\n[ValueSet]\nName=V\nValue=1234567;x\n")
            << QStringList{ "occurrence-names|2|A_1|A", "only-last-occurrence|0|A_3|V", "code-rounded|0|A_3|1234567",
                            "bound-rounded|0|A_3|1234567" };
        QTest::newRow("decimals of plain items each")
            << item("Name=A\nStart=1\nLen=9\nDecimal=2\n[Item]\nName=B\nStart=10\nLen=9\nDecimal=2\n")
            << QStringList{ "decimals-lost|0|A|2", "decimals-lost|0|B|2" };
        QTest::newRow("item before column 1") << item("Name=A\nStart=-3\nLen=2\n[Item]\nName=B\nStart=-2\nLen=2\n")
                                              << QStringList{ "overlapping-positions|0|B|columns -2 to -1" };
        QTest::newRow("lines of id items without their header")
            << QByteArray("[IdItems]\n\nName=LOST\nStart=1\nLen=3\n[Item]\nName=A\nStart=4\nLen=3\n")
            << QStringList{ "line-outside-section|3||Name=LOST" };
        QTest::newRow("level with what it says of itself")
            << QByteArray("[Level]\nLabel=x\nName=L\nNote=n\n[IdItems]\n[Item]\nName=A\nStart=4\nLen=3\n")
            << QStringList();
        QTest::newRow("level with more than that, and one after it")
            << QByteArray("[Level]\nName=L\nColour=red\nStart=1\n[Level]\nName=M\nStart=1\n")
            << QStringList{ "line-outside-section|3||Colour=red", "further-level|5||[Level]",
                            "line-outside-section|7||Start=1" };
        QTest::newRow("keys that reach no field and no group")
            << QByteArray("[Dictionary]\nVersion=1=2\nLabel=Name=x\nLabel=y\nRecordTypeStart=0\nRecordTypeLen=0\n"
                          "Positions\n[Record]\nLabel=a=b\nName=R\nRequired\nRecordLen=abc\nMaxRecords=x\n[Item]\n"
                          "Name=A\nStart=1\nLen=2\nZeroFill=Perhaps\nDataType=Alpha\n[ValueSet]\nLabel=a=b\nLabel=c\n")
            << QStringList();
        QTest::newRow("keys that do") << QByteArray(
            "[Dictionary]\nRecordTypeStart=0\nRecordTypeLen=0=0\n[Record]\nName=R=S\n[Item]\n"
            "Label=a=b\nName=A\nStart=1=2\nLen=x\n")
                                      << QStringList{ "second-equals|3||RecordTypeLen: RecordTypeLen=0=0",

                                                      "second-equals|5||Name: Name=R=S",
                                                      "missing-key|4||RecordTypeValue",
                                                      "second-equals|7|A|Label: Label=a=b",
                                                      "second-equals|9|A|Start: Start=1=2",
                                                      "number-not-converted|10|A|Len=x" };
        QTest::newRow("broken letters after a mark of UTF-8")
            << QByteArray("\xEF\xBB\xBF[IdItems]\n[Item]\nLabel=\xC3\xA2ge\nName=A\nStart=1\nLen=2\n[Item]\r\n"
                          "Label=\xE2ge\r\nName=B\nStart=3\nLen=2\n[Item]\nName=\xE2")
            << QStringList{ QString::fromUtf8("unreadable-letters|8||Label=\xEF\xBF\xBDge"),
                            QString::fromUtf8("unreadable-letters|13||Name=\xEF\xBF\xBD"),
                            QString::fromUtf8("missing-key|12|\xEF\xBF\xBD|Start"),
                            QString::fromUtf8("missing-key|12|\xEF\xBF\xBD|Len") };
        QTest::newRow("item on the record type")
            << QByteArray("[Record]\nName=R\nRecordTypeValue='1'\n[Item]\nName=A\nStart=1\nLen=2\n")
            << QStringList{ "overlapping-positions|0|A|columns 1 to 2" };
        QTest::newRow("item on an id item")
            << item("Name=A\nStart=2\nLen=4\n[Record]\nName=R\nRecordTypeValue='1'\n[Item]\nName=B\nStart=5\nLen=2\n"
                    "[Item]\nName=C\nStart=7\nLen=2\n")
            << QStringList{ "overlapping-positions|0|B|columns 5 to 6" };
        QTest::newRow("record type where there is no record") << item("Name=A\nStart=1\nLen=4\n") << QStringList();
        QTest::newRow("record without its type, where there are types")
            << QByteArray("[Record]\nName=R\n") << QStringList{ "missing-key|1||RecordTypeValue" };
        QTest::newRow("record without its type, where there are none")
            << QByteArray("[Dictionary]\nRecordTypeStart=0\nRecordTypeLen=0\n[Record]\nName=R\n") << QStringList();
        QTest::newRow("one name for two records, of no type")
            << QByteArray("[Dictionary]\nRecordTypeStart=0\nRecordTypeLen=0\n[Record]\nName=R\n[Record]\nName=S\n"
                          "[Record]\nName=R\n")
            << QStringList{ "duplicate-record|0||R=" };
        QTest::newRow("record of the name that the id items go by")
            << QByteArray("[Record]\nName=Common\nRecordTypeValue='1'\n")
            << QStringList{ "duplicate-record|0||Common=1" };
        QTest::newRow("dictionary without the place of the record type")
            << QByteArray("[Dictionary]\nName=D\n")
            << QStringList{ "missing-key|1||RecordTypeLen", "missing-key|1||RecordTypeStart" };
        QTest::newRow("dictionary without record types")
            << QByteArray("[Dictionary]\nRecordTypeLen=0\n") << QStringList();
    }
    void textDictionaryReports() { compare<TCSProDataImport>(); }

    void textDictionaryThatEndsInAnErrorGivesNoLayout()
    {
        ReadReport report;
        TCSProDataImport importer(write("[Record]\nName=R\nRecordTypeValue='1'\n[Item]\nName=A\nStart=2\nLen=2\n"
                                        "[Item]\nName=B\nOccurrences=2000000000\n"));
        TDataImport &base = importer;
        base.setReadReport(&report);
        const auto error = thrownBy([&] { delete base.selectLayoutSource(); });
        QVERIFY(error);
        QCOMPARE(report.notes().back().kind, NoteKind::layoutGivenUp);
        QCOMPARE(report.count(NoteKind::readingEnded), 0);
        QCOMPARE(base.getGroupCount(), 0);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&base);
        QVERIFY(provider.getFields()->isEmpty());
        provider.releaseContents();
        base.releaseContents();
    }

    void jsonDictionaryReports_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("notes");
        QTest::newRow("labels of records are in no layout") << jsonItem("\"length\": 2") << QStringList();
        QTest::newRow("no length") << jsonItem("\"contentType\": \"numeric\"")
                                   << QStringList{ "missing-key|0|A|length" };
        QTest::newRow("no record type") << json("{\"name\": \"A\", \"length\": 2}", "")
                                        << QStringList{ "missing-key|0||recordType" };
        QTest::newRow("column 1 if nothing else is there")
            << json("{\"name\": \"A\", \"length\": 2}", "\"recordType\": {\"start\": 0, \"length\": 0}, ")
            << QStringList();
        QTest::newRow("image") << jsonItem("\"length\": 2, \"contentType\": \"Image\"")
                               << QStringList{ "word-not-recognised|0|A|\"contentType\":\"Image\"" };
        QTest::newRow("label of another type")
            << jsonItem("\"length\": 2, \"labels\": [\"Age\"]") << QStringList{ "wrong-type|0|A|\"labels\":\"Age\"" };
        QTest::newRow("range of an integer")
            << jsonCodes("numeric", value("\"range\": [\"1\", \"9\"]")) << QStringList{ "code-as-zero|0|A|1:9 x" };
        QTest::newRow("word as the code of an integer")
            << jsonCodes("numeric", value("\"value\": \"Z\"")) << QStringList{ "code-as-zero|0|A|Z x" };
        QTest::newRow("word as the code of a number that is no integer")
            << realWithCodes(value("\"value\": \"abc\"") + ", " + value("\"value\": \"1.5\""))
            << QStringList{ "code-as-zero|0|A|abc x" };
        QTest::newRow("range of a number that is no integer")
            << realWithCodes(value("\"range\": [\"1\", \"9\"]")) << QStringList{ "range-as-code|0|A|1:9" };
        QTest::newRow("range of a text") << jsonCodes("alpha", value("\"range\": [\"1\", \"9\"]"))
                                         << QStringList{ "range-as-code|0|A|1:9" };
        QTest::newRow("one number twice")
            << jsonCodes("numeric", value("\"value\": \"1\"") + ", " + value("\"value\": \"01\""))
            << QStringList{ "duplicate-code|0|A|01 x" };
        QTest::newRow("two texts that are one number")
            << jsonCodes("alpha", value("\"value\": \"1\"") + ", " + value("\"value\": \"01\"")) << QStringList();
        QTest::newRow("no label") << jsonCodes("alpha", "{\"pairs\": [{\"value\": \"B\"}]}")
                                  << QStringList{ "value-without-label|0|A|B" };
        QTest::newRow("blank in a code, and a tab and a line feed in labels")
            << jsonCodes("alpha",
                         value("\"value\": \"A B\"")
                             + ", {\"labels\": [{\"text\": \"x\\ty\"}], \"pairs\": [{\"value\": \"C\"}]}"
                             + ", {\"labels\": [{\"text\": \"x\\ny\"}], \"pairs\": [{\"value\": \"D\"}]}")
            << QStringList{ "label-entry-parted|0|A|A B x", "label-entry-parted|0|A|C x\ty",
                            "label-entry-parted|0|A|D x\ny" };
        QTest::newRow("codes of the first item once, where it occurs several times")
            << json(
                   "{\"name\": \"A\", \"start\": 2, \"length\": 7, \"occurrences\": {\"maximum\": 3}, \"valueSets\": [{"
                   "\"name\": \"V\", \"values\": ["
                   + value("\"value\": \"1234567\"") + "]}]}")
            << QStringList{ "occurrence-numbers|0|A_1|A", "code-rounded|0|A_1|1234567", "bound-rounded|0|A_1|1234567" };
        QTest::newRow("each further pair")
            << jsonCodes("alpha", value("\"value\": \"1\"}, {\"value\": \"2\"}, {\"range\": [\"3\", \"4\"]"))
            << QStringList{ "further-pairs|0|A|2 x", "further-pairs|0|A|3:4 x" };
        QTest::newRow("range next to a value")
            << jsonCodes("alpha", value("\"value\": \"1\", \"range\": [\"3\", \"4\"]"))
            << QStringList{ "further-pairs|0|A|3:4 x" };
        QTest::newRow("keys next to the dictionary")
            << QByteArray("{\"software\": \"CSPro\", \"other\": 1, \"dictionary\": ") + jsonItem("\"length\": 2") + "}"
            << QStringList{ "unknown-key|0||\"other\":1" };
        QTest::newRow("record without its type, where there are types")
            << QByteArray(
                   "{\"recordType\": {\"start\": 1, \"length\": 1}, \"levels\": [{\"records\": [{\"name\": \"R\"}]}]}")
            << QStringList{ "missing-key|0||recordType of R" };
        QTest::newRow("record without its type, where there are none") << QByteArray(
            "{\"recordType\": {\"start\": 0, \"length\": 0}, \"levels\": [{\"records\": [{\"name\": \"R\"}]}]}")
                                                                       << QStringList();
    }
    void jsonDictionaryReports() { compare<TCSProJsonDataImport>(); }

    void lookupReportsKeysThatExistAlready()
    {
        QCOMPARE(notesOfLookup("1 Artesia\n2 Copal\n1 Dorado\nEsmeralda\n"),
                 (QStringList{ "duplicate-key|3||1 Dorado", "repeats-line-before|4||Esmeralda" }));
    }

    void lookupReportsALineWithoutASeparatorOnceWhateverItsKeyIs()
    {
        QCOMPARE(notesOfLookup("Artesia\n Copal\n1 Dorado\n1 Dorado\n"),
                 (QStringList{ "repeats-line-before|1||Artesia", "repeats-line-before|2|| Copal",
                               "duplicate-key|4||1 Dorado" }));
    }

    void lookupReportsBytesThatAreNoText()
    {
        QCOMPARE(notesOfLookup("1 Artesia\n2 Cop\xE1l\n"),
                 QStringList{ QString::fromUtf8("unreadable-letters|2||2 Cop\xEF\xBF\xBDl") });
    }

private:
    template <typename Importer> void compare()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, notes);
        ReadReport report;
        Importer importer(write(content));
        TDataImport &base = importer;
        base.setReadReport(&report);
        importedText(base);
        QCOMPARE(inWords(report), notes);
    }

    QStringList notesOfLookup(const QByteArray &content)
    {
        ReadReport report;
        TVpLookup lookup;
        lookup.setFfileName(write(content));
        lookup.setReadReport(&report);
        std::map<QString, int *> frequencies;
        lookup.consistencyCheck(ccNone, frequencies, nullptr);
        return inWords(report);
    }

    QString write(const QByteArray &content)
    {
        const QString path = directory.filePath(QStringLiteral("file"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("a test file cannot be written");
        return path;
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(DictionaryNotesTest)
#include "DictionaryNotesTest.moc"
