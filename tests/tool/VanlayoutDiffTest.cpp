#include "support/Corpus.h"
#include "support/ToolRun.h"

#include <QtTest>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace
{

QString item(const QString &name, const QString &label, int start, int length, const QString &more = QString())
{
    return QStringLiteral("\n[Item]\nLabel=%1\nName=%2\nStart=%3\nLen=%4\nDataType=Numeric\n%5")
        .arg(label, name, QString::number(start), QString::number(length), more);
}

QString valueSet(const QStringList &values)
{
    return "\n[ValueSet]\nLabel=S\nName=S\nValue=" + values.join("\nValue=") + "\n";
}

QString record(const QString &name, const QString &items)
{
    return "\n[Record]\nLabel=R\nName=" + name + "\nRecordTypeValue='1'\nRecordLen=99\n" + items;
}

// A text dictionary with one id item.
QString dictionary(const QString &content)
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n"
           "Positions=Absolute\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n"
        + item("CASE", "Case", 90, 5) + content;
}

// The dictionaries in the documentation of the command.
QString surveyBefore()
{
    return dictionary(record("PERSON",
                             item("P01_SEX", "Sex", 2, 1, valueSet({ "1;Male", "2;Female" }))
                                 + item("P02_AGE", "Age", 3, 2) + item("P03_SCHOOL", "Now at school", 5, 1)
                                 + item("P04_WORK", "Worked", 6, 1, valueSet({ "1;Yes", "2;No" }))));
}

QString surveyAfter()
{
    return dictionary(record(
        "PERSON",
        item("P01_GENDER", "Sex", 2, 1, valueSet({ "1;Male", "2;Female" })) + item("P02_AGE", "Age in years", 3, 3)
            + item("P04_WORK", "Worked", 6, 1, valueSet({ "1;Yes, for pay", "2;No", "3;Not known" }))
            + item("P05_LANGUAGE", "Main language", 7, 2)));
}

} // namespace

