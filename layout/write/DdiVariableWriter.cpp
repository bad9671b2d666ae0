#include "DdiVariableWriter_p.h"

#include "Codes_p.h"
#include "Dates_p.h"
#include "DdiElements_p.h"
#include "DdiMissing_p.h"
#include "DdiValueSetNotes_p.h"
#include "Wording_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isReal(const QString &code)
{
    const bool hasMark = code.contains(QLatin1Char('.')) || code.contains(QLatin1Char(','));
    return hasMark && !decimalNumberOf(code).spelling.isEmpty();
}

// The attribute `UNITS` of a range; empty for a text, whose codes are not numbers.
QString unitsOf(const Item &item, const Range &range)
{
    const ValueKind kind = kindOf(item);
    if (kind == ValueKind::Number || (kind == ValueKind::Whole && (isReal(range.from) || isReal(range.to))))
        return QStringLiteral("REAL");
    return kind == ValueKind::Whole ? QStringLiteral("INT") : QString();
}

// Whether the number of decimals is known: an integer has none, and a fixed display format states them: `F8.0`,
// `%9.2f`.
bool statesDecimals(const Item &item)
{
    if (item.decimals > 0 || item.storage == Storage::Int8 || item.storage == Storage::Int16
        || item.storage == Storage::Int32)
        return true;
    const bool isStata = item.format.startsWith(QLatin1Char('%'));
    return isStata ? item.format.endsWith(QLatin1Char('f'))
                   : item.format.size() > 1 && item.format.startsWith(QLatin1Char('F')) && item.format.at(1).isDigit();
}

QString decimalsText(const Item &item)
{
    if (item.decimals == 0)
        return QString();
    const QString count = QString::number(item.decimals)
        + (item.decimals == 1 ? QLatin1String(" decimal, ") : QLatin1String(" decimals, "));
    return count
        + (item.decimalMark ? QLatin1String("decimal mark written in the data")
                            : QLatin1String("decimal mark implied"));
}

// The format of the characters in the data, or the storage of the values.
QString formatText(const Item &item, bool isStored)
{
    if (isStored)
        return wordOf(item.storage);
    QStringList texts{ decimalsText(item) };
    if (item.zeroFill)
        texts.append(QStringLiteral("padded with zeros"));
    texts.removeAll(QString());
    return texts.join(QLatin1String("; "));
}

bool hasRanges(const ValueSet &set)
{
    return std::any_of(set.values.begin(), set.values.end(), [](const Value &value) {
        return std::any_of(value.ranges.begin(), value.ranges.end(),
                           [](const Range &range) { return !isSingle(range); });
    });
}

bool isDate(const Item &item)
{
    return (item.capture && !item.capture->dateFormat.isEmpty()) || dateFormOf(item).calendar != Calendar::None;
}

QString schemaOf(Format format)
{
    if (format == Format::Ddi)
        return QString(); // a document does not say which of them its formats are
    if (format == Format::Stata)
        return QStringLiteral("Stata");
    return format == Format::Sas || format == Format::SasXport ? QStringLiteral("SAS") : QStringLiteral("SPSS");
}

QString imageText(const Value &value)
{
    return value.image.isEmpty() ? QString() : QLatin1String("Image: ") + value.image;
}

} // namespace

void DdiVariableWriter::write(const DdiVariable &variable, const QString &recordTypes)
{
    const Item &item = *variable.column.item;
    xml.begin(QStringLiteral("var"));
    writeAttributes(variable, recordTypes);
    writeDdiLocation(xml, variable.column.start, item.length);
    writeLabels(variable.column);
    writeValidValues(item);
    writeMissingValues(item);
    writeText(item);
    writeCategories(item);
    if (isForIpums())
        xml.empty(QStringLiteral("concept"));
    writeFormat(item);
    writeNotes(item);
    xml.end();
}

void DdiVariableWriter::writeAttributes(const DdiVariable &variable, const QString &recordTypes)
{
    const Item &item = *variable.column.item;
    xml.attribute(QStringLiteral("ID"), variable.id);
    xml.attribute(QStringLiteral("name"), variable.column.name);
    if (!layout.weight.isEmpty() && item.name == layout.weight)
        xml.attribute(QStringLiteral("wgt"), QStringLiteral("wgt"));
    xml.attribute(QStringLiteral("files"), ddiFileId());
    writeDecimals(item);
    writeMeasure(item.measure);
    xml.attributeIfAny(QStringLiteral("rectype"), recordTypes);
}

