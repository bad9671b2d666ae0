#include "util/ReadStatFaults_p.h"

#include <QVersionNumber>
#include <QtTest>

using readstat::isFaulty;
using readstat::releaseNumber;

class ReadStatFaultsTest : public QObject
{
    Q_OBJECT
private slots:
    void releasesAreComparedNumberByNumber_data()
    {
        QTest::addColumn<int>("earlier");
        QTest::addColumn<int>("later");
        QTest::newRow("patch") << releaseNumber(1, 1, 8) << releaseNumber(1, 1, 9);
        QTest::newRow("patch of two digits") << releaseNumber(1, 1, 9) << releaseNumber(1, 1, 10);
        QTest::newRow("minor") << releaseNumber(1, 1, 99) << releaseNumber(1, 2, 0);
        QTest::newRow("major") << releaseNumber(1, 99, 99) << releaseNumber(2, 0, 0);
        QTest::newRow("not known") << 0 << releaseNumber(0, 0, 1);
    }
    void releasesAreComparedNumberByNumber()
    {
        QFETCH(int, earlier);
        QFETCH(int, later);
        QVERIFY(earlier < later);
        QVERIFY(isFaulty(later, earlier));
        QVERIFY(!isFaulty(later, later));
        QVERIFY(!isFaulty(earlier, later));
    }

    void faultThatNoReleaseMendsIsInEachRelease()
    {
        QVERIFY(isFaulty(readstat::noRelease, releaseNumber(9, 99, 99)));
        QVERIFY(isFaulty(readstat::mendsSpssPasses));
        QVERIFY(isFaulty(readstat::mendsSpssLongNames));
        QVERIFY(isFaulty(readstat::mendsSpssLookups));
    }

    void buildStatesTheReleaseThatCMakeFound()
    {
        const QVersionNumber version = QVersionNumber::fromString(QStringLiteral(VAN_READSTAT_VERSION));
        const int release = releaseNumber(version.majorVersion(), version.minorVersion(), version.microVersion());
        QCOMPARE(readstat::installedRelease, release); // 0 if the version is not known
    }
};
QTEST_GUILESS_MAIN(ReadStatFaultsTest)
#include "ReadStatFaultsTest.moc"
