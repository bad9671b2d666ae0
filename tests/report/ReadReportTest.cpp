#include "import/ReadReport.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/// The report itself, without a reader.
class ReadReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newReportIsEmpty()
    {
        const ReadReport report;
        QVERIFY(report.isEmpty());
        QVERIFY(report.notes().empty());
        QCOMPARE(report.size(), size_t(0));
        for (int i = 0; i < ReadReport::kinds; ++i)
            QCOMPARE(report.count(NoteKind(i)), 0);
    }

    void notesComeInTheirOrderWithWhatTheyAreAbout()
    {
        ReadReport report;
        report.add(NoteKind::unknownKey, QStringLiteral("Colour=red"), 7, QStringLiteral("AGE"));
        report.add(NoteKind::subitem, QStringLiteral("TENS"));
        QCOMPARE(report.notes().size(), size_t(2));
        const ReadNote &first = report.notes().at(0);
        QCOMPARE(first.kind, NoteKind::unknownKey);
        QCOMPARE(first.line, 7);
        QCOMPARE(first.variable, QString("AGE"));
        QCOMPARE(first.text, QString("Colour=red"));
        QCOMPARE(first.id(), QString("unknown-key"));
        QCOMPARE(first.gravity(), NoteGravity::lost);
        QCOMPARE(first.sentence(), ReadReport::sentenceOf(NoteKind::unknownKey));
        const ReadNote &second = report.notes().at(1);
        QCOMPARE(second.line, 0);
        QVERIFY(second.variable.isEmpty());
    }

    void countsAreByKindAndByGravity()
    {
        ReadReport report;
        report.add(NoteKind::unknownKey, QString());
        report.add(NoteKind::unknownKey, QString());
        report.add(NoteKind::repeatedKey, QString());
        report.add(NoteKind::keyBySubstring, QString());
        QCOMPARE(report.count(NoteKind::unknownKey), 2);
        QCOMPARE(report.count(NoteGravity::lost), 3);
        QCOMPARE(report.count(NoteGravity::changed), 1);
        QCOMPARE(report.count(NoteGravity::curious), 0);
    }

    void variableIsGivenToThoseOfTheNotesThatHaveNone()
    {
        ReadReport report;
        report.add(NoteKind::unknownKey, QStringLiteral("of the item before"));
        const size_t first = report.size();
        report.add(NoteKind::unknownKey, QStringLiteral("a"));
        report.add(NoteKind::unknownKey, QStringLiteral("b"), 0, QStringLiteral("OTHER"));
        report.nameVariable(first, QStringLiteral("AGE"));
        QCOMPARE(report.notes().at(0).variable, QString());
        QCOMPARE(report.notes().at(1).variable, QString("AGE"));
        QCOMPARE(report.notes().at(2).variable, QString("OTHER"));
    }

    void clearedReportIsAsANewOne()
    {
        ReadReport report;
        report.add(NoteKind::unknownKey, QString());
        report.clear();
        QVERIFY(report.isEmpty());
        QCOMPARE(report.count(NoteKind::unknownKey), 0);
        QCOMPARE(report.count(NoteGravity::lost), 0);
    }

    void furtherNotesAreCountedAlone()
    {
        ReadReport report;
        for (size_t i = 0; i < ReadReport::mostNotes + 2; ++i)
            report.add(NoteKind::unknownKey, QString());
        QCOMPARE(report.notes().size(), ReadReport::mostNotes);
        QCOMPARE(report.count(NoteKind::unknownKey), int(ReadReport::mostNotes) + 2);
        QCOMPARE(report.count(NoteGravity::lost), int(ReadReport::mostNotes) + 2);
    }

    void everyKindHasAnIdOfItsOwnInSmallLetters()
    {
        const QRegularExpression form(QStringLiteral("^[a-z]+(-[a-z]+)*$"));
        QSet<QString> ids;
        for (int i = 0; i < ReadReport::kinds; ++i) {
            const QString id = ReadReport::idOf(NoteKind(i));
            QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
            ids.insert(id);
        }
        QCOMPARE(ids.size(), ReadReport::kinds);
    }

    void everyKindHasOneSentence()
    {
        QSet<QString> sentences;
        for (int i = 0; i < ReadReport::kinds; ++i) {
            const QString sentence = ReadReport::sentenceOf(NoteKind(i));
            QVERIFY2(sentence.endsWith(QLatin1Char('.')), qPrintable(sentence));
            QVERIFY2(!sentence.contains(QLatin1String(". ")), qPrintable(sentence));
            sentences.insert(sentence);
        }
        QCOMPARE(sentences.size(), ReadReport::kinds);
    }

    void sentenceOfALineThatIsNoMarkNamesTheWordsThatAre()
    {
        const QString sentence = ReadReport::sentenceOf(NoteKind::markNotRecognised);
        QVERIFY(sentence.contains(QLatin1String("MISSING or NOTAPPL")));
    }

    void sentenceOfAKeyThatIsNotReadSaysWhatBecomesOfANumber()
    {
        for (const NoteKind kind : { NoteKind::secondEquals, NoteKind::keyWithoutEquals })
            QVERIFY(ReadReport::sentenceOf(kind).contains(QLatin1String("a number has its default")));
    }

    void gravitiesHaveNames()
    {
        QCOMPARE(ReadReport::nameOf(NoteGravity::lost), QString("lost"));
        QCOMPARE(ReadReport::nameOf(NoteGravity::changed), QString("changed"));
        QCOMPARE(ReadReport::nameOf(NoteGravity::curious), QString("curious"));
    }

    void numberOfNoKindIsTheNearestOne()
    {
        QCOMPARE(ReadReport::idOf(NoteKind(-1)), ReadReport::idOf(NoteKind::fileNotRead));
        QCOMPARE(ReadReport::idOf(NoteKind(ReadReport::kinds)), ReadReport::idOf(NoteKind::unreadableLetters));
        ReadReport report;
        report.add(NoteKind(ReadReport::kinds + 5), QString());
        QCOMPARE(report.count(NoteKind::unreadableLetters), 1);
    }
};

QTEST_APPLESS_MAIN(ReadReportTest)
#include "ReadReportTest.moc"