// Readers of extracts divide by the power of ten of these decimals, so they are 0 if the data has a decimal mark.
void DdiVariableWriter::writeDecimals(const Item &item)
{
    const bool isStated = item.isNumeric() && (!isStatistical(layout) || statesDecimals(item));
    if (isForIpums())
        xml.attribute(QStringLiteral("dcml"), isStated && !item.decimalMark ? item.decimals : 0);
    else if (isStated)
        xml.attribute(QStringLiteral("dcml"), item.decimals);
}

void DdiVariableWriter::writeMeasure(Measure measure)
{
    if (measure == Measure::None)
        return;
    const bool isScale = measure == Measure::Scale;
    xml.attribute(QStringLiteral("intrvl"), isScale ? QStringLiteral("contin") : QStringLiteral("discrete"));
    if (!isScale)
        xml.attribute(QStringLiteral("nature"), wordOf(measure));
}

void DdiVariableWriter::writeLabels(const Column &column)
{
    const Labels labels = labelsOf(column);
    writeDdiLabels(xml, labels, QStringLiteral("variable"));
    if (isForIpums() && labels.isEmpty())
        xml.empty(QStringLiteral("labl"));
}

// A value set of CSPro lists the values that are valid; for a statistical file all values are valid.
void DdiVariableWriter::writeValidValues(const Item &item)
{
    if (!isClosed(item))
        return;
    for (const ValueSet &set : item.valueSets) {
        QVector<Range> valid;
        for (const Value &value : set.values) {
            if (value.special == Special::None)
                valid += value.ranges;
        }
        if (valid.isEmpty())
            continue;
        xml.begin(QStringLiteral("valrng"));
        writeRanges(item, valid);
        if (item.valueSets.size() > 1)
            writeDdiNote(xml, QStringLiteral("value set"), set.name);
        xml.end();
    }
}

void DdiVariableWriter::writeMissingValues(const Item &item)
{
    const QVector<Range> missing = missingRangesOf(item);
    if (missing.isEmpty())
        return;
    xml.begin(QStringLiteral("invalrng"));
    writeRanges(item, missing);
    xml.end();
}

void DdiVariableWriter::writeRanges(const Item &item, const QVector<Range> &ranges)
{
    for (const Range &range : ranges) {
        xml.empty(isSingle(range) ? QStringLiteral("item") : QStringLiteral("range"));
        xml.attributeIfAny(QStringLiteral("UNITS"), unitsOf(item, range));
        writeRange(range);
    }
}

// A range from the lowest value, or to the highest, is open at that end.
void DdiVariableWriter::writeRange(const Range &range)
{
    if (isSingle(range)) {
        xml.attribute(QStringLiteral("VALUE"), range.from);
        return;
    }
    if (range.from != QLatin1String("-inf"))
        xml.attribute(QStringLiteral("min"), range.from);
    if (range.to != QLatin1String("inf"))
        xml.attribute(QStringLiteral("max"), range.to);
}

void DdiVariableWriter::writeText(const Item &item)
{
    if (isForIpums())
        xml.textElement(QStringLiteral("txt"), item.note);
    else
        xml.textElementIfAny(QStringLiteral("txt"), item.note);
}

void DdiVariableWriter::writeCategories(const Item &item)
{
    const QVector<Value> values = item.valueSets.isEmpty() ? QVector<Value>() : item.valueSets.constFirst().values;
    for (const Value &value : values)
        writeCategoriesOf(item, value);
    const Value unlabelled;
    const QVector<MissingCode> missingCodes = missingCodesOf(item);
    for (const MissingCode &missing : missingCodes) {
        if (!missing.value)
            writeCategory(unlabelled, QStringLiteral("user-missing"), &missing.code, QString());
    }
}

// Writes one category per code, and one without a code for all ranges of the value, because no single code represents
// them. Readers of extracts need a code in each category.
void DdiVariableWriter::writeCategoriesOf(const Item &item, const Value &value)
{
    QVector<Range> ranges;
    for (const Range &range : value.ranges) {
        if (isSingle(range))
            writeCategory(value, missingKindOf(item, value, range), &range.from, QString());
        else
            ranges.append(range);
    }
    if ((!ranges.isEmpty() || value.ranges.isEmpty()) && !isForIpums())
        writeCategory(value, describeSpecial(value.special), nullptr, describeRanges(ranges));
}

