#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/ReadReport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/WholeRoad.h"

#include <QDir>
#include <QLoggingCategory>
#include <QtTest>

#include <memory>

namespace
{

QString layoutOf(const std::unique_ptr<TDataImport> &importer, ReadReport *report)
{
    importer->setReadReport(report);
    return takeWholeRoad(*importer);
}

template <typename Importer> std::unique_ptr<TDataImport> make(const QString &path)
{
    return std::make_unique<Importer>(path);
}
template <> std::unique_ptr<TDataImport> make<TSTATADataImport>(const QString &path)
{
    auto importer = std::make_unique<TSTATADataImport>(path);
    importer->setErrorStream(nullptr);
    return importer;
}

using Make = std::unique_ptr<TDataImport> (*)(const QString &);

} // namespace
Q_DECLARE_METATYPE(Make)

/// What a reader answers does not depend on whether a report is attached.
class SameWithReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); }

    void layoutIsTheSameWithAReport_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<Make>("make");
        addFolder(QStringLiteral(VAN_TEST_DATA "/cspro"), "*.dcf", &make<TCSProDataImport>);
        addFolder(QStringLiteral(VAN_TEST_DATA "/cspro8"), "*.dcf", &make<TCSProJsonDataImport>);
        addFolder(QStringLiteral(VAN_EXAMPLES), "*.dcf", &make<TCSProDataImport>);
        addFolder(QStringLiteral(VAN_EXAMPLES), "*8.dcf", &make<TCSProJsonDataImport>);
        addFolder(QStringLiteral(VAN_MADE_DATA), "*.dta", &make<TSTATADataImport>);
        addFolder(QStringLiteral(VAN_MADE_DATA), "*sav", &make<TSPSSDataImport>);
        addFolder(QStringLiteral(VAN_CORPUS "/cspro-text"), "*", &make<TCSProDataImport>);
        addFolder(QStringLiteral(VAN_CORPUS "/cspro-json"), "*", &make<TCSProJsonDataImport>);
        addFolder(QStringLiteral(VAN_CORPUS "/stata"), "*", &make<TSTATADataImport>);
        addFolder(QStringLiteral(VAN_CORPUS "/spss"), "*", &make<TSPSSDataImport>);
    }
    void layoutIsTheSameWithAReport()
    {
        QFETCH(QString, path);
        QFETCH(Make, make);
        ReadReport report;
        const QString alone = layoutOf(make(path), nullptr);
        QCOMPARE(layoutOf(make(path), &report), alone);
        for (const ReadNote &note : report.notes()) {
            QVERIFY(note.line >= 0);
            QVERIFY(!note.id().isEmpty());
        }
    }

private:
    // The corpus may be absent; the other folders are not.
    static void addFolder(const QString &folder, const char *pattern, Make make)
    {
        for (const QFileInfo &file : QDir(folder).entryInfoList({ QLatin1String(pattern) }, QDir::Files))
            QTest::newRow(qPrintable(QDir(folder).dirName() + QLatin1Char('/') + file.fileName()))
                << file.filePath() << make;
    }
};

QTEST_GUILESS_MAIN(SameWithReportTest)
#include "SameWithReportTest.moc"
