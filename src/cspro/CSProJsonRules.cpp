#include "cspro/CSProJsonRules_p.h"

#include "import/Constants.h"

#include <QJsonArray>

namespace cspro
{

QJsonObject dictionaryOf(const QJsonObject &root)
{
    const QJsonValue wrapped = root.value(QLatin1String("dictionary"));
    return wrapped.isObject() ? wrapped.toObject() : root;
}

bool isAlpha(const QJsonValue &contentType)
{
    return contentType.toString().compare(QLatin1String("alpha"), Qt::CaseInsensitive) == 0;
}

int occurrencesOf(const QJsonValue &occurrences)
{
    return occurrences.isObject() ? occurrences.toObject().value(QLatin1String("maximum")).toInt(1) : 1;
}

QString codeOf(const QJsonObject &pair)
{
    const QJsonValue value = pair.value(QLatin1String("value"));
    return codeOf(value, value.isUndefined() ? pair.value(QLatin1String("range")) : QJsonValue());
}

QString codeOf(const QJsonValue &value, const QJsonValue &range)
{
    return value.isUndefined() ? codeOfRange(range) : value.toString();
}

QString codeOfRange(const QJsonValue &range)
{
    const QJsonArray bounds = range.toArray();
    if (bounds.size() != 2 || !bounds.at(0).isString() || !bounds.at(1).isString())
        return QString();
    return bounds.at(0).toString() + Vocabulary::Colon + bounds.at(1).toString();
}

} // namespace cspro
