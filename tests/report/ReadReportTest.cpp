#include "import/ReadReport.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/// Tests the report itself, without a reader.
class ReadReportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newReportIsEmpty()
    {
        const ReadReport report;
        QVERIFY(report.isEmpty());
        QVERIFY(report.notes().empty());
        QCOMPARE(report.notes().size(), size_t(0));
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
        QCOMPARE(first.severity(), NoteSeverity::lost);
        QCOMPARE(first.message(), ReadReport::messageOf(NoteKind::unknownKey));
        const ReadNote &second = report.notes().at(1);
        QCOMPARE(second.line, 0);
        QVERIFY(second.variable.isEmpty());
    }

    void countsAreByKindAndBySeverity()
    {
        ReadReport report;
        report.add(NoteKind::unknownKey, QString());
        report.add(NoteKind::unknownKey, QString());
        report.add(NoteKind::repeatedKey, QString());
        report.add(NoteKind::keyBySubstring, QString());
        QCOMPARE(report.count(NoteKind::unknownKey), 2);
        QCOMPARE(report.count(NoteSeverity::lost), 3);
        QCOMPARE(report.count(NoteSeverity::changed), 1);
        QCOMPARE(report.count(NoteSeverity::info), 0);
    }

    void clearedReportIsAsANewOne()
    {
        ReadReport report;
        report.add(NoteKind::unknownKey, QString());
        report.clear();
        QVERIFY(report.isEmpty());
        QCOMPARE(report.count(NoteKind::unknownKey), 0);
        QCOMPARE(report.count(NoteSeverity::lost), 0);
    }

    void furtherNotesAreOnlyCounted()
    {
        ReadReport report;
        for (size_t i = 0; i < ReadReport::maxNotes + 2; ++i)
            report.add(NoteKind::unknownKey, QString());
        QCOMPARE(report.notes().size(), ReadReport::maxNotes);
        QCOMPARE(report.count(NoteKind::unknownKey), int(ReadReport::maxNotes) + 2);
        QCOMPARE(report.count(NoteSeverity::lost), int(ReadReport::maxNotes) + 2);
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

    void everyKindHasOneMessage()
    {
        QSet<QString> messages;
        for (int i = 0; i < ReadReport::kinds; ++i) {
            const QString message = ReadReport::messageOf(NoteKind(i));
            QVERIFY2(message.endsWith(QLatin1Char('.')), qPrintable(message));
            QVERIFY2(!message.contains(QLatin1String(". ")), qPrintable(message));
            messages.insert(message);
        }
        QCOMPARE(messages.size(), ReadReport::kinds);
    }

    void messageOfALineThatIsNoMarkNamesTheWordsThatAre()
    {
        const QString message = ReadReport::messageOf(NoteKind::markNotRecognised);
        QVERIFY(message.contains(QLatin1String("MISSING or NOTAPPL")));
    }

    void messageOfAKeyThatIsNotReadSaysWhatBecomesOfANumber()
    {
        for (const NoteKind kind : { NoteKind::secondEquals, NoteKind::keyWithoutEquals })
            QVERIFY(ReadReport::messageOf(kind).contains(QLatin1String("a number has its default")));
    }

    void severitiesHaveNames()
    {
        QCOMPARE(ReadReport::nameOf(NoteSeverity::lost), QString("lost"));
        QCOMPARE(ReadReport::nameOf(NoteSeverity::changed), QString("changed"));
        QCOMPARE(ReadReport::nameOf(NoteSeverity::info), QString("info"));
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
