#include "support/MeasuredRun.h"
#include "support/Sanitizer.h"

#include <QtTest>

#include <algorithm>

namespace
{

constexpr int few = 200;
constexpr int many = sanitizesMemory ? 400 : 2000; // a sanitizer is slow, and measures nothing
constexpr qint64 room = 8 << 20; // bytes that many files may need more than few: a fraction of their size

constexpr int items = 20;

QByteArray textDictionary()
{
    QByteArray text = "[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n\n[IdItems]\n";
    for (int i = 0; i < items; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "\n[Item]\nLabel=Item " + number + "\nName=ITEM_" + number + "\nStart=" + QByteArray::number(2 + i)
            + "\nLen=1\n\n[ValueSet]\nName=VS_" + number + "\nValue=1;One\nValue=2;Two\n";
    }
    return text;
}

QByteArray jsonDictionary()
{
    QByteArray text = R"({"software": "CSPro", "fileType": "dictionary", "version": 8.0, "name": "D",
        "recordType": {"start": 1, "length": 1}, "levels": [{"name": "L", "ids": {"items": [)";
    for (int i = 0; i < items; ++i) {
        text += QByteArray(i > 0 ? "," : "") + R"({"name": "ITEM_)" + QByteArray::number(i)
            + R"(", "contentType": "numeric", "length": 1, "valueSets": [{"name": "V", "values": [
                {"labels": [{"text": "One"}], "pairs": [{"value": "1"}]},
                {"labels": [{"text": "Two"}], "pairs": [{"value": "2"}]}]}]})";
    }
    return text + R"(]}, "records": []}]})";
}

// Returns the number of lines. Reads the file piece by piece, since a program with much memory in use gives its
// children a high peak.
int linesIn(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    int lines = 0;
    char block[1 << 12];
    for (qint64 size = 0; (size = file.read(block, sizeof block)) > 0;)
        lines += int(std::count(block, block + size, '\n'));
    return lines;
}

/// The exit status of a run, its memory, and the lines that it printed.
struct ManyFilesRun {
    MeasuredRun measured;
    int lines;
};

} // namespace

/// Many files in one call: the contents of each are released before the next is read.
class ManyFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        write("text.dcf", textDictionary());
        write("json.dcf", jsonDictionary());
        // Reading ends in an error after the items.
        write("ended.dcf",
              textDictionary()
                  + "\n[Item]\nName=LAST\nStart=1\nLen=2\n[ValueSet]\nName=VS\nValue=1:5 7:9\nValue=99;x\n");
    }

    void memoryStaysLevel_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QString>("file");
        const QString ended = directory.filePath("ended.dcf");
        const QString files[] = { directory.filePath("text.dcf"), directory.filePath("json.dcf"),
                                  QStringLiteral(VAN_MADE_EXAMPLES "/household.dta"),
                                  QStringLiteral(VAN_MADE_EXAMPLES "/household.sav") };
        for (const char *command : { "fields", "explain", "show" }) {
            for (const QString &file : files)
                QTest::addRow("%s %s", command, qPrintable(QFileInfo(file).fileName())) << QByteArray(command) << file;
        }
        for (const char *command : { "fields", "explain" })
            QTest::addRow("%s of an error", command) << QByteArray(command) << ended;
    }
    void memoryStaysLevel()
    {
        QFETCH(QByteArray, command);
        QFETCH(QString, file);

        const ManyFilesRun ofFew = run(command, file, few);
        const ManyFilesRun ofMany = run(command, file, many);
        QVERIFY(ofFew.measured.isInTime && ofMany.measured.isInTime);
        QVERIFY(WIFEXITED(ofMany.measured.status));
        QCOMPARE(ofMany.measured.status, ofFew.measured.status);
        // Every file was read, and has its output.
        QVERIFY(ofMany.lines >= many && ofMany.lines / many == ofFew.lines / few);
        if (!sanitizesMemory)
            QVERIFY2(ofMany.measured.peakMemory < ofFew.measured.peakMemory + room,
                     qPrintable(QString::number(ofMany.measured.peakMemory)));
    }

private:
    void write(const char *name, const QByteArray &content) const
    {
        QFile file(directory.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    ManyFilesRun run(const QByteArray &command, const QString &file, int count) const
    {
        std::vector<QByteArray> arguments = { command };
        arguments.resize(size_t(count) + 1, QFile::encodeName(file));
        const MeasuredRun measured = measuredRun(arguments, directory);
        return { measured, linesIn(directory.filePath("out")) + linesIn(directory.filePath("err")) };
    }

    const QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(ManyFilesTest)
#include "ManyFilesTest.moc"
