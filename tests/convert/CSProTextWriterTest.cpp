#include "convert/MadeDictionary.h"
#include "write/CSProText.h"

#include <QtTest>

Q_DECLARE_METATYPE(vanlayout::Labels)
Q_DECLARE_METATYPE(vanlayout::Item)

using namespace vanlayout;

namespace
{

const QString english = QStringLiteral("EN");
const QString french = QStringLiteral("FR");

Labels two(const QString &first, const QString &second)
{
    return { { { english, first }, { french, second } } };
}

struct Written {
    QByteArray text;
    QStringList losses;
};

Written write(const Layout &layout, const CSProTextStyle &style = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Losses losses;
    if (!writeCSProText(layout, buffer, style, &losses))
        return {};
    return { buffer.data(), made::linesOf(losses) };
}

// The lines of a section after its name; the first section of that name that has the line `Name=`.
QStringList linesOf(const Layout &layout, const QString &section, const QString &name = QString())
{
    const QStringList sections
        = QString::fromUtf8(write(layout).text).remove(QChar(QChar::ByteOrderMark)).split(QStringLiteral("\r\n\r\n"));
    for (const QString &text : sections) {
        const QStringList lines = text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
        if (lines.constFirst() == section && (name.isEmpty() || lines.contains(QStringLiteral("Name=") + name)))
            return lines.mid(1);
    }
    return {};
}

// The lines of the value set of the item X, from its first value on.
QStringList valueLines(const Item &item)
{
    const QStringList lines = linesOf(made::dictionary(item), QStringLiteral("[ValueSet]"));
    const int first = lines.indexOf(QRegularExpression(QStringLiteral("Value=.*")));
    return first < 0 ? QStringList() : lines.mid(first);
}

Item itemWith(const Value &value, const QString &type = itemtype::numeric(), int length = 3)
{
    return made::item(QStringLiteral("X"), length, { value }, type);
}

} // namespace

