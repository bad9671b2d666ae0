#include "read/StatFileCollector_p.h"

#include "read/StatFileClock_p.h"
#include "read/StatFileItem_p.h"
#include "read/StatFileTexts_p.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace vanlayout::stat
{

namespace
{

constexpr qint64 firstUtf8Stata = 118;
constexpr int maxMessages = 3;
constexpr int maxReserved = 1 << 14; // items; the number in the header of a file may be wrong

// Bytes of labels and notes that a file of any size may have.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION // so that a fuzzer tries more files
constexpr qint64 textOfAnyFile = qint64(64) << 10;
#else
constexpr qint64 textOfAnyFile = qint64(64) << 20;
#endif

// A message of ReadStat as one line of printable characters.
QString asLine(const char *message)
{
    QString line = textOf(message).simplified();
    std::replace_if(
        line.begin(), line.end(), [](QChar character) { return !character.isPrint(); },
        QChar(QChar::ReplacementCharacter));
    return line;
}

// A format without its width. The name of a SAS format does not end in a digit.
std::string withoutWidth(const std::string &format)
{
    return format.substr(0, format.find_last_not_of("0123456789.") + 1);
}

} // namespace

Collector::Collector(const Input &fileInput, Layout &target, Diagnostics &targetDiagnostics)
    : input(fileInput)
    , layout(target)
    , diagnostics(targetDiagnostics)
    , bounds(target.format == Format::Stata ? stataNameBounds(fileInput.head) : wholeNames)
    , textLeft(textOfAnyFile)
{
}

// Converted to UTF-8, the texts of a file have at most four times their bytes. Only a file whose labels overlap has
// more text: a few megabytes can then expand to gigabytes.
void Collector::makeRoomFor(qint64 fileSize)
{
    constexpr qint64 textPerByte = 4;
    textLeft += textPerByte * fileSize;
}

void Collector::attachTo(readstat_parser_t *parser)
{
    readstat_set_metadata_handler(parser, onMetadata);
    readstat_set_note_handler(parser, onNote);
    readstat_set_variable_handler(parser, onVariable);
    readstat_set_fweight_handler(parser, onFweight);
    readstat_set_value_label_handler(parser, onValueLabel);
    // In messages about portable files ReadStat prints an unterminated text.
    if (layout.format != Format::SpssPortable)
        readstat_set_error_handler(parser, onError);
}

void Collector::attachCatalogTo(readstat_parser_t *parser)
{
    readstat_set_value_label_handler(parser, onValueLabel);
    readstat_set_error_handler(parser, onError);
}

// No exception may pass through ReadStat, which is written in C.
template <typename Step> int Collector::run(Step step)
{
    try {
        if (!raised)
            step();
    } catch (...) {
        raised = std::current_exception();
    }
    return raised || hasAll ? READSTAT_HANDLER_ABORT : READSTAT_HANDLER_OK;
}

int Collector::onMetadata(readstat_metadata_t *metadata, void *context)
{
    auto *collector = static_cast<Collector *>(context);
    return collector->run([=] { collector->takeMetadata(metadata); });
}

int Collector::onNote(int index, const char *note, void *context)
{
    auto *collector = static_cast<Collector *>(context);
    return collector->run([=] { collector->takeNote(index, note); });
}

int Collector::onVariable(int /*index*/, readstat_variable_t *variable, const char *labelSet, void *context)
{
    auto *collector = static_cast<Collector *>(context);
    return collector->run([=] { collector->takeVariable(*variable, labelSet); });
}

int Collector::onFweight(readstat_variable_t *variable, void *context)
{
    auto *collector = static_cast<Collector *>(context);
    return collector->run([=] { collector->layout.weight = textOf(variable->name, sizeof(variable->name)); });
}

int Collector::onValueLabel(const char *labelSet, readstat_value_t value, const char *label, void *context)
{
    auto *collector = static_cast<Collector *>(context);
    const int result = collector->run([&] { collector->takeValueLabel(labelSet, value, label); });
    // If the limit is reached, labels after the variables, as in Stata files, are no longer needed; if labels come
    // first, the variables are still needed.
    return collector->hasTooMuchText && collector->hasVariables() ? READSTAT_HANDLER_ABORT : result;
}

void Collector::onError(const char *message, void *context)
{
    auto *collector = static_cast<Collector *>(context);
    collector->run([=] {
        // Some messages repeat that of the error code, with an unrelated error number of the system.
        const bool isNew = !std::strstr(message, "(retval = ");
        if (isNew && collector->messages.size() < maxMessages)
            collector->messages.append(asLine(message));
    });
}

void Collector::takeMetadata(readstat_metadata_t *metadata)
{
    if (metadata->file_format_version != 0)
        layout.formatVersion = QString::number(metadata->file_format_version);
    layout.encoding = textOf(metadata->file_encoding).toLower();
    if (layout.format == Format::Stata && metadata->file_format_version >= firstUtf8Stata)
        layout.encoding = QStringLiteral("utf-8");
    layout.name = textOf(metadata->table_name);
    layout.labels = labelsOf(textOf(metadata->file_label));
    // SAS files that do not state their number of rows have the 32 bits of -1 there.
    if (metadata->row_count >= 0 && metadata->row_count != std::numeric_limits<quint32>::max())
        layout.rows = metadata->row_count;
    layout.created = clockOf(layout.format, metadata->creation_time, input.head);
    const std::optional<QString> modified = clockOf(layout.format, metadata->modified_time, input.head);
    if (modified != layout.created)
        layout.modified = modified;
    announcedVariables = metadata->var_count;
    items.reserve(int(std::clamp<qint64>(announcedVariables, 0, maxReserved)));
    // After the variables ReadStat would read all rows of a SAS data set.
    hasAll = layout.format == Format::Sas && announcedVariables == 0;
}

void Collector::takeNote(int index, const char *note)
{
    const bool isCount = layout.format == Format::Stata && index == 0;
    if (!isCount && hasRoomFor(note))
        notes.append(isOldStata() ? textOfOldStata(note) : textOf(note));
}

void Collector::takeVariable(const readstat_variable_t &variable, const char *labelSet)
{
    items.append(itemOf(variable, layout.format));
    setNames.emplace_back(labelSet ? std::string(labelSet, strnlen(labelSet, bounds.withVariable)) : std::string());
    if (strnlen(variable.label, sizeof(variable.label)) == sizeof(variable.label) - 1)
        diagnostics.inform("label-cut",
                           QStringLiteral("the label is longer than 1023 bytes, and ReadStat cuts it there"),
                           { 0, pathOf(items.constLast().name) });
    hasAll = layout.format == Format::Sas && items.size() == announcedVariables;
}

void Collector::takeValueLabel(const char *labelSet, const readstat_value_t &value, const char *label)
{
    const bool isText = readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING;
    if (!hasRoomFor(label) || (isText && !hasRoomFor(value.v.string_value)))
        return;
    Value made;
    made.ranges = rangesOf(value);
    if (label)
        made.labels = keptLabels.of(label, [=](std::string_view) { return labelsOf(textOf(label)); });
    setNamed(labelSet).sets.first().values.append(std::move(made));
}

QVector<Range> Collector::rangesOf(const readstat_value_t &value)
{
    const auto make = [&](std::string_view) { return QVector<Range>{ { codeOf(value), QString() } }; };
    const bool isNumber = readstat_value_type_class(value) == READSTAT_TYPE_CLASS_NUMERIC
        && !readstat_value_is_system_missing(value) && !readstat_value_is_tagged_missing(value);
    if (!isNumber)
        return make({});
    const double number = readstat_double_value(value);
    return keptRanges.of({ reinterpret_cast<const char *>(&number), sizeof(number) }, make);
}

bool Collector::hasRoomFor(const char *text)
{
    textLeft -= text ? qint64(std::strlen(text)) : 0;
    hasTooMuchText = textLeft < 0;
    return !hasTooMuchText;
}

Collector::LabelSet &Collector::setNamed(const char *name)
{
    const size_t length = strnlen(name, bounds.withLabel);
    if (!labelSets.empty() && lastSetName.compare(0, std::string::npos, name, length) == 0)
        return labelSets[lastSet];
    lastSetName.assign(name, length);
    const auto [place, isNew] = setsByName.emplace(lastSetName, labelSets.size());
    lastSet = place->second;
    if (isNew) {
        ValueSet set;
        set.name = nameOf(lastSetName);
        labelSets.push_back({ { std::move(set) }, false });
    }
    return labelSets[lastSet];
}

Collector::LabelSet *Collector::findSet(const std::string &name)
{
    auto found = setsByName.find(name);
    if (found == setsByName.end() && (layout.format == Format::Sas || layout.format == Format::SasXport))
        found = setsByName.find(withoutWidth(name));
    return found != setsByName.end() ? &labelSets[found->second] : nullptr;
}

bool Collector::isOldStata() const
{
    return layout.format == Format::Stata && layout.encoding.isEmpty();
}

QString Collector::nameOf(const std::string &labelSet) const
{
    return isOldStata() ? textOfOldStata(labelSet.c_str()) : textOf(labelSet.c_str());
}

QString Collector::words() const
{
    return messages.join(QLatin1String("; "));
}

void Collector::linkSets()
{
    const bool isSas = layout.format == Format::Sas || layout.format == Format::SasXport;
    for (int i = 0; i < items.size(); ++i) {
        const std::string &name = setNames[size_t(i)];
        if (name.empty())
            continue;
        if (LabelSet *set = findSet(name)) {
            set->isUsed = true;
            items[i].valueSets = set->sets;
        } else if (!isSas) { // for SAS it is the name of the format, which need not have labels
            diagnostics.addExtra({ 0, pathOf(items.at(i).name) }, QStringLiteral("valueLabels"), nameOf(name));
        }
    }
}

void Collector::reportUnusedSets()
{
    for (const LabelSet &set : labelSets) {
        if (!set.isUsed)
            diagnostics.addExtra({}, QStringLiteral("valueLabels"), set.sets.constFirst().name);
    }
}

void Collector::finish()
{
    layout.note = notes.join(QLatin1Char('\n'));
    while (layout.note.endsWith(QLatin1Char('\n')))
        layout.note.chop(1);
    linkSets();
    reportUnusedSets();
    if (hasTooMuchText)
        diagnostics.warn("too-much-text",
                         QStringLiteral("the labels and notes are larger than such a file can contain; further ones "
                                        "are not kept"));
    Record record;
    record.items = std::move(items);
    Level level;
    level.records.append(std::move(record));
    layout.levels.append(std::move(level));
}

void Collector::rethrow()
{
    if (raised)
        std::rethrow_exception(std::exchange(raised, nullptr));
}

} // namespace vanlayout::stat
