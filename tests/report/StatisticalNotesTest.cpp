#include "StatFile.h"
#include "import/ReadReport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/OrdinaryUser.h"
#include "support/ImportedText.h"

#include <QFile>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <memory>

namespace
{

// Returns every note as a text, in the order of the report.
QStringList inWords(const ReadReport &report)
{
    QStringList words;
    for (const ReadNote &note : report.notes())
        words += QStringList{ note.id(), note.variable, note.text }.join(QLatin1Char('|'));
    return words;
}

template <typename Importer> void setQuiet(Importer &importer)
{
    importer.setReadingBuffered(true);
}
template <> void setQuiet(TSTATADataImport &importer)
{
    importer.setErrorStream(nullptr);
}

template <typename Importer> QStringList notesOf(const QString &path)
{
    ReadReport report;
    Importer importer(path);
    setQuiet(importer);
    importer.setReadReport(&report);
    importedText(importer);
    return inWords(report);
}

} // namespace

/// Tests the notes of the readers of Stata and SPSS files.
class StatisticalNotesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        QVERIFY(directory.isValid());
    }

    void fileWithNothingLostIsSilent()
    {
        StatFile stata(StatFile::dta, 118);
        stata.variable("age", READSTAT_TYPE_INT8, "Age", "%8.0g", stata.intLabels("ages", { { 1, "One" } }));
        QCOMPARE(notesOf<TSTATADataImport>(saved(stata)), QStringList());
        StatFile spss(StatFile::sav);
        spss.variable("AGE", READSTAT_TYPE_DOUBLE, "Age", "F3.0", spss.labels("ages", { { 1, "One" } }));
        QCOMPARE(notesOf<TSPSSDataImport>(saved(spss)), QStringList());
    }

    void fileThatIsNotThereIsReportedOnce()
    {
        const QString path = directory.filePath(QStringLiteral("missing"));
        QCOMPARE(notesOf<TSTATADataImport>(path).filter(QStringLiteral("file-not-read")).size(), 1);
        QCOMPARE(notesOf<TSPSSDataImport>(path).filter(QStringLiteral("file-not-read")).size(), 1);
    }

    void fileThatWillNotOpenIsReportedOnce()
    {
        const QString path = write("<stata_dta>");
        QVERIFY(QFile::setPermissions(path, QFileDevice::WriteOwner));
        QStringList stata;
        QStringList spss;
        asOrdinaryUser([&] {
            stata = notesOf<TSTATADataImport>(path);
            spss = notesOf<TSPSSDataImport>(path);
        });
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        QCOMPARE(stata, QStringList("file-not-read||" + path));
        QCOMPARE(spss, QStringList("file-not-read||" + path));
    }

    void readersOwnErrorIsReportedInWords()
    {
        QCOMPARE(notesOf<TSPSSDataImport>(write(std::string(1000, 'x'))),
                 QStringList(QStringLiteral("file-not-read||Invalid file, or file has unsupported features")));
    }

    void truncatedFileEndsTheReading()
    {
        StatFile file(StatFile::dta, 118);
        file.variable("age", READSTAT_TYPE_INT8, "Age", "%8.0g", file.intLabels("ages", { { 1, "One" } }));
        const std::string bytes = file.bytes();
        const QString path = write(bytes.substr(0, bytes.find("<value_labels>") + 5));
        QCOMPARE(notesOf<TSTATADataImport>(path),
                 (QStringList{ QStringLiteral("label-set-missing|age|ages"),
                               QStringLiteral("reading-ended||Unable to read from file") }));
    }

    void refusedVersionIsReported()
    {
        StatFile file(StatFile::dta, 114);
        file.variable("age", READSTAT_TYPE_INT8);
        std::string bytes = file.bytes();
        bytes.front() = char(103);
        QCOMPARE(notesOf<TSTATADataImport>(write(bytes)),
                 QStringList(QStringLiteral("version-refused||This version of the file format is not supported")));
    }

    void labelOfMinusOneIsLost()
    {
        StatFile file(StatFile::dta, 118);
        const auto *set = file.intLabels("yesno", { { -1, "Refused" }, { 1, "Yes" } });
        file.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)),
                 QStringList(QStringLiteral("label-of-minus-one|v|yesno: -1 Refused")));
    }

    void labelsOfASetAreReportedOnlyForItsFirstVariable()
    {
        StatFile file(StatFile::dta, 118);
        const auto *set = file.intLabels("yesno", { { -1, "Refused" } });
        file.variable("other", READSTAT_TYPE_INT8, "Other", "%8.0g");
        file.variable("a", READSTAT_TYPE_INT8, "A", "%8.0g", set);
        file.variable("b", READSTAT_TYPE_INT8, "B", "%8.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)),
                 QStringList(QStringLiteral("label-of-minus-one|a|yesno: -1 Refused")));
    }

    void decimalsCutToMinusOneLoseTheLabel()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("balance", { { -1.5, "Loss" }, { 1, "One" } });
        file.variable("BALANCE", READSTAT_TYPE_DOUBLE, "Balance", "F3.0", set);
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)), QStringList(QStringLiteral("label-of-minus-one|BALANCE|-1.5")));
    }

    void labelSetWithoutAVariableIsReported()
    {
        StatFile file(StatFile::dta, 118);
        file.intLabels("yesno", { { 1, "Yes" } });
        file.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g");
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)), QStringList(QStringLiteral("label-set-unused||yesno: 1 Yes")));
    }

    // In these versions the name of a variable's set has 9 bytes, and the name with the labels 33.
    void setsOfOldVersionsAreKeptApartByTheirWholeNames()
    {
        StatFile file(StatFile::dta, 108);
        file.variable("age", READSTAT_TYPE_INT8, "Age", "%8.0g");
        file.intLabels("twelveletter1", { { 1, "One" } });
        file.intLabels("twelveletter2", { { 1, "Another one" } });
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)),
                 (QStringList{ QStringLiteral("label-set-unused||twelveletter1: 1 One"),
                               QStringLiteral("label-set-unused||twelveletter2: 1 Another one") }));
    }

    void labelOfATaggedMissingValueStandsAtANumber()
    {
        StatFile file(StatFile::dta, 118);
        readstat_label_set_t *set = file.intLabels("yesno", { { 1, "Yes" } });
        readstat_label_tagged_value(set, 'a', "Refused");
        file.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)),
                 (QStringList{ QStringLiteral("missing-as-number|v|yesno: .a Refused"),
                               QStringLiteral("bound-rounded|v|2147483622") }));
    }

    void boundWithAnExponentIsReported()
    {
        StatFile file(StatFile::dta, 118);
        const auto *set = file.intLabels("sums", { { 100000, "Little" }, { 1000000, "Much" } });
        file.variable("v", READSTAT_TYPE_INT32, "V", "%12.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)), QStringList(QStringLiteral("bound-rounded|v|1000000")));
    }

    void codesOfMoreThanSixDecimalsAreRoundedAndMayBecomeOne()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("rates", { { 0.12345678, "First" }, { 0.12345679, "Second" }, { 0.5, "Half" } });
        file.variable("RATE", READSTAT_TYPE_DOUBLE, "Rate", "F9.8", set);
        QCOMPARE(
            notesOf<TSPSSDataImport>(saved(file)),
            (QStringList{ QStringLiteral("decimals-lost|RATE|F9.8"), QStringLiteral("code-rounded|RATE|0.12345678"),
                          QStringLiteral("code-rounded|RATE|0.12345679"),
                          QStringLiteral("duplicate-code|RATE|0.12345679 Second"),
                          QStringLiteral("bound-rounded|RATE|0.12345678") }));
    }

    void smallNumberKeepsItsDigitsAsABoundButNotAsACode()
    {
        StatFile file(StatFile::sav);
        file.variable("TINY", READSTAT_TYPE_DOUBLE, "Tiny", "F9.8", file.labels("tiny", { { 1e-9, "Least" } }));
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)),
                 (QStringList{ QStringLiteral("decimals-lost|TINY|F9.8"), QStringLiteral("code-rounded|TINY|1e-09") }));
    }

    void oneBoundIsReportedOnceAndWithTheDigitsOfTheFile()
    {
        StatFile file(StatFile::dta, 118);
        file.variable("v", READSTAT_TYPE_INT32, "V", "%12.0g", file.intLabels("one", { { 123456789, "One" } }));
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)), QStringList(QStringLiteral("bound-rounded|v|123456789")));
    }

    void eachBoundIsReportedOnce()
    {
        StatFile file(StatFile::dta, 118);
        const auto *set = file.intLabels("ends", { { -1234567, "Least" }, { 0, "None" }, { 7654321, "Most" } });
        file.variable("v", READSTAT_TYPE_INT32, "V", "%12.0g", set);
        QCOMPARE(
            notesOf<TSTATADataImport>(saved(file)),
            (QStringList{ QStringLiteral("bound-rounded|v|-1234567"), QStringLiteral("bound-rounded|v|7654321") }));
    }

    void codesThatAreCutToOneIntegerAreOneCode()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("shares", { { 2, "Two" }, { 1, "One" }, { 1.5, "More" } });
        file.variable("SHARE", READSTAT_TYPE_DOUBLE, "Share", "F3.0", set);
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)),
                 (QStringList{ QStringLiteral("value-cut-to-integer|SHARE|1.5"),
                               QStringLiteral("duplicate-code|SHARE|1 More") }));
    }

    void codeThatStandsTwiceInItsSetIsReported()
    {
        StatFile stata(StatFile::dta, 118);
        const auto *set = stata.intLabels("yesno", { { 1, "Yes" }, { 2, "No" }, { 1, "Aye" } });
        stata.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(stata)), QStringList(QStringLiteral("duplicate-code|v|1 Aye")));
        StatFile spss(StatFile::sav);
        spss.text("T", 1, "T", "A1",
                  spss.textLabels("texts", { { "a", "First" }, { "b", "Other" }, { "a", "Again" } }));
        QCOMPARE(notesOf<TSPSSDataImport>(saved(spss)), QStringList(QStringLiteral("duplicate-code|T|a Again")));
    }

    void codesOfASetAreReportedOnlyForItsFirstVariable()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("thirds", { { 1.0 / 3, "Third" }, { 1, "One" } });
        file.variable("A", READSTAT_TYPE_DOUBLE, "A", "F9.8", set);
        file.variable("B", READSTAT_TYPE_DOUBLE, "B", "F9.8", set);
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)).filter(QStringLiteral("code-rounded")),
                 QStringList(QStringLiteral("code-rounded|A|0.333333333333333")));
    }

    void entryThatComesApartInTheValueLabelsIsReported()
    {
        StatFile spss(StatFile::sav);
        spss.text(
            "T", 3, "T", "A3",
            spss.textLabels("texts",
                            { { "A B", "Both" }, { "C", "Cold\tor not" }, { "D", "Old D" }, { "E", "Two\nlines" } }));
        QStringList notes = notesOf<TSPSSDataImport>(saved(spss));
        for (QString &note : notes)
            note.remove(QRegularExpression(QStringLiteral("[^|]*: "))); // the name that ReadStat makes for a set
        QCOMPARE(notes,
                 (QStringList{ QStringLiteral("label-entry-parted|T|A B Both"),
                               QStringLiteral("label-entry-parted|T|C Cold\tor not"),
                               QStringLiteral("label-entry-parted|T|E Two\nlines") }));
        StatFile stata(StatFile::dta, 118);
        const auto *set = stata.intLabels("yesno", { { 1, "Yes\tindeed" }, { 2, "Not at all" } });
        stata.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(stata)),
                 QStringList(QStringLiteral("label-entry-parted|v|yesno: 1 Yes\tindeed")));
    }

    void dateIsReportedAsItsNumber_data()
    {
        QTest::addColumn<bool>("isStata");
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<bool>("isDate");
        QTest::newRow("day") << true << QByteArray("%td") << true;
        QTest::newRow("left-justified") << true << QByteArray("%-tcDD/NN/CCYY") << true;
        QTest::newRow("old") << true << QByteArray("%dD_m_Y") << true;
        QTest::newRow("number") << true << QByteArray("%9.0g") << false;
        QTest::newRow("SPSS date") << false << QByteArray("DATE11") << true;
        QTest::newRow("SPSS moment") << false << QByteArray("DATETIME20") << true;
        QTest::newRow("SPSS number") << false << QByteArray("F8.0") << false;
        QTest::newRow("SPSS dollars") << false << QByteArray("DOLLAR8") << false;
    }
    void dateIsReportedAsItsNumber()
    {
        QFETCH(bool, isStata);
        QFETCH(QByteArray, format);
        QFETCH(bool, isDate);
        StatFile file(isStata ? StatFile::dta : StatFile::sav, isStata ? 118 : 0);
        file.variable("v", READSTAT_TYPE_DOUBLE, "V", format.constData());
        const QString path = saved(file);
        const QStringList notes = isStata ? notesOf<TSTATADataImport>(path) : notesOf<TSPSSDataImport>(path);
        const QStringList dates = notes.filter(QStringLiteral("date-as-number"));
        QCOMPARE(dates,
                 isDate ? QStringList(QStringLiteral("date-as-number|v|") + QString::fromLatin1(format))
                        : QStringList());
    }

    void missingLabelSetIsReported()
    {
        StatFile file(StatFile::dta, 118);
        file.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g", file.intLabels("set", { { 1, "One" } }));
        std::string bytes = file.bytes();
        bytes.replace(bytes.rfind("set"), 3, "SET");
        QCOMPARE(
            notesOf<TSTATADataImport>(write(bytes)),
            (QStringList{ QStringLiteral("label-set-missing|v|set"), QStringLiteral("label-set-unused||SET: 1 One") }));
    }

    void labelledValueWithDecimalsIsCutForAVariableWithout()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("shares", { { 0.5, "Half" }, { 1, "One" } });
        file.variable("SHARE", READSTAT_TYPE_DOUBLE, "Share", "F3.0", set);
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)), QStringList(QStringLiteral("value-cut-to-integer|SHARE|0.5")));
    }

    void widthOfMoreThanOneDigitIsCut()
    {
        StatFile file(StatFile::sav);
        file.variable("WIDE", READSTAT_TYPE_DOUBLE, "Wide", "F12.0");
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)), QStringList(QStringLiteral("width-cut|WIDE|F12.0")));
    }

    void decimalsOfSPSSAreLost()
    {
        StatFile file(StatFile::sav);
        file.variable("RENT", READSTAT_TYPE_DOUBLE, "Rent", "F8.2");
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)), QStringList(QStringLiteral("decimals-lost|RENT|F8.2")));
        // One message serves all formats; here there is nothing to divide.
        const QString message = ReadReport::messageOf(NoteKind::decimalsLost);
        QVERIFY(message.contains(QStringLiteral("values of SPSS and Stata files as they are, because they are real")));
    }

    void missingRangesAreReportedAsTheyAreDeclared_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<QString>("words");
        QTest::newRow("two bounds") << 97.0 << 99.0 << "97 to 99";
        QTest::newRow("no lower bound") << -HUGE_VAL << -1.0 << "LOWEST to -1";
        QTest::newRow("no upper bound") << 90.0 << HUGE_VAL << "90 to HIGHEST";
    }
    void missingRangesAreReportedAsTheyAreDeclared()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(QString, words);
        StatFile file(StatFile::sav);
        auto *age = file.variable("AGE", READSTAT_TYPE_DOUBLE, "Age", "F3.0");
        readstat_variable_add_missing_double_range(age, from, to);
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)), QStringList("missing-not-read|AGE|" + words));
    }

    void declaredMissingValuesAreNotRead()
    {
        StatFile file(StatFile::sav);
        readstat_variable_t *age = file.variable("AGE", READSTAT_TYPE_DOUBLE, "Age", "F3.0");
        readstat_variable_add_missing_double_value(age, 99);
        QCOMPARE(notesOf<TSPSSDataImport>(saved(file)), QStringList(QStringLiteral("missing-not-read|AGE|99")));
    }

    void missingValueWithALabelIsListedLikeAnyOtherValue()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("ages", { { 1, "One" }, { 99, "Unknown" } });
        readstat_variable_t *age = file.variable("AGE", READSTAT_TYPE_DOUBLE, "Age", "F3.0", set);
        readstat_variable_add_missing_double_value(age, 99);
        TSPSSDataImport importer(saved(file));
        ReadReport report;
        importer.setReadReport(&report);
        QVERIFY(importedText(importer).contains(QStringLiteral("1 One\t99 Unknown\t")));
        QCOMPARE(inWords(report), QStringList(QStringLiteral("missing-not-read|AGE|99")));
        // Therefore the note does not request a label.
        QVERIFY(report.notes().front().message().contains(QStringLiteral(
            "lists those that have a label like any other value; take the missing values from this note")));
    }

    void stataTextOutsideOfAsciiIsReported()
    {
        StatFile file(StatFile::dta, 118);
        const auto *set = file.intLabels("sexes", { { 1, "F\xC3\xA9minin" } });
        file.variable("age", READSTAT_TYPE_INT8, "\xC3\x82ge", "%8.0g", set);
        QCOMPARE(notesOf<TSTATADataImport>(saved(file)),
                 (QStringList{ QString::fromUtf8("text-not-ascii|age|\xC3\x82ge"),
                               QString::fromUtf8("text-not-ascii|age|sexes: 1 F\xC3\xA9minin") }));
    }

    void secondOpeningOfAnSPSSImporterIsReported()
    {
        StatFile file(StatFile::sav);
        file.variable("AGE", READSTAT_TYPE_DOUBLE, "Age", "F3.0");
        const QString path = saved(file);
        ReadReport report;
        TSPSSDataImport importer(path);
        importer.setReadReport(&report);
        open(importer);
        QCOMPARE(inWords(report), QStringList());
        open(importer);
        QCOMPARE(inWords(report).first(), QStringLiteral("opened-twice||") + path);
        importer.releaseContents();
    }

    void oneReportServesSeveralFiles()
    {
        StatFile file(StatFile::sav);
        file.variable("WIDE", READSTAT_TYPE_DOUBLE, "Wide", "F12.0");
        const QString path = saved(file);
        ReadReport report;
        for (int i = 0; i < 2; ++i) {
            TSPSSDataImport importer(path);
            importer.setReadReport(&report);
            QCOMPARE(importer.getReadReport(), &report);
            importedText(importer);
        }
        QCOMPARE(report.count(NoteKind::widthCut), 2);
    }

private:
    static void open(TDataImport &importer) { const std::unique_ptr<QStringList> names(importer.selectLayoutSource()); }

    QString write(const std::string &bytes)
    {
        const QString path = directory.filePath(QStringLiteral("file"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), qint64(bytes.size())) != qint64(bytes.size()))
            qFatal("a test file cannot be written");
        return path;
    }
    QString saved(StatFile &file) { return write(file.bytes()); }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(StatisticalNotesTest)
#include "StatisticalNotesTest.moc"
