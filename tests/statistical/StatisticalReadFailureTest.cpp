#include "import/ReadReport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/FailingRead.h"

#include <QFileInfo>
#include <QtTest>

#include <memory>

struct TestAccess {
    static bool open(TDataImport &importer) { return importer.openFile(); }
    static const QList<TGenericField *> &fields(const TDataImport &importer) { return *importer.fields; }
};

namespace
{

const QString made = QStringLiteral(VAN_MADE_DATA "/");
const QString inputOutputError = QStringLiteral("cannot be read: Input/output error");

std::unique_ptr<TDataImport> makeImporter(const QString &name, bool isBuffered)
{
    if (name.endsWith(QLatin1String(".dta"))) {
        auto importer = std::make_unique<TSTATADataImport>(made + name);
        importer->setErrorStream(nullptr);
        importer->setReadingBuffered(isBuffered);
        return importer;
    }
    auto importer = std::make_unique<TSPSSDataImport>(made + name);
    importer->setReadingBuffered(isBuffered);
    return importer;
}

/// The result of opening a file on a disk that fails after its first bytes.
struct Outcome {
    QStringList fields;
    QString problem;
    int failures = 0; ///< in the report
    QString failure;  ///< the text of the last one

    bool operator==(const Outcome &other) const
    {
        return fields == other.fields && problem == other.problem && failures == other.failures;
    }
};

Outcome outcomeOf(const QString &name, qint64 goodBytes, bool isBuffered, bool hasReport)
{
    Outcome outcome;
    ReadReport report;
    const auto importer = makeImporter(name, isBuffered);
    if (hasReport)
        importer->setReadReport(&report);
    failingread::goodBytes = goodBytes;
    failingread::fileName = '/' + name.toStdString();
    TestAccess::open(*importer);
    failingread::fileName.clear();
    for (const TGenericField *field : TestAccess::fields(*importer))
        outcome.fields += field->name + QLatin1Char('|') + field->valueLabels + QLatin1Char('|') + field->label;
    outcome.problem = importer->getReadProblem();
    outcome.failures = report.count(NoteKind::readFailed);
    for (const ReadNote &note : report.notes()) {
        if (note.kind == NoteKind::readFailed)
            outcome.failure = note.text;
    }
    importer->releaseContents();
    return outcome;
}

} // namespace

/// Tests a disk that fails while a Stata or SPSS file is read.
class StatisticalReadFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPlaceThatIsReadIsAReadFailure_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             { "types-105.dta", "types-114.dta", "types-117.dta", "types-118.dta", "types.sav", "types.zsav" })
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void everyPlaceThatIsReadIsAReadFailure()
    {
        QFETCH(QString, name);
        const qint64 size = QFileInfo(made + name).size();
        const Outcome whole = outcomeOf(name, size, true, true);
        QVERIFY(!whole.fields.isEmpty());
        QVERIFY(whole.problem.isNull());
        QCOMPARE(whole.failures, 0);
        int failures = 0;
        for (qint64 goodBytes = 0; goodBytes < size; ++goodBytes) {
            const Outcome outcome = outcomeOf(name, goodBytes, true, true);
            if (outcome == whole)
                continue; // nothing is read there
            ++failures;
            QCOMPARE(outcome.problem, inputOutputError);
            QCOMPARE(outcome.failures, 1);
            QCOMPARE(outcome.failure, inputOutputError);
        }
        QVERIFY(failures > size / 2);
        // All labels of a Stata file are at its end, those of an SPSS file before the rows.
        if (name.endsWith(QLatin1String(".dta")))
            QCOMPARE(outcomeOf(name, size - 60, true, true).problem, inputOutputError);
    }

    void fieldsInFrontOfTheFailureAreKept()
    {
        const QString name = QStringLiteral("types-118.dta");
        const Outcome outcome = outcomeOf(name, QFileInfo(made + name).size() - 100, true, true);
        QCOMPARE(outcome.fields.size(), 9);
        QCOMPARE(outcome.problem, inputOutputError);
    }

    void reportHearsOfItWhicheverWayFilesAreRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("stata") << QStringLiteral("types-114.dta");
        QTest::newRow("spss") << QStringLiteral("types.sav");
    }
    void reportHearsOfItWhicheverWayFilesAreRead()
    {
        QFETCH(QString, name);
        QCOMPARE(outcomeOf(name, 500, false, true), outcomeOf(name, 500, true, true));
        QCOMPARE(outcomeOf(name, 500, false, true).failures, 1);
    }

    // Without a report, ReadStat reads as it does by itself, and the dictionary is examined before that.
    void spssFileIsNotHandedToReadStatWhereItsDictionaryCannotBeRead()
    {
        const Outcome outcome = outcomeOf(QStringLiteral("types.sav"), 500, false, false);
        QVERIFY(outcome.fields.isEmpty());
        QCOMPARE(outcome.problem, inputOutputError);
    }

    void problemIsForgottenAtTheNextOpening()
    {
        const auto importer = makeImporter(QStringLiteral("types-118.dta"), true);
        failingread::goodBytes = 5;
        failingread::fileName = "/types-118.dta";
        TestAccess::open(*importer);
        QCOMPARE(importer->getReadProblem(), inputOutputError);
        failingread::fileName.clear();
        TestAccess::open(*importer);
        QVERIFY(importer->getReadProblem().isNull());
        QCOMPARE(TestAccess::fields(*importer).size(), 9);
        importer->releaseContents();
    }
};

QTEST_APPLESS_MAIN(StatisticalReadFailureTest)
#include "StatisticalReadFailureTest.moc"