/// Tests `vanlayout diff`, run as by a user.
class VanlayoutDiffTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableIsTheDefaultForm()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const Run run = diff({ "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(QString::fromUtf8(run.out),
                 QString::fromUtf8("Old: before.dcf: CSPro dictionary, text form 7.7, 5 items\n"
                                   "New: after.dcf: CSPro dictionary, text form 7.7, 5 items\n"
                                   "\n"
                                   "7 differences: item-added 1, item-removed 1, item-renamed 1, item-label 1, "
                                   "item-length 1, value-added 1, value-label 1\n"
                                   "\n"
                                   "PERSON\n"
                                   "  P01_SEX \u2192 P01_GENDER\n"
                                   "  P02_AGE\n"
                                   "    label: \"Age\" \u2192 \"Age in years\"\n"
                                   "    length: 2 \u2192 3\n"
                                   "  - P03_SCHOOL \"Now at school\"\n"
                                   "  P04_WORK\n"
                                   "    values of S\n"
                                   "      1: \"Yes\" \u2192 \"Yes, for pay\"\n"
                                   "      + 3 \"Not known\"\n"
                                   "  + P05_LANGUAGE \"Main language\"\n"));
    }

    void linesFitTheTerminal()
    {
        write("before.dcf", dictionary(record("R", item("A", QString("before ").repeated(20), 2, 1))));
        write("after.dcf", dictionary(record("R", item("A", QString("after ").repeated(20), 2, 1))));
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("COLUMNS", "60");
        tool.setProcessEnvironment(environment);
        const Run run = diff({ "before.dcf", "after.dcf" }, tool);
        QCOMPARE(run.status, finding);
        const QStringList lines = QString::fromUtf8(run.out).split('\n');
        for (const QString &line : lines)
            QVERIFY2(line.size() <= 60, qPrintable(line));
        QVERIFY(run.out.contains("\n    label:\n      \"before before"));
        QVERIFY(run.out.contains("\n1 difference: item-label 1\n"));
        QVERIFY(run.out.contains("\n      \xE2\x86\x92 \"after after"));
        QCOMPARE(run.out.count("after"), 21); // the name of the file once
        QVERIFY(!diff({ "before.dcf", "after.dcf" }).out.contains("label:\n"));
    }

    void kindAndItsCountAreNotSplit()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        for (int columns = 20; columns < 60; ++columns) {
            QProcess tool;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("COLUMNS", QString::number(columns));
            tool.setProcessEnvironment(environment);
            const QByteArray out = diff({ "before.dcf", "after.dcf" }, tool).out;
            for (const char *count : { "item-added 1", "item-removed 1", "item-label 1", "value-label 1" })
                QVERIFY2(out.contains(count), out.constData());
        }
    }

    void itemsThatMoveTogetherAreOneLine()
    {
        const auto content = [](int moved) {
            return dictionary(record("R",
                                     item("A", "a", 2, 1) + item("B", "b", 5 + moved, 1) + item("C", "c", 6 + moved, 1)
                                         + item("D", "d", 7 + moved, 1)));
        };
        write("before.dcf", content(0));
        write("after.dcf", content(2));
        const Run run = diff({ "before.dcf", "after.dcf" });
        QVERIFY2(run.out.endsWith("\n\nR\n  B to D: 3 items, start +2\n"), run.out.constData());
        QCOMPARE(diff({ "--format", "json", "before.dcf", "after.dcf" }).json()["changes"].toArray().size(), 3);
        const Run back = diff({ "after.dcf", "before.dcf" });
        QVERIFY(back.out.endsWith("  B to D: 3 items, start -2\n"));
    }

    void changesOfAValueSetAreBelowItsHeading()
    {
        const auto content = [](const QString &label, const QString &note) {
            return dictionary(
                record("R",
                       item("A", "a", 2, 1,
                            "\n[ValueSet]\nLabel=" + label + "\nName=A_VS1\nValue=1;One\nNote=" + note + "\n")));
        };
        write("before.dcf", content("Codes", "old"));
        write("after.dcf", content("Answers", "new"));
        const Run run = diff({ "before.dcf", "after.dcf" });
        QVERIFY2(run.out.endsWith("\nR\n"
                                  "  A\n"
                                  "    values of A_VS1\n"
                                  "      label of value set: \"Codes\" \xE2\x86\x92 \"Answers\"\n"
                                  "      1, note: \"old\" \xE2\x86\x92 \"new\"\n"),
                 run.out.constData());
        write("without.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        QVERIFY(diff({ "without.dcf", "after.dcf" }).out.endsWith("\n  A\n    value set added A_VS1: \"Answers\"\n"));
        write("unlabelled.dcf", content(QString(), "new"));
        QVERIFY(diff({ "without.dcf", "unlabelled.dcf" }).out.endsWith("\n  A\n    value set added A_VS1\n"));
    }

    void summaryCountsTheKinds()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const Run run = diff({ "--summary", "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("\n7 differences\n  1  item-added    An item was added.\n"));
        QVERIFY(run.out.contains("\n  1  value-label   The label of a code or range differs.\n"));
        QVERIFY(!run.out.contains("P02_AGE"));
        const Run same = diff({ "--summary", "before.dcf", "before.dcf" });
        QCOMPARE(same.status, fine);
        QVERIFY(same.out.endsWith("\n\nThe layouts are the same\n"));
    }

    void kindsAreSelected_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("count");
        QTest::newRow("only") << QStringList{ "--only", "item-label" } << 1;
        QTest::newRow("only several") << QStringList{ "--only", "item-label,item-length", "--only", "value-label" }
                                      << 3;
        QTest::newRow("ignore") << QStringList{ "--ignore", "item-label" } << 6;
        QTest::newRow("ignore several") << QStringList{ "--ignore", "item-label", "--ignore", "value-label" } << 5;
        QTest::newRow("in any case") << QStringList{ "--only", "ITEM-LABEL" } << 1;
        QTest::newRow("both") << QStringList{ "--only", "item-label,item-length", "--ignore", "item-label" } << 1;
        QTest::newRow("none left") << QStringList{ "--only", "item-note" } << 0;
    }
    void kindsAreSelected()
    {
        QFETCH(QStringList, options);
        QFETCH(int, count);
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const Run run = diff(options + QStringList{ "--format", "json", "before.dcf", "after.dcf" });
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.json()["changes"].toArray().size(), count);
        QCOMPARE(run.status, count > 0 ? finding : fine);
    }

    void nearMissOfAKindIsNamed_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("complaint");
        QTest::newRow("only") << QStringList{ "--only", "item-lable" }
                              << QByteArray("--only: item-lable is not known; did you mean item-label?\n");
        QTest::newRow("ignore") << QStringList{ "--ignore", "item-label,valu-label" }
                                << QByteArray("--ignore: valu-label is not known; did you mean value-label?\n");
        QTest::newRow("nothing near") << QStringList{ "--only", "xyz" } << QByteArray("--only: xyz is not known\n");
    }
    void nearMissOfAKindIsNamed()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, complaint);
        const Run run = diff(options + QStringList{ "missing.dcf", "missing.dcf" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err, "vanlayout: " + complaint);
    }

    void onlyOneLanguageIsCompared()
    {
        const auto content = [](const QString &label) {
            return dictionary(record("R", item("A", label, 2, 1)))
                .replace("[Level]", "[Languages]\nEN=English\nFR=French\n\n[Level]");
        };
        write("before.dcf", content("House|Maison"));
        write("after.dcf", content("House|Foyer"));
        QCOMPARE(diff({ "before.dcf", "after.dcf" }).status, finding);
        QCOMPARE(diff({ "--language", "EN", "before.dcf", "after.dcf" }).status, fine);
        const Run run = diff({ "--language", "fr", "before.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("\n    label [FR]: \"Maison\" \xE2\x86\x92 \"Foyer\"\n"));
        const Run unknown = diff({ "--language", "ES", "before.dcf", "after.dcf" });
        QCOMPARE(unknown.status, noAnswer);
        QCOMPARE(unknown.err.count('\n'), 2);
        QVERIFY(unknown.err.startsWith("vanlayout: before.dcf: has no language ES"));
    }

    void outputGoesToAFile_data()
    {
        QTest::addColumn<QString>("format");
        for (const char *format : { "table", "json", "html" })
            QTest::newRow(format) << QString(format);
    }
    void outputGoesToAFile()
    {
        QFETCH(QString, format);
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        const QStringList call = { "--format", format, "before.dcf", "after.dcf" };
        const Run run = diff(QStringList{ "-o", "changes" } + call);
        QCOMPARE(run.status, finding);
        QCOMPARE(run.out + run.err, QByteArray());
        QVERIFY(!directory.read("changes").isEmpty());
        QCOMPARE(diff(call).out, directory.read("changes"));
    }

    void noFileToReadIsWrittenOver()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        for (const char *file : { "before.dcf", "after.dcf" }) {
            const Run run = diff({ "-o", file, "before.dcf", "after.dcf" });
            QCOMPARE(run.status, noAnswer);
            QVERIFY(run.err.startsWith(QByteArray("vanlayout: ") + file + ": is "));
        }
        QCOMPARE(QString::fromUtf8(directory.read("before.dcf")), surveyBefore());
        QCOMPARE(QString::fromUtf8(directory.read("after.dcf")), surveyAfter());
    }

    void sameLayoutIsStatus0_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *name : { "census.dcf", "census8.dcf", "marks.dcf", "occurrences.dcf", "subitems.dcf" })
            QTest::newRow(name) << QStringLiteral(VAN_EXAMPLES "/") + name;
        for (const char *name : { "types.sav", "types.zsav", "types-118.dta" })
            QTest::newRow(name) << QStringLiteral(VAN_MADE_DATA "/") + name;
    }
    void sameLayoutIsStatus0()
    {
        QFETCH(QString, file);
        const Run run = diff({ file, file });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.endsWith("\n\nThe layouts are the same\n"));
        const Run json = diff({ "--format", "json", file, file });
        QCOMPARE(json.status, fine);
        for (const char *key : { "notCompared", "changes" }) {
            QVERIFY2(json.json()[key].isArray(), key);
            QVERIFY2(json.json()[key].toArray().isEmpty(), key);
        }
    }

    void twoFormsOfADictionaryAreTheSame()
    {
        const Run run
            = diff({ QStringLiteral(VAN_EXAMPLES "/census.dcf"), QStringLiteral(VAN_EXAMPLES "/census8.dcf") });
        QCOMPARE(run.status, fine);
        QVERIFY(run.out.contains("\nNot compared (one of the formats does not have it): record length\n"));
        QVERIFY(run.out.contains("\nNot compared (it belongs to the file, not to the survey): format version, "));
    }

    void statisticalFilesOfTwoFormatsAreCompared()
    {
        const Run run
            = diff({ QStringLiteral(VAN_MADE_DATA "/types.sav"), QStringLiteral(VAN_MADE_DATA "/types-118.dta") });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("Not compared (one of the formats does not have it): storage, user-missing values, "));
        QVERIFY(run.out.contains("\nVariables\n"));
        QVERIFY(!run.out.contains("storage:"));
    }

    void whatWasReadInPartIsSaid()
    {
        QFile whole(QStringLiteral(VAN_MADE_DATA "/types-118.dta"));
        QVERIFY(whole.open(QIODevice::ReadOnly));
        const QByteArray bytes = whole.readAll();
        directory.write("cut.dta", bytes.left(bytes.size() - 600));
        const Run run = diff({ "cut.dta", "cut.dta" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err.count(": Unable to read from file\n"), 2);
    }

    void fileWithoutAnAnswerIsStatus2AndALineEach_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QList<QByteArray>>("subjects");
        QTest::newRow("old") << QStringList{ "missing.dcf", "good.dcf" } << QList<QByteArray>{ "missing.dcf" };
        QTest::newRow("new") << QStringList{ "good.dcf", "missing.dcf" } << QList<QByteArray>{ "missing.dcf" };
        QTest::newRow("both") << QStringList{ "missing.dcf", "." } << QList<QByteArray>{ "missing.dcf", "." };
        QTest::newRow("both, turned") << QStringList{ ".", "missing.dcf" } << QList<QByteArray>{ ".", "missing.dcf" };
        QTest::newRow("empty") << QStringList{ "good.dcf", "empty.dcf" } << QList<QByteArray>{ "empty.dcf" };
        QTest::newRow("no name") << QStringList{ "", "good.dcf" } << QList<QByteArray>{ "''" };
    }
    void fileWithoutAnAnswerIsStatus2AndALineEach()
    {
        QFETCH(QStringList, files);
        QFETCH(QList<QByteArray>, subjects);
        write("good.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        write("empty.dcf", QString());
        for (const char *format : { "table", "json", "html" }) {
            const Run run = diff(QStringList{ "--format", format } + files);
            QCOMPARE(run.status, noAnswer);
            QCOMPARE(run.out, QByteArray());
            QList<QByteArray> lines = run.err.split('\n');
            QCOMPARE(lines.takeLast(), QByteArray());
            QCOMPARE(lines.size(), subjects.size());
            for (int i = 0; i < lines.size(); ++i)
                QVERIFY2(lines.at(i).startsWith("vanlayout: " + subjects.at(i) + ": "), lines.at(i).constData());
        }
    }

    void wrongUseIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no file") << QStringList();
        QTest::newRow("one file") << QStringList{ "good.dcf" };
        QTest::newRow("three files") << QStringList{ "good.dcf", "good.dcf", "good.dcf" };
        QTest::newRow("csv") << QStringList{ "--format", "csv", "good.dcf", "good.dcf" };
        QTest::newRow("type") << QStringList{ "--type", "cspro", "good.dcf", "good.dcf" };
        QTest::newRow("summary in JSON") << QStringList{ "--summary", "--format", "json", "good.dcf", "good.dcf" };
        QTest::newRow("standard input twice") << QStringList{ "-", "-" };
    }
    void wrongUseIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        write("good.dcf", dictionary(record("R", item("A", "a", 2, 1))));
        const Run run = diff(arguments);
        verifyComplaint(run, QByteArray());
        QCOMPARE(run.out, QByteArray());
    }

    void oneFileCanBePiped_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("dash") << "-";
        QTest::newRow("device") << "/dev/stdin";
    }
    void oneFileCanBePiped()
    {
        QFETCH(QString, name);
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        QProcess tool;
        tool.setStandardInputFile(directory.filePath("before.dcf"));
        const Run run = diff({ "--format", "json", name, "after.dcf" }, tool);
        QCOMPARE(run.status, finding);
        QCOMPARE(run.json()["before"]["file"].toString(), name);
        QCOMPARE(run.json()["changes"].toArray().size(), 7);
    }

    void fullDiskIsStatus2AndOneLine()
    {
        write("before.dcf", surveyBefore());
        write("after.dcf", surveyAfter());
        for (const char *format : { "table", "json", "html" })
            verifyFullDiskIsReported(directory, { "diff", "--format", format, "before.dcf", "after.dcf" });
    }

    void tableSendsNoControlCharacters()
    {
        const QString before = "\x1B[31m\tred\x07";
        const QString after = QString(QChar(0xD83D)) + QChar(0x9B) + "half";
        const auto content = [](const QString &text) {
            return inUtf16(dictionary(record("R\x07", item("A\x1B", text, 2, 1, valueSet({ "1;" + text })))));
        };
        directory.write("be\x1B[1mfore.dcf", content(before));
        directory.write("after.dcf", content(after));
        const Run run = diff({ "be\x1B[1mfore.dcf", "after.dcf" });
        QCOMPARE(run.status, finding);
        QVERIFY(run.out.contains("label: "));
        QVERIFY(run.out.contains("values of S"));
        for (const QChar character : QString::fromUtf8(run.out)) {
            const ushort code = character.unicode();
            QVERIFY(code == '\n' || (code >= 0x20 && code < 0x7F) || code >= 0xA0);
        }
    }

    void emptyTextsAndBlanksAreSeenInTheTable()
    {
        const auto content = [](const QString &label, const QString &valueLabel) {
            return QStringLiteral("{ \"levels\": [ { \"name\": \"L\", \"ids\": { \"items\": [ { \"name\": \"A\", "
                                  "\"labels\": [ { \"text\": \"%1\" } ], \"contentType\": \"numeric\", "
                                  "\"length\": 1, \"valueSets\": [ { \"name\": \"S\", \"values\": [ { \"labels\": "
                                  "[ { \"text\": \"%2\" } ], \"pairs\": [ { \"value\": \"1\" } ] } ] } ] } ] } } ] }")
                .arg(label, valueLabel);
        };
        write("before.dcf", content("a", "x"));
        write("after.dcf", content("", "x "));
        const Run run = diff({ "before.dcf", "after.dcf" });
        QVERIFY(run.out.contains("\nId items of L\n  A\n"));
        QVERIFY(run.out.contains("    label: \"a\" \xE2\x86\x92 \"\"\n"));
        QVERIFY(run.out.contains("      1: \"x\" \xE2\x86\x92 \"x \"\n"));
    }

    void largeLayoutsAreCompared()
    {
        constexpr int count = 40000;
        write("before.dcf", manyItems(count, "V", "label"));
        write("renamed.dcf", manyItems(count, "W", "label"));
        write("changed.dcf", manyItems(count, "V", "other"));
        const QByteArray renamed = diff({ "before.dcf", "renamed.dcf" }).out;
        QVERIFY(renamed.contains("40000 differences: item-renamed 40000\n"));
        const QByteArray changed = diff({ "before.dcf", "changed.dcf" }).out;
        QVERIFY(changed.contains("80000 differences: value-label 80000\n"));
        QCOMPARE(changed.count("\"other "), count * 2);
    }

    void realFormsOfADictionaryAreTheSame()
    {
        if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
            QSKIP("the corpus is not available");
        int compared = 0;
        for (const QString &text : corpusFiles("cspro-text")) {
            const QString json = QString(text).replace("/cspro-text/", "/cspro-json/");
            if (!QFile::exists(json))
                continue;
            const Run run = diff({ text, json });
            QVERIFY2(run.status == fine, run.out.constData());
            ++compared;
        }
        QVERIFY(compared > 0);
    }

    void helpNamesTheOptions()
    {
        verifyHelpDescribes("diff",
                            { "--format", "--summary", "--only", "--ignore", "--language", "--output", "OLD", "NEW" });
    }

private:
    static QString manyItems(int count, const QString &prefix, const QString &label)
    {
        QString items;
        for (int i = 0; i < count; ++i)
            items += item(prefix + QString::number(i), "Variable", 2 + i, 1,
                          valueSet({ "1;" + label + " one", "2;" + label + " two" }));
        return dictionary(record("R", items));
    }

    void write(const QString &name, const QString &text) const { directory.write(name, text.toUtf8()); }

    Run diff(const QStringList &arguments) const { return directory.run(QStringList("diff") + arguments); }

    Run diff(const QStringList &arguments, QProcess &tool) const
    {
        return directory.run(QStringList("diff") + arguments, tool);
    }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutDiffTest)
#include "VanlayoutDiffTest.moc"
