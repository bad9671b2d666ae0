#include "cspro/TextFileReader_p.h"
#include "support/LiteralBytes.h"
#include "support/LocaleCodec.h"
#include "support/Sanitizer.h"
#include "support/Throws.h"
#include "util/TextFile_p.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <new>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

namespace
{

// A file that holds these bytes while this object exists.
class FileOf
{
public:
    explicit FileOf(const QByteArray &content)
    {
        QFile file(path());
        isWritten = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    QString path() const { return directory.filePath(QString::fromUtf8("layout č.dcf")); }
    QStringList blocks() const
    {
        QStringList all;
        if (!isWritten)
            return { QStringLiteral("the file could not be written") };
        TextFileReader reader(path());
        QString text;
        while (reader.readBlock(text))
            all.append(text);
        return all;
    }

private:
    QTemporaryDir directory;
    bool isWritten = false;
};

} // namespace

class TextFileReaderTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void onlyTheFirstOfTwoMarksIsNoPartOfTheText_data()
    {
        QTest::addColumn<QByteArray>("content");
        // clang-format off
        QTest::newRow("UTF-8")     << bytes("\xEF\xBB\xBF\xEF\xBB\xBF" "a\n");
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE\xFF\xFE" "a\0\n\0");
        QTest::newRow("UTF-16 BE") << bytes("\xFE\xFF\xFE\xFF\0a\0\n");
        QTest::newRow("UTF-32 LE") << bytes("\xFF\xFE\0\0\xFF\xFE\0\0a\0\0\0\n\0\0\0");
        QTest::newRow("UTF-32 BE") << bytes("\0\0\xFE\xFF\0\0\xFE\xFF\0\0\0a\0\0\0\n");
        // clang-format on
    }
    void onlyTheFirstOfTwoMarksIsNoPartOfTheText()
    {
        QFETCH(QByteArray, content);
        const QString expected = QString(QChar(0xFEFF)) + "a\n";
        QCOMPARE(textfile::decode(content), expected);
        const FileOf file(content);
        QCOMPARE(file.blocks(), QStringList(expected));
    }

