#include "support/Corpus.h"

#include "read/Reader.h"
#include "write/Codebook.h"
#include "write/LabelLanguages_p.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace vanlayout;

namespace
{

Labels labelsOf(const QString &text)
{
    return { { { QString(), text } } };
}

Labels labelsOf(const QString &english, const QString &french)
{
    return { { { "EN", english }, { "FR", french } } };
}

Item itemNamed(const QString &name, const QString &label = QString())
{
    Item item;
    item.name = name;
    if (!label.isEmpty())
        item.labels = labelsOf(label);
    item.length = 2;
    return item;
}

ValueSet setOf(const QVector<Value> &values)
{
    ValueSet set;
    set.values = values;
    return set;
}

Value valueOf(const QVector<Range> &ranges, const QString &label)
{
    Value value;
    value.ranges = ranges;
    value.labels = labelsOf(label);
    return value;
}

// A dictionary of one record with these items.
Layout layoutOf(const QVector<Item> &items)
{
    Layout layout;
    layout.file = "directory/survey.dcf";
    layout.format = Format::CSProText;
    layout.formatVersion = "7.7";
    layout.name = "SURVEY";
    Record record;
    record.name = "REC";
    record.recordType = "1";
    record.items = items;
    Level level;
    level.name = "L";
    level.records = { record };
    layout.levels = { level };
    return layout;
}

QByteArray pageOf(const Layout &layout, const CodebookOptions &options = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCodebook(layout, buffer, options) ? buffer.data() : QByteArray();
}

QByteArray indexOf(const QVector<CodebookIndexEntry> &entries, const CodebookOptions &options = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCodebookIndex(entries, buffer, options) ? buffer.data() : QByteArray();
}

// The text between two others, after the first occurrence of the first.
QByteArray between(const QByteArray &whole, const QByteArray &before, const QByteArray &behind)
{
    const int begin = whole.indexOf(before) + before.size();
    return whole.mid(begin, whole.indexOf(behind, begin) - begin);
}

QByteArray scriptOf(const QByteArray &page)
{
    return between(page, "<script>", "</script>");
}

QByteArray dataTextOf(const QByteArray &page)
{
    return between(page, "<script type=\"application/json\" id=\"page-data\">", "</script>");
}

QJsonObject dataOf(const Layout &layout, const CodebookOptions &options = {})
{
    return QJsonDocument::fromJson(dataTextOf(pageOf(layout, options))).object();
}

QJsonObject firstRecordOf(const QJsonObject &data)
{
    return data["levels"].toArray().at(0)["records"].toArray().at(0).toObject();
}

QJsonArray itemsOf(const QJsonObject &data)
{
    return firstRecordOf(data)["items"].toArray();
}

QJsonObject firstItemOf(const QJsonObject &data)
{
    return itemsOf(data).at(0).toObject();
}

QByteArray compact(const QJsonValue &value)
{
    return value.isArray() ? QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact)
                           : QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact);
}

// Whether data contain nothing that ends a script element, that HTML forbids or that UTF-8 cannot represent.
bool isHarmless(const QByteArray &data)
{
    const QString text = QString::fromUtf8(data);
    return !text.contains(QRegularExpression(
               "[<>&\\x{0}-\\x{9}\\x{B}-\\x{1F}\\x{7F}-\\x{9F}\\x{2028}\\x{2029}\\x{FFFE}\\x{FFFF}]"))
        && text.toUtf8() == data;
}

/// A device that accepts only a given number of bytes.
class NarrowDevice : public QIODevice
{
public:
    explicit NarrowDevice(qint64 bytes)
        : room(bytes)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        if (size > room)
            return -1;
        room -= size;
        return size;
    }

private:
    qint64 room;
};

} // namespace

