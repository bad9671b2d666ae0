#include "LayoutText.h"

#include <QStringList>

using vanlayout::Format;
using vanlayout::Item;
using vanlayout::Layout;
using vanlayout::Level;
using vanlayout::Range;
using vanlayout::Record;

namespace
{

QString withVersion(const char *kind, const char *separator, const QString &version)
{
    const QString text = QLatin1String(kind);
    return version.isEmpty() ? text : text + QLatin1String(separator) + version;
}

QString describeCSPro(const char *kind, const Layout &layout)
{
    const QString text = withVersion(kind, " ", layout.formatVersion);
    return layout.container.isEmpty() ? text : QStringLiteral("CSPro data file with a ") + text;
}

} // namespace

QString describeFormat(const Layout &layout)
{
    switch (layout.format) {
    case Format::None:
        break;
    case Format::CSProText:
        return describeCSPro("CSPro dictionary, text form", layout);
    case Format::CSProJson:
        return describeCSPro("CSPro dictionary, JSON form", layout);
    case Format::Spss:
        return QStringLiteral("SPSS file");
    case Format::SpssPortable:
        return QStringLiteral("SPSS portable file");
    case Format::Stata:
        return withVersion("Stata file", ", version ", layout.formatVersion);
    case Format::Sas:
        return QStringLiteral("SAS data set");
    case Format::SasXport:
        return withVersion("SAS transport file", ", version ", layout.formatVersion);
    }
    return QString();
}

QString describeType(const Item &item)
{
    if (!item.format.isEmpty())
        return item.format;
    if (item.isAlpha())
        return QStringLiteral("A(%1)").arg(item.length);
    if (!item.isNumeric())
        return item.type;
    const QString digits = QStringLiteral("9(%1)").arg(item.length);
    if (item.decimals == 0)
        return digits;
    return digits + (item.decimalMark ? QLatin1Char('.') : QLatin1Char('v')) + QString::number(item.decimals);
}

QString describeRanges(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(range.to.isEmpty() ? range.from : range.from + QLatin1String(" to ") + range.to);
    return texts.join(QLatin1String(", "));
}

QString countOf(qint64 count, const QString &noun)
{
    return QString::number(count) + QLatin1Char(' ') + noun + (count == 1 ? QLatin1String("") : QLatin1String("s"));
}

void forEachItem(const Layout &layout, const std::function<void(const Level &, const Record *, const Item &)> &visit)
{
    for (const Level &level : layout.levels) {
        for (const Item &item : level.ids)
            visit(level, nullptr, item);
        for (const Record &record : level.records) {
            for (const Item &item : record.items)
                visit(level, &record, item);
        }
    }
}
