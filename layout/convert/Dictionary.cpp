#include "convert/Dictionary.h"

#include "convert/DictionaryNames_p.h"
#include "convert/LossesByKind_p.h"
#include "util/Numbers_p.h"

#include <QFileInfo>

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxDigits = 15; // of a number in CSPro
constexpr int maxDecimals = 9;
constexpr int maxText = 999; // characters of a text

// The characters that hold all numbers of a storage type, with their sign.
int widthOf(Storage storage)
{
    switch (storage) {
    case Storage::Int8:
        return 4; // NOLINT(readability-magic-numbers)
    case Storage::Int16:
        return 6; // NOLINT(readability-magic-numbers)
    case Storage::Int32:
        return 11; // NOLINT(readability-magic-numbers)
    case Storage::None:
    case Storage::Float:
    case Storage::Double:
    case Storage::String:
        break;
    }
    return maxDigits;
}

// Whether a code is a number, and not a missing value such as `.a`, or `-inf`.
bool isNumber(const QString &code)
{
    bool isWhole = false;
    code.toDouble(&isWhole);
    return isWhole && !code.contains(QLatin1String("inf"), Qt::CaseInsensitive)
        && !code.contains(QLatin1String("nan"), Qt::CaseInsensitive);
}

// Whether a number of CSPro can be this code.
bool isCode(const QString &code)
{
    return isNumber(code) && code.size() <= maxDigits && !code.contains(QLatin1Char('e'));
}

/// Makes one dictionary.
class DictionaryMaker
{
public:
    explicit DictionaryMaker(const Layout &layout)
        : original(layout)
    {
    }

    MadeDictionary make(const QStringList &ids)
    {
        const QVector<Item> variables = variablesOfLayout();
        const QVector<int> places = placesOf(variables, ids);
        if (!made.problem.isEmpty())
            return made;
        makeFrame();
        Level &level = made.layout.levels.first();
        for (const int place : places)
            level.ids.append(itemOf(variables.at(place)));
        for (int place = 0; place < variables.size(); ++place) {
            if (!places.contains(place))
                level.records.first().items.append(itemOf(variables.at(place)));
        }
        layOut();
        loseRest();
        return made;
    }

private:
    QVector<Item> variablesOfLayout() const
    {
        QVector<Item> variables;
        for (const Level &level : original.levels) {
            variables += level.ids;
            for (const Record &record : level.records)
                variables += record.items;
        }
        return variables;
    }

    QVector<int> placesOf(const QVector<Item> &variables, const QStringList &ids)
    {
        QVector<int> places;
        for (const QString &id : ids) {
            const auto found = std::find_if(variables.begin(), variables.end(), [&](const Item &variable) {
                return variable.name.compare(id, Qt::CaseInsensitive) == 0;
            });
            const int place = int(found - variables.begin());
            if (found == variables.end())
                made.problem = QStringLiteral("has no variable \"%1\", which --ids names").arg(id);
            else if (!places.contains(place))
                places.append(place);
        }
        if (ids.isEmpty())
            made.problem = QStringLiteral("has no id items, which a dictionary must have; name them with --ids");
        return places;
    }

    void makeFrame()
    {
        Layout &layout = made.layout;
        const QString stem = stemOfNames();
        layout.file = original.file;
        layout.format = Format::CSProJson;
        layout.formatVersion = QStringLiteral("8.0");
        layout.encoding = QStringLiteral("utf-8");
        layout.name = names.give(stem + QLatin1String("_DICT"), QString());
        layout.labels = original.labels.isEmpty() ? Labels{ { { QString(), stem } } } : original.labels;
        layout.note = original.note;
        layout.relativePositions = true;
        layout.readOptimization = true;
        layout.decimalMark = true;
        Level level;
        level.name = names.give(stem + QLatin1String("_LEVEL"), QString());
        level.labels = layout.labels;
        Record record;
        record.name = names.give(stem + QLatin1String("_REC"), QString());
        record.labels = layout.labels;
        level.records.append(record);
        layout.levels.append(level);
    }

    QString stemOfNames() const
    {
        const QString name = original.name.isEmpty() ? QFileInfo(original.file).completeBaseName() : original.name;
        const QString stem = DictionaryNames::folded(name);
        return stem.isEmpty() ? QStringLiteral("SURVEY") : stem;
    }

    Item itemOf(const Item &variable)
    {
        Item item;
        item.name = names.give(variable.name, QStringLiteral("VARIABLE"));
        if (item.name != variable.name)
            made.losses.append({ pathOf(variable), QStringLiteral("the name, which is now %1").arg(item.name) });
        item.labels = variable.labels;
        item.note = variable.note;
        item.type = variable.type;
        if (variable.isAlpha())
            setWidthOfText(item, variable);
        else
            setWidthOfNumber(item, variable);
        addValueSets(item, variable);
        loseOfVariable(variable);
        return item;
    }

    static QString pathOf(const Item &variable) { return QStringLiteral("//") + variable.name; }

