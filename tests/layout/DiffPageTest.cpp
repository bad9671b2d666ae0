#include "read/Reader.h"
#include "write/DiffPage.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

using namespace vanlayout;

namespace
{

QString pageOf(const LayoutDiff &diff)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeDiffPage(diff, buffer) ? QString::fromUtf8(buffer.data()) : QString();
}

QString between(const QString &page, const QString &begin, const QString &end)
{
    const int at = page.indexOf(begin) + begin.size();
    return page.mid(at, page.indexOf(end, at) - at);
}

// The list of changes, which is well-formed XML except for the attributes of its element.
QString listOf(const QString &page)
{
    return "<main>" + between(page, "<main id=\"page-changes\" tabindex=\"-1\">", "</main>") + "</main>";
}

// The elements of the list that directly contain a text, as "element.class: text".
QStringList linesOf(const QString &page)
{
    QStringList lines;
    QXmlStreamReader xml(listOf(page));
    QStringList open;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QString className = xml.attributes().value("class").toString();
            open.append(xml.name().toString() + (className.isEmpty() ? "" : "." + className));
        } else if (xml.isEndElement()) {
            open.removeLast();
        } else if (xml.isCharacters() && !xml.isWhitespace()) {
            lines.append(open.last() + ": " + xml.text().toString().trimmed());
        }
    }
    return xml.hasError() ? QStringList(xml.errorString()) : lines;
}

Change change(DiffKind kind, const QString &record, const QString &item, const QString &before, const QString &after)
{
    Change result;
    result.kind = kind;
    result.record = record;
    result.item = item;
    result.before = before;
    result.after = after;
    return result;
}

LayoutDiff diffOf(const QVector<Change> &changes)
{
    LayoutDiff diff;
    diff.before = { "directory/old.dcf", Format::CSProText, "", "7.7", "D", "Old survey", 3 };
    diff.after = { "new.sav", Format::Spss, "", "", "", "", 1 };
    diff.changes = changes;
    return diff;
}

// A device that accepts only a given number of bytes.
class SmallDevice : public QIODevice
{
public:
    explicit SmallDevice(qint64 bytes)
        : room(bytes)
    {
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        room -= size;
        return room < 0 ? -1 : size;
    }

private:
    qint64 room;
};

} // namespace

class DiffPageTest : public QObject
{
    Q_OBJECT

private slots:
    void changesAreListedByRecordAndItem();
    void valueSetOfOneLayoutIsNamed();
    void itemsThatMoveTogetherAreOneLine();
    void differingWordsAreBold_data();
    void differingWordsAreBold();
    void headHasBothFiles();
    void sameLayoutsSaySo();
    void kindsAreDataOfTheScript();
    void everyKindIsWellFormed_data();
    void everyKindIsWellFormed();
    void hostileTextsStayTexts_data();
    void hostileTextsStayTexts();
    void nothingRunsButTheScript();
    void pageLooksLikeACodebook();
    void deviceThatRefusesIsReported();
};

