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

/// `vanlayout explain`, run as a user runs it, and what `vanlayout fields` says of it.
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
            found += kindsIn(folder.run({ "explain", "--format", "json", "--decimals", decimals, planted }).out);
        QCOMPARE(sorted(expected - found), QStringList());
        QCOMPARE(sorted(found - expected), QStringList());
        QCOMPARE(sorted(kindsIn(folder.run({ "explain", "--format", "json", ended }).out)),
                 (QStringList{ "layout-given-up", "several-in-a-line" }));
    }

    void everyOddityPlantedInACSPro8DictionaryIsFound()
    {
        const Run explained = folder.run({ "explain", "--format", "json", planted8 });
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
        const Run explained = folder.run({ "explain", file });
        QCOMPARE(explained.status, fine);
        QCOMPARE(explained.err, QByteArray());
        QCOMPARE(QString::fromUtf8(explained.out), file + ": " + type + ", no note\n");
        const Run shown = folder.run({ "fields", file });
        QCOMPARE(shown.status, fine);
        QCOMPARE(shown.err, QByteArray());
    }

    void jsonBehindAByteOrderMarkIsToldAsWhatItIs()
    {
        folder.write("d.dcf", "\xEF\xBB\xBF{\"name\": \"D\", \"levels\": []}");
        const Run explained = folder.run({ "explain", "--type", "cspro8", "d.dcf" });
        QCOMPARE(explained.status, noAnswer);
        QVERIFY2(explained.out.startsWith("d.dcf: CSPro 8 JSON dictionary, 1 note (1 lost)\n"),
                 explained.out.constData());
        QVERIFY2(explained.out.contains(", but a byte-order mark of UTF-8\n"), explained.out.constData());
    }

    void tableIsByGravityThenByKind()
    {
        folder.write("d.dcf",
                     "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\nLen=2\nTaste=sweet\n"
                     "[Item]\nName=TENS\nStart=1\nLen=1\nItemType=SubItem\n"
                     "[Item]\nName=AGE\nStart=9\nLen=1\n");
        const Run explained = folder.run({ "explain", "d.dcf" });
        QCOMPARE(explained.status, finding);
        QCOMPARE(explained.err, QByteArray());
        QCOMPARE(QString::fromUtf8(explained.out),
                 "d.dcf: CSPro text dictionary, 5 notes (3 lost, 1 changed, 1 curious)\n"
                 "\n"
                 "LOST: 3\n"
                 "  unknown-key (2)\n"
                 "    "
                     + ReadReport::sentenceOf(NoteKind::unknownKey)
                     + "\n"
                       "      line 6  AGE  Colour=red\n"
                       "      line 8  AGE  Taste=sweet\n"
                       "  repeated-key (1)\n"
                       "    "
                     + ReadReport::sentenceOf(NoteKind::repeatedKey)
                     + "\n"
                       "      line 7  AGE  Len=2\n"
                       "\n"
                       "CHANGED: 1\n"
                       "  duplicate-variable (1)\n"
                       "    "
                     + ReadReport::sentenceOf(NoteKind::duplicateVariable)
                     + "\n"
                       "      AGE\n"
                       "\n"
                       "CURIOUS: 1\n"
                       "  subitem (1)\n"
                       "    "
                     + ReadReport::sentenceOf(NoteKind::subitem)
                     + "\n"
                       "      line 9  TENS\n");
    }

    void jsonHasEveryKeyInItsOrder()
    {
        folder.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\n");
        const Run explained = folder.run({ "explain", "--format", "json", "d.dcf" });
        QCOMPARE(explained.status, finding);
        QCOMPARE(QString::fromUtf8(explained.out),
                 "{\n"
                 "  \"file\": \"d.dcf\",\n"
                 "  \"type\": \"cspro\",\n"
                 "  \"lost\": 1,\n"
                 "  \"changed\": 0,\n"
                 "  \"curious\": 0,\n"
                 "  \"notes\": [\n"
                 "    {\n"
                 "      \"kind\": \"unknown-key\",\n"
                 "      \"gravity\": \"lost\",\n"
                 "      \"line\": 6,\n"
                 "      \"variable\": \"AGE\",\n"
                 "      \"text\": \"Colour=red\",\n"
                 "      \"sentence\": \""
                     + ReadReport::sentenceOf(NoteKind::unknownKey)
                     + "\"\n"
                       "    }\n"
                       "  ]\n"
                       "}\n");
    }

    void severalFilesAreOneJsonObjectALine()
    {
        const Run explained = folder.run({ "explain", "--format", "json", clean, planted8 });
        const QList<QByteArray> lines = explained.out.trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        QCOMPARE(kindsIn(lines.at(0)).size(), 0);
        QVERIFY(!kindsIn(lines.at(1)).isEmpty());
        QCOMPARE(explained.status, finding); // the worst one counts
    }

    void whatIsChangedOrCuriousIsNoFinding()
    {
        folder.write("d.dcf",
                     "[Item]\nName=AGE\nStart=1\nLen=3\n[Item]\nName=TENS\nStart=1\nLen=1\nItemType=SubItem\n");
        const Run explained = folder.run({ "explain", "d.dcf" });
        QVERIFY(explained.out.startsWith("d.dcf: CSPro text dictionary, 3 notes (2 changed, 1 curious)\n"));
        QCOMPARE(explained.status, fine);
    }

    void tableShowsTheFirstTenPlacesOfAKind()
    {
        QByteArray lines;
        for (int i = 0; i < 12; ++i)
            lines += "Key" + QByteArray::number(i) + "=x\n";
        folder.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\n" + lines);
        const QByteArray some = folder.run({ "explain", "d.dcf" }).out;
        QVERIFY(some.contains("unknown-key (12)\n"));
        QVERIFY(some.contains("Key9=x\n      and 2 more\n"));
        const QByteArray all = folder.run({ "explain", "--all", "d.dcf" }).out;
        QVERIFY(all.contains("Key10=x\n"));
        QVERIFY(all.endsWith("Key11=x\n"));
    }

    void controlCharactersOfTheFileReachNoTerminal()
    {
        folder.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nCo\x1b[31m=red\n");
        const Run explained = folder.run({ "explain", "d.dcf" });
        QCOMPARE(explained.status, finding);
        QVERIFY(!explained.out.contains('\x1b'));
        QVERIFY(explained.out.contains("[31m=red"));
    }

    void lineAsLongAsTheFileIsCutInTheTable()
    {
        folder.write("d.dcf", QByteArray(100000, 'x') + "\n[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\n");
        const QByteArray table = folder.run({ "explain", "d.dcf" }).out;
        QVERIFY(table.contains("line-outside-section (1)\n"));
        QVERIFY(table.size() < 1000);
        QVERIFY(folder.run({ "explain", "--format", "json", "d.dcf" }).out.size() > 100000);
    }

    void lookupLinesWithoutASeparatorAreTold()
    {
        folder.write("codes.txt", "1;Artesia\n2;Copal\nDorado\n");
        const Run explained = folder.run({ "explain", "--type", "lookup", "--separator", "semicolon", "codes.txt" });
        QCOMPARE(explained.status, fine); // changed, not lost
        QCOMPARE(QString::fromUtf8(explained.out),
                 "codes.txt: lookup file, 1 note (1 changed)\n"
                 "\n"
                 "CHANGED: 1\n"
                 "  repeats-line-before (1)\n"
                 "    "
                     + ReadReport::sentenceOf(NoteKind::repeatsLineBefore)
                     + "\n"
                       "      line 3  Dorado\n");
    }

    void fileWithoutLayoutIsExplainedAndHasStatus2()
    {
        const Run explained = folder.run({ "explain", ended });
        QCOMPARE(explained.status, noAnswer);
        QVERIFY(explained.out.contains("layout-given-up (1)\n"));
        QCOMPARE(QString::fromUtf8(explained.err),
                 "vanlayout: " + ended + ": reading ended in error 242: Invalid contents in line\n");
    }

    void fileThatGaveNoLayoutIsTold_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QString>("problem");
        const QString nothing = QStringLiteral("no variable found, read as a ");
        QTest::newRow("absent") << QStringList("absent.dcf") << "absent.dcf: 1 note (1 lost)"
                                << "no such file";
        QTest::newRow("empty name") << QStringList("") << "'': 1 note (1 lost)"
                                    << "no such file";
        QTest::newRow("folder") << QStringList(".") << ".: 1 note (1 lost)"
                                << "is a folder";
        QTest::newRow("absent lookup") << QStringList{ "--type", "lookup", "absent.txt" }
                                       << "absent.txt: lookup file, 1 note (1 lost)"
                                       << "no such file";
        QTest::newRow("empty") << QStringList("empty.dcf") << "empty.dcf: CSPro text dictionary, 1 note (1 lost)"
                               << nothing + "CSPro text dictionary";
        QTest::newRow("empty object") << QStringList{ "--type", "cspro8", "object.dcf" }
                                      << "object.dcf: CSPro 8 JSON dictionary, 3 notes (1 lost, 2 changed)"
                                      << nothing + "CSPro 8 JSON dictionary";
    }
    void fileThatGaveNoLayoutIsTold()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, heading);
        QFETCH(QString, problem);
        folder.write("empty.dcf", QByteArray());
        folder.write("object.dcf", "{}");
        const Run table = folder.run(QStringList("explain") + arguments);
        verifyComplaint(table,
                        QFile::encodeName(arguments.last().isEmpty() ? "''" : arguments.last()) + ": "
                            + problem.toUtf8() + '\n');
        QVERIFY2(table.out.startsWith(heading.toUtf8() + "\n\nLOST: 1\n  file-not-read (1)\n"), table.out.constData());
        QVERIFY(table.out.contains("\n      " + problem.toUtf8() + '\n'));
        const Run json = folder.run(QStringList{ "explain", "--format", "json" } + arguments);
        QCOMPARE(json.status, noAnswer);
        QCOMPARE(json.err, table.err);
        QCOMPARE(json.json()["lost"].toInt(), 1);
        QStringList told;
        for (const auto &note : json.json()["notes"].toArray()) {
            if (note.toObject()["gravity"].toString() == "lost")
                told.append(note.toObject()["kind"].toString() + '/' + note.toObject()["text"].toString());
        }
        QCOMPARE(told, QStringList("file-not-read/" + problem));
    }

    void whatWasLostOnTheWayIsToldOnce()
    {
        const Run explained = folder.run({ "explain", ended });
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
        QTest::newRow("folder") << QStringList{ "explain", "." } << QByteArray(".: ");
        QTest::newRow("format") << QStringList{ "explain", "--format", "csv", clean } << QByteArray("--format");
    }
    void noAnswerIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        verifyComplaint(folder.run(arguments), problem);
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
        folder.write("d.dcf", "[IdItems]\n[Item]\nName=AGE\nStart=1\nLen=3\nColour=red\n");
        const Run shown = folder.run({ "fields", "--format", format, "d.dcf" });
        QCOMPARE(shown.status, fine);
        QCOMPARE(shown.err, QByteArray("vanlayout: d.dcf: 1 note (1 lost); vanlayout explain shows them\n"));
        QVERIFY(!shown.out.contains("note"));
    }

    void showOfAFileWithoutLayoutSaysWhatIsWrongAlone()
    {
        const Run shown = folder.run({ "fields", ended });
        QCOMPARE(shown.status, noAnswer);
        QCOMPARE(notesLinesOf(shown.err), QByteArray());
        QCOMPARE(shown.err.count('\n'), 1);
    }

private:
    ToolFolder folder;
};

QTEST_GUILESS_MAIN(VanlayoutExplainTest)
#include "VanlayoutExplainTest.moc"
