#include "record/QuestIndex.h"

#include <QtTest>

class QuestIndexTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newIndexIsEmptyAndHasNoLines();
    void typeOfLineIsCutFromZero_data();
    void typeOfLineIsCutFromZero();
    void countRecordsCountsTheLinesOfThatType_data();
    void countRecordsCountsTheLinesOfThatType();
    void findRecordReturnsTheCodeNotTheLine_data();
    void findRecordReturnsTheCodeNotTheLine();
    void missingLinesCountAsNoLines();
    void askingChangesNothing();
};

namespace
{

// A type of two characters at index 3.
const QStringList questionnaire = {
    QStringLiteral("001HH first"),  QStringLiteral("001PP second"), QStringLiteral("001hh third"),
    QStringLiteral("002HH fourth"), QStringLiteral("002H"),         QString(),
    QStringLiteral("HH 003"),
};

TQuestIndex indexOf(QStringList &lines)
{
    TQuestIndex index;
    index.typeStart = 3;
    index.typeLength = 2;
    index.lines = &lines;
    return index;
}

} // namespace

void QuestIndexTest::newIndexIsEmptyAndHasNoLines()
{
    const TQuestIndex index;
    QCOMPARE(index.typeStart, 0);
    QCOMPARE(index.typeLength, 0);
    QCOMPARE(index.status, 0);
    QCOMPARE(index.text, QString());
    QVERIFY(!index.lines);
}

void QuestIndexTest::typeOfLineIsCutFromZero_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("type");

    // clang-format off
    QTest::newRow("start 0 is the first character") << 0 << 1 << "H12" << "H";
    QTest::newRow("start 1 is the second")          << 1 << 1 << "1H2" << "H";
    QTest::newRow("several characters")             << 2 << 3 << "12HOU4" << "HOU";
    QTest::newRow("blanks belong to the code")      << 1 << 3 << "1 H 2" << " H ";
    QTest::newRow("line ends inside the code")      << 2 << 3 << "12H" << "H";
    QTest::newRow("line ends before the code")      << 4 << 1 << "12H" << "";
    QTest::newRow("code of no characters")          << 1 << 0 << "12H" << "";
    QTest::newRow("empty line")                     << 0 << 1 << "" << "";
    QTest::newRow("negative start counts against the length") << -1 << 2 << "H12" << "H";
    QTest::newRow("negative start as long as the code")       << -2 << 2 << "H12" << "";
    QTest::newRow("negative length is the whole line")        << 0 << -1 << "H12" << "H12";
    QTest::newRow("negative length is the rest of the line")  << 1 << -1 << "H12" << "12";
    // clang-format on
}

void QuestIndexTest::typeOfLineIsCutFromZero()
{
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(QString, line);
    QFETCH(QString, type);

    TQuestIndex index;
    index.typeStart = start;
    index.typeLength = length;
    QCOMPARE(index.typeOf(line), type);
}

void QuestIndexTest::countRecordsCountsTheLinesOfThatType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("count");

    // clang-format off
    QTest::newRow("several lines")                      << "HH" << 2;
    QTest::newRow("case-sensitively")                   << "hh" << 1;
    QTest::newRow("one line")                           << "PP" << 1;
    QTest::newRow("a line that ends inside the code")   << "H"  << 1;
    QTest::newRow("the code as a whole, not a part")    << "P"  << 0;
    QTest::newRow("not a longer code either")           << "HH " << 0;
    QTest::newRow("no such type")                       << "XX" << 0;
    QTest::newRow("the empty type is that of short lines") << "" << 1;
    // clang-format on
}

void QuestIndexTest::countRecordsCountsTheLinesOfThatType()
{
    QFETCH(QString, type);
    QFETCH(int, count);

    QStringList lines = questionnaire;
    QCOMPARE(indexOf(lines).countRecords(type), count);
}

void QuestIndexTest::findRecordReturnsTheCodeNotTheLine_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("occurrence");
    QTest::addColumn<QString>("code");

    // clang-format off
    QTest::newRow("matches count from 0")         << "HH" << 0 << "HH";
    QTest::newRow("last match")                   << "HH" << 1 << "HH";
    QTest::newRow("past the last match")          << "HH" << 2 << "";
    QTest::newRow("case-sensitively")             << "hh" << 0 << "hh";
    QTest::newRow("one match of the other case")  << "hh" << 1 << "";
    QTest::newRow("no such type")                 << "XX" << 0 << "";
    QTest::newRow("negative match")               << "HH" << -1 << "";
    QTest::newRow("code of a short line")         << "H"  << 0 << "H";
    QTest::newRow("the code of the empty type is empty") << "" << 0 << "";
    // clang-format on
}

void QuestIndexTest::findRecordReturnsTheCodeNotTheLine()
{
    QFETCH(QString, type);
    QFETCH(int, occurrence);
    QFETCH(QString, code);

    QStringList lines = questionnaire;
    QCOMPARE(indexOf(lines).findRecord(type, occurrence), code);
}

void QuestIndexTest::missingLinesCountAsNoLines()
{
    TQuestIndex index;
    index.typeLength = 1;
    QCOMPARE(index.countRecords(QStringLiteral("H")), 0);
    QCOMPARE(index.countRecords(QString()), 0);
    QCOMPARE(index.findRecord(QStringLiteral("H"), 0), QString());

    QStringList none;
    index.lines = &none;
    QCOMPARE(index.countRecords(QString()), 0);
    QCOMPARE(index.findRecord(QString(), 0), QString());
}

void QuestIndexTest::askingChangesNothing()
{
    QStringList lines = questionnaire;
    TQuestIndex index = indexOf(lines);
    index.status = 17;
    index.text = QStringLiteral("text");
    index.countRecords(QStringLiteral("HH"));
    index.findRecord(QStringLiteral("HH"), 9);
    index.findRecord(QString(), 0);
    QCOMPARE(index.status, 17);
    QCOMPARE(index.text, QStringLiteral("text"));
    QCOMPARE(lines, questionnaire);
}

QTEST_GUILESS_MAIN(QuestIndexTest)
#include "QuestIndexTest.moc"
