#include "import/SourceField.h"

#include "util/EmptyText_p.h"
#include "util/Numbers_p.h"

namespace
{

// Each field has its own list, which shares its data with the lists of the other fields until one of them changes it.
QStringList *newTypeNames()
{
    static const QStringList names = { QStringLiteral("NONE"), QStringLiteral("CSPRO"), QStringLiteral("CSV"),
                                       QStringLiteral("SSPS"), QStringLiteral("STATA") };
    return new QStringList(names);
}

} // namespace

TVpSourceField::TVpSourceField()
    : typeNames(newTypeNames())
    , fieldName(emptyText())
    , label(emptyText())
    , valueLabels(emptyText())
    , minimum(emptyText())
    , maximum(emptyText())
    , notApplicable(emptyText())
    , missingValue(emptyText())
    , text1(emptyText())
    , text2(emptyText())
    , text3(emptyText())
    , providerId(emptyText())
    , group(emptyText())
    , text4(emptyText())
    , blankValue(emptyText())
    , text5(emptyText())
    , text6(emptyText())
    , FieldType(emptyText())
    , DataProviderType(emptyText())
{
}

TVpSourceField::TVpSourceField(const TVpSourceField &other) = default;
TVpSourceField &TVpSourceField::operator=(const TVpSourceField &other) = default;

TVpSourceField::TVpSourceField(TVpSourceField && /*other*/)
    : typeNames(nullptr)
    , flag1(false)
{
}

TVpSourceField::~TVpSourceField() = default;

QString TVpSourceField::getFieldType() const
{
    return FieldType;
}

void TVpSourceField::setFieldType(QString value)
{
    FieldType = std::move(value);
}

QString TVpSourceField::getDataProviderType() const
{
    return DataProviderType;
}

void TVpSourceField::setDataProviderType(QString type)
{
    // Positions 1 to 6, 8 and 9 have the value of the same number. Position 7 has no value.
    constexpr int unusedPosition = 7;
    constexpr int lastPosition = 9;
    const int position = typeNames ? typeNames->indexOf(type) : -1;
    if (position < 1 || position == unusedPosition || position > lastPosition)
        return;
    dataProviderTypeIndex = eDataProviderType(position);
    DataProviderType = std::move(type);
}

QString TVpSourceField::getStringValue(QString line)
{
    QString value;
    const qint64 size = line.size();
    const bool isShort = size < qint64(start) + length - 1;
    if (size > 0 && !(isShort && start >= size))
        value = line.mid(start, isShort ? numbers::clamped(size + 1 - start) : length);
    isBlankValue = value == blankValue;
    return value;
}

eVanVarType TVpSourceField::getFieldTypeIndex() const
{
    return fieldTypeIndex;
}

eDataProviderType TVpSourceField::getDataProviderTypeIndex() const
{
    return dataProviderTypeIndex;
}

bool TVpSourceField::isString() const
{
    return fieldTypeIndex == vtString;
}
