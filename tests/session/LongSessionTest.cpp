#include <QtTest>

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/DataProvider.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/MakeImporter.h"
#include "support/Sanitizer.h"

#include <QFile>
#include <QLoggingCategory>

#include <memory>

#include <unistd.h>

namespace
{

// Resident memory of this process in bytes; 0 if the system does not provide it.
qint64 residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> pages = file.readAll().split(' ');
    return pages.value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

// Returns the number of variables that the provider had.
int openAndRelease(MakeImporter newImporter, const QString &path)
{
    const auto importer = newImporter(path);
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    const int variables = provider.getFields()->size();
    provider.releaseContents();
    importer->releaseContents();
    return variables;
}

} // namespace

/// A session of days: each example is opened and released 10,000 times.
class LongSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); }

    void residentMemoryLevelsOff_data()
    {
        QTest::addColumn<MakeImporter>("newImporter");
        QTest::addColumn<QString>("path");
        QTest::newRow("CSPro text") << MakeImporter(makeImporter<TCSProDataImport>) << VAN_EXAMPLES "/census.dcf";
        QTest::newRow("CSPro 8") << MakeImporter(makeImporter<TCSProJsonDataImport>) << VAN_EXAMPLES "/census8.dcf";
        QTest::newRow("Stata") << MakeImporter(makeImporter<TSTATADataImport>) << VAN_MADE_EXAMPLES "/household.dta";
        QTest::newRow("SPSS") << MakeImporter(makeImporter<TSPSSDataImport>) << VAN_MADE_EXAMPLES "/household.sav";
    }
    void residentMemoryLevelsOff()
    {
        // Without releasing, 1 MB would be full after a few hundred openings of the smallest example. A sanitizer
        // manages fewer, and keeps freed memory up to its own bound: it finds leaks and uses of freed memory.
        constexpr int openings = sanitizesMemory ? 200 : 10000;
        constexpr int openingsUntilLevel = openings / 10;
        constexpr qint64 maxGrowth = sanitizesMemory ? Q_INT64_C(256) << 20 : 1 << 20;
        QFETCH(MakeImporter, newImporter);
        QFETCH(QString, path);
        const int variables = openAndRelease(newImporter, path);
        QVERIFY(variables > 0);
        for (int i = 1; i < openingsUntilLevel; ++i)
            QCOMPARE(openAndRelease(newImporter, path), variables);
        const qint64 level = residentMemory();
        QVERIFY(level > 0);
        for (int i = openingsUntilLevel; i < openings; ++i)
            QCOMPARE(openAndRelease(newImporter, path), variables);
        const qint64 growth = residentMemory() - level;
        QVERIFY2(growth <= maxGrowth, qPrintable(QString("%1 bytes more").arg(growth)));
        qInfo("%lld KiB, %lld KiB more after %d openings", level / 1024, growth / 1024, openings - openingsUntilLevel);
    }
};

QTEST_GUILESS_MAIN(LongSessionTest)
#include "LongSessionTest.moc"
