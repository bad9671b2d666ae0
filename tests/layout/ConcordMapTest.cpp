#include "read/ConcordMap.h"
#include "write/ConcordMapCsv.h"

#include <QtTest>

#include "layout/MadeConcordance.h"

using namespace vanlayout;
using made::absent;

namespace
{

const QByteArray head = "decision,concord,changes,round,level,record,item,label,"
                        "other_round,other_level,other_record,other_item,other_label\r\n";

const QStringList files = { "data/one.dcf", "data/two.dcf" };

QByteArray mapOf(const Concordance &concordance, const QVector<ConcordDecision> &decisions = {})
{
    const QByteArray bytes
        = made::bytesOf([&](QIODevice &device) { return writeConcordMap(concordance, decisions, device); });
    const QByteArray mark = "\xEF\xBB\xBF";
    return bytes.startsWith(mark + head) ? bytes.mid(mark.size() + head.size()) : bytes;
}

ConcordMap read(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readConcordMap(buffer, files);
}

// A map with the columns that are required.
ConcordMap readRows(const QByteArray &rows)
{
    return read("decision,round,item,other_round,other_item,record\n" + rows);
}

QString textOf(const ConcordDecision::Place &place)
{
    return QStringLiteral("%1:%2.%3.%4").arg(QString::number(place.round), place.level, place.record, place.item);
}

QStringList textsOf(const ConcordMap &map)
{
    QStringList texts;
    for (const ConcordMapProblem &problem : map.problems)
        texts.append(QStringLiteral("line %1: %2").arg(QString::number(problem.line), problem.message));
    for (const ConcordDecision &decision : map.decisions)
        texts.append(textOf(decision.one) + (decision.isSame ? " is " : " is not ") + textOf(decision.other));
    return texts;
}

ConcordDecision decision(const QString &one, const QString &other, bool isSame)
{
    return { { 1, "L", "R", one }, { 0, "L", "R", other }, isSame };
}

Concordance survey()
{
    Concordance concordance;
    concordance.rounds = QStringList{ "data/one.dcf", "data/two.dcf" };
    concordance.variables = {
        made::variable(
            { made::cell("A", "Sex"), made::cell("B", "Sex, M/F", { ConcordChange::Renamed, ConcordChange::Label }) }),
        made::variable({ absent, made::cell("A", "=1") }),
        made::variable({ made::cell("B"), absent }),
    };
    return concordance;
}

} // namespace

class ConcordMapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachItemOfALaterRoundHasARow()
    {
        QCOMPARE(mapOf(survey()),
                 QByteArray(",same,renamed label,two.dcf,L,R,B,\"Sex, M/F\",one.dcf,L,R,A,Sex\r\n"
                            ",new,,two.dcf,L,R,A,'=1,,,,,\r\n"));
    }

    void nearestEarlierRoundIsTheOther()
    {
        Concordance concordance;
        concordance.rounds = QStringList{ "1", "2", "3" };
        concordance.variables = { made::variable({ made::cell("A"), absent, made::cell("A") }) };
        QCOMPARE(mapOf(concordance), QByteArray(",same,,3,L,R,A,,1,L,R,A,\r\n"));
    }

    void decisionsAreKept()
    {
        // On a pair that is the same, in any order, and on another one.
        ConcordDecision reversed = decision("b", "a", true);
        std::swap(reversed.one, reversed.other);
        const QByteArray map = mapOf(survey(), { reversed, decision("A", "B", false) });
        QCOMPARE(map,
                 QByteArray("same,same,renamed label,two.dcf,L,R,B,\"Sex, M/F\",one.dcf,L,R,A,Sex\r\n"
                            ",new,,two.dcf,L,R,A,'=1,,,,,\r\n"
                            "different,different,,two.dcf,L,R,A,'=1,one.dcf,L,R,B,\r\n"));
        QCOMPARE(textsOf(read(head + map)), (QStringList{ "1:L.R.B is 0:L.R.A", "1:L.R.A is not 0:L.R.B" }));
    }

    void mapWithoutDecisionsHasNone() { QCOMPARE(textsOf(read(head + mapOf(survey()))), QStringList()); }

    void decisionsAreReadFromSpreadsheets_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("decisions");
        const auto row = [](const char *name, const QByteArray &bytes, const QStringList &decisions) {
            QTest::newRow(name) << bytes << decisions;
        };
        row("columns in another order", "other_item,other_round,mine,item,round,Decision\nA,one.dcf,x,A,two.dcf,same\n",
            { "1:..A is 0:..A" });
        row("levels and records",
            "decision,round,level,record,item,other_round,other_level,other_record,other_item\n"
            "same,two.dcf,L,S,B,one.dcf,l,r,b\n",
            { "1:L.S.B is 0:l.r.b" });
        row("semicolons", "decision;round;item;other_round;other_item\r\ndifferent;two.dcf;A;one.dcf;A\r\n",
            { "1:..A is not 0:..A" });
        row("any case, blanks", "decision,round,item,other_round,other_item\n SAME ,two.dcf, A ,one.dcf,A\n",
            { "1:..A is 0:..A" });
        row("part of the path", "decision,round,item,other_round,other_item\nsame,data/two.dcf,A,one.dcf,A\n",
            { "1:..A is 0:..A" });
        row("guarded formula", "decision,round,item,other_round,other_item\nsame,two.dcf,'=C,one.dcf,=C\n",
            { "1:..=C is 0:..=C" });
        row("short rows", "decision,round,item,other_round,other_item,note\nsame,two.dcf,A,one.dcf,A\n,two.dcf\n",
            { "1:..A is 0:..A" });
    }
    void decisionsAreReadFromSpreadsheets()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, decisions);
        QCOMPARE(textsOf(read(bytes)), decisions);
    }

    void problemsHaveTheirLine_data()
    {
        QTest::addColumn<QByteArray>("rows");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *name, const QByteArray &rows, const QString &problem) {
            QTest::newRow(name) << rows << problem;
        };
        row("unknown decision", "perhaps,two.dcf,A,one.dcf,A",
            "line 2: the decision is perhaps; write same or different");
        row("unknown round", "same,three.dcf,A,one.dcf,A", "line 2: three.dcf names none or several of the files");
        row("part of a name", "same,wo.dcf,A,one.dcf,A", "line 2: wo.dcf names none or several of the files");
        row("no round", "same,,A,one.dcf,A", "line 2: round is empty; name the file of the round");
        row("no other round", "same,two.dcf,A,,A", "line 2: other_round is empty; name the file of the round");
        row("no item", "same,two.dcf,,one.dcf,A", "line 2: item is empty; name an item");
        row("no other item", "same,two.dcf,A,one.dcf, ", "line 2: other_item is empty; name an item");
        row("same round", "same,two.dcf,A,two.dcf,=C", "line 2: both items are of the same round");
        row("too many cells", "same,two.dcf,A,one.dcf,A,,", "line 2: the row has 7 cells, the line of heads 6");
        row("quotation marks", ",\"two.dcf", "line 2: a closing quotation mark is missing");
    }
    void problemsHaveTheirLine()
    {
        QFETCH(QByteArray, rows);
        QFETCH(QString, problem);
        QCOMPARE(textsOf(readRows(rows)), QStringList(problem));
    }

    void allProblemsAreReported()
    {
        const ConcordMap map = readRows("same,x,A,one.dcf,A\nsame,two.dcf,A,one.dcf,A\ndiff,two.dcf,A,one.dcf,A\n");
        QCOMPARE(map.problems.size(), 2);
        QCOMPARE(map.problems.at(1).line, 4);
        QCOMPARE(map.decisions.size(), 1);
        QCOMPARE(map.lines, QVector<int>{ 3 });
    }

    void columnsAreRequired()
    {
        QCOMPARE(textsOf(read("decision;item;other_item\n")),
                 (QStringList{ "line 1: the map has no column round", "line 1: the map has no column other_round" }));
        QCOMPARE(textsOf(read("")), QStringList{ "line 1: the map has no line of heads" });
    }

    void mapThatIsTooLargeIsRefused()
    {
        // A device without an end.
        class Endless : public QIODevice
        {
        public:
            bool isSequential() const override { return true; }

        protected:
            qint64 readData(char *data, qint64 size) override
            {
                std::fill_n(data, size, 'a');
                return size;
            }
            qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }
        };
        Endless device;
        device.open(QIODevice::ReadOnly);
        QCOMPARE(textsOf(readConcordMap(device, files)), QStringList{ "line 0: a map can have at most 256 MiB" });
    }

    void hostileTextsAreReadAsWritten_data() { made::hostileTexts(); }
    void hostileTextsAreReadAsWritten()
    {
        QFETCH(QString, text);
        const QString name = QString::fromUtf8(text.trimmed().toUtf8()); // half a surrogate pair is replaced
        QByteArray bytes = made::bytesOf([&](QIODevice &device) {
            Concordance concordance;
            concordance.rounds = QStringList{ "one.dcf", "two.dcf" };
            concordance.variables = { made::variable({ made::cell(name, text), made::cell(name, text) }) };
            return writeConcordMap(concordance, { decision(name, name, true) }, device);
        });
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        const ConcordMap map = readConcordMap(buffer, QStringList{ "one.dcf", "two.dcf" });
        QCOMPARE(textsOf(map), QStringList("1:L.R." + name + " is 0:L.R." + name));
    }

    void deviceThatRefusesIsReported()
    {
        QVERIFY(made::reportsFullDevice([](QIODevice &device) { return writeConcordMap(survey(), {}, device); }));
    }
};

QTEST_APPLESS_MAIN(ConcordMapTest)
#include "ConcordMapTest.moc"
