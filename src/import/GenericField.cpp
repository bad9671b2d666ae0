#include "import/GenericField.h"

#include "util/EmptyText_p.h"
#include "util/Numbers_p.h"

#include <algorithm>
#include <cmath>

TGenericField::TGenericField(TDataImport *importer)
    : name(emptyText())
    , valueLabels(emptyText())
    , missingValue(emptyText())
    , notApplicable(emptyText())
    , minimum(emptyText())
    , maximum(emptyText())
    , decimals(emptyText())
    , owner(importer)
{
}

TGenericField::TGenericField(const TGenericField &other) = default;
TGenericField &TGenericField::operator=(const TGenericField &other) = default;

TGenericField::TGenericField(TGenericField && /*other*/)
    : hasDecimalChar(false)
    , realValue(0)
    , owner(nullptr)
{
}

TGenericField::~TGenericField() = default;

void TGenericField::addValueLabel(QString /*code*/, QString /*text*/) { }

QString TGenericField::getGroup()
{
    return emptyText();
}

void TGenericField::setAsString(QString value)
{
    setText(value, value);
}

void TGenericField::setAsStringChar(const wchar_t *value)
{
    const QString text = value ? QString::fromWCharArray(value) : QString();
    setText(text, text.trimmed());
}

// The two string setters differ only in the text that they convert to a number.
void TGenericField::setText(const QString &value, const QString &number)
{
    const auto *units = reinterpret_cast<const char16_t *>(value.utf16());
    const auto *unitsEnd = std::find(units, units + value.size(), u'\0');
    const int size = std::clamp(length, 0, textValueSize);
    auto *copied = std::copy_n(units, std::min<std::ptrdiff_t>(size, unitsEnd - units), textValue);
    std::fill(copied, textValue + size, u'\0');
    isUnset = false;
    if (isMissing() || isNotApplicable() || isBlank())
        return;

    switch (type) {
    case vtInteger:
        intValue = realValue = numbers::toDouble(number);
        break;
    case vtReal:
        realValue = numbers::toDouble(number);
        if (!hasDecimalChar && !decimals.isEmpty())
            realValue /= std::pow(10.0, numbers::toDouble(decimals));
        break;
    case vtString:
        break;
    default:
        // A field without a type loses its first four characters: they become eight bytes 0x15.
        std::fill_n(textValue, 4, u'\x1515');
        break;
    }
}

QString TGenericField::getValueLabel(QString code)
{
    valueLabels.replace(QLatin1Char('\n'), QLatin1Char('\t'));
    QString line = valueLabels;
    // Index 1 is intended: the first character is not compared and stays in the result.
    const int blank = line.indexOf(QLatin1Char(' '));
    if (line.mid(1, blank - 1).trimmed() != code)
        return QString();
    return line.remove(1, blank).trimmed();
}

QString TGenericField::currentText() const
{
    const auto *end = std::find(std::begin(textValue), std::end(textValue), u'\0');
    return QString::fromUtf16(textValue, int(end - textValue));
}

QString TGenericField::getAsString()
{
    if (isMissing())
        return missingValue;
    if (isNotApplicable())
        return notApplicable;
    if (isBlank())
        return emptyText();
    switch (type) {
    case vtInteger:
        return numbers::toText(intValue);
    case vtReal:
        return numbers::toText(realValue);
    case vtString:
        return currentText();
    default:
        return emptyText();
    }
}

double TGenericField::getAsFloat()
{
    if (isMissing())
        return numbers::toDouble(missingValue);
    switch (type) {
    case vtInteger:
        return intValue;
    case vtReal:
        return realValue;
    case vtString:
        return numbers::toDouble(currentText().trimmed());
    default:
        return 0;
    }
}

int TGenericField::getAsInteger()
{
    bool ok = false;
    if (isMissing())
        return numbers::toInt(missingValue, &ok);
    switch (type) {
    case vtInteger:
        return numbers::truncated(intValue);
    case vtReal:
        return numbers::truncated(realValue);
    case vtString:
        return numbers::toInt(currentText().trimmed(), &ok);
    default:
        return 0;
    }
}

void TGenericField::setAsFloat(double value)
{
    realValue = value;
}

void TGenericField::setAsInteger(int value)
{
    intValue = value;
}

bool TGenericField::isString() const
{
    return type == vtString;
}