void DiffPageTest::changesAreListedByRecordAndItem()
{
    Change renamed = change(DiffKind::ItemRenamed, "R", "A", "A", "B");
    renamed.otherName = "B";
    Change label = change(DiffKind::ItemLabel, "R", "A", "Sex", "");
    label.otherName = "B";
    label.language = "FR";
    Change value = change(DiffKind::ValueLabel, "R", "A", "Male", "Man");
    value.otherName = "B";
    value.valueSet = "A_VS1";
    value.code = "1";
    Change note = value;
    note.kind = DiffKind::ValueNote;
    Change added = value;
    added.kind = DiffKind::ValueAdded;
    added.code = "5 to 9";
    added.before.clear();
    const QStringList lines = linesOf(pageOf(diffOf({
        change(DiffKind::DictionaryName, "", "", "D", ""),
        change(DiffKind::RecordMaximum, "R", "", "1", "9"),
        renamed,
        label,
        value,
        note,
        added,
        change(DiffKind::ItemRemoved, "R", "GONE", "Gone", ""),
        change(DiffKind::RecordAdded, "NEW", "", "", "New record"),
        change(DiffKind::ItemAdded, "NEW", "I", "", ""),
    })));
    const QString arrow = "span.arrow: \u2192";
    QCOMPARE(lines,
             (QStringList{ "h2: Dictionary",
                           "span.property: name",
                           "del: D",
                           arrow,
                           "ins: none", // no item
                           "span.name: R",
                           "span.property: maximum",
                           "del: 1",
                           arrow,
                           "ins: 9", // of the record
                           "del: A",
                           arrow,
                           "ins: B", // the heading of the item
                           "span.property: label [FR]",
                           "del: Sex",
                           arrow,
                           "ins: none", // the item itself
                           "li.of-set: values of",
                           "span.code: A_VS1", // the heading of its value set
                           "span.code: 1",
                           "del: Male",
                           arrow,
                           "ins: Man", // a label
                           "span.code: 1, note",
                           "del: Male",
                           arrow,
                           "ins: Man", // a note
                           "span.side after: +",
                           "span.code: 5 to 9",
                           "p: Man", // a value
                           "span.side before: \u2212",
                           "h3: GONE",
                           "p: Gone", // an item of one layout
                           "span.name: NEW",
                           "span.side after: +",
                           "h3: record added",
                           "p: New record", // a record
                           "span.side after: +",
                           "h3: I" }));
}

void DiffPageTest::valueSetOfOneLayoutIsNamed()
{
    Change added = change(DiffKind::ValueSetAdded, "R", "A", "", "Answers");
    added.valueSet = "A_VS2";
    QCOMPARE(
        linesOf(pageOf(diffOf({ added }))),
        (QStringList{ "span.name: R", "h3: A", "span.property: value set added", "span.code: A_VS2", "p: Answers" }));
}

void DiffPageTest::itemsThatMoveTogetherAreOneLine()
{
    QVector<Change> moved;
    for (const char *name : { "A", "B", "C" })
        moved.append(change(DiffKind::ItemStart, "R", name, "5", "7"));
    const QString page = pageOf(diffOf(moved));
    QCOMPARE(linesOf(page), (QStringList{ "span.name: R", "h3: A \u2026 C", "p: 3 items, start +2" }));
    QVERIFY(page.contains("data-kind=\"item-start\" data-count=\"3\""));
    moved[1].after = "8";
    QCOMPARE(linesOf(pageOf(diffOf(moved))).count("span.property: start"), 3);
    moved[1].after = "7";
    moved.append(change(DiffKind::ItemLength, "R", "C", "1", "2"));
    QCOMPARE(linesOf(pageOf(diffOf(moved))).count("span.property: start"), 3);
}

void DiffPageTest::differingWordsAreBold_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("html");
    const auto row = [](const char *name, const QString &before, const QString &after, const QString &html) {
        QTest::newRow(name) << before << after << html;
    };
    row("middle", "Age in years now", "Age at years now", "Age <b>in</b> years now|Age <b>at</b> years now");
    row("end", "Age in years", "Age in months", "Age in <b>years</b>|Age in <b>months</b>");
    row("part of a word", "Monday", "Sunday", "Monday|Sunday");
    row("part of the last word", "On Monday", "On Sunday", "On <b>Monday</b>|On <b>Sunday</b>");
    row("more words", "Sex", "Sex of the child", "Sex|Sex<b> of the child</b>");
    row("repeated word", "a a", "a a a", "a a|a a<b> a</b>");
    row("nothing in common", "One", "Two", "One|Two");
}

