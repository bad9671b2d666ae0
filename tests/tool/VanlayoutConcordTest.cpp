#include "support/ToolRun.h"

#include <QtTest>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace
{

QString item(const QString &name, const QString &label, int start, int length, const QStringList &values = {})
{
    const QString text = QStringLiteral("\n[Item]\nLabel=%1\nName=%2\nStart=%3\nLen=%4\nDataType=Numeric\n")
                             .arg(label, name, QString::number(start), QString::number(length));
    if (values.isEmpty())
        return text;
    return text + "\n[ValueSet]\nLabel=" + label + "\nName=" + name + "_VS1\nValue=" + values.join("\nValue=") + '\n';
}

QString dictionary(const QString &items)
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=D\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n"
           "Positions=Absolute\n\n[Level]\nLabel=L\nName=L\n\n[IdItems]\n"
        + item("CASE", "Case", 90, 5) + "\n[Record]\nLabel=Person\nName=PERSON\nRecordTypeValue='1'\nRecordLen=99\n"
        + items;
}

const QStringList sexes = { "1;Male", "2;Female" };
const QStringList answers = { "1;Yes", "2;No" };
const QStringList religions = { "1;Muslim", "2;Christian", "3;Hindu" };

// The three rounds in the documentation of the command.
QString round2001()
{
    return dictionary(item("P301", "Line number of the mother", 2, 2) + item("P302", "Sex", 4, 1, sexes)
                      + item("P303", "Age", 5, 2, { "0:98;Years", "99;Not stated\nName=MISSING,Special" })
                      + item("P304", "Religion", 7, 1, religions + QStringList{ "4;Traditional religion" })
                      + item("P305", "Can read", 8, 1, answers));
}

QString round2006()
{
    return dictionary(
        item("P301", "Line number of the mother", 2, 2) + item("P302", "Sex", 4, 1, { "1;male", "2;female" })
        + item("P303", "Age in completed years", 5, 2, { "0:98;Years", "99;Not stated\nName=MISSING,Special" })
        + item("P304", "Language spoken at home", 7, 1, { "1;English", "2;French" })
        + item("P305", "Religion", 8, 1, religions + QStringList{ "4;No religion" })
        + item("P306", "Can read", 9, 1, answers));
}

QString round2011()
{
    return dictionary(
        item("P301", "Line number of the mother", 2, 2) + item("P302", "Sex", 4, 1, sexes)
        + item("P303", "Age in completed years", 5, 3, { "0:98;Years", "99;Not stated\nName=MISSING,Special" })
        + item("P304", "Language spoken at home", 8, 1, { "1;English", "2;French", "3;Another language" })
        + item("P305", "Religion", 9, 1, religions + QStringList{ "4;No religion", "5;Traditional religion" }));
}

const QStringList files = { "2001.dcf", "2006.dcf", "2011.dcf" };

// A call of the command in a page, and the lines below it that begin with the same indentation.
struct Example {
    QStringList arguments;
    QString output;
};

QVector<Example> examplesIn(const QString &path, const QString &indentation)
{
    QFile page(path);
    if (!page.open(QIODevice::ReadOnly))
        return {};
    QVector<Example> examples;
    bool isInside = false;
    const QStringList lines = QString::fromUtf8(page.readAll()).split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString call = indentation + "$ vanlayout concord ";
        if (lines.at(i).startsWith(call)) {
            examples.append({ lines.at(i).mid(call.size()).split(' '), QString() });
            isInside = true;
            continue;
        }
        const bool isEmpty = lines.at(i).isEmpty() && i + 1 < lines.size() && lines.at(i + 1).startsWith(indentation);
        isInside = isInside && lines.at(i) != "```" && (isEmpty || lines.at(i).startsWith(indentation));
        if (isInside)
            examples.last().output += lines.at(i).mid(isEmpty ? 0 : indentation.size()) + '\n';
    }
    return examples;
}

} // namespace

