#include "convert/StatisticalFile.h"

#include "convert/LossesByKind_p.h"
#include "convert/StatisticalNames_p.h"
#include "convert/StatisticalTypes_p.h"
#include "load/PlanTexts_p.h"
#include "write/Columns_p.h"
#include "write/Exportable.h"

#include <readstat.h>

#include <cmath>
#include <list>
#include <map>
#include <memory>

namespace vanlayout
{

namespace
{

constexpr LengthLimit labelOfSav = { 256, LengthUnit::Bytes };
constexpr LengthLimit labelOfDta = { 80, LengthUnit::Characters };
constexpr LengthLimit valueLabelOfSav = { 120, LengthUnit::Bytes };
constexpr LengthLimit valueLabelOfDta = { 32000, LengthUnit::Bytes };

ssize_t append(const void *data, size_t size, void *context)
{
    static_cast<QByteArray *>(context)->append(static_cast<const char *>(data), int(size));
    return ssize_t(size);
}

// The number of a code, with either decimal mark; none for blanks, texts and missing values such as `.a`.
std::optional<double> numberOf(const QString &code)
{
    if (code == QLatin1String("inf"))
        return HUGE_VAL;
    if (code == QLatin1String("-inf"))
        return -HUGE_VAL;
    bool isWhole = false;
    const double number = QString(code).replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isWhole);
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

// The letter of an extended missing value; 0 for other codes.
char tagOf(const QString &code)
{
    const bool isTag = code.size() == 2 && code.at(0) == QLatin1Char('.') && code.at(1) >= QLatin1Char('a')
        && code.at(1) <= QLatin1Char('z');
    return isTag ? code.at(1).toLatin1() : '\0';
}

/// Makes one file.
class StatisticalFileMaker
{
public:
    StatisticalFileMaker(const Layout &source, StatisticalFormat target, const QString &languageCode)
        : layout(source)
        , isSav(target == StatisticalFormat::Sav)
        , language(languageCode)
        , types(target, source.format)
        , names(target)
        , setNames(target)
        , writer(readstat_writer_init(), readstat_writer_free)
    {
    }

    StatisticalFile make()
    {
        made.problem = exportProblem(layout);
        if (!made.problem.isEmpty())
            return made;
        writeHead();
        addVariables();
        reportRest();
        writeBytes();
        return made;
    }

private:
    void writeHead()
    {
        readstat_set_data_writer(writer.get(), append);
        readstat_writer_set_file_timestamp(writer.get(), 0); // the same bytes each time
        const QString label = cut(layout.labels.in(language), isSav ? LengthLimit{ 64, LengthUnit::Bytes } : labelOfDta,
                                  QString(), QStringLiteral("the label of the file"));
        readstat_writer_set_file_label(writer.get(), label.toUtf8().constData());
        if (isSav)
            addNotes();
        else if (!layout.note.isEmpty())
            made.losses.append({ QString(), QStringLiteral("the note of the file") });
    }

    // SPSS keeps notes as lines of 80 bytes.
    void addNotes()
    {
        constexpr LengthLimit limit = { 80, LengthUnit::Bytes };
        if (layout.note.isEmpty())
            return;
        const QStringList lines = layout.note.split(QLatin1Char('\n'));
        for (const QString &line : lines)
            readstat_add_note(writer.get(),
                              cut(line, limit, QString(), QStringLiteral("a line of the note")).toUtf8().constData());
    }

    void addVariables()
    {
        bool isFirst = true;
        for (int level = 0; level < layout.levels.size(); ++level) {
            const QVector<Record> &records = layout.levels.at(level).records;
            for (const Record &record : records) {
                const QVector<Column> columns = columnsOf(layout, level, record);
                for (const Column &column : columns) {
                    if (!column.isId || isFirst)
                        addVariable(column);
                }
                isFirst = false;
            }
        }
    }

    void addVariable(const Column &column)
    {
        const Item &item = *column.item;
        if (kindOf(item) == ValueKind::Binary) {
            made.losses.append({ column.name, QStringLiteral("the item, because its type is %1").arg(item.type) });
            return;
        }
        const QString name = names.give(column.name);
        if (name != column.name)
            made.losses.append({ column.name, QStringLiteral("the name, which is now %1").arg(name) });
        const bool isText = kindOf(item) == ValueKind::Text;
        readstat_variable_t *variable = readstat_add_variable(writer.get(), name.toUtf8().constData(),
                                                              types.typeOf(item), isText ? types.widthOfText(item) : 0);
        const QString label = cut(labelsOf(column).in(language), isSav ? labelOfSav : labelOfDta, column.name,
                                  QStringLiteral("the label"));
        readstat_variable_set_label(variable, label.toUtf8().constData());
        readstat_variable_set_format(variable, types.formatOf(item).toLatin1().constData());
        setDisplay(variable, item);
        addMissing(variable, column);
        if (readstat_label_set_t *set = labelSetOf(item, name))
            readstat_variable_set_label_set(variable, set);
        if (item.name == layout.weight && !layout.weight.isEmpty())
            readstat_writer_set_fweight_variable(writer.get(), variable);
        reportOf(column);
    }

