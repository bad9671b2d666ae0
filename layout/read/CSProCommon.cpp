#include "read/CSProCommon_p.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace vanlayout::cspro
{

namespace
{

struct SpecialWord {
    QLatin1String word;
    Special special;
};
const SpecialWord specialWords[] = {
    { QLatin1String("MISSING"), Special::Missing },
    { QLatin1String("NOTAPPL"), Special::NotApplicable },
    { QLatin1String("REFUSED"), Special::Refused },
    { QLatin1String("DEFAULT"), Special::Default },
};

const QLatin1String itemTypes[] = {
    QLatin1String("numeric"), QLatin1String("alpha"), QLatin1String("document"),
    QLatin1String("audio"),   QLatin1String("image"), QLatin1String("geometry"),
};

const QLatin1String captureTypes[] = {
    QLatin1String("textBox"),  QLatin1String("radioButton"),  QLatin1String("checkBox"),  QLatin1String("dropDown"),
    QLatin1String("comboBox"), QLatin1String("date"),         QLatin1String("numberPad"), QLatin1String("barcode"),
    QLatin1String("slider"),   QLatin1String("toggleButton"), QLatin1String("photo"),     QLatin1String("signature"),
    QLatin1String("audio"),
};

bool isSameWord(QStringView left, QLatin1String right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

template <size_t size> std::optional<QString> wordIn(const QLatin1String (&words)[size], QStringView word)
{
    const auto *found = std::find_if(std::begin(words), std::end(words),
                                     [word](QLatin1String candidate) { return isSameWord(word, candidate); });
    return found != std::end(words) ? std::optional<QString>(*found) : std::nullopt;
}

template <typename Visit> void forEachValueSet(QVector<Item> &items, Visit visit)
{
    for (Item &item : items)
        std::for_each(item.valueSets.begin(), item.valueSets.end(), visit);
}

template <typename Visit> void forEachLinkedSet(Layout &layout, Visit visit)
{
    const auto visitLinked = [&](ValueSet &set) {
        if (!set.link.isEmpty())
            visit(set);
    };
    for (Level &level : layout.levels) {
        forEachValueSet(level.ids, visitLinked);
        for (Record &record : level.records)
            forEachValueSet(record.items, visitLinked);
    }
}

} // namespace

bool isWhiteSpace(QChar character)
{
    return character == QLatin1Char(' ') || (character >= QLatin1Char('\t') && character <= QLatin1Char('\r'));
}

QString cleanNote(const QString &note)
{
    const auto end = std::find_if_not(note.crbegin(), note.crend(), isWhiteSpace);
    return note.left(int(note.crend() - end));
}

void dropEmptyLabel(Labels &labels)
{
    if (labels.parts.size() == 1 && labels.parts.constFirst().text.isEmpty())
        labels.parts.clear();
}

std::optional<Special> specialOf(QStringView word)
{
    const auto *found = std::find_if(std::begin(specialWords), std::end(specialWords),
                                     [word](const SpecialWord &row) { return isSameWord(word, row.word); });
    return found != std::end(specialWords) ? std::optional<Special>(found->special) : std::nullopt;
}

QString wordOfSpecial(Special special)
{
    const auto *found = std::find_if(std::begin(specialWords), std::end(specialWords),
                                     [special](const SpecialWord &row) { return row.special == special; });
    return found != std::end(specialWords) ? QString(found->word) : QString();
}

std::optional<QString> itemTypeOf(QStringView word)
{
    return wordIn(itemTypes, word);
}

QString lowerCased(QString word)
{
    for (QChar &letter : word) {
        if (letter >= QLatin1Char('A') && letter <= QLatin1Char('Z'))
            letter = QChar(letter.unicode() - 'A' + 'a');
    }
    return word;
}

std::optional<QString> captureTypeOf(QStringView word)
{
    if (isSameWord(word, QLatin1String("unspecified")))
        return QString();
    return wordIn(captureTypes, word);
}

QString linkItemOf(const QString &text)
{
    return text == QLatin1String("(occurrence)") ? QString() : text;
}

void shareLinkedValues(Layout &layout, Diagnostics &diagnostics)
{
    std::map<QString, QVector<Value>> fullest; // not a hash table, for which a file could contain links that collide
    forEachLinkedSet(layout, [&](ValueSet &set) {
        QVector<Value> &values = fullest[set.link];
        if (set.values.size() > values.size())
            values = set.values;
    });
    qint64 count = 0;
    forEachLinkedSet(layout, [&](ValueSet &set) {
        if (!set.values.isEmpty() || count > maxLinkedValues)
            return;
        const QVector<Value> &values = fullest[set.link];
        count += values.size();
        if (count <= maxLinkedValues)
            set.values = values;
    });
    if (count > maxLinkedValues)
        diagnostics.warn("too-many-linked-values",
                         QStringLiteral("the value sets with a Link have more than %1 values; later sets have no "
                                        "values")
                             .arg(maxLinkedValues));
}

QString shortened(QString text, int longest)
{
    if (text.size() <= longest)
        return text;
    const bool isPairCut = text.at(longest - 1).isHighSurrogate();
    text.truncate(isPairCut ? longest - 1 : longest);
    return text;
}

QString nameInPath(const QString &name)
{
    return shortened(name, longestNameInPaths);
}

QString quoted(QString text)
{
    constexpr int longest = 40;
    const bool isCut = text.size() > longest;
    text = shortened(std::move(text), longest);
    for (QChar &character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph)
            character = QLatin1Char(' ');
    }
    return QLatin1Char('"') + text + QLatin1String(isCut ? "...\"" : "\"");
}

QString idsName()
{
    return QStringLiteral("(ids)");
}

QString childPath(const QString &parent, const QString &name)
{
    return parent + QLatin1Char('/') + nameInPath(name);
}

QString valuePath(const QString &set, int number)
{
    return childPath(set, QLatin1Char('#') + QString::number(number));
}

QString relationPath(const QString &name)
{
    return childPath(QStringLiteral("relations"), name);
}

} // namespace vanlayout::cspro
