#include "compare/DiffItems_p.h"

#include <QRegularExpression>

#include <map>
#include <utility>

namespace vanlayout
{

namespace
{

/// A property of an item whose text is compared.
struct ItemProperty {
    DiffKind kind;
    bool (*isCompared)(const DiffScope &scope, const Item &before, const Item &after);
    QString (*text)(const DiffScope &scope, const Item &item);
};

QString number(int value)
{
    return QString::number(value);
}

bool betweenDictionaries(const DiffScope &scope, const Item & /*before*/, const Item & /*after*/)
{
    return scope.areDictionaries();
}

// A DDI document holds only the date format of a capture.
bool withinDictionaryFormat(const DiffScope &scope, const Item & /*before*/, const Item & /*after*/)
{
    return scope.areDictionaries() && !scope.areOfTwoDictionaryFormats();
}

bool withinFamily(const DiffScope &scope, const Item & /*before*/, const Item & /*after*/)
{
    return scope.isOneFormat() || (scope.isOneFamily() && !scope.areDictionaries());
}

bool withinStatisticalFormat(const DiffScope &scope, const Item & /*before*/, const Item & /*after*/)
{
    return scope.isOneFormat() && !scope.areDictionaries();
}

// Between formats that are not both of CSPro, only the length of a text is compared: that of a number is the width of
// its format. A text of any length, such as strL, has none.
bool hasComparedLength(const DiffScope &scope, const Item &before, const Item &after)
{
    if (scope.areDictionaries())
        return true;
    return before.isAlpha() && after.isAlpha() && (scope.isOneFamily() || (before.length > 0 && after.length > 0));
}

// Whether the format of a text states only its length: "A12".
bool isTextLength(const Item &item)
{
    return item.isAlpha() && item.format == QLatin1Char('A') + number(item.length);
}

bool hasComparedFormat(const DiffScope &scope, const Item &before, const Item &after)
{
    if (!(scope.areStatistical() || scope.isOneFormat()) || (isTextLength(before) && isTextLength(after)))
        return false;
    return scope.isOneFamily()
        || (!plainNumberFormat(before.format).isEmpty() && !plainNumberFormat(after.format).isEmpty());
}

// The decimals of a statistical file are those of its formats, so they are compared only with those of a dictionary.
bool hasComparedDecimals(const DiffScope &scope, const Item &before, const Item &after)
{
    const auto states
        = [](const Item &item) { return item.format.isEmpty() || !plainNumberFormat(item.format).isEmpty(); };
    return scope.areDictionaries()
        || (!scope.areStatistical() && before.isNumeric() && after.isNumeric() && states(before) && states(after));
}

bool hasComparedMeasure(const DiffScope &scope, const Item &before, const Item &after)
{
    return scope.isOneFormat() || (before.measure != Measure::None && after.measure != Measure::None);
}

QString captureOf(const Item &item)
{
    if (!item.capture)
        return QString();
    const Capture &capture = *item.capture;
    return capture.dateFormat.isEmpty() ? capture.type : capture.type + QLatin1Char(' ') + capture.dateFormat;
}

QString missingOf(const Item &item)
{
    QStringList texts;
    for (const Range &range : item.missing)
        texts.append(range.to.isEmpty() ? range.from : range.from + QLatin1String(" to ") + range.to);
    texts.sort();
    return texts.join(QLatin1String(", "));
}

QString formatOf(const DiffScope &scope, const Item &item)
{
    return scope.isOneFamily() ? item.format : plainNumberFormat(item.format);
}

bool writesMark(const Item &item)
{
    return item.isNumeric() && item.decimals > 0 && item.decimalMark;
}

// clang-format off
const ItemProperty properties[] = {
    { DiffKind::ItemType,         [](const DiffScope &, const Item &, const Item &) { return true; },
                                  [](const DiffScope &, const Item &item) { return item.type; } },
    { DiffKind::ItemStart,        betweenDictionaries, [](const DiffScope &, const Item &item) { return number(item.start); } },
    { DiffKind::ItemLength,       hasComparedLength,   [](const DiffScope &, const Item &item) { return number(item.length); } },
    { DiffKind::ItemOccurrences,  betweenDictionaries, [](const DiffScope &, const Item &item) { return number(item.occurrences); } },
    { DiffKind::ItemDecimals,     hasComparedDecimals, [](const DiffScope &, const Item &item) { return number(item.decimals); } },
    { DiffKind::ItemDecimalMark,  betweenDictionaries, [](const DiffScope &, const Item &item) { return yesOrNo(writesMark(item)); } },
    { DiffKind::ItemZeroFill,     betweenDictionaries, [](const DiffScope &, const Item &item) { return yesOrNo(item.isNumeric() && item.zeroFill); } },
    { DiffKind::ItemCapture,      withinDictionaryFormat, [](const DiffScope &, const Item &item) { return captureOf(item); } },
    { DiffKind::ItemStorage,      withinFamily,        [](const DiffScope &, const Item &item) { return wordOf(item.storage); } },
    { DiffKind::ItemFormat,       hasComparedFormat,   formatOf },
    { DiffKind::ItemMeasure,      hasComparedMeasure,  [](const DiffScope &, const Item &item) { return wordOf(item.measure); } },
    { DiffKind::ItemAlignment,    withinStatisticalFormat,        [](const DiffScope &, const Item &item) { return wordOf(item.alignment); } },
    { DiffKind::ItemDisplayWidth, withinStatisticalFormat,        [](const DiffScope &, const Item &item) { return number(item.displayWidth); } },
    { DiffKind::ItemMissing,      withinFamily,        [](const DiffScope &, const Item &item) { return missingOf(item); } },
};
// clang-format on

} // namespace

QString plainNumberFormat(const QString &format)
{
    static const QRegularExpression plain(
        QStringLiteral("^(?:%[-0]*([0-9]+)[.,]([0-9]+)fc?|(?:F|COMMA|DOT)?([0-9]+)(?:\\.([0-9]*))?)$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = plain.match(format);
    if (!match.hasMatch())
        return QString();
    const int width = match.capturedLength(1) > 0 ? 1 : 3;
    const QString decimals = match.captured(width + 1);
    return match.captured(width) + QLatin1Char('.') + (decimals.isEmpty() ? QStringLiteral("0") : decimals);
}

void compareLabels(const Labels &before, const Labels &after, const Change &place, DiffKind kind, int longest,
                   const LabelComparison &labels, ChangeCollector &changes)
{
    labels.compare(before, after, longest,
                   [&](const QString &language, const QString &textBefore, const QString &textAfter) {
                       Change inLanguage = place;
                       inLanguage.language = language;
                       changes.add(inLanguage, kind, textBefore, textAfter);
                   });
}

void compareOccurrenceLabels(const QVector<OccurrenceLabel> &before, const QVector<OccurrenceLabel> &after,
                             const Change &place, DiffKind kind, const LabelComparison &labels,
                             ChangeCollector &changes)
{
    if (before.isEmpty() && after.isEmpty())
        return;
    const Labels none;
    std::map<int, std::pair<const Labels *, const Labels *>> byOccurrence;
    for (const OccurrenceLabel &label : before)
        byOccurrence.emplace(label.occurrence, std::make_pair(&label.labels, &none));
    for (const OccurrenceLabel &label : after) {
        auto &both = byOccurrence.emplace(label.occurrence, std::make_pair(&none, &none)).first->second;
        if (both.second == &none)
            both.second = &label.labels;
    }
    for (const auto &[occurrence, both] : byOccurrence) {
        Change ofOccurrence = place;
        ofOccurrence.code = number(occurrence);
        compareLabels(*both.first, *both.second, ofOccurrence, kind, 0, labels, changes);
    }
}

void compareItems(const Item &before, const Item &after, const Change &place, const DiffScope &scope,
                  const LabelComparison &labels, ChangeCollector &changes)
{
    compareLabels(before.labels, after.labels, place, DiffKind::ItemLabel, scope.maxItemLabel(), labels, changes);
    for (const ItemProperty &property : properties) {
        if (property.isCompared(scope, before, after))
            changes.addIfDifferent(place, property.kind, property.text(scope, before), property.text(scope, after));
    }
    if (!scope.areDictionaries())
        return;
    compareOccurrenceLabels(before.occurrenceLabels, after.occurrenceLabels, place, DiffKind::ItemOccurrenceLabel,
                            labels, changes);
    if (before.note != after.note && comparableNote(before.note) != comparableNote(after.note))
        changes.add(place, DiffKind::ItemNote, before.note, after.note);
    changes.addAliases(place, DiffKind::ItemAliases, before.aliases, after.aliases);
}

} // namespace vanlayout
