#include "support/FailingRead.h"

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/ReadReport.h"
#include "lookup/Lookup.h"

#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtTest>

#include <map>
#include <memory>

struct TestAccess {
    static bool importAVL(TVpLookup &lookup, std::map<QString, int *> &frequencies, econsistencyCheck mode,
                          QStringList *errors)
    {
        lookup.consistency = mode;
        return lookup.importAVL(frequencies, errors);
    }
    static const std::map<QString, QString> &entries(const TVpLookup &lookup) { return lookup.entries; }
    static QString errorText(const TVpLookup &lookup) { return lookup.errorText; }
    static int errorCode(const TVpLookup &lookup) { return lookup.errorCode; }
};

namespace
{

constexpr int items = 5000; // more than one block of any reader

QByteArray textDictionary()
{
    QByteArray text = "[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n\n[IdItems]\n";
    for (int i = 0; i < items; ++i)
        text += "\n[Item]\nLabel=An item\nName=ITEM_" + QByteArray::number(i) + "\nStart=2\nLen=3\n";
    return text;
}

QByteArray jsonDictionary()
{
    QByteArray text = R"({"name": "D", "recordType": {"start": 1, "length": 1}, "levels": [{"ids": {"items": [)";
    for (int i = 0; i < items; ++i)
        text += QByteArray(i > 0 ? "," : "") + R"({"name": "ITEM_)" + QByteArray::number(i) + R"(", "length": 3})";
    return text + "]}}]}\n";
}

// Keys of five digits, each with a different value.
QByteArray lookupFile()
{
    QByteArray text;
    for (int i = 0; i < items; ++i)
        text += QByteArray::number(10000 + i) + " value " + QByteArray::number(i) + '\n';
    return text;
}

const QString cause = QStringLiteral("cannot be read: Input/output error");

} // namespace

