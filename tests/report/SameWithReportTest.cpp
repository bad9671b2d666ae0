#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/ReadReport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/MakeImporter.h"
#include "support/ImportedText.h"

#include <QDir>
#include <QLoggingCategory>
#include <QtTest>

#include <memory>

namespace
{

QString layoutOf(const std::unique_ptr<TDataImport> &importer, ReadReport *report)
{
    importer->setReadReport(report);
    return importedText(*importer);
}

std::unique_ptr<TDataImport> makeSilentStataImporter(const QString &path)
{
    auto importer = std::make_unique<TSTATADataImport>(path);
    importer->setErrorStream(nullptr);
    return importer;
}

} // namespace

/// Tests that the results of a reader do not depend on whether a report is attached.
class SameWithReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); }

    void layoutIsTheSameWithAReport_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<MakeImporter>("newImporter");
        addDirectory(QStringLiteral(VAN_TEST_DATA "/cspro"), "*.dcf", &makeImporter<TCSProDataImport>);
        addDirectory(QStringLiteral(VAN_TEST_DATA "/cspro8"), "*.dcf", &makeImporter<TCSProJsonDataImport>);
        addDirectory(QStringLiteral(VAN_EXAMPLES), "*.dcf", &makeImporter<TCSProDataImport>);
        addDirectory(QStringLiteral(VAN_EXAMPLES), "*8.dcf", &makeImporter<TCSProJsonDataImport>);
        addDirectory(QStringLiteral(VAN_MADE_DATA), "*.dta", &makeSilentStataImporter);
        addDirectory(QStringLiteral(VAN_MADE_DATA), "*sav", &makeImporter<TSPSSDataImport>);
        addDirectory(QStringLiteral(VAN_CORPUS "/cspro-text"), "*", &makeImporter<TCSProDataImport>);
        addDirectory(QStringLiteral(VAN_CORPUS "/cspro-json"), "*", &makeImporter<TCSProJsonDataImport>);
        addDirectory(QStringLiteral(VAN_CORPUS "/stata"), "*", &makeSilentStataImporter);
        addDirectory(QStringLiteral(VAN_CORPUS "/spss"), "*", &makeImporter<TSPSSDataImport>);
    }
    void layoutIsTheSameWithAReport()
    {
        QFETCH(QString, path);
        QFETCH(MakeImporter, newImporter);
        ReadReport report;
        const QString alone = layoutOf(newImporter(path), nullptr);
        QCOMPARE(layoutOf(newImporter(path), &report), alone);
        for (const ReadNote &note : report.notes()) {
            QVERIFY(note.line >= 0);
            QVERIFY(!note.id().isEmpty());
        }
    }

private:
    // The corpus may be absent; the other directories are not.
    static void addDirectory(const QString &directory, const char *pattern, MakeImporter newImporter)
    {
        for (const QFileInfo &file : QDir(directory).entryInfoList({ QLatin1String(pattern) }, QDir::Files))
            QTest::newRow(qPrintable(QDir(directory).dirName() + QLatin1Char('/') + file.fileName()))
                << file.filePath() << newImporter;
    }
};

QTEST_GUILESS_MAIN(SameWithReportTest)
#include "SameWithReportTest.moc"