    void setWidthOfText(Item &item, const Item &variable)
    {
        item.length = std::min(std::max(variable.length, 1), maxText);
        if (variable.length == 0 || variable.length > maxText)
            made.losses.append(
                { pathOf(variable),
                  QStringLiteral("the length of the text, which is now %1 characters").arg(item.length) });
    }

    void setWidthOfNumber(Item &item, const Item &variable)
    {
        int width = variable.length > 0 ? variable.length : widthOf(variable.storage);
        for (const ValueSet &set : variable.valueSets) {
            for (const Value &value : set.values) {
                for (const Range &range : value.ranges) {
                    if (isNumber(range.from))
                        width = std::max(width, int(range.from.size()));
                }
            }
        }
        item.length = std::min(width, maxDigits);
        item.decimals = std::min({ variable.decimals, maxDecimals, item.length - 1 });
        item.decimalMark = item.decimals > 0;
        if (item.length < width || item.decimals < variable.decimals)
            made.losses.append({ pathOf(variable),
                                 QStringLiteral("the width %1.%2, which is now %3.%4")
                                     .arg(width)
                                     .arg(variable.decimals)
                                     .arg(item.length)
                                     .arg(item.decimals) });
        const bool isFraction = variable.storage == Storage::Float || variable.storage == Storage::Double;
        if (isFraction && variable.decimals == 0 && variable.format.contains(QLatin1Char('g')))
            general.add(QStringLiteral("decimals, which the format does not state,"), variable.name);
    }

    void addValueSets(Item &item, const Item &variable)
    {
        for (const ValueSet &set : variable.valueSets)
            addValueSet(item, variable, set);
        if (variable.valueSets.isEmpty() && !variable.missing.isEmpty())
            addValueSet(item, variable, ValueSet());
    }

    void addValueSet(Item &item, const Item &variable, const ValueSet &labelSet)
    {
        ValueSet set;
        set.name = names.give(item.name + QStringLiteral("_VS%1").arg(item.valueSets.size() + 1), QString());
        set.labels = labelSet.labels.isEmpty() ? item.labels : labelSet.labels;
        hasMissing = false;
        for (const Value &value : labelSet.values)
            addValue(set, variable, value);
        for (const Range &range : variable.missing) {
            if (!isIn(set, range))
                addValue(set, variable, Value{ {}, {}, Special::None, {}, {}, { range } });
        }
        item.valueSets.append(set);
    }

    static bool isIn(const ValueSet &set, const Range &range)
    {
        return std::any_of(set.values.begin(), set.values.end(),
                           [&](const Value &value) { return value.ranges.contains(range); });
    }

    void addValue(ValueSet &set, const Item &variable, const Value &value)
    {
        Value added = value;
        const Range code = value.ranges.value(0);
        if (variable.isNumeric() && (!isCode(code.from) || (!code.to.isEmpty() && !isCode(code.to)))) {
            made.losses.append(
                { pathOf(variable),
                  QStringLiteral("the value %1, which no number of %2 characters is").arg(code.from).arg(maxDigits) });
            return;
        }
        if (variable.isNumeric() && variable.missing.contains(code))
            markMissing(added, variable, code);
        set.values.append(added);
    }

    // A value set can have one value that means "missing", with one code.
    void markMissing(Value &value, const Item &variable, const Range &code)
    {
        if (hasMissing || !code.to.isEmpty()) {
            general.add(QStringLiteral("further user-missing values"), variable.name);
            return;
        }
        hasMissing = true;
        value.special = Special::Missing;
    }

    void layOut()
    {
        int next = 1;
        Level &level = made.layout.levels.first();
        for (QVector<Item> *items : { &level.ids, &level.records.first().items }) {
            for (Item &item : *items) {
                item.start = next;
                next = numbers::clamped(qint64(next) + item.length);
            }
        }
    }

    void loseOfVariable(const Item &variable)
    {
        if (!variable.format.isEmpty())
            general.add(QStringLiteral("format"), variable.name);
        if (variable.measure != Measure::None)
            general.add(QStringLiteral("level of measurement"), variable.name);
        if (variable.alignment != Alignment::None)
            general.add(QStringLiteral("alignment"), variable.name);
        if (variable.displayWidth != 0)
            general.add(QStringLiteral("display width"), variable.name);
    }

    void loseRest()
    {
        general.appendTo(made.losses);
        if (!original.weight.isEmpty())
            made.losses.append({ QString(), QStringLiteral("the weight variable %1").arg(original.weight) });
        for (const Extra &extra : original.extras)
            made.losses.append(lossOf(extra));
    }

    const Layout &original;
    MadeDictionary made;
    DictionaryNames names;
    LossesByKind general;
    bool hasMissing = false; // whether the value set has a value that means "missing"
};

} // namespace

MadeDictionary makeDictionary(const Layout &layout, const QStringList &ids)
{
    return DictionaryMaker(layout).make(ids);
}

} // namespace vanlayout