void DdiVariableWriter::writeCategory(const Value &value, const QString &missingKind, const QString *code,
                                      const QString &text)
{
    xml.begin(QStringLiteral("catgry"));
    if (!missingKind.isEmpty()) {
        xml.attribute(QStringLiteral("missing"), QStringLiteral("Y"));
        xml.attribute(QStringLiteral("missType"), missingKind);
    }
    if (code)
        xml.textElement(QStringLiteral("catValu"), *code);
    writeDdiLabels(xml, value.labels, QString()); // the vast majority of labels
    if (isForIpums() && value.labels.isEmpty())
        xml.empty(QStringLiteral("labl"));
    xml.textElementIfAny(QStringLiteral("txt"), text);
    xml.textElementIfAny(QStringLiteral("txt"), value.note);
    xml.textElementIfAny(QStringLiteral("txt"), imageText(value));
    xml.end();
}

void DdiVariableWriter::writeFormat(const Item &item)
{
    const ValueKind kind = kindOf(item);
    if (kind == ValueKind::Binary && !isForIpums())
        return;
    const bool isText = kind == ValueKind::Text || kind == ValueKind::Binary;
    xml.begin(QStringLiteral("varFormat"));
    xml.attribute(QStringLiteral("type"), isText ? QStringLiteral("character") : QStringLiteral("numeric"));
    writeFormatName(item);
    const QString text = formatText(item, isStatistical(layout));
    if (!text.isEmpty())
        xml.content(text);
    xml.end();
}

void DdiVariableWriter::writeFormatName(const Item &item)
{
    if (item.capture && !item.capture->dateFormat.isEmpty()) {
        xml.attribute(QStringLiteral("formatname"), item.capture->dateFormat);
        writeSchema(QStringLiteral("CSPro"));
    } else if (!item.format.isEmpty()) {
        xml.attribute(QStringLiteral("formatname"), item.format);
        writeSchema(schemaOf(layout.format));
    }
    if (isDate(item))
        xml.attribute(QStringLiteral("category"), QStringLiteral("date"));
}

void DdiVariableWriter::writeSchema(const QString &schema)
{
    const bool isListed = schema == QLatin1String("SPSS") || schema == QLatin1String("SAS");
    xml.attribute(QStringLiteral("schema"), isListed ? schema : QStringLiteral("other"));
    if (!isListed)
        xml.attributeIfAny(QStringLiteral("otherSchema"), schema);
}

void DdiVariableWriter::writeNotes(const Item &item)
{
    if (!item.isNumeric() && !item.isAlpha())
        writeDdiNote(xml, QStringLiteral("content"), item.type);
    if (item.isSubitem)
        writeDdiNote(xml, QStringLiteral("subitem of"), item.subitemOf);
    writeDdiAliases(xml, item.aliases);
    for (int i = 0; i < item.valueSets.size(); ++i) {
        const ValueSet &set = item.valueSets.at(i);
        writeValueSet(set, i > 0 || (isForIpums() && hasRanges(set)), item.valueSets.size() > 1);
    }
}

// The categories are those of the first set. The values of the others are in a note, because two labels of one code
// would mislead; so are the ranges of the first set that are not categories.
void DdiVariableWriter::writeValueSet(const ValueSet &set, bool hasValues, bool isOneOfSeveral)
{
    QVector<DdiValueSetNote> notes = ddiValueSetNotes(set, hasValues);
    if (notes.isEmpty() && (isOneOfSeveral || !set.name.isEmpty()))
        notes.append(DdiValueSetNote()); // it names the set
    for (const DdiValueSetNote &note : notes) {
        xml.begin(QStringLiteral("notes"));
        xml.language(note.language);
        xml.attribute(QStringLiteral("type"), QStringLiteral("value set"));
        xml.attributeIfAny(QStringLiteral("subject"), set.name);
        xml.content(note.lines.join(QLatin1Char('\n')));
        xml.end();
    }
    writeDdiNote(xml, QStringLiteral("note of the value set"), set.note);
    writeDdiNote(xml, QStringLiteral("aliases of the value set"), set.aliases.join(QLatin1String(", ")));
}

} // namespace vanlayout
