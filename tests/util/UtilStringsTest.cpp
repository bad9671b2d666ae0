#include "util/UtilStrings.h"

#include "support/TextState.h"

#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QProcess>
#include <QtTest>

#include <cstring>
#include <random>
#include <type_traits>

namespace
{

// The steps of the rule, one by one. A separator at the end of the line ends the line.
QString wordByTheSteps(const QString &line, int &position, const QString &separator, const QString &qualifier)
{
    const int length = line.size();
    int end = length + 1;
    for (int i = position; i <= length; ++i) {
        if (line.mid(i, 1) == separator) {
            end = i;
            break;
        }
    }
    const QString word = line.mid(position, end - position);
    const bool standsLast = end >= 0 && end == length - 1;
    position = end < length && !standsLast ? end + 1 : -1;
    if (!qualifier.isEmpty() && word.mid(1, 1) == qualifier)
        return word.mid(2, word.size() - 2);
    return word;
}

int widthOf(const QString &text, int fontSize)
{
    return QFontMetrics(QFont("Arial", fontSize)).horizontalAdvance(text) * 11 / 10;
}

} // namespace

/// Tests words, line breaks and paths for display.
class UtilStringsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordEndsAtTheNextSeparator_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("separator");
        QTest::addColumn<QString>("qualifier");
        QTest::addColumn<QString>("word");
        QTest::addColumn<int>("next");
        // clang-format off
        QTest::newRow("first word")                       << "a,b"   << 0  << ","  << ""  << "a"   << 2;
        QTest::newRow("last word")                        << "a,b"   << 2  << ","  << ""  << "b"   << -1;
        QTest::newRow("separator last: no empty word")    << "a,"    << 0  << ","  << ""  << "a"   << -1;
        QTest::newRow("empty word")                       << ",b"    << 0  << ","  << ""  << ""    << 1;
        QTest::newRow("empty word between")               << "a,,b"  << 2  << ","  << ""  << ""    << 3;
        QTest::newRow("none")                             << "ab"    << 0  << ","  << ""  << "ab"  << -1;
        QTest::newRow("empty line")                       << ""      << 0  << ","  << ""  << ""    << -1;
        QTest::newRow("after the line")                   << "ab"    << 9  << ","  << ""  << ""    << -1;
        QTest::newRow("at the end of the line")           << "ab"    << 2  << ","  << ""  << ""    << -1;
        QTest::newRow("longer separator never matches")   << "a,;b"  << 0  << ",;" << ""  << "a,;b" << -1;
        QTest::newRow("empty separator")                  << "ab"    << 0  << ""   << ""  << "ab"  << -1;
        QTest::newRow("empty line, empty separator")      << ""      << 0  << ""   << ""  << ""    << -1;
        QTest::newRow("empty line, -1, empty separator")  << ""      << -1 << ""   << ""  << ""    << 0;
        QTest::newRow("-1, empty separator")              << "ab"    << -1 << ""   << ""  << ""    << 0;
        QTest::newRow("finished before")                  << "a,b"   << -1 << ","  << ""  << "a"   << 2;
        QTest::newRow("second character is the qualifier") << "axb,c" << 0 << ","  << "x" << "b"   << 4;
        QTest::newRow("first one is not looked at")       << "xab"   << 0  << ","  << "x" << "xab" << -1;
        QTest::newRow("nothing after the qualifier")      << "ax"    << 0  << ","  << "x" << ""    << -1;
        QTest::newRow("word of one character")            << "x"     << 0  << ","  << "x" << "x"   << -1;
        QTest::newRow("longer qualifier never matches")   << "axyb"  << 0  << ","  << "xy" << "axyb" << -1;
        // clang-format on
    }
    void wordEndsAtTheNextSeparator()
    {
        QFETCH(QString, line);
        QFETCH(int, position);
        QFETCH(QString, separator);
        QFETCH(QString, qualifier);
        const QString word = UtilStrings::GetWordSeparator(line, position, separator, qualifier);
        QTEST(word, "word");
        QTEST(position, "next");
        QVERIFY(!word.isNull());
    }

    void wordsAreThoseOfTheSteps()
    {
        std::mt19937 random(5); // NOLINT: the same order every time
        const QString letters = "ab,x";
        for (int round = 0; round < 20000; ++round) {
            QString line;
            for (unsigned i = random() % 8; i > 0; --i)
                line += letters.at(int(random() % 4));
            int position = int(random() % 11) - 1;
            int expected = position;
            const QString separator = random() % 8 ? "," : "";
            const QString qualifier = random() % 2 ? "x" : "";
            const QString word = wordByTheSteps(line, expected, separator, qualifier);
            const QString what = line + ' ' + QString::number(position) + ' ' + separator;
            const QString found = UtilStrings::GetWordSeparator(line, position, separator, qualifier);
            QVERIFY2(found == word && !found.isNull(), qPrintable(what));
            QVERIFY2(position == expected, qPrintable(what));
        }
    }

    void positionFarOutDoesNoHarm()
    {
        for (int position : { std::numeric_limits<int>::min(), std::numeric_limits<int>::max() }) {
            for (const QString &separator : { QString(","), QString() })
                UtilStrings::GetWordSeparator("a,b", position, separator, "x");
        }
    }

    void wordOfANullLineIsNotNull()
    {
        for (int position : { -1, 0, 1 }) {
            for (const QString &separator : { QString(","), QString() })
                QVERIFY(!UtilStrings::GetWordSeparator(QString(), position, separator, "x").isNull());
        }
    }

    void nothingIsRestoredAsATextThatIsNotNull()
    {
        for (const QString &text : { QString(), QString("") })
            QCOMPARE(stateOf(UtilStrings::returnLineBreak(text)), QString("empty"));
        QVERIFY(isWithoutMemory(UtilStrings::returnLineBreak(QString())));
    }

    void storedFormsAreRestored_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("restored");
        QTest::newRow("both") << "a#\\#nb#\\#tc"
                              << "a\r\nb\tc";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("one after the other") << "#\\#n#\\#n#\\#t"
                                             << "\r\n\r\n\t";
        QTest::newRow("sign only at the end") << "a#"
                                              << "a#";
        QTest::newRow("begun at the end") << "a#\\#"
                                          << "a#\\#";
        QTest::newRow("another letter") << "#\\#x"
                                        << "#\\#x";
        QTest::newRow("capital letter") << "#\\#N"
                                        << "#\\#N";
        QTest::newRow("begun twice") << "#\\#\\#n"
                                     << "#\\\r\n";
        QTest::newRow("begun within") << "#\\##\\#n"
                                      << "#\\#\r\n";
    }
    void storedFormsAreRestored()
    {
        QFETCH(QString, stored);
        QTEST(UtilStrings::returnLineBreak(stored), "restored");
    }

    void pathGivesUpDirectoriesUntilItFits()
    {
        const QString path = "C:\\alpha\\beta\\gamma\\file.ext";
        const QStringList stages = { path, "C:\\alpha\\beta\\...\\file.ext", "C:\\alpha\\...\\file.ext",
                                     "C:\\...\\file.ext", "...\\file.ext" };
        // One width that is just enough for each form, and one that is just too small.
        for (int i = 0; i < stages.size(); ++i) {
            const int width = widthOf(stages.at(i), 12);
            QString fitting = stages.last();
            for (int k = stages.size() - 1; k >= 0; --k) {
                if (widthOf(stages.at(k), 12) < width + 1)
                    fitting = stages.at(k);
            }
            QCOMPARE(UtilStrings::getBetterPathString(path, width + 1, 12), fitting);
            if (i + 1 < stages.size())
                QVERIFY(UtilStrings::getBetterPathString(path, width, 12) != stages.at(i));
        }
    }

    void pathIsShortenedOnlyAtBackslashes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("width");
        QTest::addColumn<QString>("shown");
        QTest::newRow("wide enough") << "C:\\a\\file" << 100000 << "C:\\a\\file";
        QTest::newRow("no width") << "C:\\a\\file" << 0 << "...\\file";
        QTest::newRow("negative width") << "C:\\a\\file" << -5 << "...\\file";
        QTest::newRow("no backslash") << "file" << 0 << "file";
        QTest::newRow("slashes") << "/a/b/file" << 0 << "/a/b/file";
        QTest::newRow("empty") << "" << 0 << "";
        QTest::newRow("backslash last") << "a\\b\\" << 0 << "...\\";
        QTest::newRow("backslashes only") << "\\\\" << 0 << "...\\";
    }
    void pathIsShortenedOnlyAtBackslashes()
    {
        QFETCH(QString, path);
        QFETCH(int, width);
        QTEST(UtilStrings::getBetterPathString(path, width, 10), "shown");
    }

    void labelShowsThePathAndHasItAsToolTip()
    {
        const QString path = "/nowhere/base/ent/file.ext";
        QLabel label;
        const QString repaired = UtilStrings::setBetterPathInQDockWidget(path, 500, &label);
        QCOMPARE(repaired, QDir::toNativeSeparators("/nowhere/ent/file.ext"));
        QCOMPARE(label.toolTip(), QDir::toNativeSeparators(repaired));
        QCOMPARE(label.text(), UtilStrings::getBetterPathString(QDir::toNativeSeparators(repaired), 500, 10));
    }