void DiffPageTest::differingWordsAreBold()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, html);
    const QString list = listOf(pageOf(diffOf({ change(DiffKind::ItemLabel, "R", "I", before, after) })));
    QCOMPARE(between(list, "<del dir=\"auto\" lang=\"\">", "</del>") + '|'
                 + between(list, "<ins dir=\"auto\" lang=\"\">", "</ins>"),
             html);
}

void DiffPageTest::headHasBothFiles()
{
    LayoutDiff diff = diffOf({ change(DiffKind::ItemLabel, "R", "I", "a", "b") });
    diff.notCompared = { { "storage", "no" }, { "notes", "no" }, { "rows", "other" } };
    const QString page = pageOf(diff);
    QVERIFY(page.contains("<title>old.dcf \u2192 new.sav \u2013 differences</title>"));
    QVERIFY(page.contains("<h1 dir=\"auto\" lang=\"\">old.dcf \u2192 new.sav</h1>"));
    QVERIFY(page.contains("old.dcf \u00b7 CSPro dictionary, text form 7.7, 3 items \u00b7 "));
    QVERIFY(page.contains("new.sav \u00b7 SPSS file, 1 item<"));
    QVERIFY(page.contains("<b>1</b> difference</li>"));
    QVERIFY(page.contains("\"><b>1</b> item-label</li>"));
    QVERIFY(page.contains("<dd>storage, notes (no)</dd>"));
    QVERIFY(page.contains("<dd>rows (other)</dd>"));
    QVERIFY(!page.contains("directory/"));
    QVERIFY(!page.contains("{{"));
}

void DiffPageTest::sameLayoutsSaySo()
{
    const QString page = pageOf(diffOf({}));
    QVERIFY(page.contains("<li>The layouts are the same</li>"));
    QCOMPARE(linesOf(page), QStringList());
}

void DiffPageTest::kindsAreDataOfTheScript()
{
    const QString page = pageOf(
        diffOf({ change(DiffKind::ItemLabel, "R", "I", "a", "b"), change(DiffKind::ItemLabel, "R", "J", "a", "b"),
                 change(DiffKind::ItemNote, "R", "J", "a", "b") }));
    const QString data = between(page, "<script type=\"application/json\" id=\"page-data\">", "</script>");
    QCOMPARE(data, QString(R"([{"kind":"item-label","count":2},{"kind":"item-note","count":1}])"));
    QCOMPARE(page.count("data-kind=\"item-label\""), 2);
}

void DiffPageTest::everyKindIsWellFormed_data()
{
    QTest::addColumn<int>("kind");
    for (const DiffKindInfo &info : diffKinds())
        QTest::newRow(qPrintable(info.word)) << int(info.kind);
}

void DiffPageTest::everyKindIsWellFormed()
{
    QFETCH(int, kind);
    Change one = change(DiffKind(kind), "RECORD", "ITEM", "BEFORE", "AFTER");
    one.level = "LEVEL";
    one.valueSet = "SET";
    one.code = "CODE";
    const QString list = listOf(pageOf(diffOf({ one, one })));
    QXmlStreamReader xml(list);
    while (!xml.atEnd())
        xml.readNext();
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString() + list));
    const DiffSide side = infoOf(DiffKind(kind)).side;
    const bool isHeading = DiffKind(kind) == DiffKind::ItemRenamed;
    QVERIFY(isHeading || list.contains("BEFORE") == (side != DiffSide::After));
    QVERIFY(isHeading || list.contains("AFTER") == (side != DiffSide::Before));
    QCOMPARE(list.count("data-kind=\"" + wordOf(DiffKind(kind)) + '"'), isHeading ? 1 : 2);
}

void DiffPageTest::hostileTextsStayTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("element") << "<b onclick=\"alert(1)\">x</b>";
    QTest::newRow("script") << "</script><script>alert(1)</script>";
    QTest::newRow("end of the list") << "</main></section>";
    QTest::newRow("comment") << "<!-- ]]> -->";
    QTest::newRow("entities") << "&lt;b&gt; &amp; &#60;";
    QTest::newRow("quotes") << "\" onmouseover=\"x' y='";
    QTest::newRow("braces") << "{{script}} {{data}}";
    QTest::newRow("controls") << QString::fromUtf8("a\x01\x1B b\u009B\u2028");
    QTest::newRow("half a pair") << QString(QChar(0xD83D)) + "x";
}