/// Tests the codebook of a layout: the page and its data. The behaviour of the page is tested in a browser.
class CodebookTest : public QObject
{
    Q_OBJECT

private slots:
    void titleIsTheLabelElseTheName_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("title");
        QTest::addColumn<QByteArray>("documentTitle");
        QTest::newRow("label") << "A & B"
                               << "D" << QByteArray("A &amp; B") << QByteArray("A &amp; B \xE2\x80\x93 codebook");
        QTest::newRow("name") << ""
                              << "D" << QByteArray("D") << QByteArray("D \xE2\x80\x93 codebook");
        QTest::newRow("neither: never the name of the file") << ""
                                                             << "" << QByteArray("Codebook") << QByteArray("Codebook");
    }
    void titleIsTheLabelElseTheName()
    {
        QFETCH(QString, label);
        QFETCH(QString, name);
        QFETCH(QByteArray, title);
        QFETCH(QByteArray, documentTitle);
        Layout layout = layoutOf({});
        layout.name = name;
        layout.labels = label.isEmpty() ? Labels() : labelsOf(label);
        const QByteArray page = pageOf(layout);
        QCOMPARE(between(page, "<h1 id=\"page-title\" dir=\"auto\" lang=\"\">", "</h1>"), title);
        QCOMPARE(between(page, "<title>", "</title>"), documentTitle);
    }

    void headHasTheFactsOfTheFile()
    {
        Layout layout = layoutOf({ itemNamed("A"), itemNamed("B") });
        layout.encoding = "windows-1252";
        layout.languages = { { "EN", "English" }, { "FR", "" } };
        layout.recordType = RecordTypeColumns{ 3, 2 };
        layout.relativePositions = true;
        layout.levels[0].records[0].items[0].valueSets
            = { setOf({ valueOf({ { "1", "" } }, "One"), { {}, {}, Special::None, {}, {}, { { "2", "9" } } } }) };
        const QByteArray page = pageOf(layout);
        QCOMPARE(between(page, "<p class=\"format\">", "</p>"), QByteArray("CSPro dictionary, text form 7.7"));
        QCOMPARE(between(page, "<ul class=\"counts\">\n", "</ul>"),
                 QByteArray("<li><b>2</b> variables</li>\n<li><b>1</b> record</li>\n<li><b>1</b> value label</li>\n"));
        QCOMPARE(between(page, "<dl class=\"facts\">\n", "</dl>"),
                 QByteArray("<div><dt>Name</dt><dd dir=\"auto\">SURVEY</dd></div>\n"
                            "<div><dt>File</dt><dd dir=\"auto\">survey.dcf</dd></div>\n"
                            "<div><dt>Encoding</dt><dd dir=\"auto\">windows-1252</dd></div>\n"
                            "<div><dt>Languages</dt><dd dir=\"auto\">English, FR</dd></div>\n"
                            "<div><dt>Record type</dt><dd dir=\"auto\">columns 3\xE2\x80\x93"
                            "4</dd></div>\n"
                            "<div><dt>Positions</dt><dd dir=\"auto\">relative</dd></div>\n"));
    }

    void recordTypeIsWhereTheFileHasIt_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("length");
        QTest::addColumn<QByteArray>("fact");
        QTest::newRow("one column") << 5 << 1 << QByteArray("column 5");
        QTest::newRow("columns") << 5 << 3
                                 << QByteArray("columns 5\xE2\x80\x93"
                                               "7");
        QTest::newRow("no length") << 5 << 0 << QByteArray("column 5, length 0");
        QTest::newRow("beyond int") << 2147483647 << 2147483647
                                    << QByteArray("columns 2147483647\xE2\x80\x93"
                                                  "4294967293");
    }
    void recordTypeIsWhereTheFileHasIt()
    {
        QFETCH(int, start);
        QFETCH(int, length);
        QFETCH(QByteArray, fact);
        Layout layout = layoutOf({});
        layout.recordType = RecordTypeColumns{ start, length };
        QCOMPARE(between(pageOf(layout), "<dt>Record type</dt><dd dir=\"auto\">", "</dd>"), fact);
        QCOMPARE(compact(dataOf(layout)["recordType"]),
                 '[' + QByteArray::number(start) + ',' + QByteArray::number(length) + ']');
    }

    void recordsWithoutNamesAreCounted()
    {
        Layout layout = layoutOf({});
        layout.levels[0].records[0].name.clear();
        QVERIFY(pageOf(layout).contains("<li><b>1</b> record</li>"));
    }

    void noteOfTheLayoutIsInThePage()
    {
        Layout layout = layoutOf({});
        QVERIFY(!dataOf(layout).contains("note"));
        layout.note = "Fieldwork";
        QCOMPARE(dataOf(layout)["note"].toString(), QString("Fieldwork"));
    }

    void headOfAStatisticalFileHasRowsDatesAndWeight()
    {
        Layout layout;
        layout.file = "-";
        layout.format = Format::Spss;
        layout.formatVersion = "3";
        layout.rows = 12345;
        layout.created = "2020-01-02T03:04:05";
        layout.modified = "2021-01-02T03:04:05";
        layout.weight = "W";
        Level level;
        level.records = { Record() };
        layout.levels = { level };
        const QByteArray page = pageOf(layout);
        QCOMPARE(between(page, "<dl class=\"facts\">\n", "</dl>"),
                 QByteArray("<div><dt>Version</dt><dd dir=\"auto\">3</dd></div>\n"
                            "<div><dt>Rows</dt><dd dir=\"auto\">12,345</dd></div>\n"
                            "<div><dt>Created</dt><dd dir=\"auto\">2020-01-02 03:04:05</dd></div>\n"
                            "<div><dt>Modified</dt><dd dir=\"auto\">2021-01-02 03:04:05</dd></div>\n"
                            "<div><dt>Weight</dt><dd dir=\"auto\">W</dd></div>\n"));
        QVERIFY(!page.contains("record</li>"));
        QVERIFY(dataOf(layout)["isStatistical"].toBool());
    }

    void recordHasItsFacts()
    {
        Layout layout = layoutOf({});
        Record &record = layout.levels[0].records[0];
        QCOMPARE(compact(firstRecordOf(dataOf(layout))), QByteArray("{\"name\":\"REC\",\"type\":\"1\"}"));
        record.labels = labelsOf("Persons");
        record.note = "N";
        record.aliases = QStringList{ "OTHER" };
        record.required = false;
        record.maximum = 30;
        record.length = 61;
        record.occurrenceLabels = { { 2, labelsOf("Second") } };
        QCOMPARE(compact(firstRecordOf(dataOf(layout))),
                 QByteArray(
                     "{\"aliases\":[\"OTHER\"],\"isOptional\":true,\"label\":\"Persons\",\"length\":61,\"maximum\":30,"
                     "\"name\":\"REC\",\"note\":\"N\",\"occurrenceLabels\":[[2,\"Second\"]],\"type\":\"1\"}"));
        QVERIFY(!firstRecordOf(dataOf(layout))["isOfUnknownNumber"].toBool());
        layout.format = Format::Ddi;
        record.maximum = 0;
        QVERIFY(firstRecordOf(dataOf(layout))["isOfUnknownNumber"].toBool());
    }

    void itemHasEverythingThatTheLayoutHas()
    {
        Item item = itemNamed("A", "Age");
        QCOMPARE(compact(firstItemOf(dataOf(layoutOf({ item })))),
                 QByteArray("{\"form\":\"9(2)\",\"label\":\"Age\",\"length\":2,\"name\":\"A\"}"));
        item.note = "N";
        item.aliases = QStringList{ "B" };
        item.type = "alpha";
        item.start = 7;
        item.occurrences = 3;
        item.occurrenceLabels = { { 1, labelsOf("One") } };
        item.isSubitem = true;
        item.subitemOf = "P";
        item.decimals = 1;
        item.decimalMark = true;
        item.zeroFill = true;
        item.capture = Capture{ "date", "YYYY" };
        item.storage = Storage::Int8;
        item.measure = Measure::Ordinal;
        item.alignment = Alignment::Left;
        item.displayWidth = 8;
        item.missing = { { "-inf", "-1" }, { "99", "" } };
        QCOMPARE(
            compact(firstItemOf(dataOf(layoutOf({ item })))),
            QByteArray(
                "{\"aliases\":[\"B\"],\"alignment\":\"left\",\"capture\":\"date\",\"dateFormat\":\"YYYY\","
                "\"decimals\":1,\"displayWidth\":8,\"form\":\"A(2)\",\"hasMark\":true,\"isSubitem\":true,"
                "\"isZeroFilled\":true,\"label\":\"Age\",\"length\":2,\"measure\":\"ordinal\",\"missing\":[[\"-inf\","
                "\"-1\"],\"99\"],\"name\":\"A\",\"note\":\"N\",\"occurrenceLabels\":[[1,\"One\"]],\"occurrences\":3,"
                "\"start\":7,\"storage\":\"int8\",\"subitemOf\":\"P\",\"type\":\"alpha\"}"));
    }

    void formatOfAStatisticalFileIsThatOfTheFile_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("written"); // in addition to the form; null if it is the same
        QTest::newRow("stated") << "F8.2"
                                << "numeric"
                                << "F8.2" << QString();
        QTest::newRow("number without a format") << ""
                                                 << "numeric"
                                                 << "double" << QString("");
        QTest::newRow("text without a format") << ""
                                               << "alpha"
                                               << "A(2)" << QString("");
        QTest::newRow("text without a width") << "$"
                                              << "alpha"
                                              << "A(2)" << QString("$");
    }
    void formatOfAStatisticalFileIsThatOfTheFile()
    {
        QFETCH(QString, format);
        QFETCH(QString, type);
        QFETCH(QString, form);
        QFETCH(QString, written);
        Item item = itemNamed("A");
        item.type = type;
        item.storage = type == "alpha" ? Storage::String : Storage::Double;
        item.format = format;
        Layout layout = layoutOf({ item });
        layout.format = Format::Sas;
        const QJsonObject found = firstItemOf(dataOf(layout));
        QCOMPARE(found["form"].toString(), form);
        QCOMPARE(found.contains("format"), !written.isNull());
        QCOMPARE(found["format"].toString(), written);
    }

    void valuesHaveRangesSpecialsAndImages()
    {
        Item item = itemNamed("A");
        Value special = valueOf({ { "9", "" } }, "None");
        special.special = Special::NotApplicable;
        special.note = "N";
        special.image = "x.png";
        special.textColor = "#ff0000";
        Value unlabelled;
        unlabelled.ranges = { { "1", "5" }, { "8", "" } };
        Value unlabelledSpecial;
        unlabelledSpecial.special = Special::Missing;
        ValueSet set = setOf({ valueOf({ { "1", "" } }, "One"), unlabelled, special, unlabelledSpecial });
        set.name = "VS";
        set.labels = labelsOf("Set");
        set.note = "SN";
        set.aliases = QStringList{ "VA" };
        set.link = "L";
        item.valueSets = { set };
        const QJsonObject data = dataOf(layoutOf({ item }));
        QCOMPARE(
            compact(data["lists"]),
            QByteArray(
                "[[[\"1\",\"One\"],[[[\"1\",\"5\"],\"8\"]],[\"9\",\"None\",{\"image\":\"x.png\",\"note\":\"N\","
                "\"special\":\"not applicable\",\"textColor\":\"#ff0000\"}],[[],null,{\"special\":\"missing\"}]]]"));
        QCOMPARE(compact(firstItemOf(data)["sets"]),
                 QByteArray("[{\"aliases\":[\"VA\"],\"label\":\"Set\",\"link\":\"L\",\"list\":0,\"name\":\"VS\","
                            "\"note\":\"SN\"}]"));
    }

    void equalListsOfValuesAreThereOnce()
    {
        const auto list = [](const QString &label) { return setOf({ valueOf({ { "1", "" } }, label) }); };
        Item first = itemNamed("A");
        first.valueSets = { list("x"), list("y") };
        Item second = itemNamed("B");
        second.valueSets = { list("y"), list("x") };
        Item third = second; // shares its lists
        const QJsonObject data = dataOf(layoutOf({ first, second, third }));
        QCOMPARE(data["lists"].toArray().size(), 2);
        const QJsonArray items = itemsOf(data);
        QCOMPARE(compact(items.at(1)["sets"]), QByteArray("[{\"list\":1},{\"list\":0}]"));
        QCOMPARE(compact(items.at(2)["sets"]), QByteArray("[{\"list\":1},{\"list\":0}]"));
    }

    void labelsAreInTheirLanguages()
    {
        Item both = itemNamed("A");
        both.labels = labelsOf("House", "Maison");
        Item french = itemNamed("B");
        french.labels = { { { "FR", "Maison" } } };
        Item turned = itemNamed("C");
        turned.labels = { { { "fr", "Maison" }, { "EN", "House" }, { "SW", "Nyumba" }, { "SW", "Kaya" } } };
        Layout layout = layoutOf({ both, french, turned });
        layout.languages = { { "EN", "English" }, { "FR", "" } };
        const QJsonObject data = dataOf(layout);
        const QJsonArray items = itemsOf(data);
        QCOMPARE(compact(items.at(0)["label"]), QByteArray("[\"House\",\"Maison\"]"));
        QCOMPARE(items.at(1)["label"].toString(), QString("Maison"));
        QCOMPARE(compact(items.at(2)["label"]), QByteArray("[[1,\"Maison\"],[0,\"House\"],\"Nyumba\",\"Kaya\"]"));
        QCOMPARE(compact(data["languages"]),
                 QByteArray("[[\"EN\",\"English\"],[\"FR\",\"\"],[\"SW\",\"\"],[\"SW\",\"\"]]"));
    }

    void pageOpensInTheLanguageThatIsAskedFor_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QByteArray>("title");
        QTest::addColumn<int>("number");
        QTest::newRow("primary") << "" << QByteArray("Survey") << 0;
        QTest::newRow("second") << "FR" << QByteArray("Enqu\xC3\xAAte") << 1;
        QTest::newRow("without regard to case") << "fr" << QByteArray("Enqu\xC3\xAAte") << 1;
        QTest::newRow("absent") << "SW" << QByteArray("Survey") << 0;
    }
    void pageOpensInTheLanguageThatIsAskedFor()
    {
        QFETCH(QString, language);
        QFETCH(QByteArray, title);
        QFETCH(int, number);
        Layout layout = layoutOf({});
        layout.labels = labelsOf("Survey", QString::fromUtf8("Enqu\xC3\xAAte"));
        layout.languages = { { "EN", "" }, { "FR", "" } };
        QCOMPARE(between(pageOf(layout, { language }), "<h1 id=\"page-title\" dir=\"auto\" lang=\"\">", "</h1>"),
                 title);
        QCOMPARE(dataOf(layout, { language })["language"].toInt(), number);
    }

    void longLabelsInOneLanguageTakeNoLonger()
    {
        Labels labels;
        constexpr int parts = 100000;
        for (int i = 0; i < parts; ++i)
            labels.parts.append({ QString(), "x" });
        LabelLanguages languages({});
        const QVector<int> numbers = languages.numbersOf(labels);
        QCOMPARE(numbers.first(), 0);
        QCOMPARE(numbers.last(), parts - 1);
        QCOMPARE(languages.inOrder().size(), parts);
    }

    void relationsAreInThePage()
    {
        Layout layout = layoutOf({});
        layout.relations = { { "R", QStringList{ "S" }, "A", { { "X", "B", "" } } } };
        QCOMPARE(compact(dataOf(layout)["relations"]),
                 QByteArray("[{\"aliases\":[\"S\"],\"links\":[[\"X\",\"B\",\"\"]],\"name\":\"R\",\"primary\":\"A\"}]"));
    }

    void problemsAreInThePageUnlessTheyAreNotWanted()
    {
        Layout layout = layoutOf({});
        layout.problems = { { Severity::Warning, "no-length", 7, "L/REC/A", "no length" } };
        QCOMPARE(compact(dataOf(layout)["problems"]),
                 QByteArray("[[\"warning\",\"no-length\",7,\"L/REC/A\",\"no length\"]]"));
        CodebookOptions options;
        options.hasProblems = false;
        const QByteArray page = pageOf(layout, options);
        QVERIFY(!page.contains("no-length"));
        QVERIFY(!dataOf(layout, options).contains("problems"));
    }

    void textIsOnlyText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("script") << "<script>alert(1)</script>";
        QTest::newRow("end of the script") << "</script><script>alert(1)</script>";
        QTest::newRow("comment") << "<!-- <script> -->";
        QTest::newRow("ampersand") << "R&amp;D & &lt;b&gt;";
        QTest::newRow("quotes") << "\"double\" 'single' \\ back";
        QTest::newRow("line separator") << QString("a") + QChar(0x2028) + 'b' + QChar(0x2029) + 'c';
        QTest::newRow("control characters") << QString("a") + QChar(1) + QChar(0x1B) + QChar(0x7F) + QChar(0x85) + 'b';
        QTest::newRow("NUL") << QString("a") + QChar(0) + 'b';
        QTest::newRow("no character") << QString("a") + QChar(0xFFFE) + 'b';
        QTest::newRow("right to left") << QString::fromUtf8("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD8\xB3\xD9\x84");
        QTest::newRow("override of direction") << QString("a") + QChar(0x202E) + 'b';
        QTest::newRow("beyond 16 bits") << QString::fromUtf8("\xF0\x9F\x8F\xA0 house");
        QTest::newRow("braces of the template") << "{{script}} {{data}}";
    }
    void textIsOnlyText()
    {
        QFETCH(QString, text);
        Item item = itemNamed(text, text);
        item.note = text;
        item.valueSets = { setOf({ valueOf({ { text, text } }, text) }) };
        Layout layout = layoutOf({ item });
        layout.labels = labelsOf(text);
        layout.file = QString(text).remove('/');
        layout.note = text;
        layout.problems = { { Severity::Info, text, 0, text, text } };
        const QByteArray page = pageOf(layout);
        const QJsonObject data = dataOf(layout);
        const QJsonObject found = firstItemOf(data);
        QCOMPARE(found["name"].toString(), text);
        QCOMPARE(found["label"].toString(), text);
        QCOMPARE(data["label"].toString(), text);
        const QJsonArray value = data["lists"].toArray().at(0).toArray().at(0).toArray();
        QCOMPARE(value.at(0).toArray().at(0).toArray().at(1).toString(), text);
        QCOMPARE(value.at(1).toString(), text);
        // There are two scripts, the data and that of the page, whatever a text contains.
        QCOMPARE(page.count("<script"), 2);
        QCOMPARE(page.count("</script"), 2);
        QVERIFY(isHarmless(dataTextOf(page)));
        QVERIFY(!page.contains('\x1B') && !page.contains('\0'));
        QVERIFY(isHarmless(dataTextOf(indexOf({ indexEntryOf(layout, text) }))));
    }

    void halfOfASurrogatePairIsAnEscape()
    {
        Layout layout = layoutOf({ itemNamed("A", QString("a") + QChar(0xD83D) + 'b') });
        layout.name = QString(QChar(0xDE00)) + 'z';
        const QByteArray page = pageOf(layout);
        QVERIFY(dataTextOf(page).contains("\"label\":\"a\\ud83db\""));
        QVERIFY(isHarmless(dataTextOf(page)));
        QCOMPARE(between(page, "<h1 id=\"page-title\" dir=\"auto\" lang=\"\">", "</h1>"), QByteArray("\\ude00z"));
    }

    void pageIsSelfContained_data() { addPages(); }
    void pageIsSelfContained()
    {
        QFETCH(QByteArray, page);
        const QByteArray frame = QByteArray(page).replace(dataTextOf(page), QByteArray());
        for (const char *text : { "://", "@import", "url(", " src=", "<link", "{{", " style=\"" })
            QVERIFY2(!frame.contains(text), text);
        for (const char *name : { "innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "eval(" })
            QVERIFY2(!scriptOf(page).contains(name), name);
        auto links = QRegularExpression("href=\"([^\"]*)\"").globalMatch(QString::fromUtf8(frame));
        QVERIFY(links.hasNext());
        while (links.hasNext())
            QVERIFY(links.next().captured(1).startsWith('#'));
        QVERIFY(page.startsWith("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"));
        QVERIFY(page.endsWith("</html>\n"));
        QVERIFY(page.contains("<noscript>"));
    }

    void policyAllowsOnlyThePagesOwnStyleAndScript_data() { addPages(); }
    void policyAllowsOnlyThePagesOwnStyleAndScript()
    {
        QFETCH(QByteArray, page);
        const auto sourceOf = [](const QByteArray &content) {
            const QByteArray hash = QCryptographicHash::hash(content, QCryptographicHash::Sha256);
            return "'sha256-" + hash.toBase64() + '\'';
        };
        QCOMPARE(between(page, "http-equiv=\"Content-Security-Policy\" content=\"", "\""),
                 "default-src 'none'; style-src " + sourceOf(between(page, "<style>", "</style>")) + "; script-src "
                     + sourceOf(scriptOf(page)) + "; base-uri 'none'; form-action 'none'");
    }

    void deviceThatIsFullIsReported_data()
    {
        QTest::addColumn<bool>("isIndex");
        QTest::newRow("codebook") << false;
        QTest::newRow("index") << true;
    }
    void deviceThatIsFullIsReported()
    {
        QFETCH(bool, isIndex);
        const Layout layout = layoutOf({ itemNamed("A") });
        const QVector<CodebookIndexEntry> entries = { indexEntryOf(layout, "a.html") };
        const int size = isIndex ? indexOf(entries).size() : pageOf(layout).size();
        for (const int room : { 0, 100, size / 2, size - 1, size }) {
            NarrowDevice device(room);
            QCOMPARE(isIndex ? writeCodebookIndex(entries, device) : writeCodebook(layout, device), room == size);
        }
    }

    void indexHasNamesAndLabelsOfAllCodebooks()
    {
        const auto list = [](const QString &label) { return setOf({ valueOf({ { "1", "" } }, label) }); };
        Item item = itemNamed("A");
        item.labels = labelsOf("House", "Maison");
        item.aliases = QStringList{ "OLD" };
        item.valueSets = { list("Yes"), setOf({ valueOf({ { "2", "" } }, "No"), valueOf({ { "3", "" } }, "Both") }) };
        Item other = itemNamed("B");
        other.valueSets = { setOf({ Value() }), list("Yes") };
        Layout layout = layoutOf({ item, other });
        layout.labels = labelsOf("Survey");
        layout.levels[0].ids = { itemNamed("ID") };
        const QByteArray page = indexOf({ indexEntryOf(layout, "s.html") }, { "FR" });
        QCOMPARE(
            QJsonDocument::fromJson(dataTextOf(page)).toJson(QJsonDocument::Compact),
            QByteArray(
                "[{\"file\":\"survey.dcf\",\"format\":\"CSPro dictionary, text form 7.7\",\"items\":[[\"ID\",\"\"],"
                "[\"A\",\"Maison\",0,1,\"House\",\"OLD\"],[\"B\",\"\",0]],\"label\":\"Survey\",\"lists\":[\"Yes\","
                "\"No\\nBoth\"],\"name\":\"SURVEY\",\"page\":\"s.html\",\"records\":1}]"));
        QVERIFY(page.contains("<li><b>1</b> codebook</li>\n<li><b>3</b> variables</li>"));
    }

    void realFilesGiveWholePages()
    {
        if (!QFile::exists(QStringLiteral(VAN_CORPUS)))
            QSKIP("the corpus is not available");
        int pages = 0;
        for (const char *kind : { "cspro-text", "cspro-json", "spss", "stata" }) {
            const QStringList files = corpusFiles(kind);
            for (const QString &file : files) {
                const Layout layout = readLayout(file);
                if (!layout.isRead())
                    continue;
                const QByteArray page = pageOf(layout);
                QVERIFY2(isHarmless(dataTextOf(page)), qPrintable(file));
                const QJsonObject data = dataOf(layout);
                QCOMPARE(data["levels"].toArray().size(), layout.levels.size());
                QCOMPARE(data["problems"].toArray().size(), layout.problems.size());
                ++pages;
            }
        }
        QVERIFY(pages > 100);
    }

private:
    static void addPages()
    {
        QTest::addColumn<QByteArray>("page");
        const Layout layout = layoutOf({ itemNamed("A") });
        QTest::newRow("codebook") << pageOf(layout);
        QTest::newRow("index") << indexOf({ indexEntryOf(layout, "a.html") });
    }
};

QTEST_GUILESS_MAIN(CodebookTest)
#include "CodebookTest.moc"
