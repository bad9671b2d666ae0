#include "StatLayout.h"
#include "read/Reader.h"
#include "support/SpssBytes.h"
#include "util/SpssDictionary_p.h"

#include <QtTest>

using namespace vanlayout;

namespace
{

QString errorOf(const Layout &layout)
{
    for (const Problem &problem : layout.problems) {
        if (problem.severity == Severity::Error)
            return problem.message;
    }
    return QString();
}

} // namespace

/// Tests SPSS files that ReadStat does not handle safely.
class StatFileGuardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void variablesWithLongNamesAreBounded()
    {
        SpssBytes file;
        file.variables(SpssDictionary::maxLongNames + 1);
        file.extension(SpssBytes::longNames);
        file.end();
        const Layout layout = layoutOf(file.bytes);
        QVERIFY(itemsOf(layout).isEmpty());
        QCOMPARE(errorOf(layout),
                 QStringLiteral("the file is an SPSS file that cannot be read: it has more than 419328 variables with "
                                "long names, which is the limit"));
    }

    void setsOfLongTextsTimesVariablesAreBounded()
    {
        for (const int sets : { 10, 20000 }) {
            SpssBytes file;
            file.variables(20000);
            QByteArray content;
            for (int i = 0; i < sets; ++i)
                content += QByteArray("\2\0\0\0V0\1\0\0\0\0", 11);
            file.extension(SpssBytes::longTextMissing, content);
            file.end();
            const Layout layout = layoutOf(file.bytes);
            QCOMPARE(itemsOf(layout).size(), sets == 10 ? 20000 : 0);
            QCOMPARE(errorOf(layout).contains(QStringLiteral("it has too many sets")), sets != 10);
        }
    }

    // ReadStat skips this many documents with a size of 32 bits, and reads them one by one in its second pass.
    void documentsBeyond32BitsAreRefused()
    {
        SpssBytes file;
        file.numbers({ 6, 0x0CCCCCCD });
        file.bytes += QByteArray(16, ' ');
        file.variables(3000);
        file.end();
        QVERIFY(errorOf(layoutOf(file.bytes)).contains(QStringLiteral("it has a dictionary that is cut")));
    }
};

QTEST_APPLESS_MAIN(StatFileGuardTest)
#include "StatFileGuardTest.moc"