/// Tests `vanlayout concord`, run as by a user.
class VanlayoutConcordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        write("2001.dcf", round2001());
        write("2006.dcf", round2006());
        write("2011.dcf", round2011());
    }

    void tableIsTheDefaultForm()
    {
        const Run run = concord(files);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        QVERIFY(run.out.startsWith("3 rounds: 2001.dcf, 2006.dcf, 2011.dcf\n\n7 variables, 5 differ: renamed 2,"));
        QVERIFY2(run.out.contains("\nName    2001.dcf  2006.dcf      2011.dcf  Label\n"), run.out.constData());
        QVERIFY(run.out.contains("\nP304    =         P305, values  values    Religion\n"));
        QVERIFY(run.out.contains("\nP304_2  -         P304          values    Language spoken at home\n"));
        QVERIFY(run.out.contains("\n2 variables without a change\n\n"));
        QVERIFY(run.out.contains("\nName    Code  Change    2001.dcf              2006.dcf     2011.dcf\n"
                                 "P304    4     meaning   Traditional religion  No religion  =\n"));
        QVERIFY(run.out.endsWith(" codes without a change\n"));
    }

    void examplesOfThePagesAreTheOutput_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<QString>("indentation");
        QTest::addColumn<int>("count");
        QTest::newRow("page of the command") << QStringLiteral(VAN_DOCS "/concord.md") << QString(4, ' ') << 3;
        QTest::newRow("README") << QStringLiteral(VAN_DOCS "/../README.md") << QString() << 1;
    }
    void examplesOfThePagesAreTheOutput()
    {
        QFETCH(QString, page);
        QFETCH(QString, indentation);
        QFETCH(int, count);
        write("map.csv",
              "decision,round,item,other_round,other_item\n"
              "different,2006.dcf,P303,2001.dcf,P303\n");
        const QVector<Example> examples = examplesIn(page, indentation);
        QCOMPARE(examples.size(), count);
        for (const Example &example : examples) {
            const Run run = concord(example.arguments);
            QCOMPARE(run.err, QByteArray());
            QCOMPARE(QString::fromUtf8(run.out).remove('\r'), example.output);
        }
    }

    void narrowTerminalHasLists()
    {
        const Run run = onTerminal(40, files);
        const QStringList lines = QString::fromUtf8(run.out).split('\n');
        for (const QString &line : lines)
            QVERIFY2(line.size() <= 40, qPrintable(line));
        QVERIFY2(run.out.contains("\nP304 \"Religion\"\n  2006.dcf: P305, values\n  2011.dcf: values\n"),
                 run.out.constData());
        QVERIFY(run.out.contains("\nP303 \"Age\"\n  2006.dcf: label \"Age in completed\n"));
        QVERIFY2(run.out.contains("\nP305 \"Can read\"\n  2006.dcf: P306\n  2011.dcf: absent\n"), run.out.constData());
        const Run two = onTerminal(24, { "2001.dcf", "2006.dcf" });
        QVERIFY2(two.out.contains("\nP304_2 \"Language spoken\n  at home\": absent in\n  2001.dcf\n"),
                 two.out.constData());
        QVERIFY(run.out.contains("\nP304 4: meaning\n  2001.dcf: \"Traditional religion\"\n"
                                 "  2006.dcf: \"No religion\"\n"));
        QVERIFY(run.out.contains("\nP304 5: added\n  2001.dcf to 2006.dcf: absent\n  2011.dcf: \"Traditional"));
    }

    void tableThatFitsTheTerminalIsNotAList()
    {
        const Run run = onTerminal(70, files);
        QVERIFY(run.out.contains("\nName    2001.dcf  2006.dcf"));
        const QStringList lines = QString::fromUtf8(run.out).split('\n');
        for (const QString &line : lines)
            QVERIFY2(line.size() <= 70, qPrintable(line));
    }

    void allShowsWhatIsTheSame()
    {
        QVERIFY(!concord(files).out.contains("\nCASE "));
        const Run run = concord(QStringList{ "--all" } + files);
        QVERIFY(run.out.contains("\nCASE    =         =             =         Case\n"));
        QVERIFY(run.out.contains("\nP304    1             =         Muslim                =            =\n"));
        QVERIFY(run.out.contains("\n2 variables without a change\n"));
    }

    void sameRoundsHaveNoTable()
    {
        const Run run = concord({ "2001.dcf", "2001.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out,
                 QByteArray("2 rounds: 2001.dcf, 2001.dcf#2\n\n6 variables\n6 variables without a change\n\n"
                            "10 codes\n10 codes without a change\n"));
    }

    void jsonHasTheFilesAsGiven()
    {
        const Run run = concord(QStringList{ "--format", "json", directory.path() + "/2001.dcf", "2006.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.json()["rounds"].toArray(), (QJsonArray{ directory.path() + "/2001.dcf", "2006.dcf" }));
        QCOMPARE(run.json()["variables"].toArray().size(), 7);
        QVERIFY(run.out.endsWith("}\n"));
    }

    void csvIsOneOfTwoTables()
    {
        const Run variables = concord(QStringList{ "--format", "csv" } + files);
        QVERIFY(variables.out.startsWith("variable,name,changes,level 2001.dcf,"));
        QCOMPARE(concord(QStringList{ "--format", "csv", "--table", "variables" } + files).out, variables.out);
        const Run codes = concord(QStringList{ "--format", "csv", "--table", "codes" } + files);
        QVERIFY(codes.out.startsWith("variable,name,from,to,special,change,2001.dcf,2006.dcf,2011.dcf\r\n"));
        QVERIFY(codes.out.contains(",P303,99,,missing,none,Not stated,Not stated,Not stated\r\n"));
        QCOMPARE(concord(QStringList{ "--format", "csv", "-o", "tables/" } + files).status, fine);
        QCOMPARE(directory.read("tables/variables.csv"), variables.out);
        QCOMPARE(directory.read("tables/codes.csv"), codes.out);
        QVERIFY(concord(QStringList{ "--format", "csv", "--excel" } + files).out.startsWith("\xEF\xBB\xBFvariable,"));
    }

    void htmlIsAPage()
    {
        QCOMPARE(concord(QStringList{ "--format", "html", "-o", "page.html" } + files).status, fine);
        QVERIFY(directory.read("page.html").startsWith("<!DOCTYPE html>"));
    }

    void recodeflowIsTwoTablesInADirectory()
    {
        const Run run = concord(QStringList{ "--format", "recodeflow", "-o", "recode" } + files);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out + run.err, QByteArray());
        const QByteArray details = directory.read("recode/variable_details.csv");
        QVERIFY2(details.contains("\r\nP304,P304_cat6_4,cat,r2001,[P304],cat,4,6,"), details.constData());
        QVERIFY(directory.read("recode/variables.csv").contains("\r\nP304,,Religion,Religion,PERSON,,Categorical,"));
    }

    void rulesOfThePageAreTheOutput()
    {
        QCOMPARE(concord(QStringList{ "--format", "recodeflow", "-o", "recode" } + files).status, fine);
        QStringList rules;
        const QStringList lines = QString::fromUtf8(directory.read("recode/variable_details.csv")).split("\r\n");
        for (const QString &line : lines) {
            if (line.startsWith("P304,"))
                rules.append(line);
        }
        QFile page(QStringLiteral(VAN_DOCS "/concord.md"));
        QVERIFY(page.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(page.readAll()).section("| databaseStart |", 1).section("\n\n", 0, 0);
        const QStringList rows = text.split('\n').mid(2);
        QCOMPARE(rows.size(), rules.size());
        for (int i = 0; i < rows.size(); ++i) {
            const QStringList cells = rows.at(i).split('|').mid(1, 6);
            for (const QString &cell : cells)
                QVERIFY2(QString(rules.at(i)).remove("\"\"").contains(cell.trimmed().remove('"')),
                         qPrintable(rows.at(i)));
        }
    }

    void namesThatRecodeflowCannotReadAreReported()
    {
        const QString odd = dictionary(item("A,B", "Odd", 2, 1));
        write("odd.dcf", odd);
        const Run run = concord({ "--format", "recodeflow", "-o", "recode", "odd.dcf", "2001.dcf" });
        QCOMPARE(run.status, fine);
        QVERIFY2(run.err.startsWith("vanlayout: recodeflow cannot read some names of items"), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
    }

    void wrongCallsAreReported_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("complaint");
        const auto row = [](const char *name, const QStringList &arguments, const char *complaint) {
            QTest::newRow(name) << arguments << QByteArray(complaint);
        };
        row("one file", { "2001.dcf" }, "concord needs at least two files, one for each round");
        row("standard input twice", { "-", "-" }, "only one of the files can be standard input");
        row("all in JSON", { "--all", "--format", "json", "2001.dcf", "2006.dcf" },
            "--all can only be used with --format table; the other forms have all");
        row("table of JSON", { "--table", "codes", "--format", "json", "2001.dcf", "2006.dcf" },
            "--table can only be used with --format csv");
        row("spreadsheet of JSON", { "--excel", "--format", "json", "2001.dcf", "2006.dcf" },
            "--excel can only be used with --format csv");
        row("two tables to standard output", { "--format", "recodeflow", "2001.dcf", "2006.dcf" },
            "two tables are written into a directory; name it with -o DIRECTORY");
        row("map and table to standard output", { "--write-map", "-", "2001.dcf", "2006.dcf" },
            "only one of -o and --write-map can be standard output");
        row("map and table in one file", { "-o", "x.csv", "--write-map", "x.csv", "2001.dcf", "2006.dcf" },
            "-o and --write-map are the same file");
        row("map without a name", { "--map", "", "2001.dcf", "2006.dcf" }, "'': no such file");
        row("written map without a name", { "--write-map", "", "2001.dcf", "2006.dcf" }, "'': no such file");
        row("no such file", { "2001.dcf", "gone.dcf" }, "gone.dcf: cannot be opened: No such file or directory");
        row("no such language", { "--language", "FR", "2001.dcf", "fr.dcf" }, "fr.dcf: has no language FR; it has EN");
        row("no such map", { "--map", "gone.csv", "2001.dcf", "2006.dcf" },
            "gone.csv: cannot be opened: No such file or directory");
    }
    void wrongCallsAreReported()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, complaint);
        write("fr.dcf", round2001().replace("\n[Level]", "\n[Languages]\nEN=English\n\n[Level]"));
        const Run run = concord(arguments);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err, "vanlayout: " + complaint + '\n');
    }

    void eachFileThatCannotBeReadHasALine()
    {
        write("empty.dcf", QString());
        const Run run = concord({ "gone.dcf", "2001.dcf", "empty.dcf", "-o", "out.txt" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err.count('\n'), 2);
        QVERIFY(run.err.startsWith("vanlayout: gone.dcf: "));
        QVERIFY(run.err.contains("\nvanlayout: empty.dcf: "));
        QVERIFY(!QFile::exists(directory.path() + "/out.txt"));
    }

    void standardInputIsARound()
    {
        QProcess tool;
        tool.setStandardInputFile(directory.path() + "/2006.dcf");
        const Run run = concord({ "--format", "json", "2001.dcf", "-" }, tool);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.json()["variables"].toArray().size(), 7);
    }

    void labelsAreInTheLanguage()
    {
        const auto bilingual = [](const QString &english, const QString &french) {
            return dictionary(item("X", english + '|' + french, 2, 1, { "1;" + english + '|' + french }))
                .replace("\n[Level]", "\n[Languages]\nEN=English\nFR=Français\n\n[Level]");
        };
        write("one.dcf", bilingual("Roof", "Toit"));
        write("two.dcf", bilingual("Roof", "Mur"));
        QVERIFY(concord({ "one.dcf", "two.dcf" }).out.contains("\n1 code without a change\n"));
        const Run run = concord({ "--language", "FR", "one.dcf", "two.dcf" });
        QVERIFY2(run.out.contains("\nX     1     meaning  Toit     Mur\n"), run.out.constData());
    }

    void inputsAreNotOverwritten_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("output") << QStringList{ "-o", "2001.dcf" };
        QTest::newRow("output by another path") << QStringList{ "-o", "./2006.dcf" };
        QTest::newRow("map") << QStringList{ "--write-map", "2001.dcf" };
        QTest::newRow("map that is read") << QStringList{ "--map", "map.csv", "--write-map", "map.csv" };
        QTest::newRow("output is the map that is read") << QStringList{ "--map", "map.csv", "-o", "map.csv" };
    }
    void inputsAreNotOverwritten()
    {
        QFETCH(QStringList, options);
        write("map.csv", "decision,round,item,other_round,other_item\n");
        const Run run = concord(options + files);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err,
                 "vanlayout: " + options.constLast().toUtf8() + ": is a file to read, and is not overwritten\n");
        QCOMPARE(directory.read("2001.dcf"), round2001().toUtf8());
        QCOMPARE(directory.read("map.csv"), QByteArray("decision,round,item,other_round,other_item\n"));
    }

    void inputsInADirectoryAreNotOverwritten()
    {
        QVERIFY(QDir(directory.path()).mkpath("in"));
        write("in/codes.csv", round2001());
        const Run run = concord({ "--format", "csv", "-o", "in", "in/codes.csv", "2006.dcf" });
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(directory.read("in/codes.csv"), round2001().toUtf8());
    }

    void mapThatIsReadUnchangedChangesNothing()
    {
        QCOMPARE(concord(QStringList{ "--write-map", "map.csv" } + files).status, fine);
        const Run plain = concord(QStringList{ "--format", "json" } + files);
        const Run run
            = concord(QStringList{ "--map", "map.csv", "--write-map", "again.csv", "--format", "json" } + files);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out, plain.out);
        QCOMPARE(directory.read("again.csv"), directory.read("map.csv"));
    }

    void mapWithAllDecisionsGivesTheSameConcordance()
    {
        QCOMPARE(concord(QStringList{ "--write-map", "map.csv" } + files).status, fine);
        directory.write("map.csv", directory.read("map.csv").replace("\n,same,", "\nsame,same,"));
        const Run run
            = concord(QStringList{ "--map", "map.csv", "--write-map", "again.csv", "--format", "json" } + files);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out, concord(QStringList{ "--format", "json" } + files).out);
        QCOMPARE(directory.read("again.csv"), directory.read("map.csv"));
    }

    void decisionsWin()
    {
        write("map.csv",
              "decision;round;item;other_round;other_item\r\n"
              "different;2006.dcf;P305;2001.dcf;P304\r\n"
              "same;2006.dcf;P304;2001.dcf;P304\r\n");
        const Run run = concord(QStringList{ "--map", "map.csv", "--write-map", "next.csv" } + files);
        QCOMPARE(run.status, fine);
        QVERIFY2(run.out.contains("\nP304    =         label, values  values    Religion\n"), run.out.constData());
        const QByteArray next = directory.read("next.csv");
        QVERIFY(next.contains("\r\nsame,same,label values,2006.dcf,L,PERSON,P304,Language spoken at home,"));
        QVERIFY2(next.contains("\r\ndifferent,different,,2006.dcf,"), next.constData());
        QCOMPARE(concord(QStringList{ "--map", "next.csv" } + files).out, run.out);
    }

    void problemsOfTheMapHaveTheirLine()
    {
        write("map.csv",
              "decision,round,item,other_round,other_item\n"
              "same,2006.dcf,P304,2001.dcf,NONE\n"
              "same,2006.dcf,P305,2001.dcf,P304\n"
              "\n"
              "same,2006.dcf,P304,2001.dcf,P304\n");
        const Run run = concord(QStringList{ "--map", "map.csv" } + files);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err,
                 QByteArray("vanlayout: map.csv: line 2: 2001.dcf has no item NONE; correct the name\n"
                            "vanlayout: map.csv: line 5: with the decisions before it, two items of 2006.dcf would be "
                            "one variable; remove one of them\n"));
        write("map.csv", "decision,round\nmaybe,2006.dcf\n");
        QCOMPARE(concord(QStringList{ "--map", "map.csv" } + files).err,
                 QByteArray("vanlayout: map.csv: line 1: the map has no column item\n"
                            "vanlayout: map.csv: line 1: the map has no column other_round\n"
                            "vanlayout: map.csv: line 1: the map has no column other_item\n"));
    }

    void mapGoesToStandardOutput()
    {
        const Run run = concord(QStringList{ "--write-map", "-", "-o", "table.txt" } + files);
        QVERIFY(run.out.startsWith("\xEF\xBB\xBF"
                                   "decision,concord,changes,round,"));
        QVERIFY(directory.read("table.txt").startsWith("3 rounds: "));
    }

    void bytesAreTheSameOnEachRun_data()
    {
        QTest::addColumn<QStringList>("options");
        for (const char *form : { "table", "csv", "json", "html" })
            QTest::newRow(form) << QStringList{ "--format", form };
        QTest::newRow("map") << QStringList{ "--write-map", "-", "-o", "/dev/null" };
        QTest::newRow("recodeflow") << QStringList{ "--format", "recodeflow", "-o", "recode" };
    }
    void bytesAreTheSameOnEachRun()
    {
        QFETCH(QStringList, options);
        const auto bytes = [&] {
            const QByteArray out = concord(options + files).out;
            return out + directory.read("recode/variable_details.csv") + directory.read("recode/variables.csv");
        };
        const QByteArray first = bytes();
        QVERIFY(!first.isEmpty());
        QCOMPARE(bytes(), first);
    }

    void terminalGetsNoControlCharacters_data()
    {
        QTest::addColumn<int>("width");
        QTest::newRow("table") << 200;
        QTest::newRow("list") << 30;
    }
    void terminalGetsNoControlCharacters()
    {
        QFETCH(int, width);
        const QString hostile = QString::fromUtf8("a\x1B[31m\u202Eb\u009B");
        write("one.dcf", dictionary(item("X", hostile, 2, 1, { "1;" + hostile })));
        write("two.dcf", dictionary(item("X", hostile + " c", 2, 1, { "1;" + hostile + " other thing" })));
        const Run run = onTerminal(width, { "one.dcf", "two.dcf" });
        QVERIFY(run.out.contains("X"));
        QVERIFY2(!run.out.contains('\x1B') && !run.out.contains("\xE2\x80\xAE") && !run.out.contains("\xC2\x9B"),
                 run.out.constData());
    }

private:
    Run concord(const QStringList &arguments) const { return directory.run(QStringList{ "concord" } + arguments); }
    Run concord(const QStringList &arguments, QProcess &tool) const
    {
        return directory.run(QStringList{ "concord" } + arguments, tool);
    }
    Run onTerminal(int width, const QStringList &arguments) const
    {
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("COLUMNS", QString::number(width));
        tool.setProcessEnvironment(environment);
        return concord(arguments, tool);
    }
    void write(const QString &name, const QString &content) const { directory.write(name, content.toUtf8()); }

    ToolDirectory directory;
};

QTEST_GUILESS_MAIN(VanlayoutConcordTest)
#include "VanlayoutConcordTest.moc"
