#include "cspro/SectionNotes_p.h"

#include <QtTest>

using cspro::KeyType;
using cspro::SectionNotes;

namespace
{

constexpr int header = 7;

// The lines of an item section after a header in line 7.
class Section
{
public:
    explicit Section(const QStringList &texts)
        : list(texts)
        , lines(list)
    {
        for (int i = 0; i < list.size(); ++i)
            lines.numberLast(header + 1 + i);
        notes.begin(cspro::itemSection, header, lines.size());
    }

    // "kind line variable: text" for each note.
    QStringList end(const QString &variable)
    {
        ReadReport report;
        notes.end(report, variable);
        QStringList described;
        for (const ReadNote &note : report.notes())
            described.append(
                QStringLiteral("%1 %2 %3: %4").arg(note.id()).arg(note.line).arg(note.variable, note.text));
        return described;
    }

    QStringList list;
    SectionLines lines;
    SectionNotes notes;
};

} // namespace

/// Tests the notes of one section, without the reader.
class SectionNotesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notesWithoutAVariableGetTheOneOfTheSection()
    {
        Section section({ "Colour=red" });
        section.notes.add({ NoteKind::subitem, 1, QString(), QStringLiteral("a") });
        section.notes.add({ NoteKind::subitem, 2, QStringLiteral("OTHER"), QStringLiteral("b") });
        section.notes.add({ NoteKind::subitem, 3, QString(), QStringLiteral("c") });
        QCOMPARE(section.end("AGE"), QStringList({ "subitem 1 AGE: a", "subitem 2 OTHER: b", "subitem 3 AGE: c" }));
    }

    void sectionIsOpenUntilItEnds()
    {
        Section section({ "Name=A" });
        QVERIFY(section.notes.isOpen());
        QCOMPARE(section.notes.headerLine(), header);
        section.end("A");
        QVERIFY(!section.notes.isOpen());
    }

    void notesMoveToTheReportOnce()
    {
        Section section({ "Name=A" });
        section.notes.add({ NoteKind::subitem, 1, QString(), QStringLiteral("A") });
        QCOMPARE(section.end("A").size(), 1);
        QCOMPARE(section.end("A"), QStringList());
    }

    void newSectionBeginsWithoutTheNotesOfOneThatDidNotEnd()
    {
        Section section({ "Name=A" });
        section.notes.add({ NoteKind::subitem, 1, QString(), QStringLiteral("A") });
        section.notes.useKey(section.lines, 1, "Start", KeyType::number);
        QVERIFY(section.notes.isAbsent("Start"));
        section.notes.begin(cspro::itemSection, 20, section.lines.size());
        QVERIFY(!section.notes.isAbsent("Start"));
        QCOMPARE(section.notes.headerLine(), 20);
        QCOMPARE(section.end("A"), QStringList());
    }

    void keyOfALineHasNoNote()
    {
        Section section({ "Name=A" });
        section.notes.useKey(section.lines, 0, "Name", KeyType::text);
        section.notes.addUnused(section.lines);
        QVERIFY(!section.notes.isAbsent("Name"));
        QCOMPARE(section.end("A"), QStringList());
    }

    void keyFromAnotherLineHasANote_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("notes");
        QTest::newRow("another key") << "FullName=A" << QStringList("key-by-substring 8 A: Name: FullName=A");
        QTest::newRow("no equals sign") << "the Name" << QStringList("key-without-equals 8 A: Name: the Name");
        QTest::newRow("two equals signs") << "Name=A=B" << QStringList("second-equals 8 A: Name: Name=A=B");
        QTest::newRow("both") << "FullName=A=B"
                              << QStringList({ "key-by-substring 8 A: Name: FullName=A=B",
                                               "second-equals 8 A: Name: FullName=A=B" });
    }
    void keyFromAnotherLineHasANote()
    {
        QFETCH(QString, line);
        Section section({ line });
        section.notes.useKey(section.lines, 0, "Name", KeyType::text);
        QTEST(section.end("A"), "notes");
    }

    void numberIsTakenFromNoLineWithoutANumber()
    {
        Section section({ "Label=Length in cm" });
        section.notes.useKey(section.lines, 0, "Len", KeyType::number);
        QVERIFY(section.notes.isAbsent("Len"));
        section.notes.useKey(section.lines, 0, "Len", KeyType::text);
        QCOMPARE(section.end("A"), QStringList("key-by-substring 8 A: Len: Label=Length in cm"));
    }

    void noteOnTheLastKeyHasItsLine()
    {
        Section section({ "Name=A", "Start=x" });
        section.notes.useKey(section.lines, 1, "Start", KeyType::number);
        section.notes.addForLastKey(section.lines, NoteKind::numberNotConverted);
        QCOMPARE(section.end("A"), QStringList("number-not-converted 9 A: Start=x"));
    }

    void noteOnAKeyWithoutALineIsNone()
    {
        Section section({ "Name=A" });
        section.notes.useKey(section.lines, 1, "Start", KeyType::number);
        section.notes.addForLastKey(section.lines, NoteKind::numberNotConverted);
        QCOMPARE(section.end("A"), QStringList());
    }

    void unusedLinesHaveNotesInTheirOrder()
    {
        Section section({ "Colour=red", "[Item]", "SecurityOptions=1", "Name=A", "Name=B", "Note=x", "read" });
        section.notes.useKey(section.lines, 3, "Name", KeyType::text);
        section.notes.useKey(section.lines, 7, "Len", KeyType::number);
        section.notes.useLine(6);
        section.notes.addUnused(section.lines);
        QCOMPARE(section.end("A"),
                 QStringList({ "missing-key 7 A: Len", "unknown-key 8 A: Colour=red", "swallowed-header 9 A: [Item]",
                               "repeated-key 12 A: Name=B", "unknown-key 13 A: Note=x" }));
    }
};

QTEST_GUILESS_MAIN(SectionNotesTest)
#include "SectionNotesTest.moc"
