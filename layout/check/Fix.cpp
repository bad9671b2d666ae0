#include "check/Fix.h"

#include "check/Lint.h"
#include "check/RecordLengths_p.h"
#include "read/Reader.h"
#include "util/KeyedHash_p.h"
#include "write/CSProJson.h"

#include <QBuffer>

#include <algorithm>

namespace vanlayout
{

namespace
{

bool isText(const Layout &layout)
{
    return layout.format == Format::CSProText;
}

// Calls `visit` with each record.
template <typename Visit> void forEachRecord(Layout &layout, Visit visit)
{
    for (Level &level : layout.levels) {
        for (Record &record : level.records)
            visit(record);
    }
}

void fixLengths(Layout &layout)
{
    if (!isText(layout))
        return;
    constexpr int longest = 32000; // the limit of CSPro; beyond it the columns are what is wrong
    const RecordLengths lengths(layout);
    forEachRecord(layout, [&](Record &record) {
        const int length = lengths.of(record);
        if (RecordLengths::isKnown(record) && length <= longest)
            record.length = length;
    });
}

bool isNumber(const QString &type)
{
    return !type.isEmpty() && std::all_of(type.begin(), type.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

// Two records whose types become the same, such as 1 and 01, are both kept.
void fixRecordTypes(Layout &layout)
{
    constexpr int maxWidth = 9; // the limit of CSPro; a damaged file may state more than fits in memory
    const int width = layout.recordType && layout.recordType->length <= maxWidth ? layout.recordType->length : 0;
    const auto filled
        = [width](const QString &type) { return isNumber(type) ? type.rightJustified(width, QLatin1Char('0')) : type; };
    KeyedMap<QString, int> counts;
    forEachRecord(layout, [&](const Record &record) { ++counts[filled(record.recordType)]; });
    forEachRecord(layout, [&](Record &record) {
        const QString type = filled(record.recordType);
        if (counts.at(type) == 1)
            record.recordType = type;
    });
}

// Whether bytes were replaced because they are not valid.
bool isDamaged(const Layout &layout)
{
    return std::any_of(layout.problems.begin(), layout.problems.end(),
                       [](const Problem &problem) { return problem.id == QLatin1String("bad-bytes"); });
}

// Why the file cannot be written anew: it has statements whose meaning is unknown.
QString problemWith(const Layout &layout)
{
    if (!layout.container.isEmpty())
        return QStringLiteral("is not a CSPro dictionary but a data file with one, and cannot be corrected; write its "
                              "dictionary with vanlayout convert, and correct that");
    if (layout.format != Format::CSProText && layout.format != Format::CSProJson)
        return QStringLiteral("is not a CSPro dictionary in text or JSON form, and cannot be corrected");
    LintOptions options;
    options.only
        = { LintRule::UnknownKey,  LintRule::MisspelledKey, LintRule::IgnoredKey,       LintRule::RepeatedKey,
            LintRule::UnreadValue, LintRule::UnknownType,   LintRule::MisplacedSection, LintRule::IncompleteReading };
    // Labels that were misread before the file was saved in UTF-8 stay as they are.
    if (isDamaged(layout) || layout.encoding == QLatin1String("windows-1252"))
        options.only.append(LintRule::MixedEncodings);
    const QVector<LintFinding> findings = lint(layout, options);
    if (findings.isEmpty())
        return QString();
    const LintFinding &first = findings.constFirst();
    const QString place = first.line > 0 ? QStringLiteral("line %1: ").arg(first.line) : QString();
    return QStringLiteral("cannot be corrected, because a statement would be lost or changed: %1%2")
        .arg(place, first.message);
}

// Members that a correct rewriting may change.
Layout comparable(Layout layout)
{
    layout.file.clear();
    layout.encoding.clear();
    layout.problems.clear();
    layout.extras.clear();
    return layout;
}

bool isReadAs(const Layout &layout, QByteArray &bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return comparable(readLayout(buffer, QString())) == comparable(layout);
}

} // namespace

FixedDictionary fixDictionary(const Layout &layout, const CSProTextStyle &style)
{
    FixedDictionary fixed;
    fixed.problem = problemWith(layout);
    if (!fixed.problem.isEmpty())
        return fixed;
    Layout corrected = layout;
    fixRecordTypes(corrected);
    fixLengths(corrected);
    Losses losses;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (isText(layout))
        writeCSProText(corrected, buffer, style, &losses);
    else
        writeCSProJson(corrected, buffer, &losses);
    if (!losses.isEmpty())
        fixed.problem
            = QStringLiteral("cannot be corrected: the dictionary cannot hold %1").arg(losses.constFirst().what);
    else if (!isReadAs(corrected, bytes))
        fixed.problem = QStringLiteral("cannot be corrected, because its meaning would change");
    else
        fixed = { corrected, bytes, QString() };
    return fixed;
}

} // namespace vanlayout
