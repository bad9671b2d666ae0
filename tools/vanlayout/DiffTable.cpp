#include "DiffTable.h"

#include "LayoutText.h"
#include "Printable.h"
#include "TableLines.h"
#include "write/DiffWalk_p.h"

#include <QStringList>

#include <algorithm>

using vanlayout::Change;
using vanlayout::ComparedLayout;
using vanlayout::DiffKind;
using vanlayout::DiffPart;
using vanlayout::DiffSide;
using vanlayout::infoOf;
using vanlayout::KindCount;
using vanlayout::LayoutDiff;
using vanlayout::NotCompared;

namespace
{

constexpr QChar arrow(0x2192);

// A text for people. Quotation marks make empty texts and blanks at the ends of a text visible.
QString shownText(DiffKind kind, const QString &text)
{
    return hasFreeText(kind) ? QLatin1Char('"') + printable(text) + QLatin1Char('"')
                             : printable(vanlayout::wordingOf(text));
}

QString fromTo(const QString &before, const QString &after)
{
    return before + QLatin1Char(' ') + arrow + QLatin1Char(' ') + after;
}

/// The table of the changes, as a walk through them requests it.
class ChangeLines
{
public:
    explicit ChangeLines(TableLines &tableLines)
        : lines(tableLines)
    {
    }

    void section(const Change &change)
    {
        lines.printEmpty();
        QString heading = printable(describeSection(change));
        if (change.kind == DiffKind::RecordAdded || change.kind == DiffKind::RecordRemoved) {
            heading = mark(change) + heading + QLatin1Char(' ') + onlyText(change);
        }
        lines.print(0, heading);
    }
    void item(const Change &change)
    {
        const QString name = printable(change.item);
        lines.print(1, change.otherName.isEmpty() ? name : fromTo(name, printable(change.otherName)));
    }
    void valueSet(const Change &change)
    {
        lines.print(2, QLatin1String("values of ") + printable(vanlayout::wordingOf(change.valueSet)));
    }
    void shift(const Change &first, const Change &last, int count, qint64 columns)
    {
        const QString text = QStringLiteral("%1 to %2: %3 items, start %4%5");
        lines.print(1,
                    text.arg(printable(first.item), printable(last.item), QString::number(count),
                             columns > 0 ? QStringLiteral("+") : QString(), QString::number(columns)));
    }
    void change(const Change &change)
    {
        switch (partOf(change.kind)) {
        case DiffPart::Dictionary:
        case DiffPart::Level:
            return property(1, describeProperty(change), change);
        case DiffPart::Record:
            if (change.kind != DiffKind::RecordAdded && change.kind != DiffKind::RecordRemoved)
                property(1, describeProperty(change), change);
            return;
        case DiffPart::Item:
            return changeOfItem(change);
        case DiffPart::ValueSet:
            return property(infoOf(change.kind).side == DiffSide::Both ? 3 : 2, setOf(change), change);
        case DiffPart::Value:
            return changeOfValue(change);
        }
    }

private:
    static QString mark(const Change &change)
    {
        return infoOf(change.kind).side == DiffSide::After ? QStringLiteral("+ ") : QStringLiteral("- ");
    }
    static QString setOf(const Change &change)
    {
        const QString text = describeProperty(change);
        return infoOf(change.kind).side == DiffSide::Both ? text : text + QLatin1Char(' ') + printable(change.valueSet);
    }

    void changeOfItem(const Change &change)
    {
        if (infoOf(change.kind).side != DiffSide::Both)
            lines.print(1, mark(change) + printable(change.item) + QLatin1Char(' ') + onlyText(change));
        else if (change.kind != DiffKind::ItemRenamed)
            property(2, describeProperty(change), change);
    }
    void changeOfValue(const Change &change)
    {
        const QString code = printable(change.code);
        if (infoOf(change.kind).side != DiffSide::Both)
            lines.print(3, mark(change) + code + QLatin1Char(' ') + onlyText(change));
        else if (change.kind == DiffKind::ValueLabel)
            property(3,
                     change.language.isEmpty()
                         ? code
                         : code + QLatin1String(" [") + printable(change.language) + QLatin1Char(']'),
                     change);
        else
            property(3, code + QLatin1String(", ") + infoOf(change.kind).title.section(QLatin1Char(' '), 0, 0), change);
    }
    // An empty label is not shown, because there is already the name.
    static QString onlyText(const Change &change)
    {
        const QString &text = infoOf(change.kind).side == DiffSide::After ? change.after : change.before;
        return text.isEmpty() ? text : shownText(change.kind, text);
    }

    // Prints one line, or one for the property and one for each text.
    void property(int depth, const QString &name, const Change &change)
    {
        const QString shownName = printable(name) + QLatin1String(": ");
        if (infoOf(change.kind).side != DiffSide::Both) {
            const QString text = onlyText(change);
            lines.print(depth, text.isEmpty() ? printable(name) : shownName + text);
            return;
        }
        const QString before = shownText(change.kind, change.before);
        const QString after = shownText(change.kind, change.after);
        if (lines.fits(depth, shownName + fromTo(before, after))) {
            lines.print(depth, shownName + fromTo(before, after));
            return;
        }
        lines.print(depth, shownName);
        lines.print(depth + 1, before);
        lines.print(depth + 1, arrow + QLatin1Char(' ') + after);
    }

    TableLines &lines;
};

QString titleOf(const char *side, const ComparedLayout &compared)
{
    return QLatin1String(side) + printable(compared.file) + QLatin1String(": ") + printable(describeCompared(compared));
}

void printHead(const LayoutDiff &diff, TableLines &lines)
{
    lines.print(0, titleOf("Old: ", diff.before));
    lines.print(0, titleOf("New: ", diff.after));
    const QVector<NotCompared> reasons = groupedByReason(diff.notCompared);
    for (const NotCompared &reason : reasons)
        lines.print(0, QStringLiteral("Not compared (%1): %2").arg(reason.why, reason.what));
    lines.printEmpty();
}

QString countOfAll(const LayoutDiff &diff)
{
    if (diff.isEmpty())
        return QStringLiteral("The layouts are the same");
    return countOf(diff.changes.size(), QStringLiteral("difference"));
}

} // namespace

void printDiffTable(const LayoutDiff &diff, QIODevice &out, int width)
{
    TableLines lines(out, width);
    printHead(diff, lines);
    QStringList words = { countOfAll(diff) };
    const QVector<KindCount> counts = diff.counts();
    for (const KindCount &entry : counts) {
        words.last() += QLatin1Char(words.size() == 1 ? ':' : ',');
        words.append(wordOf(entry.kind) + QLatin1Char(' ') + QString::number(entry.count));
    }
    lines.print(0, words);
    ChangeLines changes(lines);
    vanlayout::DiffWalk(diff.changes, changes).walk();
}

void printDiffSummary(const LayoutDiff &diff, QIODevice &out, int width)
{
    TableLines lines(out, width);
    printHead(diff, lines);
    lines.print(0, countOfAll(diff));
    const QVector<KindCount> counts = diff.counts();
    int countWidth = 0;
    int wordWidth = 0;
    for (const KindCount &entry : counts) {
        countWidth = std::max(countWidth, int(QString::number(entry.count).size()));
        wordWidth = std::max(wordWidth, int(wordOf(entry.kind).size()));
    }
    for (const KindCount &entry : counts)
        lines.print(1,
                    QString::number(entry.count).rightJustified(countWidth) + QLatin1String("  ")
                        + wordOf(entry.kind).leftJustified(wordWidth) + QLatin1String("  ")
                        + infoOf(entry.kind).meaning);
}
