#include "compare/RoundNames.h"

#include <QtTest>

using vanlayout::roundNames;

class RoundNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreTheShortestEndsThatDiffer_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("names");
        const auto row = [](const char *name, const QStringList &files, const QStringList &names) {
            QTest::newRow(name) << files << names;
        };
        row("no file", {}, {});
        row("file names", { "a/one.dcf", "/b/two.dcf" }, { "one.dcf", "two.dcf" });
        row("one directory", { "s/2001/d.dcf", "s/2006/d.dcf" }, { "2001/d.dcf", "2006/d.dcf" });
        row("only those that are equal", { "s/2001/d.dcf", "s/2006/d.dcf", "s/e.dcf" },
            { "2001/d.dcf", "2006/d.dcf", "e.dcf" });
        row("several directories", { "a/x/d.dcf", "b/x/d.dcf" }, { "a/x/d.dcf", "b/x/d.dcf" });
        row("end of another", { "d.dcf", "x/d.dcf", "y/x/d.dcf" }, { "d.dcf", "x/d.dcf", "y/x/d.dcf" });
        row("absolute", { "/d.dcf", "d.dcf" }, { "/d.dcf", "d.dcf" });
        row("same path", { "d.dcf", "d.dcf", "a/d.dcf" }, { "d.dcf", "d.dcf#2", "a/d.dcf" });
        row("standard input", { "-", "d.dcf" }, { "-", "d.dcf" });
    }
    void namesAreTheShortestEndsThatDiffer()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, names);
        QCOMPARE(roundNames(files), names);
    }
};

QTEST_APPLESS_MAIN(RoundNamesTest)
#include "RoundNamesTest.moc"
