#include "support/ScarceMemory.h"

#include "cspro/CSProDataImport.h"
#include "import/DataProvider.h"
#include "import/KeptObjects_p.h"
#include "support/FakeImporter.h"

#include <QLoggingCategory>
#include <QtTest>

#include <memory>

/// Tests that objects are released if no memory is left, and that none is lost when memory runs out.
class ScarceMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false); }

    void releasingNeedsNoMemory()
    {
        constexpr int count = 1000;
        KeptObjects kept;
        for (int i = 0; i < count; ++i)
            kept.addField(new FakeField);
        const long before = scarce::blocksHeld;
        scarce::blocksLeft = 0;
        kept.freeAll();
        scarce::blocksLeft = scarce::unlimited;
        QVERIFY(scarce::blocksHeld <= before - count);
    }

    void providerLosesNoFieldWhereMemoryGivesOut()
    {
        TCSProDataImport importer(QStringLiteral(VAN_EXAMPLES "/census.dcf"));
        TDataImport &frame = importer;
        const std::unique_ptr<QStringList> names(frame.selectLayoutSource());
        int count = 0;
        TVpDataProvider provider;
        const auto fillOnce = [&] {
            struct Release {
                TVpDataProvider &provider;
                ~Release() { provider.releaseContents(); }
            } const atEnd{ provider };
            provider.genericGetFieldsFrom(&importer);
            count = provider.getFields()->size();
        };
        fillOnce(); // objects that are made once stay
        const long before = scarce::blocksHeld;
        const int failures = scarce::runShort(fillOnce);
        const long after = scarce::blocksHeld;
        QCOMPARE(count, names->size());
        QVERIFY(failures > count);
        // A list of the record tree may be lost once; a field each time would be hundreds.
        constexpr long room = 5;
        QVERIFY2(after - before < room, qPrintable(QString::number(after - before)));
        frame.releaseContents();
    }
};

QTEST_GUILESS_MAIN(ScarceMemoryTest)
#include "ScarceMemoryTest.moc"