    void fileReadsAsItsBytesDecode_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QByteArray large = QByteArray(40, 'x') + "\r\n[Item]\r\nLabel=\xC3\xA9\r\n";
        const QString largeText = QString(40, 'x') + QString::fromUtf8("\n[Item]\nLabel=é\n");
        // clang-format off
        QTest::newRow("empty")                 << QByteArray() << "";
        QTest::newRow("UTF-8")                 << bytes("Ann\xC3\xA9" "e\r\nb") << QString::fromUtf8("Année\nb");
        QTest::newRow("UTF-8 with a mark")     << bytes("\xEF\xBB\xBF" "a\r\n") << "a\n";
        QTest::newRow("UTF-8 mark only")       << bytes("\xEF\xBB\xBF") << "";
        QTest::newRow("UTF-8 with NULs")       << bytes("a\0b\n\0") << QString("a") + QChar(0) + "b\n" + QChar(0);
        QTest::newRow("UTF-16 LE with a mark") << bytes("\xFF\xFE" "a\0\r\0\n\0\x0D\x01") << QString("a\n") + QChar(0x10D);
        QTest::newRow("Windows-1252")          << bytes("Ann\xE9" "e\r\nb") << QString::fromUtf8("Année\nb");
        QTest::newRow("large, without a header") << QByteArray(3000000, 'x') + "\r\ny" << QString(3000000, 'x') + "\ny";
        QTest::newRow("large UTF-8")           << large.repeated(20000) << largeText.repeated(20000);
        QTest::newRow("large UTF-8 with a mark") << "\xEF\xBB\xBF" + large.repeated(20000) << largeText.repeated(20000);
        QTest::newRow("large Windows-1252, seen from its last byte") << QByteArray("[Item]\n\xC3\xA9\n").repeated(100000) + '\xE9'
                                               << QString::fromUtf8("[Item]\nÃ©\n").repeated(100000) + QChar(0xE9);
        QTest::newRow("large UTF-8 with a mark and a bad byte") << "\xEF\xBB\xBF" + large.repeated(20000) + '\xE9'
                                               << largeText.repeated(20000) + QChar(0xFFFD);
        // clang-format on
    }
    void fileReadsAsItsBytesDecode()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        const LocaleCodec codec("UTF-8");
        const FileOf file(content);
        // This is not compared by QCOMPARE, which would print megabytes.
        QVERIFY(file.blocks().join(QString()) == expected);
        QVERIFY(textfile::decode(content) == expected);
    }

    void blockEndsBeforeTheNextHeaderOnceItHasItsSize_data()
    {
        QTest::addColumn<int>("rest");
        QTest::addColumn<QByteArray>("lineEnd");
        // The line feed before the second header is this number of bytes after the usual size.
        for (const int rest : { 0, 1, 2, 5 }) {
            QTest::addRow("LF %d", rest) << rest << QByteArray("\n");
            QTest::addRow("CR LF %d", rest) << rest << QByteArray("\r\n");
        }
    }
    void blockEndsBeforeTheNextHeaderOnceItHasItsSize()
    {
        QFETCH(int, rest);
        QFETCH(QByteArray, lineEnd);
        const QByteArray head = "[Item]" + lineEnd;
        QByteArray first = head;
        first += QByteArray(TextFileReader::usualBlockSize + rest + 1 - head.size() - lineEnd.size(), 'x') + lineEnd;
        QCOMPARE(first.size(), TextFileReader::usualBlockSize + rest + 1);
        const FileOf file(first + head + "tail");
        const QStringList blocks = file.blocks();
        QCOMPARE(blocks.size(), 2);
        QVERIFY(blocks[0] == QString(first).remove('\r'));
        QCOMPARE(blocks[1], QString("[Item]\ntail"));
    }

    void headerBeforeTheUsualSizeEndsNoBlock()
    {
        const QByteArray first(TextFileReader::usualBlockSize - 1, 'x');
        const FileOf file(first + "\n[Item]\ntail");
        QCOMPARE(file.blocks().size(), 1);
    }

    void blockIsNotEndedInsideASection()
    {
        // Only a bracket at the beginning of a line begins a section.
        const QByteArray line = "Label=[not a header] [\n [Item]\n";
        const FileOf file("[Item]\n" + line.repeated(100000));
        QCOMPARE(file.blocks().size(), 1);
    }

    void everyBlockButTheFirstBeginsWithAHeader()
    {
        const QByteArray section = "[Item]\r\nLabel=" + QByteArray("\xE2\x82\xAC").repeated(50) + "\r\n\r\n";
        const FileOf file("free text\n" + section.repeated(10000));
        const QStringList blocks = file.blocks();
        QVERIFY(blocks.size() > 2);
        QVERIFY(blocks.first().startsWith("free text\n[Item]\n"));
        for (const QString &block : blocks.mid(1))
            QVERIFY(block.startsWith("[Item]\nLabel="));
        for (const QString &block : blocks)
            QVERIFY(!block.contains(QChar::ReplacementCharacter) && block.endsWith(QString::fromUtf8("€\n\n")));
    }

    void otherEncodingsAreReadInOnePiece_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("Windows-1252") << QByteArray("[Item]\n\xE9\n").repeated(100000);
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE") + bytes("[\0I\0]\0\n\0").repeated(100000);
    }
    void otherEncodingsAreReadInOnePiece()
    {
        QFETCH(QByteArray, content);
        const FileOf file(content);
        QCOMPARE(file.blocks().size(), 1);
    }

    void emptyFileHasNoBlock()
    {
        const FileOf file("");
        QCOMPARE(file.blocks(), QStringList());
    }

    void textIsUnchangedAfterTheLastBlock()
    {
        const FileOf file("a\n");
        TextFileReader reader(file.path());
        QString text = "before";
        QVERIFY(reader.readBlock(text));
        QCOMPARE(text, QString("a\n"));
        QVERIFY(!reader.readBlock(text));
        QVERIFY(!reader.readBlock(text));
    }

    void readerHoldsWhatTheFileHeldWhenItWasMade_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("in blocks") << QByteArray("[Item]\nLabel=x\n").repeated(TextFileReader::usualBlockSize / 8);
        QTest::newRow("in one piece") << bytes("\xE9\n");
    }
    void readerHoldsWhatTheFileHeldWhenItWasMade()
    {
        QFETCH(QByteArray, content);
        const FileOf file(content);
        const QString before = file.blocks().join(QString());
        QVERIFY(!before.isEmpty());
        TextFileReader reader(file.path());
        QFile other(file.path());
        QVERIFY(other.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QVERIFY(other.write("other") == 5);
        other.close();
        QCOMPARE(file.blocks(), QStringList("other"));
        QString after;
        QString text;
        while (reader.readBlock(text))
            after += text;
        QVERIFY(after == before);
    }

    void fileThatCannotBeOpenedHasNoBlock_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing file") << "/no such directory/no such file.dcf";
        QTest::newRow("directory") << QDir::tempPath();
        QTest::newRow("empty name") << "";
    }
    void fileThatCannotBeOpenedHasNoBlock()
    {
        QFETCH(QString, path);
        TextFileReader reader(path);
        QString text;
        QVERIFY(!reader.readBlock(text));
    }

#ifdef Q_OS_LINUX
    void deviceThatHasNoSizeIsReadToItsEnd()
    {
        TextFileReader reader("/dev/null");
        QString text;
        QVERIFY(!reader.readBlock(text));
    }

    void deviceWithoutAnEndRaisesBadAlloc()
    {
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, TextFileReader{ "/dev/zero" });
        // The reading ended at a gigabyte, not when memory ran out.
        constexpr long gigabyte = 1 << 20; // in kilobytes
        rusage usage = {};
        QCOMPARE(getrusage(RUSAGE_SELF, &usage), 0);
        QVERIFY2(usage.ru_maxrss > gigabyte, qPrintable(QString::number(usage.ru_maxrss)));
        // A sanitizer keeps the smaller arrays that the text grew out of.
        const long most = gigabyte + (sanitizesMemory ? gigabyte * 2 : gigabyte / 4);
        QVERIFY2(usage.ru_maxrss < most, qPrintable(QString::number(usage.ru_maxrss)));
    }

    void fileOfSizeZeroIsReadToItsEnd()
    {
        // The system reports the size 0 for this file and delivers text.
        TextFileReader reader("/proc/self/status");
        QString text;
        QVERIFY(reader.readBlock(text));
        QVERIFY(text.startsWith("Name:"));
    }
#endif

    void fileThatNoStringCanHoldRaisesBadAlloc()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath("large.dcf");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        // One byte more than a gigabyte, none of it written.
        QVERIFY(file.resize((Q_INT64_C(1) << 30) + 1));
        file.close();
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, TextFileReader{ path });
    }
};

QTEST_GUILESS_MAIN(TextFileReaderTest)
#include "TextFileReaderTest.moc"
