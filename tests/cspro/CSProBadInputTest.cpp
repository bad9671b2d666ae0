#include "cspro/CSPro_p.h"
#include "cspro/TextFileReader_p.h"
#include "import/ReadReport.h"
#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/Thrown.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <random>

namespace
{

constexpr int million = 1000000;

QByteArray utf16(const QString &text, bool isBigEndian)
{
    QByteArray bytes;
    for (const QChar character : text) {
        const char low = char(character.unicode() & 0xFF);
        const char high = char(character.unicode() >> 8);
        bytes.append(isBigEndian ? high : low);
        bytes.append(isBigEndian ? low : high);
    }
    return bytes;
}

QByteArray randomBytes(int size, unsigned seed)
{
    std::mt19937 source(seed);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = char(source() & 0xFF);
    return bytes;
}

// Bytes that look like a dictionary more often than not.
QByteArray randomLines(int count, unsigned seed)
{
    const char *const pieces[] = { "[Item]",
                                   "[Record]",
                                   "[ValueSet]",
                                   "[Dictionary]",
                                   "[Level]",
                                   " [Item]",
                                   "[",
                                   "Name=",
                                   "Name",
                                   "MISSING ,",
                                   "Value=",
                                   "Label=",
                                   "Len=",
                                   "=",
                                   "Occurrences=",
                                   "3",
                                   "-1",
                                   "1:5;r",
                                   "1 3:5;s",
                                   ":",
                                   ";",
                                   " ",
                                   "'",
                                   "2.5",
                                   "DataType=Alpha" };
    std::mt19937 source(seed);
    QByteArray bytes;
    for (int i = 0; i < count; ++i) {
        for (unsigned piece = source() % 4; piece > 0; --piece)
            bytes += pieces[source() % std::size(pieces)];
        bytes += '\n';
    }
    return bytes;
}

QString smallDictionary()
{
    return QStringLiteral(
        "[Dictionary]\r\nVersion=CSPro 7.0\r\nLabel=Se\u00F1al\r\nName=D\r\nRecordTypeStart=1\r\n"
        "RecordTypeLen=1\r\nPositions=Relative\r\nZeroFill=No\r\nDecimalChar=Yes\r\n\r\n"
        "[Level]\r\nLabel=L\r\nName=L1\r\n\r\n[IdItems]\r\n\r\n"
        "[Item]\r\nLabel=Id\r\nName=ID\r\nStart=2\r\nLen=3\r\n\r\n"
        "[Record]\r\nLabel=House\r\nName=H\r\nRecordTypeValue='1'\r\nMaxRecords=1\r\nRecordLen=20\r\n\r\n"
        "[Item]\r\nLabel=\u00C1rea\r\nName=AREA\r\nStart=5\r\nLen=1\r\nZeroFill=Yes\r\n\r\n"
        "[ValueSet]\r\nLabel=Area\r\nName=AREA_VS1\r\nValue=1;Urban\r\nValue=2:4;Rural\r\n"
        "Value=9;None\r\nName=MISSING ,SPECIAL\r\n\r\n"
        "[Item]\r\nLabel=Child\r\nName=C\r\nStart=6\r\nLen=2\r\nOccurrences=3\r\nDataType=Alpha\r\n\r\n"
        "[ValueSet]\r\nName=C_VS1\r\nValue='A';a\r\nValue=1 3:5;b\r\n\r\n[Relation]\r\nName=R\r\n");
}

// An item with this number of value labels.
QString repeatedItem(const QString &name, int occurrences, int values)
{
    QString text = QString("[Item]\nName=%1\nLen=4\nOccurrences=%2\n[ValueSet]\nName=V\n").arg(name).arg(occurrences);
    for (int value = 0; value < values; ++value)
        text += QString("Value=%1;label\n").arg(value);
    return text;
}

} // namespace

class CSProBadInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoDictionaryGivesAnEmptyOne_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("one byte") << QByteArray("[");
        QTest::newRow("line feeds") << QByteArray("\n\n\n");
        QTest::newRow("carriage returns") << QByteArray("\r\r\r");
        QTest::newRow("text without a section") << QByteArray("Name=A\nLen=5\nValue=1;one\n");
        QTest::newRow("NUL characters") << QByteArray(1000, '\0');
        QTest::newRow("NUL characters around a header") << QByteArray("\0[Item]\0\n", 9);
        QTest::newRow("only a mark") << QByteArray("\xEF\xBB\xBF");
        QTest::newRow("only a mark of UTF-16") << QByteArray("\xFF\xFE");
        QTest::newRow("half a character of UTF-16") << QByteArray("\xFF\xFE[");
        QTest::newRow("UTF-16 without a mark") << utf16(smallDictionary(), false);
        QTest::newRow("UTF-16, big end first, without a mark") << utf16(smallDictionary(), true);
        QTest::newRow("a line of 20 MB") << QByteArray(20 * million, 'x');
        QTest::newRow("a header of 2 MB") << QByteArray("[") + QByteArray(2 * million, 'x');
        QTest::newRow("blanks of 2 MB") << QByteArray(2 * million, ' ');
    }

    void whatIsNoDictionaryGivesAnEmptyOne()
    {
        QFETCH(QByteArray, bytes);
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.readFile(write(bytes)); });
        QVERIFY(!error);
        QCOMPARE(log.taken(), QStringList());
        QVERIFY(isEmpty(dictionary));
    }

    void fileThatCannotBeOpenedGivesAnEmptyDictionary_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("missing file") << directory.filePath("missing.dcf");
        QTest::newRow("missing directory") << directory.filePath("missing/missing.dcf");
        QTest::newRow("directory") << directory.path();
        QTest::newRow("empty path") << QString("");
        QTest::newRow("null path") << QString();
        QTest::newRow("path with a NUL character") << directory.path() + QChar(u'\0') + "x";
        QTest::newRow("long path") << directory.filePath(QString(100000, 'x'));
    }

    void fileThatCannotBeOpenedGivesAnEmptyDictionary()
    {
        QFETCH(QString, fileName);
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.readFile(fileName); });
        QVERIFY(!error);
        QCOMPARE(log.taken(), QStringList());
        QVERIFY(isEmpty(dictionary));
    }

    void fileThatCannotBeOpenedLeavesWhatWasReadBefore()
    {
        OwnedDictionary dictionary({ "[Dictionary]", "Name=D", "[Item]", "Name=A" });
        dictionary.readFile(directory.filePath("missing.dcf"));
        QCOMPARE(dictionary.name, QString("D"));
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
    }

    void fileTooLargeToHoldEndsInCode242()
    {
        QFile file(directory.filePath("large.dcf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        // takes no space on the disk
        QVERIFY(file.resize((qint64(1) << 30) + 1));
        file.close();
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.readFile(file.fileName()); });
        QVERIFY(error);
        QCOMPARE(error->getClassName(), QString("CSPro"));
        QCOMPARE(error->getCode(), 242);
        QCOMPARE(error->getText(), QString(QChar(u'\0')));
        QVERIFY(isEmpty(dictionary));
        QVERIFY(file.remove());
    }

    void endOfReadingIsReportedWithTheLineWhereItEnded()
    {
        ReadReport report;
        OwnedDictionary dictionary;
        dictionary.setReport(&report);
        const DebugCapture log;
        QVERIFY(thrownBy([&] {
            dictionary.readFile(write("[Item]\nName=A\n[Item]\nOccurrences=2000000000\nName=B\n[Item]\nName=C\n"));
        }));
        QCOMPARE(report.count(NoteKind::layoutGivenUp), 1);
        QCOMPARE(report.notes().back().kind, NoteKind::layoutGivenUp);
        QCOMPARE(report.notes().back().line, 5);
        QCOMPARE(report.notes().back().text, QString("Name=B"));
        QVERIFY(dictionary.readProblem.startsWith("has more than "));
    }

    // The limit counts each value at each occurrence that has it: 2,000 values of 2,000 occurrences are exactly the
    // limit.
    void valuesOfOccurrencesAreBounded_data()
    {
        QTest::addColumn<int>("occurrences");
        QTest::addColumn<QString>("itemInFront");
        QTest::addColumn<bool>("isRead");
        const QString other = "[Item]\nName=FIRST\n";
        const QString full = other + repeatedItem("FULL", 2000, 2000);
        QTest::newRow("at the limit") << 2000 << other << true;
        QTest::newRow("beyond it") << 2001 << other << false;
        QTest::newRow("beyond it together with another item") << 2 << full << false;
        QTest::newRow("one occurrence counts nothing") << 1 << full << true;
        QTest::newRow("the last occurrence only has the set") << 2001 << QString() << true;
    }
    void valuesOfOccurrencesAreBounded()
    {
        QFETCH(int, occurrences);
        QFETCH(QString, itemInFront);
        QFETCH(bool, isRead);
        QCOMPARE(TCSPro::maxRepeatedValues, qint64(2000) * 2000);
        ReadReport report;
        OwnedDictionary dictionary;
        dictionary.setReport(&report);
        const DebugCapture log;
        const auto error = thrownBy(
            [&] { dictionary.readFile(write((itemInFront + repeatedItem("A", occurrences, 2000)).toUtf8())); });
        QCOMPARE(!error, isRead);
        QCOMPARE(report.count(NoteKind::layoutGivenUp), isRead ? 0 : 1);
        QCOMPARE(dictionary.readProblem,
                 isRead ? QString() : QString("has more than 4000000 value labels in the occurrences of items"));
        if (error)
            QCOMPARE(error->getCode(), 242);
    }

    void endOfReadingAFileTooLargeIsReported()
    {
        QFile file(directory.filePath("large.dcf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize((qint64(1) << 30) + 1));
        file.close();
        ReadReport report;
        OwnedDictionary dictionary;
        dictionary.setReport(&report);
        const DebugCapture log;
        QVERIFY(thrownBy([&] { dictionary.readFile(file.fileName()); }));
        QCOMPARE(report.notes().size(), size_t(1));
        QCOMPARE(report.notes().front().kind, NoteKind::layoutGivenUp);
        const QString cause = QStringLiteral("is larger than 1 GiB, the limit for a text dictionary");
        QCOMPARE(report.notes().front().text, cause);
        QCOMPARE(dictionary.readProblem, cause);
        QVERIFY(file.remove());
    }

    void garbageNeitherCrashesNorHangs_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        for (unsigned seed = 1; seed <= 8; ++seed)
            QTest::addRow("bytes %u", seed) << randomBytes(200000, seed);
        for (unsigned seed = 1; seed <= 40; ++seed)
            QTest::addRow("lines %u", seed) << randomLines(400, seed);
    }

    void garbageNeitherCrashesNorHangs()
    {
        QFETCH(QByteArray, bytes);
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.readFile(write(bytes)); });
        QVERIFY(!error || (error->getCode() == 242 && error->getClassName() == "CSPro"));
        checkIsSound(dictionary);
    }

    void utf16WithAMarkIsRead_data()
    {
        QTest::addColumn<bool>("isBigEndian");
        QTest::newRow("little end first") << false;
        QTest::newRow("big end first") << true;
    }

    void utf16WithAMarkIsRead()
    {
        QFETCH(bool, isBigEndian);
        OwnedDictionary dictionary;
        dictionary.readFile(write(utf16(QChar(0xFEFF) + smallDictionary(), isBigEndian)));
        checkIsTheSmallDictionary(dictionary);
    }

    void utf8IsReadWithAMarkAndWithout_data()
    {
        QTest::addColumn<QByteArray>("mark");
        QTest::newRow("with a mark") << QByteArray("\xEF\xBB\xBF");
        QTest::newRow("without") << QByteArray();
    }

    void utf8IsReadWithAMarkAndWithout()
    {
        QFETCH(QByteArray, mark);
        OwnedDictionary dictionary;
        dictionary.readFile(write(mark + smallDictionary().toUtf8()));
        checkIsTheSmallDictionary(dictionary);
    }

    void invalidUtf8IsReadInTheEncodingOfOldFiles()
    {
        OwnedDictionary dictionary;
        dictionary.readFile(write(smallDictionary().toLatin1()));
        checkIsTheSmallDictionary(dictionary);
    }

    void brokenUtf8LeavesTheLayoutReadable()
    {
        OwnedDictionary dictionary;
        dictionary.readFile(write("[Item]\nName=A\xC3\nLen=5\n[Item]\nName=\xFF\xFE\xFD\xED\xA0\x80\nStart=7\n"));
        QCOMPARE(dictionary.getItemsCount(), 2);
        QVERIFY(dictionary.getItem(0)->name.startsWith('A'));
        QCOMPARE(dictionary.getItem(0)->length, 5);
        QCOMPARE(dictionary.getItem(1)->start, 7);
    }

    void lineEndsOfEverySystemAreRead_data()
    {
        QTest::addColumn<QByteArray>("end");
        QTest::newRow("LF") << QByteArray("\n");
        QTest::newRow("CR LF") << QByteArray("\r\n");
        QTest::newRow("CR CR LF") << QByteArray("\r\r\n");
    }

    void lineEndsOfEverySystemAreRead()
    {
        QFETCH(QByteArray, end);
        OwnedDictionary dictionary;
        dictionary.readFile(write(smallDictionary().toUtf8().replace("\r\n", end)));
        checkIsTheSmallDictionary(dictionary);
    }

    void nulCharactersAreCharactersLikeOthers()
    {
        OwnedDictionary dictionary;
        dictionary.readFile(write(QByteArray("[Item]\nName=A\0B\nLen=5\0\nStart=3\n[It\0em]\nName=X\n", 45)));
        QCOMPARE(dictionary.getItemsCount(), 1);
        QCOMPARE(dictionary.getItem(0)->name, QString(QStringLiteral("A") + QChar(u'\0') + "B"));
        QCOMPARE(dictionary.getItem(0)->length, 0);
        QCOMPARE(dictionary.getItem(0)->start, 3);
    }

    void valueSetBeforeAnyItemIsIgnored_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::newRow("first section") << QStringList{};
        QTest::newRow("after a record") << QStringList{ "[Record]", "Name=R" };
        QTest::newRow("after an item that is dropped") << QStringList{ "[Item]", "Occurrences=0" };
    }

    void valueSetBeforeAnyItemIsIgnored()
    {
        QFETCH(QStringList, before);
        const DebugCapture log;
        const OwnedDictionary dictionary(before
                                         + QStringList{ "[ValueSet]", "Name=VS", "Value=1: 2:3;x", "Value=2.5",
                                                        "Name=MISSING ,S", "[Item]", "Name=A" });
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QVERIFY(!dictionary.setOf(0));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString());
        QCOMPARE(log.taken(), QStringList());
    }

    void numbersBeyondAnIntTakeTheirDefaults()
    {
        OwnedDictionary dictionary({ "[Dictionary]", "RecordTypeStart=2147483648", "RecordTypeLen=99999999999",
                                     "[Record]", "MaxRecords=3000000000", "RecordLen=-3000000000", "[Item]", "Name=A",
                                     "Start=2147483648", "Len=2147483648", "Occurrences=2147483648",
                                     "Decimal=99999999999999999999" });
        QCOMPARE(dictionary.recordTypeStart, 1);
        QCOMPARE(dictionary.recordTypeLen, 1);
        QCOMPARE(dictionary.getRecord(0)->maxRecords, 100);
        QCOMPARE(dictionary.getRecord(0)->recordLen, 0);
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QCOMPARE(dictionary.getItem(0)->start, 1);
        QCOMPARE(dictionary.getItem(0)->length, 0);
        QCOMPARE(dictionary.getItem(0)->decimals, 0);
    }

    void tooManyOccurrencesEndInCode242AtOnce()
    {
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] {
            dictionary.readFile(write("[Item]\nName=A\n[Item]\nOccurrences=2000000000\nName=B\n[Item]\nName=C\n"));
        });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 242);
        QCOMPARE(error->getText(), QStringLiteral("\u0004"));
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
    }

    void longNamesOfManyOccurrencesDoNotEatMemory()
    {
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] {
            dictionary.read({ "[Item]", "Name=" + QString(100000, 'x'), "Occurrences=1000000" });
        });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 242);
        QCOMPARE(dictionary.getItemsCount(), 0);
    }

    void manyGroupsOfLongNamesDoNotEatMemory()
    {
        const QStringList group = { "[Item]", "Name=" + QString(100000, 'x'), "Occurrences=100" };
        QStringList lines;
        for (int i = 0; i < 1000; ++i)
            lines += group;
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.read(lines); });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 242);
        QVERIFY(dictionary.getItemsCount() > 0);
        QVERIFY(dictionary.getItemsCount() <= TCSPro::maxNameCharacters / 100000);
    }

    void aLineOf20MegabytesIsReadLikeAShortOne()
    {
        const QString text(20 * million, 'x');
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "Label=" + text, "[ValueSet]", "Name=VS" });
        QCOMPARE(dictionary.getItem(0)->label, text);
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QCOMPARE(dictionary.setOf(0)->name, QString("VS"));
    }

    void aLongValueLineIsReadLikeAShortOne()
    {
        const QString text(2 * million, 'x');
        const OwnedDictionary dictionary(
            { "[Item]", "[ValueSet]", "Value=1;" + text, "[Item]", "DataType=Alpha", "[ValueSet]", "Value='" + text });
        QCOMPARE(dictionary.labelsOf(0), QStringList(text));
        QCOMPARE(dictionary.codesOf(1), QStringList(text));
    }

    void longKeysAndHeadersAreSearchedOnce()
    {
        const QString equalsSigns(2 * million, '=');
        const QString brackets(2 * million, '[');
        const OwnedDictionary dictionary({ "[Item]", "Name" + equalsSigns, "Len" + equalsSigns, brackets, "[Item]",
                                           "Name=" + brackets, "[Item" + QString(2 * million, ']') });
        QCOMPARE(dictionary.getItemsCount(), 3);
        QCOMPARE(dictionary.getItem(0)->name, QString());
        QCOMPARE(dictionary.getItem(1)->name.size(), brackets.size());
    }

    void aMillionColonsInAValueLineAreReadInOnePass_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("count");
        const QString colons(million, ':');
        const QString pairs = QStringLiteral("1:").repeated(million);
        QTest::newRow("range with a label") << QString("Value=" + pairs + ";x") << 2;
        QTest::newRow("range without a label") << QString("Value=" + pairs) << 2;
        QTest::newRow("colons only") << QString("Value=" + colons) << 1;
        QTest::newRow("colons with a label") << QString("Value=" + colons + ";x") << 1;
        QTest::newRow("colons after a blank") << QString("Value=1 2" + colons + ";x") << 3;
        QTest::newRow("colons in the label") << QString("Value=1;" + colons) << 1;
        QTest::newRow("apostrophes") << QString("Value=" + QString(million, '\'')) << 1;
        // a value, then blank 3, :5, blank 3, :5 ...
        QTest::newRow("several") << QString("Value=1" + QStringLiteral(" 3:5").repeated(100000) + ";x") << 200001;
    }

    void aMillionColonsInAValueLineAreReadInOnePass()
    {
        QFETCH(QString, line);
        QFETCH(int, count);
        const OwnedDictionary dictionary({ "[Item]", "DataType=Alpha", "[ValueSet]", line });
        QVERIFY(dictionary.setOf(0));
        QCOMPARE(dictionary.setOf(0)->Count(), count);
    }

    void aMillionColonsAreSplitInOnePass_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("ranges") << QString("Value=1: " + QStringLiteral("2:3 ").repeated(million / 4) + ";x") << false;
        QTest::newRow("colon at the beginning") << QString("Value=: " + QString(million, ':')) << false;
        QTest::newRow("blanks") << QString("Value=1:" + QString(million, ' ') + "2:;x") << true;
        QTest::newRow("one character before each colon")
            << QString("Value=1: " + QStringLiteral("a:").repeated(million) + ";x") << true;
    }

    void aMillionColonsAreSplitInOnePass()
    {
        QFETCH(QString, line);
        QFETCH(bool, isRead);
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] {
            dictionary.read({ "[Item]", "DataType=Alpha", "[ValueSet]", line, "Value=5;five" });
        });
        QCOMPARE(error == nullptr, isRead);
        if (!isRead)
            QCOMPARE(error->getCode(), 242);
        QCOMPARE(dictionary.codesOf(0), isRead ? QStringList({ "", "1", "5" }) : QStringList{ QString() });
    }

    void aMillionFurtherValueSetsAreSkippedInOnePass()
    {
        QStringList lines = { "[Item]", "[Item]", "Occurrences=1000", "[ValueSet]", "Value=1;one" };
        const QString header = QStringLiteral("[ValueSet]");
        lines.reserve(million + lines.size());
        for (int i = 0; i < million; ++i)
            lines.append(header);
        OwnedDictionary dictionary;
        dictionary.parseLines(&lines);
        QCOMPARE(dictionary.getItemsCount(), 1001);
        QCOMPARE(dictionary.codesOf(1), QStringList("1"));
        QCOMPARE(dictionary.setOf(1000), dictionary.setOf(1));
        QCOMPARE(dictionary.getItem(1000)->getValueSetsCount(), 1);
    }

    void manyDroppedValueSetsOfOneItemAreReadInOnePass()
    {
        QStringList lines = { "[Item]", "[Item]", "Occurrences=1000" };
        const QStringList dropped = { "[ValueSet]", "Value=x;letter" };
        for (int i = 0; i < 100000; ++i)
            lines += dropped;
        OwnedDictionary dictionary;
        dictionary.parseLines(&lines);
        QCOMPARE(dictionary.getItemsCount(), 1001);
        QVERIFY(!dictionary.setOf(1) && !dictionary.setOf(1000));
    }

    void manyEmptySectionsAreReadInOnePass_data()
    {
        QTest::addColumn<QString>("header");
        QTest::addColumn<int>("items");
        QTest::addColumn<int>("records");
        QTest::newRow("items") << "[Item]" << 200000 << 0;
        QTest::newRow("records") << "[Record]" << 0 << 200000;
        QTest::newRow("value sets") << "[ValueSet]" << 0 << 0;
        QTest::newRow("others") << "[Level]" << 0 << 0;
        QTest::newRow("lone brackets") << "[" << 0 << 0;
        QTest::newRow("headers after a blank") << " [Level]" << 0 << 0;
    }

    void manyEmptySectionsAreReadInOnePass()
    {
        QFETCH(QString, header);
        QFETCH(int, items);
        QFETCH(int, records);
        QStringList lines;
        lines.reserve(200000);
        for (int i = 0; i < 200000; ++i)
            lines.append(header);
        OwnedDictionary dictionary;
        dictionary.parseLines(&lines);
        QCOMPARE(dictionary.getItemsCount(), items);
        QCOMPARE(dictionary.getRecordsCount(), records);
    }

    void manyUnusedValueSetsAfterBlanksAreReportedInOnePass()
    {
        constexpr int count = 100000;
        QByteArray bytes = "[Item]\nName=A\nStart=1\nLen=2\n[ValueSet]\nName=V\nValue=1;One\n[ValueSet]\n";
        for (int i = 0; i < count; ++i)
            bytes += " [ValueSet]\nLabel=no other line\n";
        ReadReport report;
        OwnedDictionary dictionary;
        dictionary.setReport(&report);
        dictionary.readFile(write(bytes));
        QCOMPARE(dictionary.getItemsCount(), 1);
        QCOMPARE(report.count(NoteKind::furtherValueSet), count + 1);
    }

    void manyLinesInOneSectionAreReadInOnePass()
    {
        QStringList lines = { "[Item]" };
        const QString filler = QStringLiteral("Note=nothing");
        for (int i = 0; i < 100000; ++i)
            lines.append(filler);
        lines.append({ "Name=A", "[ValueSet]" });
        for (int i = 50000; i > 0; --i)
            lines.append("Value=" + QString::number(i % 1000) + ";x");
        OwnedDictionary dictionary;
        dictionary.parseLines(&lines);
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QCOMPARE(dictionary.setOf(0)->Count(), 50000);
        QCOMPARE(dictionary.setOf(0)->getItem(0)->code, QString("0"));
        QCOMPARE(dictionary.setOf(0)->getItem(49999)->code, QString("999"));
    }

    void manyGroupsWithValueSetsAreReadInOnePass()
    {
        QStringList lines = { "[Item]" };
        const QStringList group = { "[Item]", "Occurrences=2", "[ValueSet]", "Value=1;one" };
        for (int i = 0; i < 15000; ++i)
            lines += group;
        OwnedDictionary dictionary;
        dictionary.parseLines(&lines);
        QCOMPARE(dictionary.getItemsCount(), 30001);
        QVERIFY(dictionary.setOf(30000));
        QCOMPARE(dictionary.setOf(29999), dictionary.setOf(30000));
        QVERIFY(dictionary.setOf(29998) != dictionary.setOf(30000));
    }

    void dictionaryCutAnywhereIsReadAsFarAsItGoes_data()
    {
        QTest::addColumn<QByteArray>("whole");
        QTest::newRow("UTF-8") << smallDictionary().toUtf8();
        QTest::newRow("UTF-16") << utf16(QChar(0xFEFF) + smallDictionary(), false);
    }

    void dictionaryCutAnywhereIsReadAsFarAsItGoes()
    {
        QFETCH(QByteArray, whole);
        QFile file(directory.filePath("growing.dcf"));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered));
        const DebugCapture log;
        int itemsBefore = 0;
        int recordsBefore = 0;
        for (int size = 0; size <= whole.size(); ++size) {
            if (size > 0)
                QCOMPARE(file.write(whole.constData() + size - 1, 1), qint64(1));
            OwnedDictionary dictionary;
            const auto error = thrownBy([&] { dictionary.readFile(file.fileName()); });
            QVERIFY2(!error, qPrintable(QString::number(size)));
            checkIsSound(dictionary);
            // a repeated item counts as a single one until its number of occurrences is complete
            QVERIFY(dictionary.getItemsCount() >= itemsBefore);
            QVERIFY(dictionary.getRecordsCount() >= recordsBefore);
            itemsBefore = dictionary.getItemsCount();
            recordsBefore = dictionary.getRecordsCount();
            if (size == whole.size())
                checkIsTheSmallDictionary(dictionary);
        }
        QCOMPARE(itemsBefore, 5);
        QCOMPARE(log.taken(), QStringList());
    }

    void longFileIsReadLikeItsLines_data()
    {
        QTest::addColumn<QByteArray>("lineEnd");
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("UTF-8") << QByteArray("\n") << QByteArray();
        QTest::newRow("UTF-8 with a mark") << QByteArray("\r\n") << QByteArray("\xEF\xBB\xBF");
    }

    // Long enough for several blocks; indented headers and skipped sections are at the places where a block may end.
    void longFileIsReadLikeItsLines()
    {
        QFETCH(QByteArray, lineEnd);
        QFETCH(QByteArray, head);
        QStringList lines = { "text before", "[Dictionary]", "Name=D" };
        for (int i = 0; i < 8000; ++i) {
            const QString number = QString::number(i);
            if (i % 50 == 0)
                lines.append({ "[Record]", "Name=R" + number, "RecordTypeValue='" + number + "'" });
            if (i % 70 == 0)
                lines.append({ "[Level]", "Name=L", "  [Item]", "Name=IND" + number });
            lines.append({ "[Item]", QStringLiteral("Label=\u00C1rea ") + number, "Name=I" + number, "Start=" + number,
                           " [Item]", "Len=2", "" });
            if (i % 3 == 0)
                lines.append({ "[ValueSet]", "Value=" + number + ";x", "Value=2", "[ValueSet]", " [Item]", "Name=S" });
            if (i % 11 == 0)
                lines.append({ "[", "Name=ignored", "[Item]", "Name=O", "Occurrences=2", "[ValueSet]", "Value=7;y" });
        }
        QByteArray bytes = head;
        for (const QString &line : qAsConst(lines))
            bytes += line.toUtf8() + lineEnd;
        QVERIFY(bytes.size() > 2 * TextFileReader::usualBlockSize);
        OwnedDictionary fromFile;
        fromFile.readFile(write(bytes));
        OwnedDictionary fromLines;
        fromLines.parseLines(&lines);
        QVERIFY(fromLines.getItemsCount() > 8000);
        QCOMPARE(fromFile.name, fromLines.name);
        QCOMPARE(fromFile.getRecordsCount(), 160);
        QCOMPARE(fromFile.getRecordsCount(), fromLines.getRecordsCount());
        QCOMPARE(fromFile.itemNames(), fromLines.itemNames());
        for (int i = 0; i < fromLines.getItemsCount(); ++i) {
            const TCSProItem *a = fromFile.getItem(i);
            const TCSProItem *b = fromLines.getItem(i);
            QCOMPARE(a->label, b->label);
            QCOMPARE(a->start, b->start);
            QCOMPARE(a->length, b->length);
            QCOMPARE(a->firstOccurrence, b->firstOccurrence);
            QCOMPARE(a->record->name, b->record->name);
            QCOMPARE(fromFile.codesOf(i), fromLines.codesOf(i));
        }
    }

    void lineIndexOfCode242CountsFromTheBeginningOfTheFile()
    {
        QByteArray bytes;
        for (int i = 0; i < 15000; ++i)
            bytes += "[Level]\nNote=a line that makes the file a long one\n";
        bytes += "[Item]\nName=A\n[Item]\nName=B\nOccurrences=2000000000\n[Item]\nName=C\n";
        QVERIFY(bytes.size() > 2 * TextFileReader::usualBlockSize);
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] { dictionary.readFile(write(bytes)); });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 242);
        QCOMPARE(error->getText(), QString(QChar(ushort(30004))));
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
    }

    void oneInvalidByteFarFromTheBeginningDecidesOnTheEncodingOfAllLines()
    {
        QByteArray bytes = "[Item]\nName=A\nLabel=\xC3\xB1\n";
        for (int i = 0; i < 20000; ++i)
            bytes += "[Level]\nNote=a line that makes the file a long one\n";
        OwnedDictionary valid;
        valid.readFile(write(bytes + "[Item]\nLabel=\xC3\xB1\n"));
        QCOMPARE(valid.getItem(0)->label, QStringLiteral("\u00F1"));
        QCOMPARE(valid.getItem(1)->label, QStringLiteral("\u00F1"));
        OwnedDictionary invalid;
        invalid.readFile(write(bytes + "[Item]\nLabel=\xF1\n"));
        QCOMPARE(invalid.getItem(0)->label, QStringLiteral("\u00C3\u00B1"));
        QCOMPARE(invalid.getItem(1)->label, QStringLiteral("\u00F1"));
    }

    void sectionCutInTheMiddleKeepsWhatStoodInIt()
    {
        OwnedDictionary dictionary;
        dictionary.readFile(write("[Record]\nName=R\nRecordTypeValue='1\n[Item]\nName=AREA\nStart=5\nLe"));
        QCOMPARE(dictionary.getRecord(0)->recordType, QString());
        QCOMPARE(dictionary.itemNames(), QStringList("AREA"));
        QCOMPARE(dictionary.getItem(0)->start, 5);
        QCOMPARE(dictionary.getItem(0)->length, 0);
        QCOMPARE(dictionary.getItem(0)->record, dictionary.getRecord(0));
    }

