#include "Head_p.h"

#include "PlanLists_p.h"
#include "PlanTexts_p.h"
#include "vanlayout_version.h"

namespace vanlayout
{

namespace
{

constexpr int lineWidth = 100;   // characters of a comment
constexpr int longestWord = 200; // characters, with at most four bytes each

QString withoutEnd(QString text, const CommentStyle &style)
{
    const QString end = QString::fromLatin1(style.end);
    if (end.isEmpty())
        return text;
    // This is done twice, because a separated pair can leave another one: `**//`.
    const QString separated = QString(end).insert(1, QLatin1Char(' '));
    return text.replace(end, separated).replace(end, separated);
}

// The number of blanks with which a text begins: its further lines have as many.
int indentOf(const QString &text)
{
    int indent = 0;
    while (indent < text.size() && indent < lineWidth / 2 && text.at(indent) == QLatin1Char(' '))
        ++indent;
    return indent;
}

// The end of the line that begins at `start`: at a blank, or within a word that is too long for any line.
int endOfLine(const QString &text, int start)
{
    if (text.size() - start <= lineWidth)
        return text.size();
    const int blank = text.lastIndexOf(QLatin1Char(' '), start + lineWidth);
    if (blank > start)
        return blank;
    const int next = text.indexOf(QLatin1Char(' '), start + lineWidth);
    const int end = next < 0 ? text.size() : next;
    if (end - start <= longestWord)
        return end;
    const int cut = start + longestWord;
    return text.at(cut).isLowSurrogate() ? cut - 1 : cut;
}

QStringList brokenLines(const QString &text)
{
    const QString indent(indentOf(text), QLatin1Char(' '));
    QStringList lines;
    int start = indent.size();
    do {
        const int end = endOfLine(text, start);
        lines.append(indent + text.mid(start, end - start));
        start = end < text.size() && text.at(end) == QLatin1Char(' ') ? end + 1 : end;
    } while (start < text.size());
    return lines;
}

QByteArray commentLine(const QString &line, const CommentStyle &style)
{
    QByteArray text = style.before + line.toUtf8() + style.after;
    while (text.endsWith(' '))
        text.chop(1);
    return text + '\n';
}

QString dictionaryLine(const LoadPlan &plan)
{
    QString line = QStringLiteral("Dictionary: ") + (plan.dictionary.isEmpty() ? plan.name : plan.dictionary);
    if (!plan.label.isEmpty())
        line += QLatin1String(", \"") + plan.label + QLatin1Char('"');
    return plan.version.isEmpty() ? line : line + QLatin1String(" (") + plan.version + QLatin1Char(')');
}

QStringList indented(const QStringList &lines)
{
    QStringList texts;
    for (const QString &line : lines)
        texts.append(QLatin1String("  ") + line);
    return texts;
}

QStringList tableLines(const LoadPlan &plan)
{
    QStringList lines;
    for (const PlannedTable &table : plan.tables)
        lines.append(table.label.isEmpty() ? oneLine(table.name)
                                           : oneLine(table.name) + QLatin1String("  ") + table.label);
    return lines;
}

QStringList renameLines(const LoadPlan &plan)
{
    QStringList lines;
    for (const RenamedName &rename : plan.renames)
        lines.append(oneLine(rename.original) + QLatin1String("  ") + oneLine(rename.name));
    return lines;
}

// Appends a part with its heading; nothing if it has no lines.
void addPart(QStringList &head, const QString &heading, const QStringList &lines)
{
    if (lines.isEmpty())
        return;
    head.append(QString());
    if (!heading.isEmpty())
        head.append(heading);
    head += heading.isEmpty() ? lines : indented(lines);
}

} // namespace

QByteArray comment(const QStringList &texts, const CommentStyle &style)
{
    QByteArray lines;
    for (const QString &text : texts) {
        const QStringList broken = brokenLines(withoutEnd(oneLine(text), style));
        for (const QString &line : broken)
            lines += commentLine(line, style);
    }
    return lines;
}

QByteArray programHead(const LoadPlan &plan, const CommentStyle &style, const HeadTexts &texts)
{
    QStringList head = {
        QStringLiteral("Loads %1 with %2.").arg(plan.dataKind, texts.target),
        QStringLiteral("Made by vanlayout " VANLAYOUT_VERSION_STRING " from the data dictionary; it can be edited."),
        QString(),
        dictionaryLine(plan),
        QStringLiteral("Data file:  ") + plan.options.data,
    };
    addPart(head, QStringLiteral("To run it:"), texts.run);
    addPart(head, QString(), texts.change);
    addPart(head, QString(), texts.needs);
    addPart(head, QStringLiteral("Tables:"), tableLines(plan));
    addPart(head, QStringLiteral("Names that differ from the dictionary (dictionary, program):"), renameLines(plan));
    addPart(head, QStringLiteral("Remarks:"), plan.remarks);
    return comment(head, style);
}

QByteArray tableTitle(const PlannedTable &table, const CommentStyle &style)
{
    return comment({ table.label.isEmpty() ? table.name : table.name + QLatin1String(": ") + table.label }, style);
}

QStringList rangeRemarks(const LoadPlan &plan)
{
    QStringList remarks;
    forEachCodeList(plan, [&](const PlannedTable &table, const PlannedColumn &column) {
        for (const CodeRow &range : plan.codes.at(column.codes).rangeLabels)
            remarks.append(QStringLiteral("%1.%2: %3 to %4 is \"%5\"")
                               .arg(table.name, column.name, range.from, range.to, range.label));
    });
    return remarks;
}

} // namespace vanlayout
