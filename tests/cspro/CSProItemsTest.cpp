#include "cspro/CSPro_p.h"
#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/Thrown.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

namespace
{

constexpr int largestInt = std::numeric_limits<int>::max();
constexpr int smallestInt = std::numeric_limits<int>::min();

QStringList recordNames(const TCSPro &dictionary)
{
    QStringList names;
    for (const TCSProItem *item : qAsConst(*dictionary.items))
        names.append(item->record->name);
    return names;
}

QList<int> starts(const TCSPro &dictionary)
{
    QList<int> columns;
    for (const TCSProItem *item : qAsConst(*dictionary.items))
        columns.append(item->start);
    return columns;
}

QList<int> groups(const TCSPro &dictionary)
{
    QList<int> numbers;
    for (const TCSProItem *item : qAsConst(*dictionary.items))
        numbers.append(item->firstOccurrence);
    return numbers;
}

bool isInvalidContents(const VpErrorManager *error, int line)
{
    return error && error->getClassName() == "CSPro" && error->getCode() == 242
        && error->getText() == QString(QChar(ushort(line)));
}

} // namespace

class CSProItemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemSectionFillsAnItem()
    {
        const OwnedDictionary dictionary({ "[Item]", "Label=Age in years", "Name=AGE", "Start=7", "Len=3",
                                           "DataType=Numeric", "ItemType=Item", "Occurrences=1", "Decimal=2",
                                           "DecimalChar=Yes", "ZeroFill=Yes" });
        QCOMPARE(dictionary.getItemsCount(), 1);
        const TCSProItem *item = dictionary.getItem(0);
        QCOMPARE(item->label, QString("Age in years"));
        QCOMPARE(item->name, QString("AGE"));
        QCOMPARE(item->start, 7);
        QCOMPARE(item->length, 3);
        QCOMPARE(item->dataType, 0);
        QCOMPARE(item->subItem, 0);
        QCOMPARE(item->occurrences, 1);
        QCOMPARE(item->decimals, 2);
        QCOMPARE(item->decimalChar, true);
        QCOMPARE(item->zeroFill, true);
        QCOMPARE(item->firstOccurrence, 0);
        QCOMPARE(item->missingValue, QString());
        QCOMPARE(item->notApplicable, QString());
        QCOMPARE(item->record, dictionary.commonRecord);
        QVERIFY(!item->hasValueSets());
        QCOMPARE(dictionary.currentItem, item);
        QCOMPARE(dictionary.currentIsNumeric, true);
    }

    void itemSectionWithoutKeysGivesAnItemOfDefaults()
    {
        const OwnedDictionary dictionary({ "[Item]" });
        QCOMPARE(dictionary.getItemsCount(), 1);
        const TCSProItem *item = dictionary.getItem(0);
        QCOMPARE(item->label, QString());
        QCOMPARE(item->name, QString());
        QCOMPARE(item->start, 1);
        QCOMPARE(item->length, 0);
        QCOMPARE(item->dataType, 0);
        QCOMPARE(item->subItem, 0);
        QCOMPARE(item->occurrences, 1);
        QCOMPARE(item->decimals, 0);
        QCOMPARE(item->decimalChar, false);
        QCOMPARE(item->zeroFill, false);
        QCOMPARE(item->record, dictionary.commonRecord);
        QCOMPARE(dictionary.currentIsNumeric, true);
    }

    void onlyAlphaInAnyCaseIsAlphanumeric_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("dataType");
        QTest::newRow("Alpha") << "DataType=Alpha" << 1;
        QTest::newRow("upper case") << "DataType=ALPHA" << 1;
        QTest::newRow("lower case") << "DataType=alpha" << 1;
        QTest::newRow("blank after is trimmed with the line") << "DataType=Alpha " << 1;
        QTest::newRow("blank before stays") << "DataType= Alpha" << 0;
        QTest::newRow("Numeric") << "DataType=Numeric" << 0;
        QTest::newRow("longer word") << "DataType=Alphanumeric" << 0;
        QTest::newRow("nothing") << "DataType=" << 0;
        QTest::newRow("no such line") << "" << 0;
    }

    void onlyAlphaInAnyCaseIsAlphanumeric()
    {
        QFETCH(QString, line);
        QFETCH(int, dataType);
        const OwnedDictionary dictionary({ "[Item]", line });
        QCOMPARE(dictionary.getItem(0)->dataType, dataType);
        QCOMPARE(dictionary.currentIsNumeric, dataType == 0);
    }

    void everyItemSectionSetsWhetherTheCurrentOneIsNumeric()
    {
        OwnedDictionary dictionary({ "[Item]", "DataType=Alpha" });
        QCOMPARE(dictionary.currentIsNumeric, false);
        dictionary.read({ "[Record]", "[Level]", "[Dictionary]", "[ValueSet]" });
        QCOMPARE(dictionary.currentIsNumeric, false);
        dictionary.read({ "[Item]" });
        QCOMPARE(dictionary.currentIsNumeric, true);
        dictionary.read({ "[Item]", "DataType=Alpha", "Occurrences=0" });
        QCOMPARE(dictionary.currentIsNumeric, false);
    }

    void onlySubitemInAnyCaseIsASubitem_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("subItem");
        QTest::newRow("SubItem") << "ItemType=SubItem" << 1;
        QTest::newRow("upper case") << "ItemType=SUBITEM" << 1;
        QTest::newRow("lower case") << "ItemType=subitem" << 1;
        QTest::newRow("long s turns to S") << QStringLiteral("ItemType=\u017Fubitem") << 1;
        QTest::newRow("Item") << "ItemType=Item" << 0;
        QTest::newRow("two words") << "ItemType=Sub Item" << 0;
        QTest::newRow("blank before stays") << "ItemType= SubItem" << 0;
        QTest::newRow("nothing") << "ItemType=" << 0;
        QTest::newRow("no such line") << "" << 0;
    }

    void onlySubitemInAnyCaseIsASubitem()
    {
        QFETCH(QString, line);
        QFETCH(int, subItem);
        const OwnedDictionary dictionary({ "[Item]", line });
        QCOMPARE(dictionary.getItem(0)->subItem, subItem);
    }

    void subitemIsAnItemLikeAnyOther()
    {
        const OwnedDictionary dictionary({ "[Record]", "Name=R", "[Item]", "Name=DATE", "Start=5", "Len=8", "[Item]",
                                           "Name=YEAR", "Start=5", "Len=4", "ItemType=SubItem" });
        QCOMPARE(dictionary.itemNames(), QStringList({ "DATE", "YEAR" }));
        QCOMPARE(starts(dictionary), QList<int>({ 5, 5 }));
        QCOMPARE(dictionary.getItem(1)->length, 4);
        QCOMPARE(dictionary.getItem(1)->record, dictionary.getItem(0)->record);
        QCOMPARE(dictionary.currentItem, dictionary.getItem(1));
    }

    void onlyYesInAnyCaseSetsAFlag_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("flag");
        QTest::newRow("Yes") << "Yes" << true;
        QTest::newRow("upper case") << "YES" << true;
        QTest::newRow("lower case") << "yes" << true;
        QTest::newRow("No") << "No" << false;
        QTest::newRow("1") << "1" << false;
        QTest::newRow("true") << "true" << false;
        QTest::newRow("longer word") << "Yess" << false;
        QTest::newRow("blank before stays") << " Yes" << false;
        QTest::newRow("nothing") << "" << false;
    }

    void onlyYesInAnyCaseSetsAFlag()
    {
        QFETCH(QString, text);
        QFETCH(bool, flag);
        const OwnedDictionary dictionary({ "[Item]", "DecimalChar=" + text, "[Item]", "ZeroFill=" + text });
        QCOMPARE(dictionary.getItem(0)->decimalChar, flag);
        QCOMPARE(dictionary.getItem(0)->zeroFill, false);
        QCOMPARE(dictionary.getItem(1)->decimalChar, false);
        QCOMPARE(dictionary.getItem(1)->zeroFill, flag);
    }

    void itemBelongsToTheCurrentRecord_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QStringList>("records");

        // clang-format off
        QTest::newRow("before the first record") << QStringList{"[Item]"}                            << QStringList{"Common"};
        QTest::newRow("after a record")          << QStringList{"[Record]", "Name=R", "[Item]", "[Item]"} << QStringList{"R", "R"};
        QTest::newRow("after two records")       << QStringList{"[Record]", "Name=R", "[Item]", "[Record]", "Name=S", "[Item]"} << QStringList{"R", "S"};
        QTest::newRow("after id items")          << QStringList{"[Level]", "Name=L", "[IdItems]", "[Item]", "[Record]", "Name=R", "[Item]"} << QStringList{"Common", "R"};
        QTest::newRow("after a relation")        << QStringList{"[Record]", "Name=R", "[Item]", "[Relation]", "[Item]"} << QStringList{"R", "Common"};
        QTest::newRow("after a later level")     << QStringList{"[Record]", "Name=R", "[Item]", "[Level]", "[Item]"} << QStringList{"R", "Common"};
        QTest::newRow("after an empty word")     << QStringList{"[Record]", "Name=R", "[]", "[Item]"} << QStringList{"Common"};
        QTest::newRow("after a lone bracket")    << QStringList{"[Record]", "Name=R", "[", "[Item]"}  << QStringList{"R"};
        QTest::newRow("after a value set")       << QStringList{"[Record]", "Name=R", "[Item]", "[ValueSet]", "[Item]"} << QStringList{"R", "R"};
        QTest::newRow("occurrences")             << QStringList{"[Record]", "Name=R", "[Item]", "Occurrences=2"} << QStringList{"R", "R"};
        // clang-format on
    }

    void itemBelongsToTheCurrentRecord()
    {
        QFETCH(QStringList, lines);
        QFETCH(QStringList, records);
        const OwnedDictionary dictionary(lines);
        QCOMPARE(recordNames(dictionary), records);
    }

    void occurrenceSuffixIsACharacterNotADigit()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "Name=A", "[Item]", "Occurrences=3", "Start=10", "Len=2", "Name=X" });
        QCOMPARE(
            dictionary.itemNames(),
            QStringList({ "A", QStringLiteral("X_\u0001"), QStringLiteral("X_\u0002"), QStringLiteral("X_\u0003") }));
        QCOMPARE(starts(dictionary), QList<int>({ 1, 10, 12, 14 }));
        QCOMPARE(groups(dictionary), QList<int>({ 0, 1, 1, 1 }));
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(dictionary.getItem(i)->occurrences, 1);
            QCOMPARE(dictionary.getItem(i)->name.size(), 3);
        }
        QCOMPARE(dictionary.currentItem, dictionary.getItem(3));
    }

    void occurrencesBeyond65535BeginTheSuffixesAnew()
    {
        const OwnedDictionary dictionary({ "[Item]", "Occurrences=65600", "Name=X" });
        QCOMPARE(dictionary.getItem(64)->name, QStringLiteral("X_A"));
        QCOMPARE(dictionary.getItem(65534)->name, QString(QStringLiteral("X_") + QChar(0xFFFF)));
        QCOMPARE(dictionary.getItem(65535)->name, QString(QStringLiteral("X_") + QChar(u'\0')));
        QCOMPARE(dictionary.getItem(65536)->name, QStringLiteral("X_\u0001"));
    }

    void copiesCarryAllButZeroFill()
    {
        const OwnedDictionary dictionary({ "[Item]", "[Item]", "Label=Child", "Name=C", "Start=4", "Len=5",
                                           "DataType=Alpha", "ItemType=SubItem", "Occurrences=2", "Decimal=3",
                                           "DecimalChar=Yes", "ZeroFill=Yes" });
        QCOMPARE(dictionary.getItemsCount(), 3);
        for (int i = 1; i <= 2; ++i) {
            const TCSProItem *copy = dictionary.getItem(i);
            QCOMPARE(copy->label, QString("Child"));
            QCOMPARE(copy->length, 5);
            QCOMPARE(copy->dataType, 1);
            QCOMPARE(copy->subItem, 1);
            QCOMPARE(copy->decimals, 3);
            QCOMPARE(copy->decimalChar, true);
            QCOMPARE(copy->zeroFill, false);
            QCOMPARE(copy->occurrences, 1);
            QCOMPARE(copy->firstOccurrence, 1);
            QCOMPARE(copy->record, dictionary.commonRecord);
            QCOMPARE(copy->missingValue, QString());
            QCOMPARE(copy->notApplicable, QString());
            QVERIFY(!copy->hasValueSets());
        }
        QCOMPARE(dictionary.getItem(1)->start, 4);
        QCOMPARE(dictionary.getItem(2)->start, 9);
        QVERIFY(dictionary.getItem(1)->valueSets != dictionary.getItem(2)->valueSets);
        QCOMPARE(dictionary.currentIsNumeric, false);
    }

    void decimalCharOfACopyIsItsTemplates()
    {
        const OwnedDictionary dictionary({ "[Item]", "Occurrences=2", "DecimalChar=No" });
        QCOMPARE(dictionary.getItem(0)->decimalChar, false);
    }

    void firstOccurrenceIsTheNumberOfItemsBeforeTheGroup()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "Occurrences=2", "[Item]", "[Item]", "Occurrences=3", "[Item]", "Occurrences=2" });
        QCOMPARE(groups(dictionary), QList<int>({ 0, 0, 0, 3, 3, 3, 6, 6 }));
    }

    void occurrencesBelowOneDropTheItem_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("count");
        QTest::newRow("zero") << "Occurrences=0" << 0;
        QTest::newRow("negative") << "Occurrences=-1" << 0;
        QTest::newRow("very negative") << "Occurrences=-2147483648" << 0;
        QTest::newRow("one") << "Occurrences=1" << 1;
        QTest::newRow("two") << "Occurrences=2" << 2;
        QTest::newRow("no number") << "Occurrences=abc" << 1;
        QTest::newRow("nothing") << "Occurrences=" << 1;
        QTest::newRow("beyond an int") << "Occurrences=2147483648" << 1;
        QTest::newRow("decimal") << "Occurrences=2.0" << 1;
        QTest::newRow("no such line") << "" << 1;
    }

    void occurrencesBelowOneDropTheItem()
    {
        QFETCH(QString, line);
        QFETCH(int, count);
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "[Item]", "Name=B", line });
        QCOMPARE(dictionary.getItemsCount(), 1 + count);
        QCOMPARE(dictionary.currentItem, dictionary.getItem(count));
        QCOMPARE(dictionary.getItem(1) ? dictionary.getItem(1)->name : QString(),
                 count == 0       ? QString()
                     : count == 1 ? QString("B")
                                  : QStringLiteral("B_\u0001"));
    }

    void singleOccurrenceHasNoSuffixAndKeepsZeroFill()
    {
        const OwnedDictionary dictionary({ "[Item]", "[Item]", "Name=B", "Occurrences=1", "ZeroFill=Yes" });
        QCOMPARE(dictionary.getItem(1)->name, QString("B"));
        QCOMPARE(dictionary.getItem(1)->zeroFill, true);
        QCOMPARE(dictionary.getItem(1)->firstOccurrence, 0);
    }

    void valueSetOfADroppedItemGoesToTheItemBefore()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "Name=A", "[Item]", "Name=B", "Occurrences=0", "[ValueSet]", "Name=VS", "Value=1;one" });
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
    }

    void valueSetOfADroppedItemIsSkippedWhereTheItemBeforeHasOne()
    {
        const OwnedDictionary dictionary({ "[Item]", "Name=A", "[ValueSet]", "Value=1;one", "[Item]", "Name=B",
                                           "Occurrences=-3", "[ValueSet]", "Value=2;two" });
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
    }

    void droppedItemDecidesWhetherTheSetOfTheItemBeforeIsNumeric()
    {
        const OwnedDictionary dictionary(
            { "[Item]", "Name=A", "[Item]", "DataType=Alpha", "Occurrences=0", "[ValueSet]", "Value=x;letter" });
        QCOMPARE(dictionary.getItem(0)->dataType, 0);
        QCOMPARE(dictionary.setOf(0)->isNumeric, false);
        QCOMPARE(dictionary.codesOf(0), QStringList("x"));
    }

    void startsOfCopiesDoNotOverflow_data()
    {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("length");
        QTest::addColumn<QList<int>>("columns");

        // clang-format off
        QTest::newRow("side by side")         << "10"          << "2"           << QList<int>{10, 12, 14};
        QTest::newRow("no length")            << "10"          << "0"           << QList<int>{10, 10, 10};
        QTest::newRow("negative length")      << "10"          << "-2"          << QList<int>{10, 8, 6};
        QTest::newRow("negative start")       << "-3"          << "2"           << QList<int>{-3, -1, 1};
        QTest::newRow("huge length")          << "1"           << "2147483647"  << QList<int>{1, largestInt, largestInt};
        QTest::newRow("just within")          << "1"           << "1073741823"  << QList<int>{1, 1073741824, largestInt};
        QTest::newRow("huge start")           << "2147483647"  << "1"           << QList<int>{largestInt, largestInt, largestInt};
        QTest::newRow("hugely negative")      << "-3"          << "-2147483648" << QList<int>{-3, smallestInt, smallestInt};
        QTest::newRow("length beyond an int") << "10"          << "2147483648"  << QList<int>{10, 10, 10};
        QTest::newRow("start beyond an int")  << "99999999999" << "2"           << QList<int>{1, 3, 5};
        // clang-format on
    }

    void startsOfCopiesDoNotOverflow()
    {
        QFETCH(QString, start);
        QFETCH(QString, length);
        QFETCH(QList<int>, columns);
        const OwnedDictionary dictionary({ "[Item]", "Start=" + start, "Len=" + length, "Occurrences=3" });
        QCOMPARE(starts(dictionary), columns);
    }

    void secondReadAppendsAndCarriesTheCursorsOver()
    {
        const QTemporaryDir directory;
        const QString first
            = write(directory, "first.dcf",
                    "[Dictionary]\r\nName=D\r\nRecordTypeLen=2\r\n[Record]\r\nName=R\r\n[Item]\r\nName=A\r\n");
        const QString second
            = write(directory, "second.dcf", "[ValueSet]\nValue=1;one\n[Item]\nName=B\n[Record]\nName=S\n");
        OwnedDictionary dictionary;
        dictionary.readFile(first);
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        dictionary.readFile(second);
        QCOMPARE(dictionary.itemNames(), QStringList({ "A", "B" }));
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
        QCOMPARE(recordNames(dictionary), QStringList({ "R", "R" }));
        QCOMPARE(dictionary.getRecordsCount(), 2);
        QCOMPARE(dictionary.name, QString("D"));
        QCOMPARE(dictionary.recordTypeLen, 2);
        dictionary.readFile(first);
        QCOMPARE(dictionary.itemNames(), QStringList({ "A", "B", "A" }));
        QCOMPARE(dictionary.getRecordsCount(), 3);
        QCOMPARE(dictionary.currentItem, dictionary.getItem(2));
        QCOMPARE(dictionary.currentRecord, dictionary.getRecord(2));
    }

    void furtherListsStayEmpty()
    {
        const OwnedDictionary dictionary(
            { "[Dictionary]", "[Record]", "[Item]", "Occurrences=2", "[ValueSet]", "Value=1", "[Relation]" });
        QVERIFY(dictionary.list1.isEmpty());
        QVERIFY(dictionary.list2.isEmpty());
    }

    void moreThanAMillionItemsEndInCode242AndWhatWasReadStays_data()
    {
        QTest::addColumn<QString>("occurrences");
        QTest::newRow("one item too many") << "1000000";
        QTest::newRow("a million and one") << "1000001";
        QTest::newRow("two thousand millions") << "2000000000";
        QTest::newRow("largest int") << "2147483647";
    }

    void moreThanAMillionItemsEndInCode242AndWhatWasReadStays()
    {
        QFETCH(QString, occurrences);
        OwnedDictionary dictionary;
        const DebugCapture log;
        const auto error = thrownBy([&] {
            dictionary.read({ "[Dictionary]", "Name=D", "[Record]", "Name=R", "[Item]", "Name=A", "[ValueSet]",
                              "Value=1;one", "[Record]", "Name=S", "[Item]", "Name=B", "Occurrences=" + occurrences, "",
                              "[Item]", "Name=C" });
        });
        // the index is that of the last line of the section
        QVERIFY(isInvalidContents(error.get(), 13));
        QCOMPARE(error->catalogueMessage(), QString("Invalid contents in line"));
        QCOMPARE(log.taken(),
                 QStringList(QStringLiteral("Class : CSPro\r\nError : \u00F2\r\n\r\nMessage : "
                                            "Invalid contents in line\r\n[\r ]")));
        QCOMPARE(dictionary.name, QString("D"));
        QCOMPARE(dictionary.itemNames(), QStringList("A"));
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
        QCOMPARE(dictionary.getRecordsCount(), 2);
        QCOMPARE(dictionary.currentItem, dictionary.getItem(0));
        QCOMPARE(dictionary.currentRecord, dictionary.getRecord(1));
    }

    void aMillionItemsAreReadAndNoMore()
    {
        OwnedDictionary dictionary({ "[Item]", "Name=X", "Occurrences=1000000" });
        QCOMPARE(dictionary.getItemsCount(), 1000000);
        TCSProItem *last = dictionary.currentItem;
        const DebugCapture log;
        QCOMPARE(last, dictionary.getItem(999999));
        QVERIFY(isInvalidContents(thrownBy([&] { dictionary.read({ "", "[Item]", "Name=Y" }); }).get(), 2));
        QVERIFY(isInvalidContents(thrownBy([&] { dictionary.read({ "[Item]", "Occurrences=2" }); }).get(), 1));
        QVERIFY(!thrownBy([&] { dictionary.read({ "[Item]", "Occurrences=0" }); }));
        QCOMPARE(dictionary.getItemsCount(), 1000000);
        QCOMPARE(dictionary.currentItem, last);
    }

private:
    static QString write(const QTemporaryDir &directory, const QString &name, const QByteArray &bytes)
    {
        QFile file(directory.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write the test file");
        return file.fileName();
    }
};

QTEST_GUILESS_MAIN(CSProItemsTest)
#include "CSProItemsTest.moc"