#ifdef Q_OS_UNIX
    // If the native separator is another character, these backslashes stay.
    void labelShowsTheShortenedPathAndToolTipAndResultTheWholeOne()
    {
        const QString path = "/nowhere/base/ent/one\\two\\three\\file.ext";
        const QString whole = "/nowhere/ent/one\\two\\three\\file.ext";
        const int width = widthOf(whole, 10);
        QLabel label;
        QCOMPARE(UtilStrings::setBetterPathInQDockWidget(path, width + 1, &label), whole);
        QCOMPARE(label.text(), whole);
        QCOMPARE(UtilStrings::setBetterPathInQDockWidget(path, width, &label), whole);
        QCOMPARE(label.text(), QString("/nowhere/ent/one\\two\\...\\file.ext"));
        QCOMPARE(label.toolTip(), whole);
    }
#endif

    void withoutALabelThePathIsReturned()
    {
        QCOMPARE(UtilStrings::setBetterPathInQDockWidget("/nowhere/base/ent/file.ext", 500, nullptr),
                 QDir::toNativeSeparators("/nowhere/ent/file.ext"));
    }

    void withoutFontsThePathIsNotShortened()
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), { "-without-fonts" });
        QVERIFY(child.waitForFinished());
        QCOMPARE(int(child.exitStatus()), int(QProcess::NormalExit));
        QCOMPARE(child.exitCode(), 0);
    }

    void assignmentDoesNothing()
    {
        UtilStrings strings;
        const UtilStrings other;
        QVERIFY(&(strings = other) == &strings);
        QVERIFY(&(strings = UtilStrings()) == &strings);
        QVERIFY(std::is_empty<UtilStrings>::value);
    }
};

// The program runs itself as a child process, which has no fonts.
int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "-without-fonts") == 0) {
        const QString path = "C:\\a\\file";
        return UtilStrings::getBetterPathString(path, 0, 10) == path ? 0 : 1;
    }
    const QApplication application(argc, argv);
    UtilStringsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "UtilStringsTest.moc"
