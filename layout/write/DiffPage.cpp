#include "write/DiffPage.h"

#include "write/DiffWalk_p.h"
#include "write/HtmlPage_p.h"

#include <QFileInfo>

#include <rapidjson/writer.h>

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr char arrow[] = " <span class=\"arrow\">\u2192</span> ";

/// The numbers of characters that two texts have in common at their beginning and end, in whole words.
struct CommonEnds {
    int front = 0;
    int back = 0;
};

bool isBoundary(const QString &text, int at)
{
    return at == 0 || at == text.size() || text.at(at).isSpace() || text.at(at - 1).isSpace();
}

CommonEnds commonEndsOf(const QString &one, const QString &other)
{
    const int maxEnds = std::min(one.size(), other.size());
    CommonEnds ends;
    while (ends.front < maxEnds && one.at(ends.front) == other.at(ends.front))
        ++ends.front;
    while (ends.front > 0 && !(isBoundary(one, ends.front) && isBoundary(other, ends.front)))
        --ends.front;
    const auto isBack = [&](int back) { return one.at(one.size() - back) == other.at(other.size() - back); };
    while (ends.back < maxEnds - ends.front && isBack(ends.back + 1))
        ++ends.back;
    while (ends.back > 0 && !(isBoundary(one, one.size() - ends.back) && isBoundary(other, other.size() - ends.back)))
        --ends.back;
    return ends;
}

// A text with the part that differs in bold, unless that part is the whole text or empty.
QByteArray markedHtml(const QString &text, const CommonEnds &ends)
{
    if (ends.front + ends.back == 0 || ends.front + ends.back >= text.size())
        return htmlOf(text);
    const int size = text.size() - ends.front - ends.back;
    return htmlOf(text.left(ends.front)) + "<b>" + htmlOf(text.mid(ends.front, size)) + "</b>"
        + htmlOf(text.right(ends.back));
}

QByteArray textElement(const char *tag, const QByteArray &content)
{
    return QByteArray("<") + tag + " dir=\"auto\" lang=\"\">" + content + "</" + tag + '>';
}

QByteArray shownHtml(DiffKind kind, const QString &text)
{
    return htmlOf(hasFreeText(kind) && !text.isEmpty() ? text : wordingOf(text));
}

/// Writes the sections of the page, as a walk through the changes requests them.
class ChangeSections
{
public:
    explicit ChangeSections(QIODevice &target)
        : device(target)
    {
    }

    bool isComplete() const { return isWhole; }

    void section(const Change &change)
    {
        end();
        isSectionOpen = true;
        const QByteArray heading = htmlOf(describeSection(change));
        const bool isName = !change.record.isEmpty() && describeSection(change) == change.record;
        put("<section class=\"record drawn\">\n<header><h2>"
            + (isName ? "<span class=\"name\">" + heading + "</span>" : heading) + "</h2></header>\n");
    }
    void item(const Change &change)
    {
        QByteArray name = htmlOf(change.item);
        if (!change.otherName.isEmpty())
            name = "<del>" + name + "</del>" + arrow + "<ins>" + htmlOf(change.otherName) + "</ins>";
        // The heading has both names, so a change of the name has no line.
        open(change.kind == DiffKind::ItemRenamed ? "<h3 data-kind=\"item-renamed\">" + name + "</h3>"
                                                  : "<h3>" + name + "</h3>");
    }
    void valueSet(const Change &change)
    {
        put("<li class=\"of-set\">values of <span class=\"code\">" + htmlOf(wordingOf(change.valueSet))
            + "</span></li>\n");
    }
    void shift(const Change &first, const Change &last, int count, qint64 columns)
    {
        endItem();
        const QByteArray moved = (columns > 0 ? "+" : "") + QByteArray::number(columns);
        put("<div class=\"changed-item\" data-kind=\"item-start\" data-count=\"" + QByteArray::number(count) + "\"><h3>"
            + htmlOf(first.item) + " \u2026 " + htmlOf(last.item) + "</h3><p>" + groupedNumber(count) + " items, start "
            + moved + "</p></div>\n");
    }
    void change(const Change &change)
    {
        const DiffSide side = infoOf(change.kind).side;
        const DiffPart part = partOf(change.kind);
        if (side != DiffSide::Both && part == DiffPart::Item)
            whole(change, htmlOf(change.item));
        else if (change.kind == DiffKind::RecordAdded || change.kind == DiffKind::RecordRemoved)
            whole(change, htmlOf(infoOf(change.kind).title));
        else if (change.kind != DiffKind::ItemRenamed)
            line(change);
    }
    void end()
    {
        endItem();
        if (isSectionOpen)
            put("</section>\n");
        isSectionOpen = false;
    }

private:
    void put(const QByteArray &html) { isWhole = writeBytes(device, html) && isWhole; }

    void open(const QByteArray &heading)
    {
        endItem();
        isItemOpen = true;
        put("<div class=\"changed-item\">" + heading + "<ul>\n");
    }
    void endItem()
    {
        if (isItemOpen)
            put("</ul></div>\n");
        isItemOpen = false;
    }

    static QByteArray markOf(DiffSide side)
    {
        return side == DiffSide::After ? "<span class=\"side after\">+</span>"
                                       : "<span class=\"side before\">\u2212</span>";
    }
    static const QString &onlyText(const Change &change)
    {
        return infoOf(change.kind).side == DiffSide::After ? change.after : change.before;
    }

    // Writes an element that only one layout has.
    void whole(const Change &change, const QByteArray &name)
    {
        endItem();
        put("<div class=\"changed-item\" data-kind=\"" + kindOf(change) + "\"><h3>" + markOf(infoOf(change.kind).side)
            + name + "</h3>" + textElement("p", htmlOf(onlyText(change))) + "</div>\n");
    }