private:
    QString write(const QByteArray &bytes) const
    {
        QFile file(directory.filePath("input.dcf"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
            qFatal("cannot write the test file");
        return file.fileName();
    }

    static bool isEmpty(OwnedDictionary &dictionary)
    {
        return dictionary.getItemsCount() == 0 && dictionary.getRecordsCount() == 0 && dictionary.recordTypeStart == 1
            && dictionary.recordTypeLen == 1 && dictionary.version.isEmpty() && dictionary.label.isEmpty()
            && dictionary.name.isEmpty() && dictionary.positions.isEmpty() && dictionary.zeroFill.isEmpty()
            && dictionary.decimalChar.isEmpty() && dictionary.recordMap.empty() && !dictionary.currentItem
            && dictionary.currentRecord == dictionary.commonRecord;
    }

    // Conditions that hold for every dictionary, whatever the input was.
    static void checkIsSound(OwnedDictionary &dictionary)
    {
        QVERIFY(dictionary.currentRecord == dictionary.commonRecord
                || dictionary.records->contains(dictionary.currentRecord));
        QCOMPARE(dictionary.currentItem, dictionary.items->isEmpty() ? nullptr : dictionary.items->last());
        for (TCSProItem *item : qAsConst(*dictionary.items)) {
            QVERIFY(item->record);
            QCOMPARE(item->occurrences, 1);
            QVERIFY(item->getValueSetsCount() <= 1);
            const TCSProValueSet *set = item->getValueSet(0);
            QVERIFY(!set || set->checkCodes(1));
        }
    }

    static void checkIsTheSmallDictionary(OwnedDictionary &dictionary)
    {
        QCOMPARE(dictionary.version, QString("CSPro 7.0"));
        QCOMPARE(dictionary.label, QStringLiteral("Se\u00F1al"));
        QCOMPARE(dictionary.decimalChar, QString("Yes"));
        QCOMPARE(dictionary.getRecordsCount(), 1);
        QCOMPARE(dictionary.getRecord(0)->recordType, QString("1"));
        QCOMPARE(dictionary.itemNames(),
                 QStringList({ "ID", "AREA", QStringLiteral("C_\u0001"), QStringLiteral("C_\u0002"),
                               QStringLiteral("C_\u0003") }));
        QCOMPARE(dictionary.getItem(0)->record, dictionary.commonRecord);
        QCOMPARE(dictionary.getItem(1)->record, dictionary.getRecord(0));
        QCOMPARE(dictionary.getItem(1)->label, QStringLiteral("\u00C1rea"));
        QCOMPARE(dictionary.getItem(1)->missingValue, QString("9"));
        QCOMPARE(dictionary.codesOf(1), QStringList({ "1", "2", "4" }));
        QCOMPARE(dictionary.labelsOf(1), QStringList({ "Urban", "Rural", "Rural" }));
        QCOMPARE(dictionary.getItem(4)->start, 10);
        QCOMPARE(dictionary.codesOf(4), QStringList({ " 3", "1", ":5", "A'" }));
        QCOMPARE(dictionary.setOf(2), dictionary.setOf(4));
        QCOMPARE(dictionary.currentRecord, dictionary.commonRecord);
    }

    QTemporaryDir directory;
};

QTEST_GUILESS_MAIN(CSProBadInputTest)
#include "CSProBadInputTest.moc"