void DiffPageTest::hostileTextsStayTexts()
{
    QFETCH(QString, text);
    const auto changesWith = [](const QString &content) {
        Change all = change(DiffKind::ValueLabel, content, content, content, content + ' ' + content);
        all.level = all.otherName = all.valueSet = all.code = all.language = content;
        Change shift = change(DiffKind::ItemStart, content, content, "1", "2");
        Change added = change(DiffKind::ItemAdded, content, content, "", content);
        LayoutDiff diff = diffOf({ all, shift, added });
        diff.before.file = diff.after.file = diff.before.label = content;
        diff.before.file.replace('/', '-');
        diff.after.file.replace('/', '-');
        diff.notCompared = { { content, content } };
        return diff;
    };
    const QString page = pageOf(changesWith(text));
    const QString plain = pageOf(changesWith("plain"));
    // The elements are the same, whatever the texts are.
    const QRegularExpression element("<[a-z!/][^>]*>");
    const auto elementsOf = [&](const QString &html) {
        QStringList elements;
        auto matches = element.globalMatch(listOf(html));
        while (matches.hasNext())
            elements.append(matches.next().captured());
        return elements.filter(QRegularExpression("^<(?!/?b>)"));
    };
    QCOMPARE(elementsOf(page), elementsOf(plain));
    QCOMPARE(page.count("<script"), plain.count("<script"));
    QCOMPARE(page.count("</main>"), 1);
    QCOMPARE(linesOf(page).filter("Premature").size(), 0);
    for (const QChar unit : page) {
        const ushort code = unit.unicode();
        QVERIFY(code == '\n' || (code >= 0x20 && code < 0x7F) || code >= 0xA0);
        QVERIFY(code != 0x2028 && !unit.isSurrogate());
    }
}

void DiffPageTest::nothingRunsButTheScript()
{
    const QString page = pageOf(diffOf({ change(DiffKind::ItemLabel, "R", "I", "a", "b") }));
    const auto hashOf = [](const QString &content) {
        return "'sha256-" + QCryptographicHash::hash(content.toUtf8(), QCryptographicHash::Sha256).toBase64() + "'";
    };
    const QString policy = between(page, "Content-Security-Policy\" content=\"", "\"");
    QCOMPARE(policy,
             "default-src 'none'; style-src " + hashOf(between(page, "<style>", "</style>")) + "; script-src "
                 + hashOf(between(page, "<script>", "</script>")) + "; base-uri 'none'; form-action 'none'");
    QVERIFY(!page.contains("http:") && !page.contains("https:"));
}

void DiffPageTest::pageLooksLikeACodebook()
{
    QFile style(":/vanlayout/codebook/page.css");
    const QString page = pageOf(diffOf({}));
    QVERIFY(style.open(QIODevice::ReadOnly));
    QVERIFY(between(page, "<style>", "</style>").startsWith(QString::fromUtf8(style.readAll())));
}

void DiffPageTest::deviceThatRefusesIsReported()
{
    const LayoutDiff diff = diffOf({ change(DiffKind::ItemLabel, "R", "I", "a", "b") });
    const qint64 size = pageOf(diff).toUtf8().size();
    for (const qint64 room : { qint64(0), size / 2, size - 1 }) {
        SmallDevice device(room);
        device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        QVERIFY(!writeDiffPage(diff, device));
    }
    SmallDevice device(size);
    device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    QVERIFY(writeDiffPage(diff, device));
}

QTEST_APPLESS_MAIN(DiffPageTest)
#include "DiffPageTest.moc"
