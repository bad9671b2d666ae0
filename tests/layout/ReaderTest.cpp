#include "read/Reader.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>
#include <utility>

using namespace vanlayout;

namespace
{

// A device that has some bytes and fails after them.
class FailingDevice : public QIODevice
{
public:
    FailingDevice(bool sequential, QByteArray readableBytes)
        : isPipe(sequential)
        , bytes(std::move(readableBytes))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return isPipe; }
    qint64 size() const override { return 1000; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 begin = isPipe ? taken : pos();
        const qint64 count = qMin(size, bytes.size() - begin);
        if (count > 0) {
            memcpy(data, bytes.constData() + begin, size_t(count));
            taken += count;
            return count;
        }
        setErrorString("the disk is broken");
        return -1;
    }
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    bool isPipe;
    QByteArray bytes;
    qint64 taken = 0; // bytes that were read, for a pipe
};

Layout layoutOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, "name");
}

} // namespace

class ReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void aFileWithoutALayoutSaysWhatItIs_data();
    void aFileWithoutALayoutSaysWhatItIs();
    void lineOfATextWithoutSectionsIsItsFirst_data();
    void lineOfATextWithoutSectionsIsItsFirst();
    void whiteSpaceInFrontIsPassedOver_data();
    void whiteSpaceInFrontIsPassedOver();
    void aFileThatDoesNotExistIsAnError();
    void aDirectoryIsAnError();
    void anErrorOfTheDeviceIsAnError_data();
    void anErrorOfTheDeviceIsAnError();
};

