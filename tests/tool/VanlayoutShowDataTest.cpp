#include "StatFile.h"
#include "support/MadeDatabase.h"
#include "support/ToolRun.h"

#include <QJsonArray>

namespace
{

const QByteArray dictionary = "[Dictionary]\nVersion=CSPro 7.7\nLabel=Homes\nName=HOMES\nRecordTypeStart=0\n"
                              "RecordTypeLen=0\nPositions=Relative\n[Level]\nName=L\n[IdItems]\n[Item]\nLabel=House\n"
                              "Name=HOUSE\nStart=1\nLen=3\n[Record]\nName=R\nRecordTypeValue=''\n";

// A file of each kind: a number with a label set, with a format and without one, and a text.
QByteArray survey(StatFile::Kind kind)
{
    StatFile file(kind);
    const bool hasLabels = kind != StatFile::sas7bdat && kind != StatFile::xpt;
    readstat_writer_set_file_label(file.writer(), "  The survey");
    const readstat_label_set_t *yesNo = hasLabels ? file.labels("yesno", { { 1, "Yes" }, { 2, "No" } }) : nullptr;
    const char *format = hasLabels ? (kind == StatFile::dta ? "%8.0g" : "F8.2") : "YESNO";
    readstat_variable_t *water = file.variable("WATER", READSTAT_TYPE_DOUBLE, "Has water", format, yesNo);
    if (kind == StatFile::sav)
        readstat_variable_add_missing_double_range(water, 8, 9);
    file.text("NAME", 20, "Name of the head", nullptr);
    return QByteArray::fromStdString(file.bytes(3));
}

QByteArray catalog()
{
    StatFile file(StatFile::sas7bcat);
    file.labels("YESNO", { { 1, "Yes" }, { 2, "No" } });
    return QByteArray::fromStdString(file.bytes(0));
}

} // namespace

/// Tests `vanlayout show` with data files of statistical programs and of CSPro.
class VanlayoutShowDataTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void kindOfTheFileIsNamed_data();
    void kindOfTheFileIsNamed();
    void tableHasFormatsAndMissingValues();
    void csvHasTheMembersOfStatisticalFiles();
    void catalogGivesValueLabels();
    void catalogThatCannotBeReadIsAWarning();
    void standardInputHoldsAnyFormat_data();
    void standardInputHoldsAnyFormat();
    void fileThatCannotBeReadSaysWhy_data();
    void fileThatCannotBeReadSaysWhy();

private:
    Run show(const QStringList &arguments) const { return directory.run(QStringList{ "show" } + arguments); }

    ToolDirectory directory;
};

void VanlayoutShowDataTest::initTestCase()
{
    qputenv("COLUMNS", "80");
    directory.write("homes.sav", survey(StatFile::sav));
    directory.write("homes.zsav", survey(StatFile::zsav));
    directory.write("homes.por", survey(StatFile::por));
    directory.write("homes.dta", survey(StatFile::dta));
    directory.write("homes.sas7bdat", survey(StatFile::sas7bdat));
    directory.write("homes.xpt", survey(StatFile::xpt));
    directory.write("formats.sas7bcat", catalog());
    directory.write("homes.dcf", dictionary);
    makeDatabase(directory.filePath("homes.csdb"), dictionary);
}

void VanlayoutShowDataTest::kindOfTheFileIsNamed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("facts");
    QTest::newRow("sav") << "homes.sav" << QByteArray("SPSS file, 2 variables, 3 rows");
    QTest::newRow("zsav") << "homes.zsav" << QByteArray("SPSS file, 2 variables, 3 rows");
    QTest::newRow("por") << "homes.por" << QByteArray("SPSS portable file, 2 variables");
    QTest::newRow("dta") << "homes.dta" << QByteArray("Stata file, version 118, 2 variables, 3 rows");
    QTest::newRow("sas7bdat") << "homes.sas7bdat" << QByteArray("SAS data set, DATASET, 2 variables, 3 rows");
    QTest::newRow("xpt") << "homes.xpt" << QByteArray("SAS transport file, version 8, DATASET, 2 variables");
    QTest::newRow("csdb") << "homes.csdb"
                          << QByteArray("CSPro data file with a CSPro dictionary, text form 7.7, HOMES, 1 variable");
}

void VanlayoutShowDataTest::kindOfTheFileIsNamed()
{
    QFETCH(QString, name);
    const Run run = show({ name });
    QCOMPARE(run.status, fine);
    QCOMPARE(run.err, QByteArray());
    const QList<QByteArray> lines = run.out.split('\n');
    QCOMPARE(lines.at(1), name.toUtf8());
    QTEST(lines.at(2), "facts");
}

void VanlayoutShowDataTest::tableHasFormatsAndMissingValues()
{
    QCOMPARE(show({ "--labels", "homes.sav" }).out,
             QByteArray("The survey\n"
                        "homes.sav\n"
                        "SPSS file, 2 variables, 3 rows\n"
                        "\n"
                        "Name   Type  Values  Label\n"
                        "WATER  F8.2       2  Has water\n"
                        "    labels0\n"
                        "      1  Yes\n"
                        "      2  No\n"
                        "    missing: 8 to 9\n"
                        "NAME   A20           Name of the head\n"));
    QCOMPARE(show({ "homes.sas7bdat" }).out,
             QByteArray("The survey\n"
                        "homes.sas7bdat\n"
                        "SAS data set, DATASET, 2 variables, 3 rows\n"
                        "\n"
                        "Name   Type   Label\n"
                        "WATER  YESNO  Has water\n"
                        "NAME   A(20)  Name of the head\n"));
}