/// Tests a disk that fails while a file is read: a part of the file is never treated as the whole file.
class ReadFailureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        QVERIFY(directory.isValid());
        write("dictionary.dcf", textDictionary());
        write("dictionary.json", jsonDictionary());
        write("lookup.txt", lookupFile());
    }
    void cleanup() { failingread::fileName.clear(); }

    void dictionaryThatFailsHasNoFields_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("goodBytes");
        for (const char *name : { "dictionary.dcf", "dictionary.json" }) {
            const qint64 size = QFile(directory.filePath(name)).size();
            for (const qint64 goodBytes : { qint64(0), qint64(1), qint64(16), qint64(60000), size - 1, size })
                QTest::addRow("%s after %lld bytes", name, goodBytes) << name << goodBytes;
        }
    }
    void dictionaryThatFailsHasNoFields()
    {
        QFETCH(QString, name);
        QFETCH(qint64, goodBytes);

        fail(name, goodBytes);
        ReadReport report;
        const auto importer = makeImporter(name);
        importer->setReadReport(&report);
        const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
        QCOMPARE(names->size(), 0);
        QCOMPARE(importer->getGroupCount(), 0);
        QCOMPARE(importer->getReadProblem(), cause);
        QCOMPARE(report.notes().size(), size_t(1));
        QCOMPARE(report.notes().front().id(), QString("read-failed"));
        QCOMPARE(report.notes().front().text, cause);

        // When the disk works again, the importer reads again.
        failingread::fileName.clear();
        const std::unique_ptr<QStringList> readable(importer->selectLayoutSource());
        QCOMPARE(readable->size(), items);
        QVERIFY(importer->getReadProblem().isNull());
        fail(name, goodBytes);
        delete importer->selectLayoutSource();
        QCOMPARE(importer->getReadProblem(), cause);
        importer->releaseContents();
        QVERIFY(importer->getReadProblem().isNull());
    }

    void dictionaryThatCanBeReadHasNoProblem()
    {
        for (const char *name : { "dictionary.dcf", "dictionary.json" }) {
            ReadReport report;
            const auto importer = makeImporter(name);
            QVERIFY(importer->getReadProblem().isNull());
            importer->setReadReport(&report);
            const std::unique_ptr<QStringList> names(importer->selectLayoutSource());
            QCOMPARE(names->size(), items);
            QVERIFY(importer->getReadProblem().isNull());
            QCOMPARE(report.count(NoteKind::readFailed), 0);
            importer->releaseContents();
        }
    }

    void fileThatFailsAtItsFirstByteIsNoEmptyDictionary() // a file of size 0 too
    {
        const QString name = QStringLiteral("/proc/self/mem");
        for (const auto &importer :
             { makeImporter<TCSProDataImport>(name), makeImporter<TCSProJsonDataImport>(name) }) {
            delete importer->selectLayoutSource();
            QCOMPARE(importer->getReadProblem(), cause);
            importer->releaseContents();
        }
        TVpLookup lookup;
        QCOMPARE(check(lookup, name), QStringList());
        QCOMPARE(lookup.getReadProblem(), cause);
    }

    void lookupThatFailsHasNoEntries_data()
    {
        QTest::addColumn<qint64>("goodBytes");
        QTest::addColumn<int>("line"); // line in which reading fails
        const QByteArray content = lookupFile();
        for (const int goodBytes : { 0, 1, 10, 20000, int(content.size()) - 1 })
            QTest::addRow("after %d bytes", goodBytes)
                << qint64(goodBytes) << int(content.left(goodBytes).count('\n')) + 1;
    }
    void lookupThatFailsHasNoEntries()
    {
        QFETCH(qint64, goodBytes);
        QFETCH(int, line);

        fail("lookup.txt", goodBytes);
        ReadReport report;
        TVpLookup lookup;
        lookup.setMaxMessages(items);
        lookup.setFfileName(directory.filePath("lookup.txt"));
        lookup.setReadReport(&report);
        QStringList errors;
        QVERIFY(!importAll(lookup, &errors));
        // The cut line is not counted: it would have a key of another length.
        QCOMPARE(errors, QStringList());
        QCOMPARE(TestAccess::entries(lookup).size(), size_t(0));
        QCOMPARE(TestAccess::errorCode(lookup), 1);
        QCOMPARE(TestAccess::errorText(lookup), cause);
        QCOMPARE(lookup.getReadProblem(), cause);
        QCOMPARE(report.notes().size(), size_t(1));
        QCOMPARE(report.notes().front().id(), QString("read-failed"));
        QCOMPARE(report.notes().front().text, cause);
        QCOMPARE(report.notes().front().line, line);

        failingread::fileName.clear();
        QVERIFY(importAll(lookup, &errors));
        QVERIFY(lookup.getReadProblem().isNull());
        QCOMPARE(TestAccess::entries(lookup).size(), size_t(items));
    }

    void lookupThatIsNotThereHasNoReadProblem()
    {
        TVpLookup lookup;
        check(lookup, QStringLiteral("/proc/self/mem"));
        check(lookup, directory.filePath("absent"));
        QVERIFY(lookup.getReadProblem().isNull());
        QVERIFY(TestAccess::errorText(lookup).endsWith("was not found"));
    }

private:
    void write(const char *name, const QByteArray &content)
    {
        QFile file(directory.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    void fail(const QString &name, qint64 goodBytes)
    {
        failingread::goodBytes = off_t(goodBytes);
        failingread::fileName = directory.filePath(name).toStdString();
    }

    template <typename Importer> static std::shared_ptr<TDataImport> makeImporter(const QString &path)
    {
        return std::make_shared<Importer>(path);
    }
    std::shared_ptr<TDataImport> makeImporter(const QString &name) const
    {
        const QString path = directory.filePath(name);
        return name.endsWith("json") ? makeImporter<TCSProJsonDataImport>(path) : makeImporter<TCSProDataImport>(path);
    }

    static bool importAll(TVpLookup &lookup, QStringList *errors)
    {
        std::map<QString, int *> frequencies;
        return TestAccess::importAVL(lookup, frequencies, ccErrors, errors);
    }

    static QStringList check(TVpLookup &lookup, const QString &path)
    {
        std::map<QString, int *> frequencies;
        QStringList errors;
        lookup.setFfileName(path);
        lookup.consistencyCheck(ccErrors, frequencies, &errors);
        return errors;
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(ReadFailureTest)
#include "ReadFailureTest.moc"
