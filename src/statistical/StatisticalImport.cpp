#include "statistical/StatisticalImport_p.h"

#include "statistical/BufferedFile_p.h"
#include "statistical/FileGuards_p.h"
#include "util/NumbersSoFar_p.h"
#include "util/KeyedHash_p.h"
#include "util/Numbers_p.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace statistical
{

namespace
{

// What no value has: an integer, a double and a text of nothing together are a label without a value.
constexpr qint32 noInt = -1;
constexpr double noDouble = -1.0;
constexpr qint32 stringReference = -88;

// The search for the span of the labelled values begins with these. A bound that no value goes beyond is no bound.
constexpr double lowerStart = 999999999.0;
constexpr double upperStart = -999999999.0;

void appendLatin1(QString &text, const char *bytes, size_t size)
{
    text.append(QLatin1String(bytes, int(size)));
}

bool isAscii(const char *text, size_t size)
{
    return std::all_of(text, text + size, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

void appendUtf8(QString &text, const char *bytes, size_t size)
{
    // The short way for what is the same in both.
    if (isAscii(bytes, size))
        appendLatin1(text, bytes, size);
    else
        text.append(QString::fromUtf8(bytes, int(size)));
}

qint32 storageWidth(const readstat_variable_t &variable)
{
    return static_cast<qint32>(static_cast<quint32>(variable.storage_width));
}

template <size_t Size> size_t lengthOf(const char (&field)[Size])
{
    return qstrnlen(field, Size);
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// One digit, the second character of the format, and 0 where it is none: "F10.2" gives 1, which is meant.
qint32 firstDigitOfFormat(const readstat_variable_t &variable)
{
    return lengthOf(variable.format) > 1 && isDigit(variable.format[1]) ? variable.format[1] - '0' : 0;
}

// The width as the format tells it: 10 for "F10.2", 11 for "DATE11".
int widthInFormat(const readstat_variable_t &variable)
{
    const char *end = variable.format + lengthOf(variable.format);
    const char *digit = std::find_if(variable.format, end, isDigit);
    int width = 0;
    std::from_chars(digit, end, width);
    return width;
}

// ReadStat leaves `decimals` at 0 when it reads; the digits behind the point of the format tell then.
bool hasDecimals(const readstat_variable_t &variable)
{
    if (variable.decimals != 0)
        return true;
    const char *end = variable.format + lengthOf(variable.format);
    const char *point = std::find(variable.format, end, '.');
    if (point == end)
        return false;
    const char *digit = std::find_if(point + 1, end, [](char character) { return character != '0'; });
    return digit != end && isDigit(*digit);
}

ReadProblem noProblem(const QString & /*path*/)
{
    return ReadProblem();
}

NameBounds wholeNamesOfAny(const QString & /*path*/)
{
    return wholeNames;
}

// As a number: it may be none of the enumeration.
int typeNumber(const readstat_type_t &type)
{
    int number = 0;
    std::memcpy(&number, &type, std::min(sizeof(number), sizeof(type)));
    return number;
}

eVanVarType typeOf(const Format &format, const readstat_variable_t &variable)
{
    switch (typeNumber(variable.type)) {
    case READSTAT_TYPE_STRING:
        return vtString;
    case READSTAT_TYPE_INT8:
    case READSTAT_TYPE_INT16:
    case READSTAT_TYPE_INT32:
        return vtInteger;
    case READSTAT_TYPE_FLOAT:
    case READSTAT_TYPE_DOUBLE:
        return format.decimalsDecide && !hasDecimals(variable) ? vtInteger : vtReal;
    default:
        return vtNone; // a long text of Stata's, where ReadStat tells it apart
    }
}

char *copyOf(const char *text, size_t length)
{
    auto *copy = new char[length + 1];
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

/// Frees a label that nobody took over.
struct DropLabel {
    void operator()(TStatValueLabel *label) const
    {
        delete[] label->stringValue;
        delete[] label->label;
        delete label;
    }
};
using OwnedLabel = std::unique_ptr<TStatValueLabel, DropLabel>;

OwnedLabel makeValueLabel(const readstat_value_t &value)
{
    OwnedLabel owned(new TStatValueLabel);
    TStatValueLabel &made = *owned;
    switch (typeNumber(value.type)) {
    case READSTAT_TYPE_DOUBLE:
    case READSTAT_TYPE_FLOAT:
        // All eight bytes, also where four of them are a float: nothing is converted.
        std::memcpy(&made.doubleValue, &value.v, sizeof(made.doubleValue));
        break;
    case READSTAT_TYPE_STRING:
        if (value.v.string_value) {
            made.stringLength = std::strlen(value.v.string_value);
            made.stringValue = copyOf(value.v.string_value, made.stringLength);
        }
        break;
    case READSTAT_TYPE_INT8:
        made.intValue = value.v.i8_value; // NOLINT(bugprone-signed-char-misuse): sign-extended
        break;
    case READSTAT_TYPE_INT16:
        made.intValue = value.v.i16_value;
        break;
    case READSTAT_TYPE_INT32:
        made.intValue = value.v.i32_value;
        break;
    default:
        made.intValue = stringReference;
        break;
    }
    return owned;
}

void freeLabelSet(const LabelSet *set)
{
    std::for_each(set->cbegin(), set->cend(), DropLabel());
    delete set;
}

LabelSet *newLabelSet(KeptObjects &kept)
{
    auto made = std::make_unique<LabelSet>();
    LabelSet *set = made.get();
    kept.add(set, [set] { freeLabelSet(set); });
    return made.release();
}

// As the file has it: with the digits that every double keeps.
QString describeNumber(double number)
{
    constexpr int allDigits = 15;
    return QString::number(number, 'g', allDigits);
}

// Whether the entry of a label breaks where it is taken apart again. A code that is a number has no blanks; whoever
// reads a label takes a line feed for the tab at its end.
bool isParted(const char *textCode, const char *label)
{
    return (textCode && std::strpbrk(textCode, " \t\n")) || std::strpbrk(label, "\t\n");
}

bool isTaggedMissing(const readstat_value_t &value)
{
    return value.is_tagged_missing && value.tag >= 'a' && value.tag <= 'z';
}

QString describeValue(const TStatValueLabel &held)
{
    if (held.stringValue)
        return QString::fromUtf8(held.stringValue, int(held.stringLength));
    return describeNumber(held.intValue != noInt ? held.intValue : held.doubleValue);
}

// The value of a label and its text, for a report.
QString describeLabel(const TStatValueLabel &label)
{
    return describeValue(label) + QLatin1Char(' ') + QString::fromUtf8(label.label);
}

QString describeLabel(QString set, const readstat_value_t &value, const TStatValueLabel &held, const char *label)
{
    set += QLatin1String(": ");
    set += isTaggedMissing(value) ? QLatin1Char('.') + QString(QLatin1Char(value.tag)) : describeValue(held);
    return label ? set + QLatin1Char(' ') + QString::fromUtf8(label) : set;
}

// Its name and its first label: a name that ReadStat has made says nothing.
QString describeSet(const std::string &name, const LabelSet &set)
{
    QString text = QString::fromStdString(name);
    if (set.empty())
        return text;
    return text + QLatin1String(": ") + describeLabel(*set.front());
}

QString describeBound(const readstat_value_t &value)
{
    if (readstat_value_type(value) == READSTAT_TYPE_STRING)
        return QString::fromUtf8(readstat_string_value(value));
    const double number = readstat_double_value(value);
    return number == -HUGE_VAL ? QStringLiteral("LOWEST")
        : number == HUGE_VAL   ? QStringLiteral("HIGHEST")
                               : describeNumber(number);
}

// As they are declared: "97 to 99, 0".
QString describeMissing(const readstat_variable_t &variable)
{
    QStringList ranges;
    for (int i = 0; i < readstat_variable_get_missing_ranges_count(&variable); ++i) {
        const QString from = describeBound(readstat_variable_get_missing_range_lo(&variable, i));
        const QString to = describeBound(readstat_variable_get_missing_range_hi(&variable, i));
        ranges += from == to ? from : from + QLatin1String(" to ") + to;
    }
    return ranges.join(QLatin1String(", "));
}

// Whether a format is that of a date or a time: "%td" of Stata's, "DATE11" of SPSS's.
bool isDate(const QString &format)
{
    if (format.startsWith(QLatin1Char('%'))) {
        const QStringRef kind = format.midRef(format.startsWith(QLatin1String("%-")) ? 2 : 1);
        return kind.startsWith(QLatin1Char('t')) || kind.startsWith(QLatin1Char('d'));
    }
    static const QStringList names
        = { QStringLiteral("DATE"),  QStringLiteral("ADATE"),    QStringLiteral("EDATE"), QStringLiteral("JDATE"),
            QStringLiteral("SDATE"), QStringLiteral("QYR"),      QStringLiteral("MOYR"),  QStringLiteral("WKYR"),
            QStringLiteral("WKDAY"), QStringLiteral("MONTH"),    QStringLiteral("TIME"),  QStringLiteral("MTIME"),
            QStringLiteral("DTIME"), QStringLiteral("DATETIME"), QStringLiteral("YMDHMS") };
    const auto isDigitOrPoint = [](QChar unit) { return unit.isDigit() || unit == QLatin1Char('.'); };
    const auto *end = std::find_if(format.cbegin(), format.cend(), isDigitOrPoint);
    return names.contains(format.left(int(end - format.cbegin())));
}

LabelSet *setNamed(LabelSets &sets, const char *labelSet, Reading *reading, KeptObjects &kept)
{
    const size_t length = qstrnlen(labelSet, (reading ? reading->bounds : wholeNames).withLabel);
    // The labels of a set follow each other.
    if (reading && reading->lastSet && reading->lastSetName.compare(0, std::string::npos, labelSet, length) == 0)
        return reading->lastSet;
    std::string name(labelSet, length);
    LabelSet *&set = sets[name];
    if (!set)
        set = newLabelSet(kept);
    if (reading) {
        reading->lastSet = set;
        reading->lastSetName = std::move(name);
    }
    return set;
}

constexpr int writtenDecimals = 6; // of a value label

// As "%d" or "%f" write it, in every locale.
template <typename Number, typename... Form> void appendNumber(QString &text, Number number, Form... form)
{
    constexpr size_t longest = 512;
    char digits[longest];
    const auto end = std::to_chars(digits, digits + longest, number, form...).ptr;
    text.append(QLatin1String(digits, int(end - digits)));
}

/// Lowest and highest of the labelled values.
class Span
{
public:
    void add(double value)
    {
        if (value < lower) {
            lower = value;
            hasLower = true;
        }
        if (value > upper) {
            upper = value;
            hasUpper = true;
        }
    }
    void give(Reading::LabelText &made) const
    {
        made.lower = lower;
        made.upper = upper;
        made.minimum = hasLower ? numbers::toText(lower) : QString();
        made.maximum = hasUpper ? numbers::toText(upper) : QString();
    }

private:
    double lower = lowerStart;
    double upper = upperStart;
    bool hasLower = false;
    bool hasUpper = false;
};

// Appends the value of a label; false where it holds none, as one of -1 does.
bool appendValue(const Format &format, const TStatValueLabel &label, QString &text, Span &span)
{
    if (label.intValue != noInt) {
        appendNumber(text, label.intValue);
        span.add(label.intValue);
    } else if (label.doubleValue != noDouble) {
        appendNumber(text, label.doubleValue, std::chars_format::fixed, writtenDecimals);
        span.add(label.doubleValue);
    } else if (label.stringValue) {
        format.appendText(text, label.stringValue, std::strlen(label.stringValue));
    } else {
        return false;
    }
    return true;
}

// In the set itself: a variable with decimals that comes later sees the integers.
void turnToIntegers(const LabelSet &set)
{
    for (TStatValueLabel *label : set) {
        if (label && label->doubleValue != noDouble) {
            label->intValue = numbers::truncated(label->doubleValue);
            label->doubleValue = noDouble;
        }
    }
}

void tellOfCutValues(ReadReport &report, const LabelSet &set, const QString &variable)
{
    for (const TStatValueLabel *label : set) {
        if (!label || label->intValue != noInt || label->doubleValue == noDouble)
            continue;
        const int cut = numbers::truncated(label->doubleValue);
        if (label->doubleValue != cut) // -1 is the one integer that cannot be held
            report.add(cut == noInt ? NoteKind::labelOfMinusOne : NoteKind::valueCutToInteger,
                       describeNumber(label->doubleValue), 0, variable);
    }
}

// A value in the words of its label text, as a number again.
double asWritten(double value)
{
    QString text;
    appendNumber(text, value, std::chars_format::fixed, writtenDecimals);
    return text.toDouble();
}

// What the label text loses of the codes of a set.
void tellOfCodes(ReadReport &report, const LabelSet &set, const QString &variable)
{
    NumbersSoFar numbersSoFar;
    KeyedSet<QByteArray> textsSoFar;
    for (const TStatValueLabel *label : set) {
        if (!label)
            continue;
        bool isNew = true;
        if (label->intValue != noInt) {
            isNew = numbersSoFar.isNew(label->intValue);
        } else if (label->doubleValue != noDouble) {
            const double written = asWritten(label->doubleValue);
            isNew = numbersSoFar.isNew(written);
            if (written != label->doubleValue && !std::isnan(label->doubleValue))
                report.add(NoteKind::codeRounded, describeValue(*label), 0, variable);
        } else if (label->stringValue) {
            isNew = textsSoFar.insert(QByteArray(label->stringValue, int(label->stringLength))).second;
        }
        if (!isNew)
            report.add(NoteKind::duplicateCode, describeLabel(*label), 0, variable);
    }
}

// Of each bound once.
void tellOfBounds(ReadReport &report, const Reading::LabelText &known, const QString &variable)
{
    const bool hasMinimum = !known.minimum.isNull();
    const bool isOneNumber = hasMinimum && known.lower == known.upper;
    if (hasMinimum && !isWrittenInFull(known.lower))
        report.add(NoteKind::boundRounded, describeNumber(known.lower), 0, variable);
    if (!known.maximum.isNull() && !isOneNumber && !isWrittenInFull(known.upper))
        report.add(NoteKind::boundRounded, describeNumber(known.upper), 0, variable);
}

void makeLabelText(const Format &format, const LabelSet &set, Reading::LabelText &made)
{
    Span span;
    QString text;
    for (const TStatValueLabel *label : set) {
        if (!label || !appendValue(format, *label, text, span))
            continue;
        text.append(QLatin1Char(' '));
        if (label->label)
            format.appendText(text, label->label, std::strlen(label->label));
        text.append(QLatin1Char('\t'));
    }
    text.squeeze();
    made.isMade = true;
    made.text = text;
    span.give(made);
}

// Without a reading nothing is remembered for the next variable.
void takeLabels(const Format &format, const LabelSet &set, bool asIntegers, Reading *reading, TGenericField &field)
{
    Reading::LabelText once;
    Reading::LabelText &known = reading ? reading->labelTexts[&set] : once;
    ReadReport *report = reading ? reading->report : nullptr;
    const bool isNumeric = field.type == vtInteger || field.type == vtReal;
    const bool turns = asIntegers && !known.isOfIntegers;
    const bool isNewText = turns || !known.isMade;
    if (report)
        reading->tellOfSet(&set, field.name);
    if (report && turns)
        tellOfCutValues(*report, set, field.name);
    if (turns)
        turnToIntegers(set);
    if (isNewText)
        makeLabelText(format, set, known);
    known.isOfIntegers |= asIntegers;
    field.valueLabels = known.text;
    if (isNumeric && !known.minimum.isNull())
        field.minimum = known.minimum;
    if (isNumeric && !known.maximum.isNull())
        field.maximum = known.maximum;
    if (report && isNewText)
        tellOfCodes(*report, set, field.name);
    if (report && isNumeric)
        tellOfBounds(*report, known, field.name);
}

} // namespace

const Format stata = { readstat_parse_dta, appendLatin1,     false,          storageWidth, true, true,
                       noProblem,          widestStataNames, stataNameBounds };
const Format spss = { readstat_parse_sav, appendUtf8, true,           firstDigitOfFormat, false, false,
                      spssProblem,        wholeNames, wholeNamesOfAny };

Reading::Reading(const Format &fileFormat, const QString &path, bool buffered)
    : bounds(fileFormat.widestNames)
    , format(fileFormat)
    , localPath(path.toLocal8Bit())
{
    // The path as ReadStat sees it: up to the first NUL. What is no regular file is not opened here: a pipe would wait.
    const QString seenPath = QFile::decodeName(localPath.constData());
    if (!QFileInfo(seenPath).isFile())
        return;
    bounds = format.nameBounds(seenPath);
    readProblem = format.problem(seenPath);
    isRefused = !readProblem.isNull();
    isBuffered = buffered;
}

bool Reading::hasRoomFor(qint64 bytes)
{
    labelBytes += bytes;
    if (labelBytes <= mostLabelBytes)
        return true;
    readProblem.line
        = QStringLiteral("has more than %1 bytes of value labels, the most that can be read").arg(mostLabelBytes);
    return false;
}

void Reading::tellOfLabel(const LabelSet *set, const char *setName, const readstat_value_t &value,
                          const TStatValueLabel &held, const char *label)
{
    const auto tell = [&](NoteKind kind) {
        const QString name = QString::fromUtf8(setName, int(qstrnlen(setName, bounds.withLabel)));
        waitingNotes[set].push_back({ kind, 0, QString(), describeLabel(name, value, held, label) });
    };
    if (!label)
        return tell(NoteKind::labelWithoutText);
    if (held.intValue == noInt && held.doubleValue == noDouble && !held.stringValue)
        return tell(NoteKind::labelOfMinusOne);
    if (isTaggedMissing(value))
        tell(NoteKind::missingAsNumber);
    if (isParted(held.stringValue, label))
        tell(NoteKind::labelEntryParted);
    if (format.textsAreLatin1 && !isAscii(label, std::strlen(label)))
        tell(NoteKind::textNotAscii);
}

void Reading::tellOfSet(const LabelSet *set, const QString &variable)
{
    const auto waiting = waitingNotes.find(set);
    if (waiting == waitingNotes.end())
        return;
    for (const ReadNote &note : waiting->second)
        report->add(note.kind, note.text, 0, variable);
    waitingNotes.erase(waiting);
}

void Reading::tellOfVariable(const readstat_variable_t &variable, const TGenericField &field) const
{
    const auto tell = [&](NoteKind kind, const QString &text) { report->add(kind, text, 0, field.name); };
    const QString variableFormat = QString::fromLatin1(variable.format, int(lengthOf(variable.format)));
    if (format.textsAreLatin1 && !isAscii(variable.label, lengthOf(variable.label)))
        tell(NoteKind::textNotAscii, QString::fromUtf8(variable.label, int(lengthOf(variable.label))));
    if (field.type == vtNone)
        tell(NoteKind::typeUnknown, variableFormat);
    if (variable.missingness.missing_ranges_count > 0)
        tell(NoteKind::missingNotRead, describeMissing(variable));
    if (field.type != vtString && isDate(variableFormat))
        tell(NoteKind::dateAsNumber, variableFormat);
    if (format.decimalsDecide && field.type != vtString && hasDecimals(variable))
        tell(NoteKind::decimalsLost, variableFormat);
    if (format.widthOf == firstDigitOfFormat && widthInFormat(variable) != field.length)
        tell(NoteKind::widthCut, variableFormat);
}

void Reading::tellOfEnd(const LabelSets &sets, readstat_error_t labelPass, readstat_error_t variablePass,
                        bool hasVariables)
{
    for (const auto &[name, set] : sets) {
        tellOfSet(set, QString());
        if (variablePass == READSTAT_OK && labelTexts.find(set) == labelTexts.end())
            report->add(NoteKind::labelSetUnused, describeSet(name, *set));
    }
    const readstat_error_t error = variablePass != READSTAT_OK ? variablePass : labelPass;
    if (readProblem.isOfDevice)
        report->add(NoteKind::readFailed, readProblem.line);
    if (readProblem.isOfDevice || (error == READSTAT_OK && readProblem.isNull()))
        return;
    const QString words = readProblem.isNull() ? QString::fromUtf8(readstat_error_message(error)) : readProblem.line;
    if (error == READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION)
        report->add(NoteKind::versionRefused, words);
    else
        report->add(hasVariables ? NoteKind::readingEnded : NoteKind::fileNotRead, words);
}

readstat_error_t Reading::pass(readstat_value_label_handler onLabel, readstat_variable_handler onVariable,
                               void *context)
{
    if (isRefused)
        return READSTAT_ERROR_PARSE;
    const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t *)> parser(readstat_parser_init(),
                                                                                   readstat_parser_free);
    if (!parser)
        return READSTAT_ERROR_MALLOC;
    if (onLabel)
        readstat_set_value_label_handler(parser.get(), onLabel);
    if (onVariable)
        readstat_set_variable_handler(parser.get(), onVariable);
    BufferedFile file;
    if (isBuffered)
        file.attachTo(parser.get());
    const readstat_error_t result = format.parse(parser.get(), localPath.constData(), context);
    if (raised)
        std::rethrow_exception(std::exchange(raised, nullptr));
    if (file.error() != 0)
        readProblem = deviceProblem(file.error());
    return result;
}

bool isSupported(const readstat_value_t &value)
{
    switch (typeNumber(value.type)) {
    case READSTAT_TYPE_STRING:
    case READSTAT_TYPE_INT8:
    case READSTAT_TYPE_INT16:
    case READSTAT_TYPE_INT32:
    case READSTAT_TYPE_FLOAT:
    case READSTAT_TYPE_DOUBLE:
    case READSTAT_TYPE_STRING_REF:
        return true;
    default:
        return false;
    }
}

void endAtUnsupportedType(const char *sourceFile, int line)
{
    std::fprintf(stderr, "%s:%d unsupported type!\n", sourceFile, line);
    std::exit(1);
}

void addValueLabel(LabelSets &sets, const char *labelSet, const readstat_value_t &value, const char *label,
                   Reading *reading, KeptObjects &kept)
{
    LabelSet *set = setNamed(sets, labelSet, reading, kept);
    const bool isTold = reading && reading->report;
    if (!label && !isTold)
        return;
    OwnedLabel made = makeValueLabel(value);
    if (isTold)
        reading->tellOfLabel(set, labelSet, value, *made, label);
    if (!label)
        return;
    made->labelLength = std::strlen(label);
    made->label = copyOf(label, made->labelLength);
    set->push_back(nullptr); // may raise, so it comes first
    set->back() = made.release();
}

void describe(const Format &format, const readstat_variable_t &variable, const char *labelSet, const LabelSets &sets,
              Reading *reading, TGenericField &field)
{
    field.optional = true;
    field.type = typeOf(format, variable);
    field.name = QString::fromUtf8(variable.name, int(lengthOf(variable.name)));
    format.appendText(field.label, variable.label, lengthOf(variable.label));
    field.length = format.widthOf(variable);
    if (reading && reading->report)
        reading->tellOfVariable(variable, field);
    if (field.type != vtString || format.textsHaveRange) {
        field.minimum = QStringLiteral("0");
        field.maximum = reading ? reading->nines(field.length) : Nines()(field.length);
    }
    if (!labelSet)
        return;
    const uint length = qstrnlen(labelSet, (reading ? reading->bounds : wholeNames).withVariable);
    const auto found = sets.find(std::string(labelSet, length));
    const bool hasSet = found != sets.end() && found->second;
    if (!hasSet && *labelSet && reading && reading->report)
        reading->report->add(NoteKind::labelSetMissing, QString::fromUtf8(labelSet, int(length)), 0, field.name);
    if (hasSet)
        takeLabels(format, *found->second, format.decimalsDecide && !hasDecimals(variable), reading, field);
}

bool isBlank(const TGenericField &field)
{
    return field.type == vtString && field.currentText().trimmed().isEmpty();
}

} // namespace statistical
