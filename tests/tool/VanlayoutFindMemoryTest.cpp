#include "support/MeasuredRun.h"

#include <QtTest>

#include <QDir>

namespace
{

// A dictionary of 400 items with value labels.
QByteArray dictionary()
{
    QByteArray text
        = "[Dictionary]\nVersion=CSPro 7.7\nName=D\nRecordTypeStart=1\nRecordTypeLen=0\n\n[Level]\nName=L\n\n"
          "[Record]\nName=R\nRecordTypeValue=''\n";
    for (int i = 0; i < 400; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "\n[Item]\nLabel=Label " + number + "\nName=A" + number
            + "\nStart=2\nLen=2\nDataType=Numeric\n\n[ValueSet]\nName=V" + number
            + "\nValue=1;One\nValue=2;Two\nValue=3;Three\nValue=4;Four\n";
    }
    return text;
}

} // namespace

/// Tests that a search has only a few layouts in memory at a time.
class VanlayoutFindMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memoryDoesNotGrowWithTheNumberOfFiles_data()
    {
        QTest::addColumn<QByteArray>("word");
        QTest::newRow("found nowhere") << QByteArray("island");
        QTest::newRow("found in every file") << QByteArray("three");
    }
    void memoryDoesNotGrowWithTheNumberOfFiles()
    {
        QFETCH(QByteArray, word);
        const qint64 few = peakOf(word, "few", 10);
        const qint64 many = peakOf(word, "many", 300);
        QVERIFY(few > 0);
        if (measuresMemory)
            QVERIFY2(many < few * 3 / 2, qPrintable(QString("%1 bytes for 10 files, %2 for 300").arg(few).arg(many)));
    }

private:
    qint64 peakOf(const QByteArray &word, const QString &name, int count) const
    {
        const QString path = directory.filePath(name);
        QDir().mkpath(path);
        for (int i = 0; i < count; ++i) {
            QFile file(path + '/' + QString::number(i) + ".dcf");
            if (!file.open(QIODevice::WriteOnly) || file.write(dictionary()) < 0)
                return 0;
        }
        const MeasuredRun run = measuredRun({ "find", word, QFile::encodeName(path) }, directory);
        return run.isInTime ? run.peakMemory : 0;
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(VanlayoutFindMemoryTest)
#include "VanlayoutFindMemoryTest.moc"
