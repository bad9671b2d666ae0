#include "import/ReadReport.h"
#include "support/NotesLine.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace
{

const QString planted = QStringLiteral(VAN_TEST_DATA "/report/planted.dcf");
const QString planted8 = QStringLiteral(VAN_TEST_DATA "/report/planted8.dcf");
const QString ended = QStringLiteral(VAN_TEST_DATA "/report/ended.dcf");
const QString clean = QStringLiteral(VAN_TEST_DATA "/report/clean.dcf");
const QString clean8 = QStringLiteral(VAN_TEST_DATA "/report/clean8.dcf");

QSet<QString> kindsIn(const QByteArray &json)
{
    QSet<QString> kinds;
    for (const QJsonValue &note : QJsonDocument::fromJson(json).object().value(QStringLiteral("notes")).toArray())
        kinds.insert(note.toObject().value(QStringLiteral("kind")).toString());
    return kinds;
}

QSet<QString> kindsBetween(NoteKind first, NoteKind last)
{
    QSet<QString> kinds;
    for (int i = int(first); i <= int(last); ++i)
        kinds.insert(ReadReport::idOf(NoteKind(i)));
    return kinds;
}

QStringList sorted(const QSet<QString> &kinds)
{
    QStringList list = kinds.values();
    list.sort();
    return list;
}

} // namespace