void ReaderTest::aFileWithoutALayoutSaysWhatItIs_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("part");
    QTest::newRow("empty") << QByteArray() << "empty-file"
                           << "empty";
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n") << "unknown-format"
                         << "PNG image";
    QTest::newRow("ZIP") << QByteArray("PK\x03\x04 and more") << "unknown-format"
                         << "ZIP archive";
    QTest::newRow("PDF") << QByteArray("%PDF-1.4") << "unknown-format"
                         << "PDF document";
    struct Signature {
        const char *begin;
        const char *name;
    };
    const Signature signatures[] = {
        { "\xff\xd8\xff\xe0", "a JPEG image, not a layout" },
        { "GIF89a", "a GIF image, not a layout" },
        { "PK\x05\x06", "an empty ZIP archive, not a layout" },
        { "BZh9", "a bzip2 archive, not a layout; unpack it and read the file in it" },
        { "\xfd"
          "7zXZ",
          "an xz archive, not a layout; unpack it and read the file in it" },
        { "7z\xbc\xaf\x27\x1c", "a 7z archive, not a layout; unpack it and read the file in it" },
        { "Rar!\x1a", "a RAR archive, not a layout; unpack it and read the file in it" },
        { "\xd0\xcf\x11\xe0", "a document of older Office programs, not a layout" },
        { "PAR1\x15", "a Parquet file with data, not a layout" },
        { "\x7f"
          "ELF",
          "a program, not a layout" },
        { "MZ\x90", "a Windows program, not a layout" },
        { "<html>", "an HTML page, not a layout" },
    };
    for (const Signature &signature : signatures)
        QTest::newRow(signature.name) << QByteArray(signature.begin) << "unknown-format"
                                      << "the file is " + QString(signature.name);
    QTest::newRow("CSV") << QByteArray("a,b,c\n1,2,3\n") << "unknown-format"
                         << "CSV file";
    QTest::newRow("with semicolons") << QByteArray("a;b\r\n1;2\r\n") << "unknown-format"
                                     << "CSV file";
    QTest::newRow("with tabs") << QByteArray("a\tb\n1\t2\n") << "unknown-format"
                               << "CSV file";
    QTest::newRow("with lines that end in CR") << QByteArray("a,b\r1,2\r") << "unknown-format"
                                               << "CSV file";
    QTest::newRow("with a separator in quotation marks")
        << QByteArray("name,age\n\"Doe, Ann\",12\n") << "unknown-format"
        << "CSV file";
    QTest::newRow("with a line break in quotation marks") << QByteArray("\"a\nb\",c\n1,2\n") << "unknown-format"
                                                          << "CSV file";
    QTest::newRow("without a line break at the end") << QByteArray("a,b\n1,2") << "unknown-format"
                                                     << "CSV file";
    const QByteArray columns = QByteArray("column,").repeated(500) + "last";
    QTest::newRow("with long lines") << columns + '\n' + columns + '\n'
                                     << "unknown-format"
                                     << "CSV file";
    QTest::newRow("with long texts") << QByteArray(2000, 'x') + ",b\n1,2\n"
                                     << "unknown-format"
                                     << "CSV file";
    QTest::newRow("with a line longer than is looked at") << columns.repeated(20) << "unknown-format"
                                                          << "CSV file";
    QTest::newRow("with tabs, in UTF-16") << QByteArray("\xFF\xFE"
                                                        "a\0\t\0b\0\n\0"
                                                        "1\0\t\0"
                                                        "2\0\n",
                                                        18)
            + '\0' << "unknown-format"
                                          << "CSV file";
    QTest::newRow("text in UTF-16") << QByteArray("\xFE\xFF\0H\0i\0\n", 8) << "unknown-format"
                                    << "the text does not begin with a section such as [Dictionary]";
    QTest::newRow("text") << QByteArray("Dear reader,\nhello.\n") << "unknown-format"
                          << "the text does not begin with a section such as [Dictionary]";
    QTest::newRow("one line") << QByteArray("a,b,c\n") << "unknown-format"
                              << "[Dictionary]";
    QTest::newRow("section after a text") << QByteArray("Hello\n[Dictionary]\n") << "unknown-format"
                                          << "the text does not begin with a section such as [Dictionary]";
    QTest::newRow("white space") << QByteArray("\xEF\xBB\xBF \r\n\t\n") << "unknown-format"
                                 << "only white space was found at the beginning of the file";
    QTest::newRow("RTF") << QByteArray("{\\rtf1\\ansi text}") << "unknown-format"
                         << "RTF document";
    QTest::newRow("HTML") << QByteArray("\n<!DOCTYPE html>\n<html>") << "unknown-format"
                          << "HTML page";
    QTest::newRow("HTML in small letters") << QByteArray("<!doctype html>") << "unknown-format"
                                           << "HTML page";
    QTest::newRow("XML with a mark") << QByteArray("\xEF\xBB\xBF<?xml version=\"1.0\"?>") << "unknown-format"
                                     << "begins like XML, but is not well-formed XML";
    QTest::newRow("PROC CPORT") << QByteArray("**COMPRESSED** ").repeated(5) + QByteArray(80, '\1') << "unknown-format"
                                << "PROC CPORT, not a layout; make a data set of it in SAS";
    QTest::newRow("archive") << QByteArray("\x1f\x8b\x08\0", 4) << "unknown-format"
                             << "a gzip archive, not a layout; unpack it";
    QTest::newRow("XML") << QByteArray("<?xml version=\"1.0\"?>") << "unknown-format"
                         << "begins like XML, but is not well-formed XML";
    QTest::newRow("encrypted SPSS file") << QByteArray("\x1c\0\0\0\0\0\0\0ENCRYPTEDSAV\x15\0\0\0", 24)
                                         << "unknown-format"
                                         << "encrypted SPSS file";
    QTest::newRow("random bytes, as of an encrypted .csdb") << QByteArray("\x93\x1f\x02\xee") << "unknown-format"
                                                            << "encrypted CSPro data file (.csdb)";
    QTest::newRow("NUL") << QByteArray("text\0text", 9) << "unknown-format"
                         << "no known format";
    QTest::newRow("bytes of no format") << QByteArray("\x01\x02\x03") << "unknown-format"
                                        << "no known format";
}

