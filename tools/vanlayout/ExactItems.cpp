#include "ExactItems.h"

#include "Columns.h"
#include "import/ReadReport.h"
#include "write/Wording_p.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <initializer_list>

using vanlayout::Item;
using vanlayout::Special;
using vanlayout::Value;
using vanlayout::ValueSet;

namespace
{

/// The property of an item that a note concerns.
enum class Aspect { None, Type, Columns, Place, Labels, ValueSets, Specials, Missing };

// The property that a key of an item states: the key of a line such as "Len=2", or of a member such as "length":"2".
Aspect aspectOfKey(const QString &text)
{
    static const QRegularExpression key(QStringLiteral("^\"?(\\w+)"));
    const QString word = key.match(text).captured(1).toLower();
    const auto isOneOf = [&word](std::initializer_list<const char *> words) {
        return std::any_of(words.begin(), words.end(), [&](const char *known) { return word == QLatin1String(known); });
    };
    if (isOneOf({ "label", "labels" }))
        return Aspect::Labels;
    if (isOneOf({ "start", "len", "length", "occurrences" }))
        return Aspect::Columns;
    if (isOneOf({ "decimal", "decimals", "decimalchar", "datatype", "contenttype" }))
        return Aspect::Type;
    if (isOneOf({ "itemtype", "subitem" }))
        return Aspect::Place;
    return isOneOf({ "value", "valuesets" }) ? Aspect::ValueSets : Aspect::None;
}

// True for kinds of notes on value sets, values and codes that are not special.
bool concernsValues(NoteKind kind)
{
    switch (kind) {
    case NoteKind::furtherValueSet:
    case NoteKind::valueSetDropped:
    case NoteKind::decimalsDropped:
    case NoteKind::codeToZero:
    case NoteKind::onlyLastOccurrence:
    case NoteKind::rangeAsEndPoints:
    case NoteKind::rangeAsCode:
    case NoteKind::rangeWithoutLabel:
    case NoteKind::rangeWithoutUpper:
    case NoteKind::severalInALine:
    case NoteKind::furtherPairs:
    case NoteKind::valueWithoutCode:
    case NoteKind::codeAsZero:
    case NoteKind::valueCutToInteger:
    case NoteKind::codeRounded:
    case NoteKind::boundRounded:
    case NoteKind::duplicateCode:
    case NoteKind::labelEntryParted:
    case NoteKind::keptApostrophe:
    case NoteKind::valueWithoutLabel:
    case NoteKind::labelAsCode:
    case NoteKind::valueSetMisplaced:
    case NoteKind::valueSetWithoutItem:
    case NoteKind::labelOfMinusOne:
    case NoteKind::labelWithoutText:
    case NoteKind::missingAsNumber:
        return true;
    default:
        return false;
    }
}

Aspect aspectOf(const ReadNote &note)
{
    switch (note.kind) {
    case NoteKind::keyBySubstring:
    case NoteKind::keyWithoutEquals:
    case NoteKind::secondEquals:
    case NoteKind::repeatedKey:
    case NoteKind::missingKey:
    case NoteKind::wrongType:
        return aspectOfKey(note.text);
    case NoteKind::numberNotConverted: // a label that contains the key of a number can be read as its line
        return aspectOfKey(note.text) == Aspect::Labels ? Aspect::Columns : aspectOfKey(note.text);
    case NoteKind::decimalsLost:
    case NoteKind::decimalsNotRead:
    case NoteKind::wordNotRecognised:
    case NoteKind::widthCut:
    case NoteKind::dateAsNumber:
    case NoteKind::typeUnknown:
        return Aspect::Type;
    case NoteKind::firstAtColumnOne:
    case NoteKind::overlappingPositions:
    case NoteKind::occurrenceNames:
    case NoteKind::occurrenceNumbers:
    case NoteKind::noOccurrences:
        return Aspect::Columns;
    case NoteKind::subitem:
    case NoteKind::subitemReadFlat:
        return Aspect::Place;
    case NoteKind::furtherLanguages:
        return Aspect::Labels;
    case NoteKind::specialNotRead:
    case NoteKind::markNotRecognised:
    case NoteKind::markedValue:
    case NoteKind::furtherMark:
    case NoteKind::markedRange:
    case NoteKind::markOfLastOccurrence:
        return Aspect::Specials;
    case NoteKind::missingNotRead:
        return Aspect::Missing;
    default:
        return concernsValues(note.kind) ? Aspect::ValueSets : Aspect::None;
    }
}

QString counted(int count, const char *word)
{
    return QString::number(count) + QLatin1Char(' ') + QLatin1String(word)
        + (count == 1 ? QString() : QStringLiteral("s"));
}

QString describeDecimals(const Item &item)
{
    QString type = describeType(item);
    if (item.decimals == 0)
        return type;
    const char *word = !item.format.isEmpty() ? "decimal" : item.decimalMark ? "written decimal" : "implied decimal";
    return type + QLatin1String(", ") + counted(item.decimals, word);
}

QString describeColumns(const Item &item, const Item *parent)
{
    if (item.start == 0)
        return describeType(item);
    const int occurrences = std::max(item.occurrences, parent ? parent->occurrences : 1);
    const qint64 end = qint64(item.start) + item.length - 1;
    if (item.length < 1)
        return QStringLiteral("column %1, no length").arg(item.start);
    QString text = QStringLiteral("columns %1 to %2").arg(item.start).arg(end); // as in the notes on positions
    if (occurrences > 1)
        text += QStringLiteral(", the first of %1 occurrences").arg(occurrences);
    return text;
}

QString describePlace(const Item &item, const Item *parent)
{
    const QString columns = describeColumns(item, parent);
    return parent ? QStringLiteral("part of %1, %2").arg(parent->name, columns) : columns;
}

QString describeLabels(const Item &item)
{
    QStringList texts;
    for (const vanlayout::Label &label : item.labels.parts)
        texts.append(label.language.isEmpty() ? label.text : label.language + QLatin1String(": ") + label.text);
    return texts.join(QLatin1String("; "));
}

QString describeValueSets(const Item &item)
{
    QStringList texts;
    for (const ValueSet &set : item.valueSets) {
        const auto ranges = std::count_if(set.values.begin(), set.values.end(), [](const Value &value) {
            return std::any_of(value.ranges.begin(), value.ranges.end(),
                               [](const vanlayout::Range &range) { return !range.to.isEmpty(); });
        });
        QString text = set.name + QLatin1String(" (") + counted(set.values.size(), "value");
        if (ranges > 0)
            text += QStringLiteral(", %1 with ranges").arg(ranges);
        texts.append(text + QLatin1Char(')'));
    }
    const QString sets = texts.join(QLatin1String(", "));
    return texts.isEmpty() ? sets
                           : (texts.size() == 1 ? QLatin1String("value set ") : QLatin1String("value sets ")) + sets;
}

QString describeSpecials(const Item &item)
{
    QStringList texts;
    KeyedSet<QString> known;
    for (const ValueSet &set : item.valueSets) {
        for (const Value &value : set.values) {
            if (value.special == Special::None)
                continue;
            const QString text = describeSpecial(value.special) + QLatin1String(" is ") + describeRanges(value.ranges);
            if (known.insert(text).second)
                texts.append(text);
        }
    }
    return texts.join(QLatin1String("; "));
}

QString describeAspect(Aspect aspect, const Item &item, const Item *parent)
{
    switch (aspect) {
    case Aspect::None:
        break;
    case Aspect::Type:
        return describeDecimals(item);
    case Aspect::Columns:
        return describeColumns(item, parent);
    case Aspect::Place:
        return describePlace(item, parent);
    case Aspect::Labels:
        return describeLabels(item);
    case Aspect::ValueSets:
        return describeValueSets(item);
    case Aspect::Specials:
        return describeSpecials(item);
    case Aspect::Missing:
        return item.missing.isEmpty() ? QString() : QLatin1String("missing values ") + describeRanges(item.missing);
    }
    return QString();
}

// The name of an item whose occurrences are numbered in the fields: NAME_2 is the second occurrence of NAME. In the
// fields of a text dictionary the number is the character with that code.
QString withoutNumber(const QString &variable)
{
    const int mark = variable.lastIndexOf(QLatin1Char('_'));
    const QString suffix = variable.mid(mark + 1);
    bool isNumber = suffix.size() == 1;
    if (!isNumber)
        suffix.toUInt(&isNumber);
    return mark > 0 && isNumber ? variable.left(mark) : QString();
}

bool repeats(const Item &item, const Item *parent)
{
    return item.occurrences > 1 || (parent && parent->occurrences > 1);
}

} // namespace

