#include "support/MeasuredRun.h"

#include <QtTest>

namespace
{

// A dictionary of an item without value labels and a repeating item with 300 value labels.
QByteArray dictionary(int occurrences)
{
    QByteArray text
        = "[Dictionary]\nVersion=CSPro 7.0\nName=D\nRecordTypeStart=1\nRecordTypeLen=0\n\n[Level]\nName=L\n\n"
          "[Record]\nName=R\nRecordTypeValue=''\n\n[Item]\nName=FIRST\nStart=1\nLen=1\n\n[Item]\nLabel=l\nName="
          "I\nStart=2\nLen=4\n"
          "DataType=Numeric\nOccurrences="
        + QByteArray::number(occurrences) + "\n\n[ValueSet]\nName=V\n";
    for (int value = 0; value < 300; ++value)
        text += "Value=" + QByteArray::number(value) + ";label " + QByteArray::number(value) + '\n';
    return text;
}

} // namespace

/// Tests that exports are written while they are made.
class VanlayoutExportMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memoryDoesNotGrowWithWhatIsWritten_data()
    {
        QTest::addColumn<QByteArray>("form");
        for (const char *form : { "ddi", "csvw", "json-schema" })
            QTest::newRow(form) << QByteArray(form);
    }
    void memoryDoesNotGrowWithWhatIsWritten()
    {
        QFETCH(QByteArray, form);
        qint64 fewBytes = 0;
        qint64 manyBytes = 0;
        const qint64 few = peakOfExport(form, 10, fewBytes);
        const qint64 many = peakOfExport(form, 1500, manyBytes);
        QVERIFY(fewBytes > 0);
        QVERIFY(manyBytes > 100 * fewBytes); // 30 MB and more
        if (measuresMemory)
            QVERIFY2(many < 2 * few,
                     qPrintable(QString("%1 bytes for ten occurrences, %2 for many").arg(few).arg(many)));
    }

private:
    qint64 peakOfExport(const QByteArray &form, int occurrences, qint64 &bytesWritten) const
    {
        QFile file(directory.filePath("survey.dcf"));
        file.open(QIODevice::WriteOnly);
        file.write(dictionary(occurrences));
        file.close();
        const MeasuredRun run = measuredRun({ "export", "--to", form, QFile::encodeName(file.fileName()) }, directory);
        bytesWritten = run.status == 0 ? QFileInfo(directory.filePath("out")).size() : 0;
        return run.peakMemory;
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(VanlayoutExportMemoryTest)
#include "VanlayoutExportMemoryTest.moc"
