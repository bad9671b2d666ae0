#include "model/Layout.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace vanlayout
{

namespace
{

bool isSameCode(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

auto tied(const Label &label)
{
    return std::tie(label.text, label.language);
}
auto tied(const Language &language)
{
    return std::tie(language.name, language.label);
}
auto tied(const Range &range)
{
    return std::tie(range.from, range.to);
}
auto tied(const Value &value)
{
    return std::tie(value.special, value.labels, value.note, value.image, value.textColor, value.ranges);
}
auto tied(const ValueSet &set)
{
    return std::tie(set.name, set.labels, set.note, set.aliases, set.link, set.values);
}
auto tied(const OccurrenceLabel &label)
{
    return std::tie(label.occurrence, label.labels);
}
auto tied(const Capture &capture)
{
    return std::tie(capture.type, capture.dateFormat);
}
auto tied(const Item &item)
{
    return std::tie(item.name, item.labels, item.note, item.aliases, item.type, item.start, item.length,
                    item.occurrences, item.occurrenceLabels, item.isSubitem, item.subitemOf, item.decimals,
                    item.decimalMark, item.zeroFill, item.capture, item.valueSets, item.storage, item.format,
                    item.measure, item.alignment, item.displayWidth, item.missing);
}
auto tied(const Record &record)
{
    return std::tie(record.name, record.labels, record.note, record.aliases, record.recordType, record.required,
                    record.maximum, record.length, record.occurrenceLabels, record.items);
}
auto tied(const Level &level)
{
    return std::tie(level.name, level.labels, level.note, level.aliases, level.ids, level.records);
}
auto tied(const RelationLink &link)
{
    return std::tie(link.primaryLink, link.secondary, link.secondaryLink);
}
auto tied(const Relation &relation)
{
    return std::tie(relation.name, relation.aliases, relation.primary, relation.links);
}
auto tied(const RecordTypeColumns &columns)
{
    return std::tie(columns.start, columns.length);
}
auto tied(const Security &security)
{
    return std::tie(security.settings, security.allowDataViewerModifications, security.allowExport,
                    security.cachedPasswordMinutes);
}
auto tied(const Extra &extra)
{
    return std::tie(extra.path, extra.key, extra.value, extra.line);
}
auto tied(const Layout &layout)
{
    return std::tie(layout.file, layout.format, layout.container, layout.formatVersion, layout.encoding, layout.name,
                    layout.labels, layout.note, layout.aliases, layout.languages, layout.recordType,
                    layout.relativePositions, layout.decimalMark, layout.zeroFill, layout.editable, layout.security,
                    layout.readOptimization, layout.enableBinaryItems, layout.valueSetImages, layout.rows,
                    layout.created, layout.modified, layout.weight, layout.levels, layout.relations, layout.extras,
                    layout.problems);
}

} // namespace

QString Labels::in(const QString &language) const
{
    const QVector<Label>::const_iterator found = std::find_if(parts.begin(), parts.end(), [&](const Label &part) {
        return !part.text.isEmpty() && isSameCode(part.language, language);
    });
    return found != parts.end() ? found->text : primary();
}

const Problem *Layout::error() const
{
    const QVector<Problem>::const_iterator found = std::find_if(
        problems.begin(), problems.end(), [](const Problem &problem) { return problem.severity == Severity::Error; });
    return found != problems.end() ? &*found : nullptr;
}

bool statesOccurrences(const Layout &layout, const Record &record)
{
    return layout.format != Format::Ddi || record.required || record.maximum != 0;
}

bool holdsData(Format format)
{
    switch (format) {
    case Format::None:
    case Format::CSProText:
    case Format::CSProJson:
    case Format::Ddi:
        return false;
    case Format::Spss:
    case Format::SpssPortable:
    case Format::Stata:
    case Format::Sas:
    case Format::SasXport:
        return true;
    }
    return false;
}

QString wordOf(Format format)
{
    switch (format) {
    case Format::None:
        break;
    case Format::CSProText:
        return QStringLiteral("cspro-text");
    case Format::CSProJson:
        return QStringLiteral("cspro-json");
    case Format::Ddi:
        return QStringLiteral("ddi");
    case Format::Spss:
        return QStringLiteral("spss");
    case Format::SpssPortable:
        return QStringLiteral("spss-portable");
    case Format::Stata:
        return QStringLiteral("stata");
    case Format::Sas:
        return QStringLiteral("sas");
    case Format::SasXport:
        return QStringLiteral("sas-xport");
    }
    return QString();
}

QString wordOf(Special special)
{
    switch (special) {
    case Special::None:
        break;
    case Special::Missing:
        return QStringLiteral("missing");
    case Special::NotApplicable:
        return QStringLiteral("notApplicable");
    case Special::Refused:
        return QStringLiteral("refused");
    case Special::Default:
        return QStringLiteral("default");
    }
    return QString();
}

QString wordOf(Storage storage)
{
    switch (storage) {
    case Storage::None:
        break;
    case Storage::Int8:
        return QStringLiteral("int8");
    case Storage::Int16:
        return QStringLiteral("int16");
    case Storage::Int32:
        return QStringLiteral("int32");
    case Storage::Float:
        return QStringLiteral("float");
    case Storage::Double:
        return QStringLiteral("double");
    case Storage::String:
        return QStringLiteral("string");
    }
    return QString();
}

QString wordOf(Measure measure)
{
    switch (measure) {
    case Measure::None:
        break;
    case Measure::Nominal:
        return QStringLiteral("nominal");
    case Measure::Ordinal:
        return QStringLiteral("ordinal");
    case Measure::Scale:
        return QStringLiteral("scale");
    }
    return QString();
}

QString wordOf(Alignment alignment)
{
    switch (alignment) {
    case Alignment::None:
        break;
    case Alignment::Left:
        return QStringLiteral("left");
    case Alignment::Center:
        return QStringLiteral("center");
    case Alignment::Right:
        return QStringLiteral("right");
    }
    return QString();
}

int startOf(const Item &item, int occurrence, const Item *parent)
{
    if (item.start <= 0)
        return 0;
    const int stride = parent && parent->occurrences > 1 ? parent->length : item.length;
    const qint64 start = item.start + qint64(occurrence - 1) * stride;
    return int(std::clamp<qint64>(start, 0, std::numeric_limits<int>::max()));
}

// clang-format off
bool operator==(const Label &left, const Label &right) { return tied(left) == tied(right); }
bool operator==(const Labels &left, const Labels &right) { return left.parts == right.parts; }
bool operator==(const Language &left, const Language &right) { return tied(left) == tied(right); }
bool operator==(const Range &left, const Range &right) { return tied(left) == tied(right); }
bool operator==(const Value &left, const Value &right) { return tied(left) == tied(right); }
bool operator==(const ValueSet &left, const ValueSet &right) { return tied(left) == tied(right); }
bool operator==(const OccurrenceLabel &left, const OccurrenceLabel &right) { return tied(left) == tied(right); }
bool operator==(const Capture &left, const Capture &right) { return tied(left) == tied(right); }
bool operator==(const Item &left, const Item &right) { return tied(left) == tied(right); }
bool operator==(const Record &left, const Record &right) { return tied(left) == tied(right); }
bool operator==(const Level &left, const Level &right) { return tied(left) == tied(right); }
bool operator==(const RelationLink &left, const RelationLink &right) { return tied(left) == tied(right); }
bool operator==(const Relation &left, const Relation &right) { return tied(left) == tied(right); }
bool operator==(const RecordTypeColumns &left, const RecordTypeColumns &right) { return tied(left) == tied(right); }
bool operator==(const Security &left, const Security &right) { return tied(left) == tied(right); }
bool operator==(const Extra &left, const Extra &right) { return tied(left) == tied(right); }
bool operator==(const Layout &left, const Layout &right) { return tied(left) == tied(right); }
// clang-format on

} // namespace vanlayout
