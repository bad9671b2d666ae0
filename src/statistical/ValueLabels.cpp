#include "statistical/ValueLabels_p.h"

#include "import/KeptObjects_p.h"
#include "util/EmptyText_p.h"
#include "util/Numbers_p.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace statistical
{

namespace
{

// An integer, a real number and a text with these values mean that a label holds no value.
constexpr qint32 noInteger = -1;
constexpr double noReal = -1.0;
constexpr qint32 stringReference = -88;

char *copyOf(const char *text, size_t length)
{
    auto *copy = new char[length + 1];
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

void freeLabelSet(const LabelSet *set)
{
    std::for_each(set->cbegin(), set->cend(), FreeLabel());
    delete set;
}

template <typename Number, typename... Form> void appendNumber(QString &text, Number number, Form... form)
{
    constexpr size_t maxSize = 512;
    char digits[maxSize];
    const auto end = std::to_chars(digits, digits + maxSize, number, form...).ptr;
    text.append(QLatin1String(digits, int(end - digits)));
}

void appendValue(const Format &format, const TStatValueLabel &label, QString &text)
{
    switch (heldBy(label)) {
    case HeldValue::integer:
        return appendInteger(text, label.intValue);
    case HeldValue::real:
        return appendReal(text, label.doubleValue);
    case HeldValue::text:
        return appendText(format, text, label.stringValue, std::strlen(label.stringValue));
    case HeldValue::none:
        break;
    }
}

void addToSpan(Span &span, const TStatValueLabel &label)
{
    const HeldValue held = heldBy(label);
    if (held == HeldValue::integer)
        span.add(label.intValue);
    else if (held == HeldValue::real)
        span.add(label.doubleValue);
}

} // namespace

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

OwnedLabel makeValueLabel(const readstat_value_t &value)
{
    OwnedLabel owned(new TStatValueLabel);
    TStatValueLabel &made = *owned;
    switch (typeNumber(value.type)) {
    case READSTAT_TYPE_DOUBLE:
    case READSTAT_TYPE_FLOAT:
        // All eight bytes are copied, even if four of them are a float: nothing is converted.
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

void setLabelText(TStatValueLabel &label, const char *text)
{
    label.labelLength = std::strlen(text);
    label.label = copyOf(text, label.labelLength);
}

LabelSet *makeLabelSet(KeptObjects &kept)
{
    auto made = std::make_unique<LabelSet>();
    LabelSet *set = made.get();
    kept.add(set, [set] { freeLabelSet(set); });
    return made.release();
}

HeldValue heldBy(const TStatValueLabel &label)
{
    if (label.intValue != noInteger)
        return HeldValue::integer;
    if (label.doubleValue != noReal)
        return HeldValue::real;
    return label.stringValue ? HeldValue::text : HeldValue::none;
}

void turnToIntegers(const LabelSet &set)
{
    for (TStatValueLabel *label : set) {
        if (label && label->doubleValue != noReal) {
            label->intValue = numbers::truncated(label->doubleValue);
            label->doubleValue = noReal;
        }
    }
}

void appendInteger(QString &text, qint32 number)
{
    appendNumber(text, number);
}

void appendReal(QString &text, double number)
{
    constexpr int decimals = 6;
    appendNumber(text, number, std::chars_format::fixed, decimals);
}

void Span::add(double value)
{
    if (value < lowest) {
        lowest = value;
        hasLowerValue = true;
    }
    if (value > highest) {
        highest = value;
        hasUpperValue = true;
    }
}

void makeLabelText(const Format &format, const LabelSet &set, LabelText &made)
{
    Span span;
    QString text;
    for (const TStatValueLabel *label : set) {
        if (!label || heldBy(*label) == HeldValue::none)
            continue;
        appendValue(format, *label, text);
        addToSpan(span, *label);
        text.append(QLatin1Char(' '));
        if (label->label)
            appendText(format, text, label->label, std::strlen(label->label));
        text.append(QLatin1Char('\t'));
    }
    text.squeeze();
    made.text = notNull(std::move(text));
    made.span = span;
    made.minimum = span.hasLower() ? numbers::toText(span.lower()) : QString();
    made.maximum = span.hasUpper() ? numbers::toText(span.upper()) : QString();
    made.isMade = true;
}

} // namespace statistical
