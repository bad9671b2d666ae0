#include "support/LocaleCodec.h"
#include "support/Sanitizer.h"
#include "util/TextFile_p.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <new>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

namespace
{

// The bytes of a literal, NULs included.
template <size_t size> QByteArray bytes(const char (&literal)[size])
{
    return QByteArray(literal, int(size) - 1);
}

QStringList linesOf(const QString &text)
{
    QStringList lines;
    const TextLines views = TextLines::ofText(text);
    for (int i = 0; views.has(i); ++i)
        lines.append(views.at(i).toString());
    return lines;
}

// A file that holds these bytes while this lives.
class FileOf
{
public:
    explicit FileOf(const QByteArray &content)
    {
        QFile file(path());
        isWritten = file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    QString path() const { return folder.filePath(QString::fromUtf8("layout č.dcf")); }
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
    QTemporaryDir folder;
    bool isWritten = false;
};

} // namespace

class TextFileTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void byteOrderMarkDecidesAndIsNoPartOfTheText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QString text = QString::fromUtf8("Aé€😀\nB");
        // clang-format off
        QTest::newRow("UTF-8")     << QByteArray("\xEF\xBB\xBF") + text.toUtf8() << text;
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE" "A\0\xE9\0\xAC\x20\x3D\xD8\0\xDE\n\0B\0") << text;
        QTest::newRow("UTF-16 BE") << bytes("\xFE\xFF\0A\0\xE9\x20\xAC\xD8\x3D\xDE\0\0\n\0B") << text;
        QTest::newRow("UTF-32 LE") << bytes("\xFF\xFE\0\0A\0\0\0\xE9\0\0\0\xAC\x20\0\0\0\xF6\x01\0\n\0\0\0B\0\0\0") << text;
        QTest::newRow("UTF-32 BE") << bytes("\0\0\xFE\xFF\0\0\0A\0\0\0\xE9\0\0\x20\xAC\0\x01\xF6\0\0\0\0\n\0\0\0B") << text;
        QTest::newRow("UTF-8 mark alone")     << bytes("\xEF\xBB\xBF") << "";
        QTest::newRow("UTF-16 LE mark alone") << bytes("\xFF\xFE") << "";
        QTest::newRow("UTF-16 BE mark alone") << bytes("\xFE\xFF") << "";
        QTest::newRow("UTF-32 LE mark alone") << bytes("\xFF\xFE\0\0") << "";
        QTest::newRow("UTF-32 BE mark alone") << bytes("\0\0\xFE\xFF") << "";
        // clang-format on
    }
    void byteOrderMarkDecidesAndIsNoPartOfTheText()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
        const LocaleCodec codec("ISO 8859-2");
        QCOMPARE(textfile::decode(content), expected);
    }

    void markIsNoPartOfTheFirstLine_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("UTF-8") << bytes("\xEF\xBB\xBF[Dictionary]\r\nVersion\r\n");
        QTest::newRow("UTF-16 LE") << bytes(
            "\xFF\xFE[\0D\0i\0c\0t\0i\0o\0n\0a\0r\0y\0]\0\r\0\n\0V\0e\0r\0s\0i\0o\0n\0");
    }
    void markIsNoPartOfTheFirstLine()
    {
        QFETCH(QByteArray, content);
        QCOMPARE(linesOf(textfile::decode(content)), QStringList({ "[Dictionary]", "Version" }));
    }

    void markOfUtf8DecidesThoughTheBytesAreInvalid()
    {
        QCOMPARE(textfile::decode("\xEF\xBB\xBF"
                                  "a\xE9"
                                  "b"),
                 QString("a") + QChar(0xFFFD) + "b");
    }

    void partOfAMarkIsNoMark_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("two bytes of the UTF-8 mark") << bytes("\xEF\xBB") << QString::fromUtf8("ï»");
        QTest::newRow("one byte of the UTF-16 mark") << bytes("\xFF") << QString::fromUtf8("ÿ");
        QTest::newRow("mark behind the first character") << bytes("a\xFF\xFE") << QString::fromUtf8("aÿþ");
    }
    void partOfAMarkIsNoMark()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
    }

    void markInTheMiddleIsACharacter()
    {
        QCOMPARE(textfile::decode("a\xEF\xBB\xBF"
                                  "b"),
                 QString("a") + QChar(0xFEFF) + "b");
    }

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

    void validUtf8WithoutAMarkIsUtf8_data()
    {
        QTest::addColumn<QString>("text");
        // clang-format off
        QTest::newRow("empty")                 << "";
        QTest::newRow("ASCII")                 << "Name=SEX\nLabel=Sex";
        QTest::newRow("two bytes")             << QString::fromUtf8("Année");
        QTest::newRow("three bytes")           << QString::fromUtf8("ปี €");
        QTest::newRow("four bytes")            << QString::fromUtf8("😀");
        QTest::newRow("first and last of each length") << QString::fromUtf8("\u0080\u07FF\u0800\uD7FF\uE000\uFFFC\U00010000\U0010FFFD");
        QTest::newRow("replacement character") << QString("a") + QChar(0xFFFD) + "b";
        QTest::newRow("replacement characters alone") << QString(3, QChar(0xFFFD));
        QTest::newRow("replacement and others") << QString::fromUtf8("é") + QChar(0xFFFD) + QString::fromUtf8("€");
        // clang-format on
    }
    void validUtf8WithoutAMarkIsUtf8()
    {
        QFETCH(QString, text);
        QCOMPARE(textfile::decode(text.toUtf8()), text);
        const LocaleCodec codec("ISO 8859-2");
        QCOMPARE(textfile::decode(text.toUtf8()), text);
    }

    void invalidUtf8IsWindows1252_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("Latin letters")             << bytes("Ann\xE9" "e")         << QString::fromUtf8("Année");
        QTest::newRow("quotes, dash and euro")     << bytes("\x93" "a\x94\x96\x80") << QString::fromUtf8("“a”–€");
        QTest::newRow("one bad byte makes all of it old") << bytes("\xC3\xA9 \xE9") << QString::fromUtf8("Ã© é");
        QTest::newRow("sequence cut at the end")   << bytes("a\xC3")               << QString::fromUtf8("aÃ");
        QTest::newRow("overlong sequence")         << bytes("\xC0\xAF")            << QString::fromUtf8("À¯");
        QTest::newRow("surrogate in UTF-8")        << bytes("\xED\xA0\x80")        << QString::fromUtf8("í\u00A0€");
        QTest::newRow("beyond the last character") << bytes("\xF4\xBF\xBF\xBF")    << QString::fromUtf8("ô¿¿¿");
        QTest::newRow("replacement character and a bad byte") << bytes("\xEF\xBF\xBD\xE9") << QString::fromUtf8("ï¿½é");
        QTest::newRow("bad byte far behind")       << QByteArray(100000, 'a') + '\xE9' << QString(100000, 'a') + QChar(0xE9);
        // clang-format on
    }
    void invalidUtf8IsWindows1252()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        for (const char *locale : { "UTF-8", "US-ASCII" }) {
            QVERIFY(QTextCodec::codecForName(locale));
            const LocaleCodec codec(locale);
            QCOMPARE(textfile::decode(content), expected);
        }
    }

    void invalidUtf8IsInTheLocalesEncodingWhereThatIsAnother_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("ISO 8859-2") << bytes("ISO 8859-2")
                                    << bytes("\xB3\xF3"
                                             "d\xBC")
                                    << QString::fromUtf8("łódź");
        QTest::newRow("Windows-1251") << bytes("windows-1251") << bytes("\xC3\xEE\xE4") << QString::fromUtf8("Год");
        QTest::newRow("ISO 8859-1") << bytes("ISO 8859-1") << bytes("\xE9\xA4") << QString::fromUtf8("é¤");
    }
    void invalidUtf8IsInTheLocalesEncodingWhereThatIsAnother()
    {
        QFETCH(QByteArray, locale);
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        const LocaleCodec codec(locale.constData());
        QCOMPARE(textfile::decode(content), expected);
    }

    void everyCarriageReturnDisappears_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("before a line feed")        << bytes("a\r\nb\r\n")        << "a\nb\n";
        QTest::newRow("lone")                      << bytes("a\rb")              << "ab";
        QTest::newRow("several")                   << bytes("a\r\r\r\nb")        << "a\nb";
        QTest::newRow("behind a line feed")        << bytes("a\n\rb")            << "a\nb";
        QTest::newRow("at both ends")              << bytes("\ra\r")             << "a";
        QTest::newRow("nothing else")              << bytes("\r\r")              << "";
        QTest::newRow("in Windows-1252")           << bytes("\xE9\r\nb\r")       << QString::fromUtf8("é\nb");
        QTest::newRow("in UTF-8 with a mark")      << bytes("\xEF\xBB\xBF\r\xC3\xA9\r\n") << QString::fromUtf8("é\n");
        QTest::newRow("in UTF-16 LE")              << bytes("\xFF\xFE" "a\0\r\0\n\0b\0\r\0c\0") << "a\nbc";
        QTest::newRow("in UTF-16 BE")              << bytes("\xFE\xFF\0a\0\r\0\n\0b\0\r\0c") << "a\nbc";
        QTest::newRow("in UTF-32 LE")              << bytes("\xFF\xFE\0\0a\0\0\0\r\0\0\0\n\0\0\0") << "a\n";
        // clang-format on
    }
    void everyCarriageReturnDisappears()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
    }

    void bytesOfOtherCharactersAreNoCarriageReturns_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QString text = QString(QChar(0x010D)) + QChar(0x0D00) + '\n' + QChar(0x0A0D) + QChar(0x0D0A);
        QTest::newRow("UTF-16 LE") << bytes("\xFF\xFE\x0D\x01\x00\x0D\x0D\x00\x0A\x00\x0D\x0A\x0A\x0D") << text;
        QTest::newRow("UTF-16 BE") << bytes("\xFE\xFF\x01\x0D\x0D\x00\x00\x0D\x00\x0A\x0A\x0D\x0D\x0A") << text;
    }
    void bytesOfOtherCharactersAreNoCarriageReturns()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        QCOMPARE(textfile::decode(content), expected);
        QCOMPARE(linesOf(textfile::decode(content)).size(), 2);
    }

    void nulCharactersAreKept()
    {
        QCOMPARE(textfile::decode(bytes("a\0b\n\0")), QString("a") + QChar(0) + "b\n" + QChar(0));
        QCOMPARE(textfile::decode(bytes("\xE9\0b")), QString(QChar(0xE9)) + QChar(0) + 'b');
    }

    void lineFeedEndsALine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        // clang-format off
        QTest::newRow("two lines")                       << "a\nb\n"   << QStringList({"a", "b"});
        QTest::newRow("last line without a line feed")   << "a\nb"     << QStringList({"a", "b"});
        QTest::newRow("no line after a final line feed") << "a\n"      << QStringList({"a"});
        QTest::newRow("empty lines")                     << "\n\na\n\n" << QStringList({"", "", "a", ""});
        QTest::newRow("line feed alone")                 << "\n"       << QStringList({""});
        QTest::newRow("empty text")                      << ""         << QStringList();
        QTest::newRow("null text")                       << QString()  << QStringList();
        QTest::newRow("one line")                        << "a"        << QStringList({"a"});
        QTest::newRow("blanks and tabs stay")            << " a \n\tb" << QStringList({" a ", "\tb"});
        QTest::newRow("other separators end no line")    << QString("a\vb\fc") + QChar(0x85) + QChar(0x2028) + "d\n"
                                                         << QStringList({QString("a\vb\fc") + QChar(0x85) + QChar(0x2028) + "d"});
        QTest::newRow("NUL ends no line")                << QString("a") + QChar(0) + "b\nc" << QStringList({QString("a") + QChar(0) + "b", "c"});
        // clang-format on
    }
    void lineFeedEndsALine()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        QCOMPARE(linesOf(text), expected);
    }

    void linesCanBeAskedForInAnyOrder()
    {
        const QString text = "first\n\nthird\nfourth";
        const TextLines lines = TextLines::ofText(text);
        QCOMPARE(lines.at(3).toString(), QString("fourth"));
        QCOMPARE(lines.at(0).toString(), QString("first"));
        QCOMPARE(lines.at(2).toString(), QString("third"));
        QVERIFY(lines.at(1).isEmpty());
        QVERIFY(!lines.has(4));
        QVERIFY(!lines.has(400));
        QVERIFY(lines.has(3));
        QVERIFY(!lines.has(-1));
        QVERIFY(lines.has(0));
    }

    void linesAreViewsOfTheirText()
    {
        const QString text = "first\nsecond";
        const TextLines lines = TextLines::ofText(text);
        QCOMPARE(lines.at(1).data(), text.constData() + 6);
    }

    void listOfTextsServesAsLines()
    {
        const QStringList list = { "a", "", "b\nc" };
        const TextLines lines(list);
        QVERIFY(lines.has(2));
        QVERIFY(!lines.has(3));
        QVERIFY(!lines.has(-1));
        QCOMPARE(lines.at(1).size(), qsizetype(0));
        QCOMPARE(lines.at(2).toString(), QString("b\nc"));
        QVERIFY(TextLines(&list).has(2));
        QVERIFY(!TextLines(&list).has(3));
    }

    void listOfTextsServesAsASection()
    {
        const QStringList list = { "a", "", "b\nc" };
        QStringList got;
        for (const QStringView line : SectionLines(&list))
            got.append(line.toString());
        QCOMPARE(got, list);
        QVERIFY(!SectionLines(list).isEmpty());
    }

    void nullListCountsAsNoLines()
    {
        const QStringList *none = nullptr;
        QVERIFY(!TextLines(none).has(0));
        QVERIFY(SectionLines(none).isEmpty());
        QVERIFY(SectionLines().isEmpty());
    }

    void lineIsAppendedAtTheEndOfASection()
    {
        const QStringList list = { "a", "b" };
        const QString text = "c";
        SectionLines lines(list);
        lines.append(text);
        QStringList got;
        for (const QStringView line : lines)
            got.append(line.toString());
        QCOMPARE(got, QStringList({ "a", "b", "c" }));
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
        QTest::newRow("UTF-8 mark alone")      << bytes("\xEF\xBB\xBF") << "";
        QTest::newRow("UTF-8 with NULs")       << bytes("a\0b\n\0") << QString("a") + QChar(0) + "b\n" + QChar(0);
        QTest::newRow("UTF-16 LE with a mark") << bytes("\xFF\xFE" "a\0\r\0\n\0\x0D\x01") << QString("a\n") + QChar(0x10D);
        QTest::newRow("Windows-1252")          << bytes("Ann\xE9" "e\r\nb") << QString::fromUtf8("Année\nb");
        QTest::newRow("large, without a header") << QByteArray(3000000, 'x') + "\r\ny" << QString(3000000, 'x') + "\ny";
        QTest::newRow("large UTF-8")           << large.repeated(20000) << largeText.repeated(20000);
        QTest::newRow("large UTF-8 with a mark") << "\xEF\xBB\xBF" + large.repeated(20000) << largeText.repeated(20000);
        QTest::newRow("large Windows-1252, told by its last byte") << QByteArray("[Item]\n\xC3\xA9\n").repeated(100000) + '\xE9'
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
        // Not compared by QCOMPARE, which would print megabytes.
        QVERIFY(file.blocks().join(QString()) == expected);
        QVERIFY(textfile::decode(content) == expected);
    }

    void blockEndsBeforeTheNextHeaderOnceItHasItsSize_data()
    {
        QTest::addColumn<int>("rest");
        QTest::addColumn<QByteArray>("lineEnd");
        // The line feed before the second header stands so many bytes behind the usual size.
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
        // Nothing but the bracket at the begin of a line begins a section.
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

    void textStaysAsItIsBehindTheLastBlock()
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
        QTest::newRow("missing file") << "/no such folder/no such file.dcf";
        QTest::newRow("folder") << QDir::tempPath();
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
    void deviceThatTellsNoSizeIsReadToItsEnd()
    {
        TextFileReader reader("/dev/null");
        QString text;
        QVERIFY(!reader.readBlock(text));
    }

    void deviceWithoutAnEndRaisesBadAlloc()
    {
        QVERIFY_EXCEPTION_THROWN(TextFileReader{ "/dev/zero" }, std::bad_alloc);
        // It ended at a gigabyte, not where memory gives out.
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
        // The system tells the size 0 for this file and delivers text.
        TextFileReader reader("/proc/self/status");
        QString text;
        QVERIFY(reader.readBlock(text));
        QVERIFY(text.startsWith("Name:"));
    }
#endif

    void fileThatNoStringCanHoldRaisesBadAlloc()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("large.dcf");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        // One byte more than a gigabyte, none of it written.
        QVERIFY(file.resize((Q_INT64_C(1) << 30) + 1));
        file.close();
        QVERIFY_EXCEPTION_THROWN(TextFileReader{ path }, std::bad_alloc);
    }

    void bytesAreUtf8WhereAllOfThemAre_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("expected");
        // clang-format off
        QTest::newRow("empty")                    << bytes("")                 << true;
        QTest::newRow("ASCII with NUL and DEL")   << bytes("a\0\x7F")          << true;
        QTest::newRow("first of two bytes")       << bytes("\xC2\x80")         << true;
        QTest::newRow("last of two bytes")        << bytes("\xDF\xBF")         << true;
        QTest::newRow("first of three bytes")     << bytes("\xE0\xA0\x80")     << true;
        QTest::newRow("before the surrogates")    << bytes("\xED\x9F\xBF")     << true;
        QTest::newRow("behind the surrogates")    << bytes("\xEE\x80\x80")     << true;
        QTest::newRow("last of three bytes")      << bytes("\xEF\xBF\xBF")     << true;
        QTest::newRow("first of four bytes")      << bytes("\xF0\x90\x80\x80") << true;
        QTest::newRow("last of four bytes")       << bytes("\xF4\x8F\xBF\xBF") << true;
        QTest::newRow("replacement character")    << bytes("\xEF\xBF\xBD")     << true;
        QTest::newRow("mark in the middle")       << bytes("a\xEF\xBB\xBF")    << true;
        QTest::newRow("continuation alone")       << bytes("\x80")             << false;
        QTest::newRow("overlong of two bytes")    << bytes("\xC1\xBF")         << false;
        QTest::newRow("overlong of three bytes")  << bytes("\xE0\x9F\xBF")     << false;
        QTest::newRow("overlong of four bytes")   << bytes("\xF0\x8F\xBF\xBF") << false;
        QTest::newRow("first surrogate")          << bytes("\xED\xA0\x80")     << false;
        QTest::newRow("last surrogate")           << bytes("\xED\xBF\xBF")     << false;
        QTest::newRow("beyond the last character") << bytes("\xF4\x90\x80\x80") << false;
        QTest::newRow("byte that leads nothing")  << bytes("\xF5\x80\x80\x80") << false;
        QTest::newRow("0xFF")                     << bytes("\xFF")             << false;
        QTest::newRow("cut behind the lead")      << bytes("\xC3")             << false;
        QTest::newRow("cut behind two of three")  << bytes("\xE2\x82")         << false;
        QTest::newRow("cut behind three of four") << bytes("\xF0\x9F\x98")     << false;
        QTest::newRow("second byte no continuation") << bytes("\xE2\x28\xA1")  << false;
        QTest::newRow("third byte no continuation")  << bytes("\xE2\x82\x28")  << false;
        QTest::newRow("fourth byte no continuation") << bytes("\xF0\x9F\x98\x41") << false;
        QTest::newRow("one continuation too many") << bytes("\xC3\xA9\xA9")    << false;
        // clang-format on
    }
    void bytesAreUtf8WhereAllOfThemAre()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, expected);
        // Wherever they stand among ASCII.
        for (int before = 0; before <= 17; ++before) {
            for (const int behind : { 0, 1, 7, 8, 9 })
                QCOMPARE(textfile::isUtf8(QByteArray(before, 'a') + content + QByteArray(behind, 'b')), expected);
        }
    }

    void bytesBehindTheEndPlayNoPart()
    {
        const char sequence[] = "a\xE2\x82\xAC";
        for (int size = 2; size <= 3; ++size)
            QVERIFY(!textfile::isUtf8(QByteArray::fromRawData(sequence, size)));
        QVERIFY(textfile::isUtf8(QByteArray::fromRawData(sequence, 4)));
    }

    void randomBytesAreUtf8WhereQtReadsThemWithoutLoss()
    {
        const QByteArray alphabet
            = bytes("a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF3\xF4\xF5\xFF");
        QRandomGenerator random(20240607);
        int valid = 0;
        for (int time = 0; time < 100000; ++time) {
            QByteArray content = "a"; // Qt would take a mark away
            for (int rest = random.bounded(6); rest > 0; --rest)
                content += alphabet[random.bounded(alphabet.size())];
            const bool expected = QString::fromUtf8(content).toUtf8() == content;
            valid += expected;
            QVERIFY2(textfile::isUtf8(content) == expected, content.toHex().constData());
        }
        QVERIFY(valid > 1000);
    }

    void characterIsFoundFromAnIndexOn_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("expected");
        QTest::newRow("first") << "a=b=c" << 0 << 1;
        QTest::newRow("at the index") << "a=b=c" << 1 << 1;
        QTest::newRow("behind the index") << "a=b=c" << 2 << 3;
        QTest::newRow("no further one") << "a=b=c" << 4 << -1;
        QTest::newRow("index at the end") << "a=b" << 3 << -1;
        QTest::newRow("index beyond the end") << "a=b" << 9 << -1;
        QTest::newRow("none") << "abc" << 0 << -1;
        QTest::newRow("empty") << "" << 0 << -1;
        QTest::newRow("same low byte") << QString(QChar(0x013D)) << 0 << -1;
    }
    void characterIsFoundFromAnIndexOn()
    {
        QFETCH(QString, line);
        QFETCH(int, from);
        QFETCH(int, expected);
        QCOMPARE(textfile::indexOf(line, '=', from), expected);
    }
};

QTEST_GUILESS_MAIN(TextFileTest)
#include "TextFileTest.moc"