void ReaderTest::aFileWithoutALayoutSaysWhatItIs()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.file, QString("name"));
    QCOMPARE(layout.problems.size(), 1);
    QTEST(layout.error()->id, "id");
    QFETCH(QString, part);
    QVERIFY2(layout.error()->message.contains(part), qPrintable(layout.error()->message));
    QVERIFY(!layout.error()->message.contains('\n'));
}

void ReaderTest::lineOfATextWithoutSectionsIsItsFirst_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::newRow("first") << QByteArray("Hello\n") << 1;
    QTest::newRow("after empty lines") << QByteArray("\n  \nHello\n") << 3;
    QTest::newRow("after CR LF") << QByteArray("\r\n\r\nHello") << 3;
    QTest::newRow("after CR") << QByteArray("\r\rHello") << 3;
    QTest::newRow("image") << QByteArray("\x89PNG\r\n\x1a\n") << 0;
    QTest::newRow("CSV") << QByteArray("a,b\n1,2\n") << 0;
}

void ReaderTest::lineOfATextWithoutSectionsIsItsFirst()
{
    QFETCH(QByteArray, bytes);
    const Layout layout = layoutOf(bytes);
    QVERIFY(!layout.isRead());
    QTEST(layout.error()->line, "line");
}

void ReaderTest::whiteSpaceInFrontIsPassedOver_data()
{
    QTest::addColumn<QByteArray>("space");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("little") << QByteArray(" \r\n");
    QTest::newRow("much") << QByteArray(" \r\n").repeated(2000);
    QTest::newRow("with a mark") << "\xEF\xBB\xBF" + QByteArray("\n").repeated(200000);
}

void ReaderTest::whiteSpaceInFrontIsPassedOver()
{
    QFETCH(QByteArray, space);
    QCOMPARE(layoutOf(space + "[Dictionary]\nName=D\n").format, Format::CSProText);
    QCOMPARE(layoutOf(space + "{\"fileType\": \"dictionary\", \"name\": \"D\"}").format, Format::CSProJson);
}

void ReaderTest::aFileThatDoesNotExistIsAnError()
{
    QTemporaryDir directory;
    const Layout layout = readLayout(directory.filePath("absent.dcf"));
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("cannot-open"));
    QCOMPARE(layout.file, directory.filePath("absent.dcf"));
}

void ReaderTest::aDirectoryIsAnError()
{
    QTemporaryDir directory;
    QCOMPARE(readLayout(directory.path()).error()->message, QString("is a directory"));
}

void ReaderTest::anErrorOfTheDeviceIsAnError_data()
{
    QTest::addColumn<bool>("isSequential");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray dictionary = "[Dictionary]\nName=D\n";
    for (const bool isSequential : { false, true }) {
        const char *kind = isSequential ? "pipe" : "file";
        QTest::addRow("%s, at its first byte", kind) << isSequential << QByteArray();
        QTest::addRow("%s, SPSS", kind) << isSequential << QByteArray("$FL2@(#) SPSS DATA FILE");
        QTest::addRow("%s, Stata", kind) << isSequential << QByteArray("<stata_dta><header>");
        QTest::addRow("%s, text", kind) << isSequential << dictionary;
        QTest::addRow("%s, text after the first block", kind) << isSequential << dictionary + QByteArray(300000, '\n');
        QTest::addRow("%s, white space", kind) << isSequential << QByteArray(3000, ' ');
        QTest::addRow("%s, JSON", kind) << isSequential << QByteArray("{ \"software\": ");
    }
}

void ReaderTest::anErrorOfTheDeviceIsAnError()
{
    QFETCH(bool, isSequential);
    QFETCH(QByteArray, bytes);
    FailingDevice device(isSequential, bytes);
    const Layout layout = readLayout(device, "name");
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("cannot-read"));
    QCOMPARE(layout.error()->message, QString("cannot be read: the disk is broken"));
}

QTEST_APPLESS_MAIN(ReaderTest)
#include "ReaderTest.moc"
