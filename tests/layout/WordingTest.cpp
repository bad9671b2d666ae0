#include "write/Wording_p.h"

#include <QtTest>

using vanlayout::describeType;
using vanlayout::Item;
using vanlayout::Storage;

Q_DECLARE_METATYPE(vanlayout::Storage)

/// Tests the texts for people about the parts of a layout.
class WordingTest : public QObject
{
    Q_OBJECT

private slots:
    void typeIsThatOfTheDataOrTheFormat_data();
    void typeIsThatOfTheDataOrTheFormat();
};

void WordingTest::typeIsThatOfTheDataOrTheFormat_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("decimalMark");
    QTest::addColumn<Storage>("storage");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("words");
    QTest::newRow("number") << "numeric" << 3 << 0 << false << Storage::None << ""
                            << "9(3)";
    QTest::newRow("written mark") << "numeric" << 5 << 2 << true << Storage::None << ""
                                  << "9(5).2";
    QTest::newRow("implied mark") << "numeric" << 5 << 2 << false << Storage::None << ""
                                  << "9(5)v2";
    QTest::newRow("text") << "alpha" << 20 << 0 << false << Storage::None << ""
                          << "A(20)";
    QTest::newRow("other type") << "image" << 1 << 0 << false << Storage::None << ""
                                << "image";
    QTest::newRow("format") << "numeric" << 8 << 2 << false << Storage::Double << "F8.2"
                            << "F8.2";
    QTest::newRow("format of a text") << "alpha" << 5 << 0 << false << Storage::String << "A5"
                                      << "A5";
    QTest::newRow("text without a width") << "alpha" << 6 << 0 << false << Storage::String << "$"
                                          << "A(6)";
    QTest::newRow("text without a format") << "alpha" << 6 << 0 << false << Storage::String << ""
                                           << "A(6)";
    QTest::newRow("number without a format") << "numeric" << 0 << 0 << false << Storage::Double << ""
                                             << "double";
}

void WordingTest::typeIsThatOfTheDataOrTheFormat()
{
    Item item;
    QFETCH(QString, type);
    QFETCH(int, length);
    QFETCH(int, decimals);
    QFETCH(bool, decimalMark);
    QFETCH(Storage, storage);
    QFETCH(QString, format);
    item.type = type;
    item.length = length;
    item.decimals = decimals;
    item.decimalMark = decimalMark;
    item.storage = storage;
    item.format = format;
    QTEST(describeType(item), "words");
}

QTEST_APPLESS_MAIN(WordingTest)
#include "WordingTest.moc"