/// Tests the text form of dictionaries, statement by statement. That real files keep their bytes is in RoundTripTest.
class CSProTextWriterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sectionsFollowEachOtherAsInCSPro()
    {
        Layout layout = made::dictionary(made::item(QStringLiteral("X"), 2, { made::value(QStringLiteral("1")) }));
        layout.languages = { { english, QStringLiteral("English") }, { french, QString() } };
        layout.relations = { { QStringLiteral("REL"),
                               { QStringLiteral("A2") },
                               QStringLiteral("R"),
                               { { QStringLiteral("X"), QStringLiteral("S"), QStringLiteral("Y") },
                                 { QString(), QStringLiteral("T"), QString() } } } };
        layout.editable = false;
        QCOMPARE(
            write(layout).text,
            QByteArray("\xEF\xBB\xBF[Dictionary]\r\nVersion=CSPro 7.7\r\nLabel=\r\nName=D\r\nRecordTypeStart=0\r\n"
                       "RecordTypeLen=0\r\nPositions=Relative\r\nZeroFill=No\r\nDecimalChar=No\r\n\r\n[NoEdit]\r\n"
                       "\r\n[Languages]\r\nEN=English\r\nFR=\r\n\r\n[Level]\r\nLabel=\r\nName=L\r\n\r\n[IdItems]\r\n"
                       "\r\n[Item]\r\nLabel=\r\nName=ID\r\nStart=1\r\nLen=3\r\nDataType=Numeric\r\n\r\n[Record]\r\n"
                       "Label=\r\nName=R\r\nRecordTypeValue=''\r\nRecordLen=5\r\n\r\n[Item]\r\nLabel=\r\nName=X\r\n"
                       "Start=4\r\nLen=2\r\nDataType=Numeric\r\n\r\n[ValueSet]\r\nLabel=\r\nName=VS1\r\nValue=1\r\n"
                       "\r\n[Relation]\r\nName=REL\r\nAlias=A2\r\nPrimary=R\r\nPrimaryLink=X\r\nSecondary=S\r\n"
                       "SecondaryLink=Y\r\nSecondary=T\r\n"));
    }

    void theVersionOfATextFormStays_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("hasMark");
        QTest::addColumn<bool>("hasType");
        const int text = int(Format::CSProText);
        QTest::newRow("7.7") << text << "7.7"
                             << "Version=CSPro 7.7" << true << true;
        QTest::newRow("7.10 is after 7.7") << text << "7.10"
                                           << "Version=CSPro 7.10" << true << true;
        QTest::newRow("7.6 omits the type of numbers") << text << "7.6"
                                                       << "Version=CSPro 7.6" << true << false;
        QTest::newRow("5.0 has a mark") << text << "5.0"
                                        << "Version=CSPro 5.0" << true << false;
        QTest::newRow("4.1 has none") << text << "4.1"
                                      << "Version=CSPro 4.1" << false << false;
        QTest::newRow("the JSON form becomes 7.7") << int(Format::CSProJson) << "8.0"
                                                   << "Version=CSPro 7.7" << true << true;
    }
    void theVersionOfATextFormStays()
    {
        QFETCH(int, format);
        QFETCH(QString, version);
        Layout layout = made::dictionary();
        layout.format = Format(format);
        layout.formatVersion = version;
        QTEST(linesOf(layout, QStringLiteral("[Dictionary]")).constFirst(), "line");
        QTEST(write(layout).text.startsWith("\xEF\xBB\xBF"), "hasMark");
        QTEST(write(layout).text.contains("DataType=Numeric"), "hasType");
    }

    void oldFilesStayInWindows1252()
    {
        Layout layout = made::dictionary();
        layout.formatVersion = QStringLiteral("4.1");
        layout.encoding = QStringLiteral("windows-1252");
        layout.labels = made::labels(QStringLiteral("caf\u00e9 \u20ac \u4e2d"));
        QVERIFY(write(layout).text.contains("Label=caf\xe9 \x80 ?\r\n"));
        QCOMPARE(write(layout).losses, QStringList{ ": characters that Windows-1252 does not have; they are \"?\"" });
        CSProTextStyle style;
        style.mark = CSProTextStyle::Mark::Present;
        QVERIFY(write(layout, style).text.startsWith("[Dictionary]"));
        layout.formatVersion = QStringLiteral("5.0");
        QVERIFY(write(layout).text.contains("Label=caf\xc3\xa9 "));
        QCOMPARE(write(layout).losses, QStringList());
    }

    void styleIsOfTheCaller()
    {
        CSProTextStyle style;
        style.lineEnd = CSProTextStyle::LineEnd::Lf;
        style.mark = CSProTextStyle::Mark::Absent;
        const QByteArray text = write(made::dictionary(), style).text;
        QVERIFY(text.startsWith("[Dictionary]\n"));
        QVERIFY(!text.contains('\r'));
        Layout old = made::dictionary();
        old.formatVersion = QStringLiteral("4.1");
        style.mark = CSProTextStyle::Mark::Present;
        QVERIFY(write(old, style).text.startsWith("\xEF\xBB\xBF[Dictionary]\n"));
    }

    void labelsAreInTheOrderOfTheLanguages_data()
    {
        QTest::addColumn<Labels>("labels");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("losses");
        const auto label = [](const QVector<Label> &parts) { return Labels{ parts }; };
        QTest::newRow("none") << Labels() << "Label=" << QStringList();
        QTest::newRow("both") << two("a", "b") << "Label=a|b" << QStringList();
        QTest::newRow("other order") << label({ { french, "b" }, { english, "a" } }) << "Label=a|b" << QStringList();
        QTest::newRow("code in another case")
            << label({ { "en", "a" }, { "fr", "b" } }) << "Label=a|b" << QStringList();
        QTest::newRow("other order and case")
            << label({ { "fr", "b" }, { "en", "a" } }) << "Label=a|b" << QStringList();
        QTest::newRow("no language") << label({ { "", "a" } }) << "Label=a" << QStringList();
        QTest::newRow("only the second stands for the first")
            << label({ { french, "b" } }) << "Label=b|b" << QStringList();
        QTest::newRow("empty first") << two("", "b") << "Label=|b" << QStringList();
        QTest::newRow("empty second") << two("a", "") << "Label=a|" << QStringList();
        QTest::newRow("further text") << label({ { english, "a" }, { "", "c" } }) << "Label=a||c" << QStringList();
        QTest::newRow("language twice") << label({ { english, "a" }, { english, "c" } }) << "Label=a||c"
                                        << QStringList{ ": the language of a label: \"EN\"" };
        QTest::newRow("unknown language") << label({ { english, "a" }, { "ES", "c" } }) << "Label=a||c"
                                          << QStringList{ ": the language of a label: \"ES\"" };
        QTest::newRow("bar") << two("a|b", "c") << "Label=a b|c" << QStringList{ ": \"|\" in a label; it is a blank" };
        QTest::newRow("line feed") << two("a\nb", "c") << "Label=a b|c"
                                   << QStringList{ ": label: line breaks, and white space at both ends" };
        QTest::newRow("blanks at the ends")
            << two(" a", "c ") << "Label=a|c" << QStringList{ ": label: line breaks, and white space at both ends" };
        QTest::newRow("blanks within") << two("a ", " c") << "Label=a | c" << QStringList();
        QTest::newRow("a line that ends in & is not continued") << two("a", "b &") << "Label=a|b & " << QStringList();
        QTest::newRow("equals sign") << two("=a", "b=c") << "Label==a|b=c" << QStringList();
    }
    void labelsAreInTheOrderOfTheLanguages()
    {
        QFETCH(Labels, labels);
        QFETCH(QStringList, losses);
        Layout layout = made::dictionary();
        layout.languages = { { english, QString() }, { french, QString() } };
        layout.labels = labels;
        QTEST(linesOf(layout, QStringLiteral("[Dictionary]")).at(1), "line");
        QCOMPARE(write(layout).losses, losses);
    }

    void aDictionaryWithoutLanguagesIsInEnglish()
    {
        Layout layout = made::dictionary();
        layout.labels = { { { english, QStringLiteral("a") } } };
        QCOMPARE(linesOf(layout, QStringLiteral("[Dictionary]")).at(1), QStringLiteral("Label=a"));
        QCOMPARE(write(layout).losses, QStringList());
    }

    void notesAreLinesOfAtMost117Characters_data()
    {
        QTest::addColumn<QString>("note");
        QTest::addColumn<QStringList>("lines");
        const QString word = QStringLiteral("word ");
        QTest::newRow("none") << QString() << QStringList();
        QTest::newRow("short") << "a" << QStringList{ "Note=a" };
        QTest::newRow("two lines") << "a\nb" << QStringList{ "Note=a\\r\\n", "Note=b" };
        QTest::newRow("empty line") << "a\n\nb" << QStringList{ "Note=a\\r\\n", "Note=\\r\\n", "Note=b" };
        QTest::newRow("long") << word.repeated(24).trimmed()
                              << QStringList{ "Note=" + word.repeated(23).trimmed(), "Note=word" };
        QTest::newRow("long word") << QString(200, 'x') << QStringList{ "Note=" + QString(200, 'x') };
        QTest::newRow("blank at the beginning") << "a\n b" << QStringList{ "Note=a\\r\\n", "Note=~b" };
        QTest::newRow("two blanks at a division") << QString(110, 'x') + "  "
                + QString(20, 'y') << QStringList{ "Note=" + QString(110, 'x'), "Note=~" + QString(20, 'y') };
        // At the beginning of a line, "~" would be a blank, and a tab would be cut off.
        QTest::newRow("tilde after a line end") << "a\n~b" << QStringList{ "Note=a\\r\\n~b" };
        QTest::newRow("tab after an empty line") << "a\n\n\tb" << QStringList{ "Note=a\\r\\n", "Note=\\r\\n\tb" };
        QTest::newRow("tilde at a division") << QString(90, 'x') + " y ~"
                + QString(40, 'z') << QStringList{ "Note=" + QString(90, 'x'), "Note=y ~" + QString(40, 'z') };
        QTest::newRow("tabs at a division") << QString(90, 'x') + " y\t \t"
                + QString(40, 'z') << QStringList{ "Note=" + QString(90, 'x'), "Note=y\t \t" + QString(40, 'z') };
        QTest::newRow("& at the end of a line") << "a &\nb &" << QStringList{ "Note=a &\\r\\n", "Note=b & " };
    }
    void notesAreLinesOfAtMost117Characters()
    {
        QFETCH(QString, note);
        QFETCH(QStringList, lines);
        Layout layout = made::dictionary();
        layout.note = note;
        QCOMPARE(linesOf(layout, QStringLiteral("[Dictionary]")).filter(QStringLiteral("Note=")), lines);
        QCOMPARE(write(layout).losses, QStringList());
    }

    void notesThatCannotBeWrittenAreReported_data()
    {
        QTest::addColumn<QString>("note");
        QTest::newRow("carriage return") << "a\r\nb";
        QTest::newRow("the four characters of a line end") << "a\\r\\nb";
        QTest::newRow("tilde") << "~a";
        QTest::newRow("tab") << "\ta";
    }
    void notesThatCannotBeWrittenAreReported()
    {
        QFETCH(QString, note);
        Layout layout = made::dictionary();
        layout.note = note;
        QCOMPARE(write(layout).losses,
                 QStringList{ ": note: a carriage return, \"\\r\\n\" as text, or \"~\" or a tab at the beginning" });
    }

    void statementsOfItems_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QStringList>("lines");
        const auto with = [](void (*change)(Item & item)) {
            Item item = made::item(QStringLiteral("X"), 5);
            change(item);
            return item;
        };
        const auto lines = [](const QStringList &rest) {
            return QStringList{ "Label=", "Name=X", "Start=4", "Len=5" } + rest;
        };
        QTest::newRow("number") << with([](Item &) {}) << lines({ "DataType=Numeric" });
        QTest::newRow("text") << with([](Item &x) { x.type = itemtype::alpha(); }) << lines({ "DataType=Alpha" });
        QTest::newRow("subitem") << with([](Item &x) { x.isSubitem = true; })
                                 << lines({ "ItemType=SubItem", "DataType=Numeric" });
        QTest::newRow("occurrences") << with([](Item &x) { x.occurrences = 2; })
                                     << lines({ "DataType=Numeric", "Occurrences=2" });
        QTest::newRow("decimals") << with([](Item &x) { x.decimals = 2; })
                                  << lines({ "DataType=Numeric", "Decimal=2" });
        QTest::newRow("decimal mark") << with([](Item &x) {
            x.decimals = 2;
            x.decimalMark = true;
        }) << lines({ "DataType=Numeric", "Decimal=2", "DecimalChar=Yes" });
        QTest::newRow("zeros") << with([](Item &x) { x.zeroFill = true; })
                               << lines({ "DataType=Numeric", "ZeroFill=Yes" });
        QTest::newRow("capture") << with([](Item &x) {
            x.capture = Capture{ "date", "DDMMYYYY" };
        }) << lines({ "DataType=Numeric", "CaptureType=Date", "CaptureDateFormat=DDMMYYYY" });
        QTest::newRow("capture without a format") << with([](Item &x) {
            x.capture = Capture{ "dropDown", "" };
        }) << lines({ "DataType=Numeric", "CaptureType=DropDown" });
        QTest::newRow("labels of occurrences") << with([](Item &x) {
            x.occurrences = 2;
            x.occurrenceLabels = { { 2, made::labels("second, last") } };
        }) << lines({ "DataType=Numeric", "Occurrences=2", "OccurrenceLabel=2,second, last" });
    }
    void statementsOfItems()
    {
        QFETCH(Item, item);
        QTEST(linesOf(made::dictionary(item), QStringLiteral("[Item]"), QStringLiteral("X")), "lines");
    }

    void itemsThatOnlyCSPro8HasAreLost_data()
    {
        QTest::addColumn<QString>("type");
        for (const char *type : { "document", "audio", "image", "geometry" })
            QTest::newRow(type) << type;
    }
    void itemsThatOnlyCSPro8HasAreLost()
    {
        QFETCH(QString, type);
        Layout layout = made::dictionary(made::item(QStringLiteral("X"), 1, {}, type));
        layout.format = Format::CSProJson;
        QCOMPARE(linesOf(layout, QStringLiteral("[Item]"), QStringLiteral("X")), QStringList());
        QCOMPARE(write(layout).losses, QStringList{ "L/R/X: the item, because its type is " + type });
        QVERIFY(linesOf(layout, QStringLiteral("[Record]")).contains(QStringLiteral("RecordLen=3")));
    }

    // A text dictionary may state such a type, which CSPro does not know there.
    void unknownTypesOfATextFormStay()
    {
        const Layout layout = made::dictionary(made::item(QStringLiteral("X"), 1, {}, QStringLiteral("image")));
        QVERIFY(
            linesOf(layout, QStringLiteral("[Item]"), QStringLiteral("X")).contains(QStringLiteral("DataType=Image")));
        QCOMPARE(write(layout).losses, QStringList());
    }

    void onlyDatesHaveADateFormat()
    {
        Item item = made::item(QStringLiteral("X"), 5);
        item.capture = Capture{ QStringLiteral("textBox"), QStringLiteral("DDMM") };
        const Layout layout = made::dictionary(item);
        QVERIFY(!write(layout).text.contains("CaptureDateFormat"));
        QCOMPARE(write(layout).losses,
                 QStringList{ "L/R/X: the date format \"DDMM\", because items are not captured as dates" });
    }

    void recordLengthIsTheLastColumnIfNoneIsStated()
    {
        Item item = made::item(QStringLiteral("X"), 5);
        item.occurrences = 3;
        Layout layout = made::dictionary(item);
        QVERIFY(linesOf(layout, QStringLiteral("[Record]")).contains(QStringLiteral("RecordLen=18")));
        layout.recordType = RecordTypeColumns{ 30, 2 };
        QVERIFY(linesOf(layout, QStringLiteral("[Record]")).contains(QStringLiteral("RecordLen=31")));
        layout.levels[0].records[0].length = 7;
        QVERIFY(linesOf(layout, QStringLiteral("[Record]")).contains(QStringLiteral("RecordLen=7")));
    }

    void statementsOfRecords()
    {
        Layout layout = made::dictionary();
        Record &record = layout.levels[0].records[0];
        record.recordType = QStringLiteral(" 1");
        record.required = false;
        record.maximum = 9;
        record.occurrenceLabels = { { 1, made::labels(QStringLiteral("head")) } };
        QCOMPARE(linesOf(layout, QStringLiteral("[Record]")),
                 (QStringList{ "Label=", "Name=R", "RecordTypeValue=' 1'", "Required=No", "MaxRecords=9", "RecordLen=5",
                               "OccurrenceLabel=1,head" }));
    }

    void recordTypesAreInQuotationMarks_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("losses");
        const auto because = [](const QString &type) {
            return QStringList{ "L/R: the record type \"" + type + "\", because of its characters" };
        };
        QTest::newRow("apostrophe") << "it's"
                                    << "RecordTypeValue=\"it's\"" << QStringList();
        QTest::newRow("quotation mark") << "\""
                                        << "RecordTypeValue='\"'" << QStringList();
        QTest::newRow("both") << "'\""
                              << "RecordTypeValue=\"'\"" << because("'\"");
        QTest::newRow("line feed") << "a\nName=Y"
                                   << "RecordTypeValue='a Name=Y'" << because("a Name=Y");
    }
    void recordTypesAreInQuotationMarks()
    {
        QFETCH(QString, type);
        QFETCH(QStringList, losses);
        Layout layout = made::dictionary();
        layout.levels[0].records[0].recordType = type;
        QTEST(linesOf(layout, QStringLiteral("[Record]")).value(2), "line");
        QCOMPARE(write(layout).losses, losses);
    }

    // A name of a language is a key.
    void namesOfLanguagesBeginNoSectionAndNoComment_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");
        QTest::newRow("section") << "[Level]"
                                 << "Level]=x";
        QTest::newRow("comment") << "..a"
                                 << "a=x";
        QTest::newRow("equals sign") << "a=b"
                                     << "ab=x";
    }
    void namesOfLanguagesBeginNoSectionAndNoComment()
    {
        QFETCH(QString, name);
        Layout layout = made::dictionary();
        layout.languages = { { name, QStringLiteral("x") } };
        QTEST(linesOf(layout, QStringLiteral("[Languages]")).value(0), "line");
        QCOMPARE(write(layout).losses,
                 QStringList{ ": the name of the language \"" + name + "\", because of its characters" });
    }

    void noTextBeginsAnotherLine()
    {
        const QString text = QStringLiteral("a\nKey=b");
        Item item = made::item(QStringLiteral("X"), 5, { made::value(QStringLiteral("1")) }, text);
        item.capture = Capture{ QStringLiteral("date"), text };
        item.valueSets[0].link = text;
        item.valueSets[0].values[0].image = text;
        item.valueSets[0].values[0].textColor = text;
        Layout layout = made::dictionary(item);
        layout.format = Format::CSProJson;
        layout.name = text;
        layout.aliases = QStringList{ text };
        layout.security = Security{ text, {}, {}, {} };
        layout.languages = { { text, text } };
        layout.relations = { { text, {}, text, { { text, text, text } } } };
        const Written written = write(layout);
        QVERIFY2(!written.text.contains("\nKey"), written.text.constData());
        QCOMPARE(written.losses.size(), 16); // two of the name of the language
    }

    void codesAreSpelledAsInCSPro_data()
    {
        QTest::addColumn<Item>("item");
        QTest::addColumn<QString>("line");
        const auto number = [](const QString &from, const QString &to = QString()) {
            return itemWith(to.isEmpty() ? made::value(from) : made::range(from, to));
        };
        const auto text = [](const QString &code, int length = 3) {
            return itemWith(made::value(code), itemtype::alpha(), length);
        };
        QTest::newRow("number") << number("12") << "Value=12";
        QTest::newRow("range") << number("1", "-9.5") << "Value=1:-9.5";
        QTest::newRow("blank field") << number("") << "Value='   '";
        QTest::newRow("blanks as written") << number("  ") << "Value='  '";
        QTest::newRow("text in a number") << number("a b") << "Value='a b'";
        QTest::newRow("apostrophe in a number") << number("1'") << "Value=\"1'\"";
        QTest::newRow("quotation mark in a number") << number("1\"") << "Value='1\"'";
        QTest::newRow("colon in a number") << number("1:2") << "Value='1:2'";
        QTest::newRow("text is padded") << text("A") << "Value='A  '";
        QTest::newRow("digits of the whole length") << text("123") << "Value=123";
        QTest::newRow("fewer digits") << text("12") << "Value='12 '";
        QTest::newRow("sign and point") << text("-.1") << "Value=-.1";
        QTest::newRow("apostrophe") << text("d'e") << "Value=\"d'e\"";
        QTest::newRow("quotation mark") << text("\"") << "Value='\"  '";
        QTest::newRow("longer than the item") << text("ABCD") << "Value='ABCD'";
        QTest::newRow("blank text") << text("") << "Value='   '";
        QTest::newRow("a length that no data has") << text("A", 1000000) << "Value='A'";
    }
    void codesAreSpelledAsInCSPro()
    {
        QFETCH(Item, item);
        QTEST(valueLines(item).value(0), "line");
    }

    void severalCodesAreOnOneLine()
    {
        Value value = made::value(QStringLiteral("1"), QStringLiteral("some; others"));
        value.ranges.append({ QStringLiteral("5"), QStringLiteral("7") });
        QCOMPARE(valueLines(itemWith(value)), QStringList{ "Value=1 5:7;some; others" });
    }

    void labelOfAValueIsOnOneLine()
    {
        const Layout layout = made::dictionary(itemWith(made::value(QStringLiteral("1"), QStringLiteral("a\nb "))));
        QCOMPARE(valueLines(layout.levels[0].records[0].items[0]), QStringList{ "Value=1;a b" });
        QCOMPARE(write(layout).losses, QStringList{ "L/R/X/VS1/#1: label: line breaks, and white space at the end" });
    }

    void aBlankFieldOfAnItemWithoutALengthIsLost()
    {
        const Layout layout = made::dictionary(itemWith(made::value(QString()), itemtype::alpha(), 0));
        QCOMPARE(write(layout).losses,
                 QStringList{ "L/R/X/VS1/#1: the code of a blank field, because the item has no length" });
    }

    void blanksBeforeTheLabelOfAValueStay()
    {
        QCOMPARE(valueLines(itemWith(made::value(QStringLiteral("1"), QStringLiteral(" a")))),
                 QStringList{ "Value=1; a" });
    }

    void codesThatCannotBeWrittenAreLost_data()
    {
        QTest::addColumn<QString>("code");
        QTest::newRow("semicolon") << "a;b";
        QTest::newRow("both marks") << "'\"";
        QTest::newRow("line feed") << "a\nb";
    }
    void codesThatCannotBeWrittenAreLost()
    {
        QFETCH(QString, code);
        const Layout layout = made::dictionary(itemWith(made::value(code), itemtype::alpha()));
        QCOMPARE(valueLines(layout.levels[0].records[0].items[0]), QStringList{ "Value=" });
        QCOMPARE(write(layout).losses,
                 QStringList{ "L/R/X/VS1/#1: the code \"" + code + "\", because of its characters" });
    }

    void attributesFollowTheirValue()
    {
        Value value = made::value(QStringLiteral("9"), QStringLiteral("no"), Special::Missing);
        value.note = QStringLiteral("n");
        value.image = QStringLiteral(".\\images\\a.jpg");
        value.textColor = QStringLiteral("#ff0000");
        QCOMPARE(valueLines(itemWith(value)),
                 (QStringList{ "Value=9;no", "Note=n", "Image=.\\images\\a.jpg", "TextColor=#ff0000",
                               "Name=MISSING,Special" }));
    }

    void imagesAreRelativeToTheDirectory_data()
    {
        QTest::addColumn<QString>("image");
        QTest::addColumn<QString>("line");
        QTest::newRow("beside") << "a.jpg"
                                << "Image=.\\a.jpg";
        QTest::newRow("within") << "images/a.jpg"
                                << "Image=.\\images\\a.jpg";
        QTest::newRow("anchored") << ".\\a.jpg"
                                  << "Image=.\\a.jpg";
        QTest::newRow("above") << "../a.jpg"
                               << "Image=..\\a.jpg";
        QTest::newRow("drive") << "C:/a.jpg"
                               << "Image=C:\\a.jpg";
        QTest::newRow("share") << "//server/a.jpg"
                               << "Image=\\\\server\\a.jpg";
    }
    void imagesAreRelativeToTheDirectory()
    {
        QFETCH(QString, image);
        Value value = made::value(QStringLiteral("9"));
        value.image = image;
        Layout layout = made::dictionary(itemWith(value));
        layout.format = Format::CSProJson;
        const QStringList lines = linesOf(layout, QStringLiteral("[ValueSet]"));
        QTEST(lines.filter(QStringLiteral("Image=")).value(0), "line");
        layout.format = Format::CSProText;
        QVERIFY(linesOf(layout, QStringLiteral("[ValueSet]")).contains(QStringLiteral("Image=") + image));
    }

    void specialWords_data()
    {
        QTest::addColumn<int>("special");
        QTest::addColumn<QString>("line");
        QTest::newRow("missing") << int(Special::Missing) << "Name=MISSING,Special";
        QTest::newRow("refused") << int(Special::Refused) << "Name=REFUSED,Special";
        QTest::newRow("not applicable") << int(Special::NotApplicable) << "Name=NOTAPPL,Special";
        QTest::newRow("default") << int(Special::Default) << "Name=DEFAULT,Special";
    }
    void specialWords()
    {
        QFETCH(int, special);
        QTEST(valueLines(itemWith(made::value(QStringLiteral("9"), QString(), Special(special)))).value(1), "line");
    }

    void linkedSetsHaveTheirValuesOnce()
    {
        Item item = made::item(QStringLiteral("X"), 2, { made::value(QStringLiteral("1")) });
        item.valueSets[0].link = QStringLiteral("77");
        ValueSet copy = item.valueSets.at(0);
        copy.name = QStringLiteral("VS2");
        ValueSet other = copy;
        other.name = QStringLiteral("VS3");
        other.values = { made::value(QStringLiteral("2")) };
        item.valueSets += { copy, other };
        const Layout layout = made::dictionary(item);
        const auto lines
            = [&](const char *name) { return linesOf(layout, QStringLiteral("[ValueSet]"), QLatin1String(name)); };
        QCOMPARE(lines("VS1"), (QStringList{ "Label=", "Name=VS1", "Link=77", "Value=1" }));
        QCOMPARE(lines("VS2"), (QStringList{ "Label=", "Name=VS2", "Link=77" }));
        QCOMPARE(lines("VS3"), (QStringList{ "Label=", "Name=VS3", "Link=77", "Value=2" }));
    }

    void whatCSProDoesNotKnowIsLost()
    {
        Layout layout = made::dictionary();
        layout.extras = { { QStringLiteral("L/R"), QStringLiteral("Color"), QStringLiteral("red"), 7 } };
        layout.readOptimization = false;
        layout.enableBinaryItems = true;
        QCOMPARE(write(layout).losses,
                 (QStringList{ ": readOptimization, which is false", ": enableBinaryItems, which is true",
                               "L/R: the unknown statement \"Color\"" }));
        layout = made::dictionary();
        layout.readOptimization = true;
        layout.enableBinaryItems = false;
        QCOMPARE(write(layout).losses, QStringList());
    }

    // CSPro reads the encrypted settings only, which are the same.
    void securitySettingsInWordsAreInTheEncryptedOnes()
    {
        const QString word = QStringLiteral("security.allowDataManagerModifications");
        Layout layout = made::dictionary();
        layout.format = Format::CSProJson;
        layout.security = Security{ QStringLiteral("ab12"), true, true, 5 };
        layout.extras = { { QString(), word, QStringLiteral("true"), 0 } };
        QCOMPARE(write(layout).losses, QStringList());
        layout.security->settings.reset();
        QCOMPARE(write(layout).losses,
                 (QStringList{ ": the security settings in words, because there are no encrypted ones",
                               ": the unknown statement \"" + word + '"' }));
    }

    // What a text form states stays as it is, also if CSPro would not write it.
    void unusualStatementsOfATextFormStay()
    {
        Item item = made::item(QStringLiteral("X"), 2);
        item.occurrences = 0;
        item.decimals = -1;
        Layout layout = made::dictionary(item);
        layout.levels[0].records[0].maximum = 0;
        layout.relativePositions.reset();
        layout.security = Security{ QStringLiteral("ab12"), {}, {}, {} };
        layout.valueSetImages = QStringLiteral("x");
        const QStringList head = linesOf(layout, QStringLiteral("[Dictionary]"));
        QVERIFY(head.contains(QStringLiteral("SecurityOptions=ab12"))
                && head.contains(QStringLiteral("ValueSetImages=x")));
        QCOMPARE(head.filter(QStringLiteral("Positions")), QStringList());
        QVERIFY(linesOf(layout, QStringLiteral("[Record]")).contains(QStringLiteral("MaxRecords=0")));
        const QStringList lines = linesOf(layout, QStringLiteral("[Item]"), QStringLiteral("X"));
        QVERIFY(lines.contains(QStringLiteral("Occurrences=0")) && lines.contains(QStringLiteral("Decimal=-1")));
        layout.format = Format::CSProJson;
        QVERIFY(linesOf(layout, QStringLiteral("[Dictionary]")).contains(QStringLiteral("Positions=Absolute")));
    }

    void settingsOfTheJsonFormAreInCapitals()
    {
        Layout layout = made::dictionary();
        layout.security = Security{ QStringLiteral("ab12"), {}, {}, {} };
        layout.format = Format::CSProJson;
        QVERIFY(linesOf(layout, QStringLiteral("[Dictionary]")).contains(QStringLiteral("SecurityOptions=AB12")));
    }

    void aDeviceThatIsFullIsReported()
    {
        QBuffer closed;
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (QBuffer): device not open");
        QVERIFY(!writeCSProText(made::dictionary(), closed));
    }
};

QTEST_APPLESS_MAIN(CSProTextWriterTest)

#include "CSProTextWriterTest.moc"