void VanlayoutShowDataTest::csvHasTheMembersOfStatisticalFiles()
{
    StatFile file(StatFile::sav);
    readstat_variable_t *income = file.variable("INCOME", READSTAT_TYPE_DOUBLE, "Income", "F8.2");
    readstat_variable_set_measure(income, READSTAT_MEASURE_SCALE);
    readstat_variable_set_display_width(income, 12);
    readstat_variable_add_missing_double_range(income, 98, 99);
    readstat_variable_add_missing_double_value(income, -1);
    directory.write("income.sav", QByteArray::fromStdString(file.bytes()));
    const QList<QByteArray> lines = show({ "--format", "csv", "income.sav" }).out.split('\n');
    QCOMPARE(lines.at(1), QByteArray(",,,INCOME,Income,numeric,0,8,1,,2,,,,double,F8.2,scale,,12,98:99 -1,,,\r"));
}

void VanlayoutShowDataTest::catalogGivesValueLabels()
{
    for (const char *name : { "homes.sas7bdat", "homes.xpt" }) {
        const Run run = show({ "--codes", "--catalog", "formats.sas7bcat", name });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(run.out,
                 "file,item,valueSet,from,to,label,special\r\n" + QByteArray(name) + ",WATER,YESNO,1,,Yes,\r\n" + name
                     + ",WATER,YESNO,2,,No,\r\n");
    }
}

void VanlayoutShowDataTest::catalogThatCannotBeReadIsAWarning()
{
    const Run run = show({ "--catalog", "absent.sas7bcat", "homes.sas7bdat" });
    QCOMPARE(run.status, fine);
    QVERIFY(run.err.startsWith("vanlayout: homes.sas7bdat: the catalog absent.sas7bcat: cannot be opened: "));
    QCOMPARE(run.err.count('\n'), 1);
    QCOMPARE(show({ "--quiet", "--catalog", "absent.sas7bcat", "homes.sas7bdat" }).err, QByteArray());
    QCOMPARE(run.out, show({ "homes.sas7bdat" }).out);
    QVERIFY(show({ "--problems", "--catalog", "absent.sas7bcat", "homes.sas7bdat" })
                .out.contains("warning: the catalog absent.sas7bcat: cannot be opened: "));
}

void VanlayoutShowDataTest::standardInputHoldsAnyFormat_data()
{
    QTest::addColumn<QString>("name");
    for (const char *suffix : { "sav", "zsav", "por", "dta", "sas7bdat", "xpt", "dcf", "csdb" })
        QTest::newRow(suffix) << QString("homes.") + suffix;
}

void VanlayoutShowDataTest::standardInputHoldsAnyFormat()
{
    QFETCH(QString, name);
    const Run file = show({ "--format", "json", name });
    QCOMPARE(file.status, fine);
    const QByteArray expected = QByteArray(file.out).replace("\"file\":\"" + name.toUtf8(), "\"file\":\"-");
    QCOMPARE(runShell(directory, "cat " + name + " | \"$0\" show --format json -").out, expected);
    QCOMPARE(runShell(directory, "\"$0\" show --format json - < " + name).out, expected);
}

void VanlayoutShowDataTest::fileThatCannotBeReadSaysWhy_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("Stata 103") << QByteArray("\x67\2\1\0\5\0\x0a\0", 8) + QByteArray(200, '\0')
                               << QByteArray("the file is a Stata file of version 103 that cannot be read: "
                                             "This version of the file format is not supported\n");
    QTest::newRow("cut SPSS file") << survey(StatFile::sav).left(300)
                                   << QByteArray("the file is an SPSS file that cannot be read: ");
    QTest::newRow("catalog") << catalog() << QByteArray("the file is a SAS catalog, which holds label sets");
    QTest::newRow("encrypted SPSS file") << QByteArray("\x1c\0\0\0\0\0\0\0ENCRYPTEDSAV\x15\0\0\0", 24)
                                         << QByteArray("the file is an encrypted SPSS file");
    QTest::newRow("encrypted .csdb") << QByteArray("\x93\x1f\x02\xee\x10")
                                     << QByteArray("the file has no known format; "
                                                   "if it is an encrypted CSPro");
    QTest::newRow("text") << QByteArray("Hello\n") << QByteArray("line 1: the text does not begin with a section");
}

void VanlayoutShowDataTest::fileThatCannotBeReadSaysWhy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, reason);
    directory.write("other", bytes);
    const Run run = show({ "other" });
    QCOMPARE(run.out, QByteArray());
    verifyComplaint(run, "other: " + reason);
}

QTEST_APPLESS_MAIN(VanlayoutShowDataTest)
#include "VanlayoutShowDataTest.moc"
