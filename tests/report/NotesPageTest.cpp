#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "cspro/DecimalQuestion.h"
#include "import/ReadReport.h"
#include "lookup/Lookup.h"
#include "support/ImportedText.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <memory>

namespace
{

/// A kind of note as shown on the page.
struct Entry {
    QString id;
    QString severity;
    QString message;
    QString format; ///< of the example; "" if words replace it
    QString example;
    QStringList notes; ///< the notes on the example, one text for each
};

QStringList linesOfPage()
{
    QFile page(QStringLiteral(VAN_DOCS "/notes.md"));
    return page.open(QIODevice::ReadOnly) ? QString::fromUtf8(page.readAll()).split(QLatin1Char('\n')) : QStringList();
}

// The cells of a row, without the marks of code around them.
QString noteOfRow(const QString &row)
{
    QStringList cells = row.split(QLatin1Char('|')).mid(1, 4);
    for (QString &cell : cells) {
        cell = cell.trimmed();
        if (cell.startsWith(QLatin1Char('`')))
            cell = cell.mid(1, cell.size() - 2);
    }
    return cells.join(QLatin1Char('|'));
}

QString noteInWords(const ReadNote &note)
{
    QString variable = note.variable;
    for (int code = 1; code < 4; ++code) // the numbers of occurrences
        variable.replace(QChar(code), QStringLiteral("\\x0%1").arg(code));
    const QString line = note.line > 0 ? QString::number(note.line) : QString();
    return QStringList{ note.id(), line, variable, note.text }.join(QLatin1Char('|'));
}

std::vector<Entry> entriesOfPage()
{
    std::vector<Entry> entries;
    bool isExample = false;
    for (const QString &line : linesOfPage()) {
        if (isExample || line.startsWith(QLatin1String("```"))) {
            if (!entries.empty() && isExample && !line.startsWith(QLatin1String("```")))
                entries.back().example += line + QLatin1Char('\n');
            else if (!entries.empty() && !isExample)
                entries.back().format = line.mid(3);
            if (line.startsWith(QLatin1String("```")))
                isExample = !isExample;
        } else if (line.startsWith(QLatin1String("### "))) {
            entries.push_back({ line.mid(4), {}, {}, {}, {}, {} });
        } else if (!entries.empty() && line.startsWith(QLatin1Char('*'))) {
            entries.back().severity = line.section(QLatin1Char('*'), 1, 1).remove(QLatin1Char('.')).toLower();
            entries.back().message = line.section(QLatin1String("* "), 1);
        } else if (line.startsWith(QLatin1Char('|')) && !line.startsWith(QLatin1String("| kind"))
                   && !line.startsWith(QLatin1String("|--"))) {
            entries.back().notes += noteOfRow(line);
        }
    }
    return entries;
}

template <typename Importer> void readWith(const QString &path, ReadReport &report)
{
    Importer importer(path);
    importer.setReadReport(&report);
    importedText(importer);
}

void checkLookup(const QString &path, ReadReport &report)
{
    TVpLookup lookup;
    lookup.setFfileName(path);
    lookup.setSeparator(0);
    lookup.setReadReport(&report);
    std::map<QString, int *> frequencies;
    lookup.consistencyCheck(ccNone, frequencies, nullptr);
}

} // namespace

/// Tests that the page of notes agrees with the readers.
class NotesPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        QVERIFY(directory.isValid());
    }

    void everyKindIsListedInItsOrder()
    {
        QStringList listed;
        for (const Entry &entry : entriesOfPage())
            listed += entry.id;
        QStringList kinds;
        for (int i = 0; i < ReadReport::kinds; ++i)
            kinds += ReadReport::idOf(NoteKind(i));
        QCOMPARE(listed, kinds);
    }

    void severityAndMessageAreThoseOfTheKind_data() { makeRows(false); }
    void severityAndMessageAreThoseOfTheKind()
    {
        QFETCH(int, index);
        const Entry entry = entriesOfPage().at(size_t(index));
        QCOMPARE(entry.severity, ReadReport::nameOf(ReadReport::severityOf(NoteKind(index))));
        QCOMPARE(entry.message, ReadReport::messageOf(NoteKind(index)));
    }

    void exampleGivesItsNotesAndNoOther_data() { makeRows(true); }
    void exampleGivesItsNotesAndNoOther()
    {
        QFETCH(int, index);
        const Entry entry = entriesOfPage().at(size_t(index));
        ReadReport report;
        read(entry, report);
        QStringList reported;
        for (const ReadNote &note : report.notes())
            reported += noteInWords(note);
        QCOMPARE(reported, entry.notes);
        QVERIFY(report.count(NoteKind(index)) > 0);
    }

private:
    // The kinds without an example concern Stata and SPSS files, or files that cannot be read.
    void makeRows(bool withExample)
    {
        QTest::addColumn<int>("index");
        const std::vector<Entry> entries = entriesOfPage();
        for (size_t i = 0; i < entries.size(); ++i) {
            if (!withExample || !entries[i].format.isEmpty())
                QTest::newRow(qPrintable(entries[i].id)) << int(i);
        }
    }

    void read(const Entry &entry, ReadReport &report)
    {
        const QString path = directory.filePath(QStringLiteral("example"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const bool isUtf8 = entry.format != QLatin1String("windows-1252");
        file.write(isUtf8 ? entry.example.toUtf8()
                          : QTextCodec::codecForName("windows-1252")->fromUnicode(entry.example));
        file.close();
        const auto answer
            = entry.format == QLatin1String("cspro-yes") ? DecimalAnswer::yesToAll : DecimalAnswer::noToAll;
        setDecimalAnswer([answer](const DecimalQuestion & /*question*/) { return answer; });
        if (entry.format == QLatin1String("lookup"))
            checkLookup(path, report);
        else if (entry.format == QLatin1String("cspro8"))
            readWith<TCSProJsonDataImport>(path, report);
        else
            readWith<TCSProDataImport>(path, report);
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(NotesPageTest)
#include "NotesPageTest.moc"