    static void setDisplay(readstat_variable_t *variable, const Item &item)
    {
        switch (item.measure) {
        case Measure::None:
            break;
        case Measure::Nominal:
            readstat_variable_set_measure(variable, READSTAT_MEASURE_NOMINAL);
            break;
        case Measure::Ordinal:
            readstat_variable_set_measure(variable, READSTAT_MEASURE_ORDINAL);
            break;
        case Measure::Scale:
            readstat_variable_set_measure(variable, READSTAT_MEASURE_SCALE);
            break;
        }
        switch (item.alignment) {
        case Alignment::None:
            break;
        case Alignment::Left:
            readstat_variable_set_alignment(variable, READSTAT_ALIGNMENT_LEFT);
            break;
        case Alignment::Center:
            readstat_variable_set_alignment(variable, READSTAT_ALIGNMENT_CENTER);
            break;
        case Alignment::Right:
            readstat_variable_set_alignment(variable, READSTAT_ALIGNMENT_RIGHT);
            break;
        }
        if (item.displayWidth > 0)
            readstat_variable_set_display_width(variable, item.displayWidth);
    }

    // The user-missing values: those of the source, and the codes that a dictionary marks as missing or refused.
    static QVector<Range> missingOf(const Item &item)
    {
        QVector<Range> missing = item.missing;
        for (const ValueSet &set : item.valueSets) {
            for (const Value &value : set.values) {
                if (value.special != Special::Missing && value.special != Special::Refused)
                    continue;
                for (const Range &range : value.ranges) {
                    if (!missing.contains(range))
                        missing.append(range);
                }
            }
        }
        return missing;
    }

    void addMissing(readstat_variable_t *variable, const Column &column)
    {
        constexpr int maxCodes = 3;
        const QVector<Range> missing = missingOf(*column.item);
        const bool hasRange
            = std::any_of(missing.begin(), missing.end(), [](const Range &range) { return !range.to.isEmpty(); });
        int room = hasRange ? 2 : maxCodes;
        bool hasAddedRange = false;
        for (const Range &range : missing) {
            const bool isRange = !range.to.isEmpty();
            if (!isSav || room == 0 || (isRange && hasAddedRange) || !addMissing(variable, *column.item, range)) {
                made.losses.append({ column.name, QStringLiteral("the user-missing value %1").arg(textOf(range)) });
                continue;
            }
            hasAddedRange = hasAddedRange || isRange;
            --room;
        }
    }

    static QString textOf(const Range &range)
    {
        return range.to.isEmpty() ? range.from : range.from + QStringLiteral(" to ") + range.to;
    }

    bool addMissing(readstat_variable_t *variable, const Item &item, const Range &range)
    {
        if (kindOf(item) == ValueKind::Text) {
            constexpr int longest = 8;            // bytes
            texts.push_back(range.from.toUtf8()); // the writer keeps the pointer
            return range.to.isEmpty() && texts.back().size() <= longest
                && readstat_variable_add_missing_string_value(variable, texts.back().constData()) == READSTAT_OK;
        }
        const std::optional<double> from = numberOf(range.from);
        const std::optional<double> to = range.to.isEmpty() ? from : numberOf(range.to);
        if (!from || !to)
            return false;
        return (range.to.isEmpty() ? readstat_variable_add_missing_double_value(variable, *from)
                                   : readstat_variable_add_missing_double_range(variable, *from, *to))
            == READSTAT_OK;
    }

    // Occurrences of an item have the same labels.
    readstat_label_set_t *labelSetOf(const Item &item, const QString &variable)
    {
        const auto set = std::find_if(item.valueSets.begin(), item.valueSets.end(),
                                      [](const ValueSet &valueSet) { return !valueSet.values.isEmpty(); });
        if (set == item.valueSets.end())
            return nullptr;
        const auto known = labelSets.find(&*set);
        if (known != labelSets.end())
            return known->second;
        return labelSets.emplace(&*set, makeLabelSet(item, *set, variable)).first->second;
    }