    void line(const Change &change)
    {
        // Changes that do not belong to an item have a separate box without a name.
        if (!isItemOpen)
            open(QByteArray());
        const bool isOfValue = partOf(change.kind) == DiffPart::Value;
        put("<li data-kind=\"" + kindOf(change) + "\"><span class=\"" + (isOfValue ? "code" : "property") + "\">"
            + nameOf(change) + "</span>" + textsOf(change) + "</li>\n");
    }
    static QByteArray kindOf(const Change &change) { return wordOf(change.kind).toLatin1(); }
    static QByteArray nameOf(const Change &change)
    {
        const DiffSide side = infoOf(change.kind).side;
        if (partOf(change.kind) != DiffPart::Value)
            return htmlOf(describeProperty(change));
        if (side != DiffSide::Both)
            return markOf(side) + htmlOf(change.code);
        const QString language
            = change.language.isEmpty() ? QString() : QLatin1String(" [") + change.language + QLatin1Char(']');
        const QString property = change.kind == DiffKind::ValueLabel
            ? QString()
            : QLatin1String(", ") + infoOf(change.kind).title.section(QLatin1Char(' '), 0, 0);
        return htmlOf(change.code + property + language);
    }
    static QByteArray textsOf(const Change &change)
    {
        if (infoOf(change.kind).side != DiffSide::Both)
            return textElement("p", setNameOf(change) + htmlOf(onlyText(change)));
        const CommonEnds ends = hasFreeText(change.kind) ? commonEndsOf(change.before, change.after) : CommonEnds();
        const auto shown = [&](const QString &text) {
            return ends.front + ends.back > 0 ? markedHtml(text, ends) : shownHtml(change.kind, text);
        };
        return "<p>" + textElement("del", shown(change.before)) + arrow + textElement("ins", shown(change.after))
            + "</p>";
    }
    // The name of a value set that only one layout has.
    static QByteArray setNameOf(const Change &change)
    {
        return partOf(change.kind) == DiffPart::ValueSet
            ? "<span class=\"code\">" + htmlOf(change.valueSet) + "</span> "
            : QByteArray();
    }

    QIODevice &device;
    bool isSectionOpen = false;
    bool isItemOpen = false;
    bool isWhole = true;
};

QString nameOfFile(const ComparedLayout &compared)
{
    return QFileInfo(compared.file).fileName();
}

QByteArray fact(const QByteArray &name, const QByteArray &text, const char *className = "")
{
    return QByteArray("<div><dt class=\"") + className + "\">" + name + "</dt><dd>" + text + "</dd></div>\n";
}

QByteArray factOf(const char *side, const ComparedLayout &compared)
{
    QByteArray text = htmlOf(nameOfFile(compared)) + " \u00b7 " + htmlOf(describeCompared(compared));
    if (!compared.label.isEmpty())
        text += " \u00b7 <span dir=\"auto\" lang=\"\">" + htmlOf(compared.label) + "</span>";
    return fact(side, text);
}

QByteArray factsOf(const LayoutDiff &diff)
{
    QByteArray facts = factOf("Old", diff.before) + factOf("New", diff.after);
    const QVector<NotCompared> reasons = groupedByReason(diff.notCompared);
    for (const NotCompared &reason : reasons)
        facts += fact("Not compared", htmlOf(reason.what) + " (" + htmlOf(reason.why) + ')', "long");
    return facts;
}

QByteArray countsOf(const LayoutDiff &diff)
{
    if (diff.isEmpty())
        return "<li>The layouts are the same</li>\n";
    QByteArray counts = "<li><b>" + groupedNumber(diff.changes.size()) + "</b> difference"
        + (diff.changes.size() == 1 ? "" : "s") + "</li>\n";
    const QVector<KindCount> kinds = diff.counts();
    for (const KindCount &entry : kinds)
        counts += "<li title=\"" + htmlOf(infoOf(entry.kind).meaning) + "\"><b>" + groupedNumber(entry.count) + "</b> "
            + wordOf(entry.kind).toLatin1() + "</li>\n";
    return counts;
}

bool writeKinds(const LayoutDiff &diff, QIODevice &device)
{
    JsonStream stream(device);
    rapidjson::Writer<JsonStream> json(stream);
    json.StartArray();
    const QVector<KindCount> kinds = diff.counts();
    for (const KindCount &entry : kinds) {
        json.StartObject();
        json.Key("kind");
        writeScriptString(json, wordOf(entry.kind));
        json.Key("count");
        json.Int(entry.count);
        json.EndObject();
    }
    json.EndArray();
    stream.Flush();
    return stream.isComplete();
}

bool writeChanges(const LayoutDiff &diff, QIODevice &device)
{
    ChangeSections sections(device);
    DiffWalk(diff.changes, sections).walk();
    sections.end();
    return sections.isComplete();
}

} // namespace

bool writeDiffPage(const LayoutDiff &diff, QIODevice &device)
{
    const HtmlPage page(QStringLiteral("diff/page.html"),
                        { QStringLiteral("codebook/page.css"), QStringLiteral("diff/page.css") },
                        { QStringLiteral("codebook/common.js"), QStringLiteral("diff/page.js") });
    const QByteArray files = htmlOf(nameOfFile(diff.before)) + " \u2192 " + htmlOf(nameOfFile(diff.after));
    return page.write(device, [&](const QByteArray &name, QIODevice &out) {
        if (name == "changes")
            return writeChanges(diff, out);
        if (name == "data")
            return writeKinds(diff, out);
        if (name == "counts")
            return writeBytes(out, countsOf(diff));
        if (name == "facts")
            return writeBytes(out, factsOf(diff));
        return writeBytes(out, name == "document-title" ? files + " \u2013 differences" : files);
    });
}

} // namespace vanlayout
