#ifndef LAYOUT_WRITE_WORDING_P_H
#define LAYOUT_WRITE_WORDING_P_H

#include "model/Layout.h"

#include <QStringList>

// Short texts for people about the parts of a layout: one wording for the terminal and for all documents.

namespace vanlayout
{

namespace wording
{

inline QString withVersion(const char *kind, const char *separator, const QString &version)
{
    const QString text = QLatin1String(kind);
    return version.isEmpty() ? text : text + QLatin1String(separator) + version;
}

inline QString csproDictionary(const char *kind, const Layout &layout)
{
    const QString text = withVersion(kind, " ", layout.formatVersion);
    return layout.container.isEmpty() ? text : QStringLiteral("CSPro data file with a ") + text;
}

} // namespace wording

/// The kind of file, such as "CSPro dictionary, text form 7.7" or "Stata file, version 118".
inline QString describeFormat(const Layout &layout)
{
    switch (layout.format) {
    case Format::None:
        break;
    case Format::CSProText:
        return wording::csproDictionary("CSPro dictionary, text form", layout);
    case Format::CSProJson:
        return wording::csproDictionary("CSPro dictionary, JSON form", layout);
    case Format::Ddi:
        return wording::withVersion("DDI Codebook", " ", layout.formatVersion);
    case Format::Spss:
        return QStringLiteral("SPSS file");
    case Format::SpssPortable:
        return QStringLiteral("SPSS portable file");
    case Format::Stata:
        return wording::withVersion("Stata file", ", version ", layout.formatVersion);
    case Format::Sas:
        return QStringLiteral("SAS data set");
    case Format::SasXport:
        return wording::withVersion("SAS transport file", ", version ", layout.formatVersion);
    }
    return QString();
}

/// The type of an item for people: `9(3)`, `9(5).2` (written decimal mark), `9(5)v2` (implied decimal mark) or `A(20)`
/// for an item of a dictionary, the format of a variable of a statistical file, or the word for any other type. If a
/// statistical file states no format, or one without a width (`$`), the type of a text is its length in bytes, `A(20)`,
/// and that of a number is its storage, `double`.
inline QString describeType(const Item &item)
{
    const bool hasFormat = !item.format.isEmpty() && item.format != QLatin1String("$");
    if (hasFormat)
        return item.format;
    if (item.isAlpha())
        return QStringLiteral("A(%1)").arg(item.length);
    if (item.storage != Storage::None)
        return wordOf(item.storage);
    if (!item.isNumeric())
        return item.type;
    const QString digits = QStringLiteral("9(%1)").arg(item.length);
    if (item.decimals == 0)
        return digits;
    return digits + (item.decimalMark ? QLatin1Char('.') : QLatin1Char('v')) + QString::number(item.decimals);
}

/// The codes of a value or the missing values of an item: single codes and `from to to`, separated by commas.
inline QString describeRanges(const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges)
        texts.append(range.to.isEmpty() ? range.from : range.from + QLatin1String(" to ") + range.to);
    return texts.join(QLatin1String(", "));
}

/// "missing", "not applicable", "refused" or "default"; empty for none.
inline QString describeSpecial(Special special)
{
    return special == Special::NotApplicable ? QStringLiteral("not applicable") : wordOf(special);
}

} // namespace vanlayout

#endif
