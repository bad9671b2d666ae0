#include <QtTest>

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/DataProvider.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/Sanitizer.h"

#include <QFile>
#include <QLoggingCategory>

#include <memory>

#include <unistd.h>

namespace
{

using MakeImporter = std::unique_ptr<TDataImport> (*)(const QString &path);

template <typename Importer> std::unique_ptr<TDataImport> make(const QString &path)
{
    return std::make_unique<Importer>(path);
}

// Resident memory of this process in bytes; -1 where the system does not tell.
qint64 residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> pages = file.readAll().split(' ');
    return pages.value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

void openAndGiveBack(MakeImporter newImporter, const QString &path)
{
    const auto importer = newImporter(path);
    const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
    QVERIFY(!names->isEmpty());
    TVpDataProvider provider;
    provider.genericGetFieldsFrom(importer.get());
    provider.releaseContents();
    importer->releaseContents();
}

} // namespace

Q_DECLARE_METATYPE(MakeImporter)

/// A session of days: each example opened and given back 10,000 times.
class LongSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); }

    void residentMemoryLevelsOff_data()
    {
        QTest::addColumn<MakeImporter>("newImporter");
        QTest::addColumn<QString>("path");
        QTest::newRow("CSPro text") << MakeImporter(make<TCSProDataImport>) << VAN_EXAMPLES "/census.dcf";
        QTest::newRow("CSPro 8") << MakeImporter(make<TCSProJsonDataImport>) << VAN_EXAMPLES "/census8.dcf";
        QTest::newRow("Stata") << MakeImporter(make<TSTATADataImport>) << VAN_MADE_EXAMPLES "/household.dta";
        QTest::newRow("SPSS") << MakeImporter(make<TSPSSDataImport>) << VAN_MADE_EXAMPLES "/household.sav";
    }
    void residentMemoryLevelsOff()
    {
        // Without giving back, 1 MB would be full after a few hundred openings of the smallest example.
        constexpr int openings = 10000;
        constexpr int openingsUntilLevel = 1000;
        constexpr qint64 mostGrowth = 1 << 20;
        if (residentMemory() < 0)
            QSKIP("this system does not tell how much memory a process has");
        if (sanitizesMemory)
            QSKIP("a sanitizer keeps what is freed; it finds leaks and uses of freed memory by itself");
        QFETCH(MakeImporter, newImporter);
        QFETCH(QString, path);
        for (int i = 0; i < openingsUntilLevel; ++i)
            openAndGiveBack(newImporter, path);
        const qint64 level = residentMemory();
        for (int i = openingsUntilLevel; i < openings; ++i)
            openAndGiveBack(newImporter, path);
        const qint64 growth = residentMemory() - level;
        QVERIFY2(growth <= mostGrowth, qPrintable(QString("%1 bytes more").arg(growth)));
        qInfo("%lld KiB, %lld KiB more after 9,000 openings", level / 1024, growth / 1024);
    }

    void freedObjectsAreNotUsed_data() { residentMemoryLevelsOff_data(); }
    void freedObjectsAreNotUsed()
    {
        constexpr int openings = 200; // as many as a sanitizer gets through
        QFETCH(MakeImporter, newImporter);
        QFETCH(QString, path);
        for (int i = 0; i < openings; ++i)
            openAndGiveBack(newImporter, path);
    }
};

QTEST_GUILESS_MAIN(LongSessionTest)
#include "LongSessionTest.moc"