    readstat_label_set_t *makeLabelSet(const Item &item, const ValueSet &set, const QString &variable)
    {
        const bool isText = kindOf(item) == ValueKind::Text;
        if (isText && !isSav) {
            made.losses.append({ variable, QStringLiteral("the value labels, because they are of texts") });
            return nullptr;
        }
        const readstat_type_t type = isText ? READSTAT_TYPE_STRING : isSav ? READSTAT_TYPE_DOUBLE : READSTAT_TYPE_INT32;
        const QByteArray name = setNames.give(set.name.isEmpty() ? variable : set.name).toUtf8();
        readstat_label_set_t *labels = readstat_add_label_set(writer.get(), type, name.constData());
        for (const Value &value : set.values) {
            for (const Range &range : value.ranges)
                addLabel(labels, item, range, value.labels, variable);
        }
        return labels;
    }

    void addLabel(readstat_label_set_t *set, const Item &item, const Range &range, const Labels &labels,
                  const QString &variable)
    {
        const QString text = labels.in(language);
        if (text.isEmpty() && range.to.isEmpty())
            return;
        const QByteArray label = cut(text, isSav ? valueLabelOfSav : valueLabelOfDta, variable,
                                     QStringLiteral("the label of %1").arg(range.from))
                                     .toUtf8();
        if (!range.to.isEmpty() || !addLabel(set, item, range.from, label))
            made.losses.append({ variable, QStringLiteral("the label of %1: \"%2\"").arg(textOf(range), text) });
    }

    bool addLabel(readstat_label_set_t *set, const Item &item, const QString &code, const QByteArray &label) const
    {
        if (kindOf(item) == ValueKind::Text) {
            readstat_label_string_value(set, withoutTrailingBlanks(code).toUtf8().constData(), label.constData());
            return true;
        }
        const std::optional<double> number = numberOf(code);
        if (isSav) {
            if (number)
                readstat_label_double_value(set, *number, label.constData());
            return number.has_value();
        }
        if (const char tag = tagOf(code)) {
            readstat_label_tagged_value(set, tag, label.constData());
            return true;
        }
        constexpr double smallest = -2147483647; // of Stata's long
        constexpr double largest = 2147483620;
        if (!number || *number < smallest || *number > largest || *number != std::floor(*number))
            return false;
        readstat_label_int32_value(set, int32_t(*number), label.constData());
        return true;
    }

    QString cut(const QString &text, const LengthLimit &limit, const QString &path, const QString &what)
    {
        const QString shorter = cutTo(text, limit);
        if (shorter != text)
            made.losses.append({ path, what + QStringLiteral(" after its first %1 characters").arg(shorter.size()) });
        return shorter;
    }

    void reportOf(const Column &column)
    {
        const Item &item = *column.item;
        if (!item.note.isEmpty())
            byKind.add(QStringLiteral("note"), column.name);
        if (item.capture)
            byKind.add(QStringLiteral("capture type"), column.name);
        if (!item.aliases.isEmpty())
            byKind.add(QStringLiteral("aliases"), column.name);
        if (item.valueSets.size() > 1)
            byKind.add(QStringLiteral("further value sets"), column.name);
        if (!item.format.isEmpty() && item.format != types.formatOf(item))
            byKind.add(QStringLiteral("format %1").arg(item.format), column.name);
    }

    void reportRest()
    {
        byKind.appendTo(made.losses);
        int records = 0;
        for (const Level &level : layout.levels)
            records += level.records.size();
        if (records > 1)
            made.losses.append(
                { QString(),
                  QStringLiteral("the %1 record types, whose items are variables of one file").arg(records) });
        if (layout.languages.size() > 1)
            made.losses.append({ QString(), QStringLiteral("the labels in further languages") });
        if (!layout.relations.isEmpty())
            made.losses.append({ QString(), QStringLiteral("the relations") });
        for (const Extra &extra : layout.extras)
            made.losses.append({ extra.path, QStringLiteral("the statement \"%1\"").arg(extra.key) });
    }

    void writeBytes()
    {
        readstat_writer_t *handle = writer.get();
        readstat_error_t result = isSav ? readstat_begin_writing_sav(handle, &made.bytes, 0)
                                        : readstat_begin_writing_dta(handle, &made.bytes, 0);
        if (result == READSTAT_OK)
            result = readstat_end_writing(handle);
        if (result != READSTAT_OK)
            made.problem = QStringLiteral("cannot be written: ") + QString::fromUtf8(readstat_error_message(result));
    }

    const Layout &layout;
    bool isSav;
    QString language;
    StatisticalTypes types;
    StatisticalNames names;
    StatisticalNames setNames;
    std::list<QByteArray> texts; // codes that the writer points to
    std::unique_ptr<readstat_writer_t, void (*)(readstat_writer_t *)> writer;
    std::map<const ValueSet *, readstat_label_set_t *> labelSets;
    LossesByKind byKind;
    StatisticalFile made;
};

} // namespace

StatisticalFile makeStatisticalFile(const Layout &layout, StatisticalFormat format, const QString &language)
{
    return StatisticalFileMaker(layout, format, language).make();
}

} // namespace vanlayout
