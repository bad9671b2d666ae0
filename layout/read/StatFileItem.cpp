#include "read/StatFileItem_p.h"

#include "read/StatFileTexts_p.h"
#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout::stat
{

namespace
{

Storage storageOf(readstat_type_t type)
{
    switch (type) {
    case READSTAT_TYPE_STRING:
    case READSTAT_TYPE_STRING_REF:
        break;
    case READSTAT_TYPE_INT8:
        return Storage::Int8;
    case READSTAT_TYPE_INT16:
        return Storage::Int16;
    case READSTAT_TYPE_INT32:
        return Storage::Int32;
    case READSTAT_TYPE_FLOAT:
        return Storage::Float;
    case READSTAT_TYPE_DOUBLE:
        return Storage::Double;
    }
    return Storage::String;
}

Measure measureOf(readstat_measure_t measure)
{
    switch (measure) {
    case READSTAT_MEASURE_UNKNOWN:
        break;
    case READSTAT_MEASURE_NOMINAL:
        return Measure::Nominal;
    case READSTAT_MEASURE_ORDINAL:
        return Measure::Ordinal;
    case READSTAT_MEASURE_SCALE:
        return Measure::Scale;
    }
    return Measure::None;
}

Alignment alignmentOf(readstat_alignment_t alignment)
{
    switch (alignment) {
    case READSTAT_ALIGNMENT_UNKNOWN:
        break;
    case READSTAT_ALIGNMENT_LEFT:
        return Alignment::Left;
    case READSTAT_ALIGNMENT_CENTER:
        return Alignment::Center;
    case READSTAT_ALIGNMENT_RIGHT:
        return Alignment::Right;
    }
    return Alignment::None;
}

// The declared bytes of a text. ReadStat rounds the width of a text up to a multiple of 8 in a `.sav` file, counts it
// in units of 8 in a portable file, and adds one byte in a Stata file; the width in a format of SPSS can be larger than
// the text.
int lengthOfText(const readstat_variable_t &variable, Format format, const QString &formatText)
{
    constexpr size_t unit = 8;
    const size_t width = variable.storage_width;
    const auto bytes = [](size_t size) { return numbers::clamped(qint64(size)); };
    if (format == Format::Stata)
        return bytes(width > 0 ? width - 1 : 0);
    if (format != Format::Spss && format != Format::SpssPortable)
        return bytes(width);
    const int maxBytes = bytes(format == Format::SpssPortable ? width / unit : width);
    const int inFormat = widthInFormat(formatText);
    return inFormat > 0 ? std::min(inFormat, maxBytes) : maxBytes;
}

QVector<Range> missingOf(const readstat_variable_t &variable)
{
    const int count = readstat_variable_get_missing_ranges_count(&variable);
    QVector<Range> ranges;
    ranges.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QString from = missingCodeOf(readstat_variable_get_missing_range_lo(&variable, i));
        const QString to = missingCodeOf(readstat_variable_get_missing_range_hi(&variable, i));
        ranges.append({ from, from == to ? QString() : to });
    }
    return ranges;
}

} // namespace

Item itemOf(const readstat_variable_t &variable, Format format)
{
    Item item;
    item.name = textOf(variable.name, sizeof(variable.name));
    item.labels = labelsOf(textOf(variable.label, sizeof(variable.label)));
    item.format = textOf(variable.format, sizeof(variable.format));
    item.storage = storageOf(variable.type);
    if (item.storage == Storage::String) {
        item.type = itemtype::alpha();
        item.length = lengthOfText(variable, format, item.format);
    } else {
        item.length = widthInFormat(item.format);
        item.decimals = decimalsInFormat(item.format);
    }
    item.measure = measureOf(variable.measure);
    item.alignment = alignmentOf(variable.alignment);
    item.displayWidth = numbers::clamped(std::abs(qint64(variable.display_width)));
    item.missing = missingOf(variable);
    return item;
}

Labels labelsOf(const QString &text)
{
    Labels labels;
    if (!text.isEmpty())
        labels.parts.append({ QString(), text });
    return labels;
}

QString pathOf(const QString &item)
{
    return QStringLiteral("//") + item;
}

} // namespace vanlayout::stat