ExactItems::ExactItems(const vanlayout::Layout &layout)
{
    for (const vanlayout::Level &level : layout.levels) {
        add(level.ids);
        for (const vanlayout::Record &record : level.records)
            add(record.items);
    }
}

void ExactItems::add(const QVector<Item> &list)
{
    const Item *holder = nullptr;
    for (const Item &item : list) {
        if (!item.isSubitem)
            holder = &item;
        const auto [found, isNew] = items.emplace(item.name, Found{ &item, item.isSubitem ? holder : nullptr });
        if (!isNew)
            found->second.item = nullptr;
    }
}

const ExactItems::Found *ExactItems::find(const QString &variable) const
{
    const auto found = items.find(variable);
    if (found != items.end())
        return found->second.item ? &found->second : nullptr;
    const auto numbered = items.find(withoutNumber(variable));
    const bool isOccurrence
        = numbered != items.end() && numbered->second.item && repeats(*numbered->second.item, numbered->second.parent);
    return isOccurrence ? &numbered->second : nullptr;
}

// An item can have very many notes and a long description, so the description is made once.
QString ExactItems::insteadOf(const ReadNote &note)
{
    constexpr int maxColumns = 400;
    const Aspect aspect = aspectOf(note);
    const Found *found = aspect == Aspect::None || note.variable.isEmpty() ? nullptr : find(note.variable);
    if (!found)
        return QString();
    const auto [place, isNew] = described.try_emplace({ found->item, int(aspect) });
    if (isNew)
        place->second = cutToColumns(describeAspect(aspect, *found->item, found->parent), maxColumns);
    return place->second;
}