/// Tests `vanlayout explain`, run as by a user, and the line of `vanlayout fields` about notes.
class VanlayoutExplainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyOddityPlantedInATextDictionaryIsFound()
    {
        QSet<QString> expected = kindsBetween(NoteKind::unknownSection, NoteKind::encodingGuessed);
        expected += kindsBetween(NoteKind::duplicateVariable, NoteKind::duplicateRecord);
        QSet<QString> found;
        for (const char *decimals : { "no", "yes" })
            found += kindsIn(directory.run({ "explain", "--format", "json", "--decimals", decimals, planted }).out);
        QCOMPARE(sorted(expected - found), QStringList());
        QCOMPARE(sorted(found - expected), QStringList());
        QCOMPARE(sorted(kindsIn(directory.run({ "explain", "--format", "json", ended }).out)),
                 (QStringList{ "layout-given-up", "several-in-a-line" }));
    }

    void everyOddityPlantedInACSPro8DictionaryIsFound()
    {
        const Run explained = directory.run({ "explain", "--format", "json", planted8 });
        QCOMPARE(explained.status, finding);
        const QSet<QString> found = kindsIn(explained.out);
        QCOMPARE(sorted(kindsBetween(NoteKind::wrongType, NoteKind::firstAtColumnOne) - found), QStringList());
        QVERIFY(found.contains(QStringLiteral("unknown-key")));
        QVERIFY(found.contains(QStringLiteral("further-level")));
        QVERIFY(found.contains(QStringLiteral("further-value-set")));
    }

    void cleanDictionaryIsExplainedInSilence_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("type");
        QTest::newRow("text") << clean << "CSPro text dictionary";
        QTest::newRow("CSPro 8") << clean8 << "CSPro 8 JSON dictionary";
    }
    void cleanDictionaryIsExplainedInSilence()
    {
        QFETCH(QString, file);
        QFETCH(QString, type);
        const Run explained = directory.run({ "explain", file });
        QCOMPARE(explained.status, fine);
        QCOMPARE(explained.err, QByteArray());
        QCOMPARE(QString::fromUtf8(explained.out), file + ": " + type + ", no note\n");
        const Run shown = directory.run({ "fields", file });
        QCOMPARE(shown.status, fine);
        QCOMPARE(shown.err, QByteArray());
    }

    void jsonAfterAByteOrderMarkIsReportedAsJson()
    {
        directory.write("d.dcf", "\xEF\xBB\xBF{\"name\": \"D\", \"levels\": []}");
        const Run explained = directory.run({ "explain", "--type", "cspro8", "d.dcf" });
        QCOMPARE(explained.status, noAnswer);
        QVERIFY2(explained.out.startsWith("d.dcf: CSPro 8 JSON dictionary, 1 note (1 lost)\n"),
                 explained.out.constData());
        QVERIFY2(explained.out.contains(", but a byte-order mark of UTF-8\n"), explained.out.constData());
    }

    void tableIsBySeverityThenByKind()
    {
        directory.write("d.dcf",
                        "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\nLen=2\nTaste=sweet\n"
                        "[Item]\nName=TENS\nStart=1\nLen=1\nItemType=SubItem\n"
                        "[Item]\nName=AGE\nStart=9\nLen=1\n");
        const Run explained = directory.run({ "explain", "d.dcf" });
        QCOMPARE(explained.status, finding);
        QCOMPARE(explained.err, QByteArray());
        QCOMPARE(QString::fromUtf8(explained.out),
                 "d.dcf: CSPro text dictionary, 5 notes (3 lost, 1 changed, 1 info)\n"
                 "\n"
                 "LOST: 3\n"
                 "  unknown-key (2)\n"
                 "    "
                     + ReadReport::messageOf(NoteKind::unknownKey)
                     + "\n"
                       "      line 6  AGE  Colour=red (and 1 more)\n"
                       "  repeated-key (1)\n"
                       "    "
                     + ReadReport::messageOf(NoteKind::repeatedKey)
                     + "\n"
                       "      line 7  AGE  Len=2\n"
                       "\n"
                       "CHANGED: 1\n"
                       "  duplicate-variable (1)\n"
                       "    "
                     + ReadReport::messageOf(NoteKind::duplicateVariable)
                     + "\n"
                       "      AGE\n"
                       "\n"
                       "INFO: 1\n"
                       "  subitem (1)\n"
                       "    "
                     + ReadReport::messageOf(NoteKind::subitem)
                     + "\n"
                       "      line 9  TENS\n");
    }

    void jsonHasEveryKeyInItsOrder()
    {
        directory.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\n");
        const Run explained = directory.run({ "explain", "--format", "json", "d.dcf" });
        QCOMPARE(explained.status, finding);
        QCOMPARE(QString::fromUtf8(explained.out),
                 "{\n"
                 "  \"file\": \"d.dcf\",\n"
                 "  \"type\": \"cspro\",\n"
                 "  \"lost\": 1,\n"
                 "  \"changed\": 0,\n"
                 "  \"info\": 0,\n"
                 "  \"notes\": [\n"
                 "    {\n"
                 "      \"kind\": \"unknown-key\",\n"
                 "      \"severity\": \"lost\",\n"
                 "      \"line\": 6,\n"
                 "      \"variable\": \"AGE\",\n"
                 "      \"text\": \"Colour=red\",\n"
                 "      \"message\": \""
                     + ReadReport::messageOf(NoteKind::unknownKey)
                     + "\"\n"
                       "    }\n"
                       "  ]\n"
                       "}\n");
    }

    void severalFilesAreOneJsonObjectALine()
    {
        const Run explained = directory.run({ "explain", "--format", "json", clean, planted8 });
        const QList<QByteArray> lines = explained.out.trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        QCOMPARE(kindsIn(lines.at(0)).size(), 0);
        QVERIFY(!kindsIn(lines.at(1)).isEmpty());
        QCOMPARE(explained.status, finding); // the worst one counts
    }

    void changedOrInfoIsNoFinding()
    {
        directory.write("d.dcf",
                        "[Item]\nName=AGE\nStart=1\nLen=3\n[Item]\nName=TENS\nStart=1\nLen=1\nItemType=SubItem\n");
        const Run explained = directory.run({ "explain", "d.dcf" });
        QVERIFY(explained.out.startsWith("d.dcf: CSPro text dictionary, 3 notes (2 changed, 1 info)\n"));
        QCOMPARE(explained.status, fine);
    }

    void tableShowsTheFirstTenPlacesOfAKind()
    {
        QByteArray lines;
        for (int i = 0; i < 12; ++i)
            lines += "Key" + QByteArray::number(i) + "=x\n";
        directory.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\n" + lines);
        const QByteArray some = directory.run({ "explain", "d.dcf" }).out;
        QVERIFY(some.contains("unknown-key (12)\n"));
        QVERIFY(some.endsWith("      line 6  AGE  Key0=x (and 11 more)\n"));
        const QByteArray all = directory.run({ "explain", "--all", "d.dcf" }).out;
        QVERIFY(all.contains("Key0=x\n"));
        QVERIFY(all.contains("Key10=x\n"));
        QVERIFY(all.endsWith("Key11=x\n"));
    }

    void tableShowsTheFirstTenVariablesOfAKind()
    {
        QByteArray items;
        for (int i = 0; i < 12; ++i) {
            const QByteArray number = QByteArray::number(i);
            items += "[Item]\nName=V" + number + "\nStart=" + QByteArray::number(i + 1)
                + "\nLen=1\nColour=red\nTaste=sweet\n";
        }
        directory.write("d.dcf", "[IdItems]\n" + items);
        const QByteArray table = directory.run({ "explain", "d.dcf" }).out;
        QVERIFY2(table.contains("unknown-key (24)\n"), table.constData());
        QVERIFY2(table.endsWith("V9  Colour=red (and 1 more)\n      and 4 more\n"), table.constData());
    }

    void tableSaysWhatTheFileHasInstead_data()
    {
        QTest::addColumn<QByteArray>("dictionary");
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<QByteArray>("instead");
        const QByteArray item
            = "[Dictionary]\nVersion=CSPro 7.7\n[Level]\nName=L\n[IdItems]\n[Item]\nName=ID\nStart=1\n"
              "Len=1\n[Record]\nName=R\nRecordTypeValue='1'\n[Item]\nName=X\nStart=2\nLen=6\n";
        const QByteArray json
            = R"({"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "D", "languages": [{"name": "EN"}, {"name": "FR"}],
"levels": [{"name": "L", "ids": {"items": []}, "records": [{"name": "R", "recordType": "1", "items": [{"name": "X",
"labels": [{"text": "House", "language": "EN"}, {"text": "Maison", "language": "FR"}],
"contentType": "numeric", "start": 2, "length": 3, "valueSets": [{"name": "X_VS", "values": [
{"labels": [{"text": "All"}], "pairs": [{"range": ["1", "9"]}]},
{"labels": [{"text": "None"}], "pairs": [{"value": "99"}], "special": "missing"}]}]}]}]}]})";
        const QByteArray set = "[ValueSet]\nName=A\n";
        const QByteArray mark = "Name=MISSING ,Special\n";
        QTest::newRow("implied decimals") << item + "Decimal=2\n"
                                          << QByteArray("decimals-lost") << QByteArray("9(6)v2, 2 implied decimals");
        QTest::newRow("written decimal") << item + "Decimal=1\nDecimalChar=Yes\n"
                                         << QByteArray("decimals-lost") << QByteArray("9(6).1, 1 written decimal");
        QTest::newRow("subitem of an item that repeats")
            << item + "Occurrences=3\n[Item]\nName=S\nStart=3\nLen=2\nItemType=SubItem\n"
            << QByteArray("subitem") << QByteArray("part of X, columns 3 to 4, the first of 3 occurrences");
        QTest::newRow("mark in two sets")
            << item + set + "Value=1;One\n" + mark + "[ValueSet]\nName=B\nValue=1;One\n" + mark
            << QByteArray("marked-value") << QByteArray("missing is 1");
        QTest::newRow("subitem") << item + "[Item]\nName=S\nStart=3\nLen=2\nItemType=SubItem\n"
                                 << QByteArray("subitem") << QByteArray("part of X, columns 3 to 4");
        QTest::newRow("occurrences") << item + "Occurrences=3\n"
                                     << QByteArray("occurrence-names")
                                     << QByteArray("columns 2 to 7, the first of 3 occurrences");
        QTest::newRow("further value set") << item
                + "[ValueSet]\nName=A\nValue=1;One\n[ValueSet]\nName=B\nValue=1;One\n"
                  "Value=2:9;More\n" << QByteArray("further-value-set")
                                           << QByteArray("value sets A (1 value), B (2 values, 1 with ranges)");
        const auto with
            = [&](const QByteArray &found, const QByteArray &other) { return QByteArray(item).replace(found, other); };
        const QByteArray columns = "columns 2 to 7";
        const QByteArray oneValue = "value set A (1 value)";
        QTest::newRow("repeated length") << item + "Len=3\n" << QByteArray("repeated-key") << columns;
        QTest::newRow("repeated label") << item + "Label=One\nLabel=Two\n"
                                        << QByteArray("repeated-key") << QByteArray("One");
        QTest::newRow("second sign") << item + "Label=Rent = all\n"
                                     << QByteArray("second-equals") << QByteArray("Rent = all");
        QTest::newRow("no length") << with("Len=6\n", "Len\nLen=6\n") << QByteArray("key-without-equals")
                                   << QByteArray("column 2, no length");
        QTest::newRow("number") << item + "Occurrences=many\n" << QByteArray("number-not-converted") << columns;
        QTest::newRow("number taken from a label")
            << with("Start=2", "Label=Start of X\nStart=2") << QByteArray("number-not-converted") << columns;
        QTest::newRow("key within another line")
            << with("Start=2", "Label=Start of X\nStart=2") << QByteArray("key-by-substring") << columns;
        QTest::newRow("word") << item + "DataType=Date\n" << QByteArray("word-not-recognised") << QByteArray("date");
        QTest::newRow("overlap") << item + "[Item]\nName=Y\nStart=4\nLen=1\nOccurrences=2\n"
                                 << QByteArray("overlapping-positions")
                                 << QByteArray("columns 4 to 4, the first of 2 occurrences");
        QTest::newRow("no occurrences") << item + "Occurrences=0\n" << QByteArray("no-occurrences") << columns;
        QTest::newRow("two marks") << item + set + "Value=1;One\n" + mark + "Value=2;Two\n" + mark
                                   << QByteArray("further-mark") << QByteArray("missing is 1; missing is 2");
        QTest::newRow("marked value") << item + set + "Value=1;One\n" + mark << QByteArray("marked-value")
                                      << QByteArray("missing is 1");
        QTest::newRow("marked range") << item + set + "Value=1:5;One\n" + mark << QByteArray("marked-range")
                                      << QByteArray("missing is 1 to 5");
        QTest::newRow("mark of an occurrence") << item + "Occurrences=2\n" + set + "Value=1;One\n" + mark
                                               << QByteArray("mark-of-last-occurrence") << QByteArray("missing is 1");
        QTest::newRow("apostrophes") << item + set + "Value='A';One\n" << QByteArray("kept-apostrophe") << oneValue;
        QTest::newRow("no label") << item + set + "Value=1\n" << QByteArray("value-without-label") << oneValue;
        QTest::newRow("label only") << item + set + "Value=;One\n" << QByteArray("label-as-code") << oneValue;
        QTest::newRow("no upper bound") << item + set + "Value=1:;One\n"
                                        << QByteArray("range-without-upper") << oneValue;
        QTest::newRow("range in a text dictionary")
            << item + set + "Value=1:5;One\n"
            << QByteArray("range-as-end-points") << QByteArray("value set A (1 value, 1 with ranges)");
        QTest::newRow("several in a line")
            << item + "DataType=Alpha\n" + set + "Value=1 2:3 4:5;One\n"
            << QByteArray("several-in-a-line") << QByteArray("value set A (1 value, 1 with ranges)");
        QTest::newRow("code twice") << item + set + "Value=1;One\nValue=01;Two\n"
                                    << QByteArray("duplicate-code") << QByteArray("value set A (2 values)");
        QTest::newRow("long code") << item + set + "Value=12345678;One\n" << QByteArray("code-rounded") << oneValue;
        QTest::newRow("long bound") << item + set + "Value=12345678;One\n" << QByteArray("bound-rounded") << oneValue;
        QTest::newRow("no number") << item + set + "Value=x;One\n" << QByteArray("value-set-dropped") << oneValue;
        QTest::newRow("decimal code") << item + set + "Value=0.5;One\n" << QByteArray("decimals-dropped") << oneValue;
        QTest::newRow("blank in a code") << item + "DataType=Alpha\n" + set + "Value='a b';One\n"
                                         << QByteArray("label-entry-parted") << oneValue;
        QTest::newRow("set of the last occurrence")
            << with("Start=1\nLen=1\n", "Start=1\nLen=1\nOccurrences=2\n" + set + "Value=1;One\n")
            << QByteArray("only-last-occurrence") << oneValue;
        QTest::newRow("special") << json << QByteArray("special-not-read") << QByteArray("missing is 99");
        QTest::newRow("languages") << json << QByteArray("further-languages") << QByteArray("EN: House; FR: Maison");
        QTest::newRow("range") << json << QByteArray("code-as-zero")
                               << QByteArray("value set X_VS (2 values, 1 with ranges)");
    }
    void tableSaysWhatTheFileHasInstead()
    {
        QFETCH(QByteArray, dictionary);
        QFETCH(QByteArray, kind);
        QFETCH(QByteArray, instead);
        directory.write("d.dcf", dictionary);
        const Run table = directory.run({ "explain", "d.dcf" });
        const int place = table.out.indexOf("  " + kind + " (");
        QVERIFY2(place >= 0, table.out.constData());
        QVERIFY2(table.out.mid(place).contains("the file has: " + instead + '\n'), table.out.constData());
        QSet<QString> found;
        const QJsonArray notes
            = directory.run({ "explain", "--format", "json", "d.dcf" }).json().toObject().value("notes").toArray();
        for (const QJsonValue &note : notes) {
            if (note.toObject().value("kind").toString().toLatin1() == kind)
                found.insert(note.toObject().value("exact").toString());
        }
        QVERIFY2(found.contains(instead), qPrintable(sorted(found).join("; ")));
    }

    void aLongDescriptionOfTheItemIsCut()
    {
        QByteArray sets;
        for (int i = 0; i < 200; ++i)
            sets += "[ValueSet]\nName=SET" + QByteArray::number(i) + "\nValue=1;One\n";
        directory.write(
            "d.dcf",
            "[Dictionary]\nVersion=CSPro 7.7\n[Level]\nName=L\n[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\n" + sets
                + "[Record]\nName=R\n");
        const QJsonValue json = directory.run({ "explain", "--format", "json", "d.dcf" }).json();
        bool isFound = false;
        for (const QJsonValue &note : json["notes"].toArray()) {
            const QString exact = note.toObject()["exact"].toString();
            QVERIFY(exact.size() <= 400);
            isFound = isFound || (exact.startsWith("value sets SET0 (1 value), ") && exact.endsWith(QChar(0x2026)));
        }
        QVERIFY(isFound);
    }

    void aLongNameIsCutInTheTable()
    {
        directory.write("d.dcf", "[IdItems]\n[Item]\nName=" + QByteArray(60, 'N') + "\nStart=1\nLen=3\nColour=red\n");
        const QString table = QString::fromUtf8(directory.run({ "explain", "d.dcf" }).out);
        QVERIFY2(table.contains("  " + QString(39, 'N') + QChar(0x2026) + "  Colour=red\n"), qPrintable(table));
    }

    void whatTheNoteSaysIsNotSaidAgain()
    {
        directory.write(
            "d.dcf",
            "[Dictionary]\nVersion=CSPro 7.7\n[Level]\nName=L\n[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\n"
            "[Item]\nName=SEX\nStart=3\nLen=1\n[Record]\nName=R\n");
        const QByteArray table = directory.run({ "explain", "d.dcf" }).out;
        QVERIFY2(table.contains("SEX  columns 3 to 3\n"), table.constData());
        QVERIFY2(!table.contains("the file has"), table.constData());
    }

    void aNameOfSeveralItemsIsNotExplainedFurther()
    {
        const QByteArray item = "[Item]\nName=X\nStart=1\nLen=6\nDecimal=2\n";
        directory.write("d.dcf",
                        "[Dictionary]\nVersion=CSPro 7.7\n[Level]\nName=L\n[IdItems]\n[Record]\nName=R\n" + item
                            + "[Record]\nName=S\n" + item);
        const QByteArray table = directory.run({ "explain", "d.dcf" }).out;
        QVERIFY2(table.contains("decimals-lost"), table.constData());
        QVERIFY2(!table.contains("the file has"), table.constData());
    }

    void linesAreAsWideAsTheTerminal()
    {
        directory.write(
            "d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=" + QByteArray("red ").repeated(60) + '\n');
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("COLUMNS", "60");
        tool.setProcessEnvironment(environment);
        const QByteArray table = directory.run({ "explain", "d.dcf" }, tool).out;
        int indented = 0;
        const QList<QByteArray> lines = table.split('\n');
        for (const QByteArray &line : lines) {
            QVERIFY2(line.size() <= 60, line.constData());
            indented += line.startsWith("                   red") ? 1 : 0;
        }
        QVERIFY2(indented >= 5, table.constData());
    }

    void aWordThatIsWiderThanTheTerminalIsBroken_data()
    {
        QTest::addColumn<QByteArray>("columns");
        QTest::addColumn<QString>("table");
        QTest::newRow("next to its variable") << QByteArray("41")
                                              << "      line 6  AGE  Colour=redredredredred\n"
                                                 "                   redredredredred\u4E2D\u4E2D\u4E2D\n"
                                                 "                   \u4E2D\u4E2D\u4E2D\n";
        QTest::newRow("where there is little room") << QByteArray("20")
                                                    << "      line 6  AGE\n"
                                                       "Colour=redredredredr\n"
                                                       "edredredredredred\u4E2D\n"
                                                       "\u4E2D\u4E2D\u4E2D\u4E2D\u4E2D\n";
    }
    void aWordThatIsWiderThanTheTerminalIsBroken()
    {
        QFETCH(QByteArray, columns);
        QFETCH(QString, table);
        directory.write("d.dcf",
                        "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=" + QByteArray("red").repeated(10)
                            + QByteArray("\xE4\xB8\xAD").repeated(6) + '\n');
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("COLUMNS", columns);
        tool.setProcessEnvironment(environment);
        const QString out = QString::fromUtf8(directory.run({ "explain", "d.dcf" }, tool).out);
        QVERIFY2(out.contains(table), qPrintable(out));
    }

    void theWorstOfSeveralFilesIsTheStatus()
    {
        directory.write("subitem.dcf",
                        "[Item]\nName=AGE\nStart=1\nLen=3\n[Item]\nName=TENS\nStart=1\nLen=1\nItemType=SubItem\n");
        const QStringList call{ "explain", "--summary", "--fail-on", "subitem" };
        QCOMPARE(directory.run(call + QStringList{ clean, clean8 }).status, fine);
        QCOMPARE(directory.run(call + QStringList{ "subitem.dcf", clean }).status, finding);
        const Run worst = directory.run(call + QStringList{ "absent.dcf", "subitem.dcf", clean });
        QCOMPARE(worst.status, noAnswer);
        QCOMPARE(worst.out.count('\n'), 3);
    }

    void summaryIsALineAFile()
    {
        const Run summary = directory.run({ "explain", "--summary", clean, planted8 });
        QCOMPARE(summary.status, finding);
        const QList<QByteArray> lines = summary.out.split('\n');
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines.at(0), clean.toUtf8() + ": CSPro text dictionary, no note");
        QVERIFY2(lines.at(1).startsWith(planted8.toUtf8() + ": CSPro 8 JSON dictionary, "), lines.at(1).constData());
        const QJsonObject json
            = directory.run({ "explain", "--summary", "--format", "json", planted8 }).json().toObject();
        QVERIFY(json.value("lost").toInt() > 0);
        QVERIFY(!json.contains("notes"));
    }

    void statusFollowsWhatIsAskedFor_data()
    {
        QTest::addColumn<QStringList>("asked");
        QTest::addColumn<int>("status");
        QTest::newRow("lost by default") << QStringList() << fine;
        QTest::newRow("lost") << QStringList{ "--fail-on", "lost" } << fine;
        QTest::newRow("changed") << QStringList{ "--fail-on", "changed" } << finding;
        QTest::newRow("kind that is there") << QStringList{ "--fail-on", "subitem" } << finding;
        QTest::newRow("kind that is not") << QStringList{ "--fail-on", "unknown-key" } << fine;
        QTest::newRow("one of several") << QStringList{ "--fail-on", "unknown-key,subitem" } << finding;
        QTest::newRow("option again") << QStringList{ "--fail-on", "subitem", "--fail-on", "unknown-key" } << finding;
    }
    void statusFollowsWhatIsAskedFor()
    {
        QFETCH(QStringList, asked);
        QFETCH(int, status);
        directory.write("d.dcf",
                        "[Item]\nName=AGE\nStart=1\nLen=3\n[Item]\nName=TENS\nStart=1\nLen=1\nItemType=SubItem\n");
        QCOMPARE(directory.run(QStringList{ "explain", "d.dcf" } + asked).status, status);
    }

    void changedIncludesWhatIsLost()
    {
        directory.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\n");
        QCOMPARE(directory.run({ "explain", "--fail-on", "changed", "d.dcf" }).status, finding);
        QCOMPARE(directory.run({ "explain", "--fail-on", "subitem", "d.dcf" }).status, fine);
    }

    void anUnknownKindIsSuggested()
    {
        const Run run = directory.run({ "explain", "--fail-on", "subitm", clean });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: --fail-on: subitm is not known; did you mean subitem?\n"));
    }

    void controlCharactersOfTheFileReachNoTerminal()
    {
        directory.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nCo\x1b[31m=red\n");
        const Run explained = directory.run({ "explain", "d.dcf" });
        QCOMPARE(explained.status, finding);
        QVERIFY(!explained.out.contains('\x1b'));
        QVERIFY(explained.out.contains("[31m=red"));
    }

    void lineAsLongAsTheFileIsCutInTheTable()
    {
        directory.write("d.dcf", QByteArray(100000, 'x') + "\n[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\n");
        const QByteArray table = directory.run({ "explain", "d.dcf" }).out;
        QVERIFY(table.contains("line-outside-section (1)\n"));
        QVERIFY(table.size() < 1000);
        QVERIFY(directory.run({ "explain", "--format", "json", "d.dcf" }).out.size() > 100000);
    }

    void lookupLinesWithoutASeparatorAreReported()
    {
        directory.write("codes.txt", "1;Artesia\n2;Copal\nDorado\n");
        const Run explained = directory.run({ "explain", "--type", "lookup", "--separator", "semicolon", "codes.txt" });
        QCOMPARE(explained.status, fine); // changed, not lost
        QCOMPARE(QString::fromUtf8(explained.out),
                 "codes.txt: lookup file, 1 note (1 changed)\n"
                 "\n"
                 "CHANGED: 1\n"
                 "  repeats-line-before (1)\n"
                 "    "
                     + ReadReport::messageOf(NoteKind::repeatsLineBefore)
                     + "\n"
                       "      line 3  Dorado\n");
    }

    void fileWithoutLayoutIsExplainedAndHasStatus2()
    {
        const Run explained = directory.run({ "explain", ended });
        QCOMPARE(explained.status, noAnswer);
        QVERIFY(explained.out.contains("layout-given-up (1)\n"));
        QCOMPARE(QString::fromUtf8(explained.err),
                 "vanlayout: " + ended + ": reading ended in error 242: Invalid contents in line\n");
    }

    void fileThatGaveNoLayoutIsReported_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QString>("problem");
        const QString nothing = QStringLiteral("no variable found, read as a ");
        QTest::newRow("absent") << QStringList("absent.dcf") << "absent.dcf: 1 note (1 lost)"
                                << "no such file";
        QTest::newRow("empty name") << QStringList("") << "'': 1 note (1 lost)"
                                    << "no such file";
        QTest::newRow("directory") << QStringList(".") << ".: 1 note (1 lost)"
                                   << "is a directory";
        QTest::newRow("absent lookup") << QStringList{ "--type", "lookup", "absent.txt" }
                                       << "absent.txt: lookup file, 1 note (1 lost)"
                                       << "no such file";
        QTest::newRow("empty") << QStringList("empty.dcf") << "empty.dcf: CSPro text dictionary, 1 note (1 lost)"
                               << nothing + "CSPro text dictionary";
        QTest::newRow("empty object") << QStringList{ "--type", "cspro8", "object.dcf" }
                                      << "object.dcf: CSPro 8 JSON dictionary, 3 notes (1 lost, 2 changed)"
                                      << nothing + "CSPro 8 JSON dictionary";
    }
    void fileThatGaveNoLayoutIsReported()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, heading);
        QFETCH(QString, problem);
        directory.write("empty.dcf", QByteArray());
        directory.write("object.dcf", "{}");
        const Run table = directory.run(QStringList("explain") + arguments);
        verifyComplaint(table,
                        QFile::encodeName(arguments.last().isEmpty() ? "''" : arguments.last()) + ": "
                            + problem.toUtf8() + '\n');
        QVERIFY2(table.out.startsWith(heading.toUtf8() + "\n\nLOST: 1\n  file-not-read (1)\n"), table.out.constData());
        QVERIFY(table.out.contains("\n      " + problem.toUtf8() + '\n'));
        const Run json = directory.run(QStringList{ "explain", "--format", "json" } + arguments);
        QCOMPARE(json.status, noAnswer);
        QCOMPARE(json.err, table.err);
        QCOMPARE(json.json()["lost"].toInt(), 1);
        QStringList reported;
        for (const auto &note : json.json()["notes"].toArray()) {
            if (note.toObject()["severity"].toString() == "lost")
                reported.append(note.toObject()["kind"].toString() + '/' + note.toObject()["text"].toString());
        }
        QCOMPARE(reported, QStringList("file-not-read/" + problem));
    }

    void whatWasLostOnTheWayIsReportedOnce()
    {
        const Run explained = directory.run({ "explain", ended });
        QVERIFY(!explained.out.contains("file-not-read"));
    }

    void noAnswerIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        QTest::newRow("no file") << QStringList{ "explain" } << QByteArray("FILE");
        QTest::newRow("missing") << QStringList{ "explain", "missing.dcf" } << QByteArray("missing.dcf: ");
        QTest::newRow("missing lookup") << QStringList{ "explain", "--type", "lookup", "missing.txt" }
                                        << QByteArray("missing.txt: ");
        QTest::newRow("directory") << QStringList{ "explain", "." } << QByteArray(".: ");
        QTest::newRow("format") << QStringList{ "explain", "--format", "csv", clean } << QByteArray("--format");
    }
    void noAnswerIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        verifyComplaint(directory.run(arguments), problem);
    }

    void showSaysInOneLineHowManyNotesThereAre_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("table") << "table";
        QTest::newRow("json") << "json";
        QTest::newRow("csv") << "csv";
    }
    void showSaysInOneLineHowManyNotesThereAre()
    {
        QFETCH(QString, format);
        directory.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\n");
        const Run shown = directory.run({ "fields", "--format", format, "d.dcf" });
        QCOMPARE(shown.status, fine);
        QCOMPARE(shown.err, QByteArray("vanlayout: d.dcf: 1 note (1 lost); vanlayout explain shows them\n"));
        QVERIFY(!shown.out.contains("note"));
    }

    void showOfAFileWithoutLayoutPrintsOnlyTheProblem()
    {
        const Run shown = directory.run({ "fields", ended });
        QCOMPARE(shown.status, noAnswer);
        QCOMPARE(notesLinesOf(shown.err), QByteArray());
        QCOMPARE(shown.err.count('\n'), 1);
    }

private:
    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutExplainTest)
#include "VanlayoutExplainTest.moc"
