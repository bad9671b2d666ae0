#include "convert/StatisticalFile.h"

#include "convert/StatisticalLabels_p.h"
#include "convert/StatisticalLosses_p.h"
#include "convert/StatisticalNames_p.h"
#include "convert/WrittenFile_p.h"
#include "convert/StatisticalTypes_p.h"
#include "load/PlanTexts_p.h"
#include "write/Columns_p.h"
#include "write/Exportable.h"

#include <QDateTime>

#include <readstat.h>

#include <cmath>
#include <list>
#include <memory>

namespace vanlayout
{

namespace
{

constexpr LengthLimit labelOfSav = { 256, LengthUnit::Bytes };
constexpr LengthLimit labelOfDta = { 80, LengthUnit::Characters };

constexpr int maxNoteOfSav = 80;    // bytes
constexpr int maxNoteOfDta = 67784; // bytes

// The time at which ReadStat writes this local time, or that of 1 January 1970 if it is unknown, so that the bytes are
// the same each time.
time_t timeOf(const std::optional<QString> &created)
{
    const QDateTime stated = QDateTime::fromString(created.value_or(QString()), Qt::ISODate);
    const QDateTime time = stated.isValid() ? stated : QDateTime(QDate(1970, 1, 1), QTime(0, 0));
    return time_t(time.toSecsSinceEpoch());
}

ssize_t append(const void *data, size_t size, void *context)
{
    static_cast<QByteArray *>(context)->append(static_cast<const char *>(data), int(size));
    return ssize_t(size);
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
        , lost(source, target, types)
        , names(target)
        , writer(readstat_writer_init(), readstat_writer_free)
        , labels(writer.get(), target, languageCode, { lost, made.losses })
    {
    }

    StatisticalFile make()
    {
        made.problem = exportProblem(layout);
        if (!made.problem.isEmpty())
            return made;
        writeHead();
        addVariables();
        if (count == 0)
            made.problem = QStringLiteral("has no variable that a statistical file can hold");
        lost.appendTo(made.losses);
        setVersion();
        if (made.problem.isEmpty())
            writeBytes();
        return made;
    }

private:
    void writeHead()
    {
        readstat_set_data_writer(writer.get(), append);
        readstat_writer_set_file_timestamp(writer.get(), timeOf(layout.created));
        const QString label = cut(layout.labels.in(language), isSav ? LengthLimit{ 64, LengthUnit::Bytes } : labelOfDta,
                                  QString(), QStringLiteral("the label of the file"));
        readstat_writer_set_file_label(writer.get(), label.toUtf8().constData());
        if (!layout.note.isEmpty())
            addNotes();
    }

    // The lines of the note: of at most 80 bytes in SPSS. In Stata each is a note.
    void addNotes()
    {
        const LengthLimit limit = { isSav ? maxNoteOfSav : maxNoteOfDta, LengthUnit::Bytes };
        const QStringList lines = layout.note.split(QLatin1Char('\n'));
        notes = lines.size();
        for (const QString &line : lines)
            readstat_add_note(writer.get(),
                              cut(line, limit, QString(), QStringLiteral("a line of the note")).toUtf8().constData());
    }

    // The ids of a level are on the lines of all its records, but are variables once.
    void addVariables()
    {
        for (int level = 0; level < layout.levels.size(); ++level) {
            const QVector<Column> ids = idColumnsOf(layout.levels.at(level));
            for (const Column &id : ids)
                addVariable(id);
            const QVector<Record> &records = layout.levels.at(level).records;
            for (const Record &record : records) {
                const QVector<Column> columns = columnsOf(layout, level, record);
                for (const Column &column : columns) {
                    if (!column.isId)
                        addVariable(column);
                }
            }
        }
    }

    // Version 119 of a Stata file has room for more variables.
    void setVersion()
    {
        constexpr int maxOfVersion118 = 32767;
        constexpr int maxOfReadStat = 52252;
        if (isSav || count <= maxOfVersion118)
            return;
        readstat_writer_set_file_format_version(writer.get(), 119); // NOLINT(readability-magic-numbers)
        if (count > maxOfReadStat)
            made.problem = QStringLiteral("has %1 variables, but a Stata file can be written with at most %2")
                               .arg(count)
                               .arg(maxOfReadStat);
    }

    void addVariable(const Column &column)
    {
        const Item &item = *column.item;
        if (kindOf(item) == ValueKind::Binary) {
            made.losses.append({ column.name, QStringLiteral("the item, because its type is %1").arg(item.type) });
            return;
        }
        ++count;
        const QString name = names.give(column.name);
        const bool isRenamed = column.occurrence == 0 && !item.name.isEmpty() && column.name != item.name;
        if (name != column.name || isRenamed)
            made.losses.append({ column.name, QStringLiteral("the name, which is now %1").arg(name) });
        const bool isText = kindOf(item) == ValueKind::Text;
        readstat_variable_t *variable = readstat_add_variable(writer.get(), name.toUtf8().constData(),
                                                              types.typeOf(item), isText ? types.widthOfText(item) : 0);
        const QString label = cut(labelsOf(column).in(language), isSav ? labelOfSav : labelOfDta, column.name,
                                  QStringLiteral("the label"));
        readstat_variable_set_label(variable, label.toUtf8().constData());
        readstat_variable_set_format(variable, types.formatOf(item).toLatin1().constData());
        if (isText)
            widths.emplace(name.toUtf8(), int(types.widthOfText(item)));
        setDisplay(variable, item);
        addMissing(variable, column);
        if (readstat_label_set_t *set = labels.setOf(item, column.name))
            readstat_variable_set_label_set(variable, set);
        if (isSav && item.name == layout.weight && !layout.weight.isEmpty())
            setWeight(variable, isText);
        lost.addVariable(column);
    }

    void setWeight(readstat_variable_t *variable, bool isText)
    {
        if (isText)
            made.losses.append(
                { QString(), QStringLiteral("the weight variable %1, which is a text").arg(layout.weight) });
        else
            readstat_writer_set_fweight_variable(writer.get(), variable);
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
            constexpr int longest = 8;                                   // bytes
            texts.push_back(withoutTrailingBlanks(range.from).toUtf8()); // the writer keeps the pointer
            return range.to.isEmpty() && texts.back().size() <= longest
                && readstat_variable_add_missing_string_value(variable, texts.back().constData()) == READSTAT_OK;
        }
        const std::optional<double> from = statisticalNumberOf(range.from);
        const std::optional<double> to = range.to.isEmpty() ? from : statisticalNumberOf(range.to);
        if (!from || !to)
            return false;
        return (range.to.isEmpty() ? readstat_variable_add_missing_double_value(variable, *from)
                                   : readstat_variable_add_missing_double_range(variable, *from, *to))
            == READSTAT_OK;
    }

    QString cut(const QString &text, const LengthLimit &limit, const QString &path, const QString &what)
    {
        return cutWithLoss(text, limit, { path, what }, made.losses);
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
        else
            made.bytes
                = isSav ? writtenfile::correctedSav(made.bytes, widths) : writtenfile::correctedDta(made.bytes, notes);
    }

    const Layout &layout;
    bool isSav;
    QString language;
    StatisticalFile made;
    StatisticalTypes types;
    StatisticalLosses lost;
    StatisticalNames names;
    std::list<QByteArray> texts; // codes that the writer points to
    std::unique_ptr<readstat_writer_t, void (*)(readstat_writer_t *)> writer;
    StatisticalLabels labels;
    int count = 0; // of variables
    int notes = 0;
    KeyedMap<QByteArray, int> widths; // of texts, by name
};

} // namespace

StatisticalFile makeStatisticalFile(const Layout &layout, StatisticalFormat format, const QString &language)
{
    return StatisticalFileMaker(layout, format, language).make();
}

} // namespace vanlayout
