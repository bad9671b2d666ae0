#include "util/DebugLog_p.h"
#include "support/DebugCapture.h"

#include <QLoggingCategory>
#include <QtTest>

namespace
{

struct Counted {
    static int formatted;
};
int Counted::formatted = 0;

QDebug operator<<(QDebug debug, const Counted &)
{
    ++Counted::formatted;
    return debug << "counted";
}

// Returns the text of one line in the log.
template <typename... Parts> QStringList logged(const Parts &...parts)
{
    const DebugCapture capture;
    debugLine(parts...);
    return capture.taken();
}

} // namespace

class DebugLogTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { Counted::formatted = 0; }
    void cleanup() { QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true); }

    void oneCallIsOneLine()
    {
        const DebugCapture capture;
        debugLine("first");
        debugLine("second");
        QCOMPARE(capture.taken(), QStringList({ "first", "second" }));
    }

    void textsAreNotQuoted()
    {
        QCOMPARE(logged(QString("a text")), QStringList("a text"));
        QCOMPARE(logged("name", QString("SEX")), QStringList("name SEX"));
        QCOMPARE(logged(QString("first"), QString("second")), QStringList("first second"));
    }

    void textsAreNotEscaped()
    {
        const QString text = QString("\"quoted\" \\ \t ") + QChar(1) + QChar(0x151);
        QCOMPARE(logged("text", text), QStringList("text " + text));
    }

    void partsArePartedByOneBlank()
    {
        QCOMPARE(logged("one", QString("two"), 3), QStringList("one two 3"));
        QCOMPARE(logged("index", -1), QStringList("index -1"));
    }

    void blanksOfAPartStay()
    {
        QCOMPARE(logged("ends in a blank "), QStringList("ends in a blank "));
        QCOMPARE(logged("ends in a blank ", 1), QStringList("ends in a blank  1"));
    }

    void emptyPartKeepsItsBlank() { QCOMPARE(logged("type", QString()), QStringList("type ")); }

    void lineFeedsStayInOneLine() { QCOMPARE(logged("\n\n\n"), QStringList("\n\n\n")); }

    void partIsFormattedOnceWhenDebugOutputIsOn()
    {
        QVERIFY(isDebugLogOn());
        QCOMPARE(logged("one", Counted()), QStringList("one counted"));
        QCOMPARE(Counted::formatted, 1);
    }

    void nothingIsFormattedOrLoggedWhenDebugOutputIsOff()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        QVERIFY(!isDebugLogOn());
        QCOMPARE(logged("one", Counted()), QStringList());
        QCOMPARE(Counted::formatted, 0);
    }

    void otherLevelsDoNotCount()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, false);
        QVERIFY(isDebugLogOn());
        QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, true);
    }
};

QTEST_GUILESS_MAIN(DebugLogTest)
#include "DebugLogTest.moc"
