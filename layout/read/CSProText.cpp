#include "read/CSProTextReader_p.h"

#include "read/CSProCommon_p.h"
#include "read/Formats_p.h"

#include <algorithm>

namespace vanlayout
{

using namespace csprotext;

CSProTextReader::CSProTextReader(Layout &target, Diagnostics &targetDiagnostics, ElementLines *linesOfElements)
    : layout(target)
    , diagnostics(targetDiagnostics)
    , elementLines(linesOfElements)
{
}

void CSProTextReader::read(const QByteArray &bytes)
{
    const CSProTextContent content = decodeCSProText(bytes);
    layout.format = Format::CSProText;
    layout.encoding = content.encoding;
    for (const int line : content.damagedLines)
        warn("bad-bytes",
             QStringLiteral("the line has bytes that are not valid in its encoding; they were replaced by U+FFFD"),
             line);
    if (content.hasOnlyReturns)
        inform("carriage-returns", QStringLiteral("the lines end in carriage returns without line feeds"), 1);
    firstProblem = layout.problems.size();
    CSProTextLines lines(content.text());
    Statement statement;
    while (lines.next(statement))
        readStatement(statement);
    leaveSection();
    if (hasDictionary)
        finish();
    else
        diagnostics.fail(
            "no-dictionary",
            QStringLiteral("the text has no section [Dictionary], so it is not a CSPro dictionary; its first "
                           "section is %1")
                .arg(firstSection),
            firstSectionLine);
}

void CSProTextReader::readStatement(const Statement &statement)
{
    if (statement.isSection())
        beginSection(statement);
    else
        readKey(statement);
}

void CSProTextReader::finish()
{
    layout.note = cspro::cleanNote(layout.note);
    checkPartCount(layout.labels.parts.size(), dictionaryLabelLine);
    checkLevels();
    cspro::shareLinkedValues(layout, diagnostics);
    const auto isBefore = [](const auto &left, const auto &right) { return left.line < right.line; };
    std::stable_sort(layout.problems.begin(), layout.problems.end(), isBefore);
    std::stable_sort(layout.extras.begin(), layout.extras.end(), isBefore);
}

void CSProTextReader::require(bool isThere, const char *id, const QString &message)
{
    if (!isThere)
        warn(id, message, sectionLine);
}

void CSProTextReader::finishNote()
{
    if (!named.note->isEmpty())
        *named.note = cspro::cleanNote(*named.note);
}

void CSProTextReader::checkOccurrenceLabels(int occurrences)
{
    for (size_t index = 0; index < occurrenceLines.size(); ++index) {
        const int occurrence = named.occurrenceLabels->at(int(index)).occurrence;
        if (occurrences <= 1 || occurrence > occurrences)
            warn("label-without-occurrence",
                 QStringLiteral("the label is for occurrence %1, but the maximum is %2; CSPro omits it")
                     .arg(occurrence)
                     .arg(occurrences),
                 occurrenceLines[index]);
    }
    occurrenceLines.clear();
}

// The capture type that counts may be none, after one with a date format.
void CSProTextReader::finishCapture()
{
    if (dateFormat.line == 0)
        return;
    if (item->capture)
        item->capture->dateFormat = textOf(dateFormat.value).toUpper();
    else
        keepUnknownKey(dateFormat);
}

void CSProTextReader::finishSubitem()
{
    if (!item->isSubitem) {
        holder = item->name;
        hasHolder = true;
    } else if (hasHolder) {
        item->subitemOf = holder;
    } else {
        warn("subitem-without-item", QStringLiteral("there is no item before the subitem"), sectionLine);
    }
}

void CSProTextReader::checkLevels()
{
    if (layout.levels.isEmpty())
        diagnostics.warn("no-level", QStringLiteral("the dictionary has no [Level]"));
    for (int index = 0; index < layout.levels.size(); ++index) {
        const Level &each = qAsConst(layout).levels.at(index);
        if (each.ids.isEmpty())
            diagnostics.warn("level-without-ids",
                             QStringLiteral("the level has no id item; CSPro omits it and its records"),
                             { levelLines[size_t(index)], cspro::nameInPath(each.name) });
    }
}

void CSProTextReader::warn(const char *id, const QString &message, int line)
{
    diagnostics.warn(id, message, { line, QString() });
}

void CSProTextReader::inform(const char *id, const QString &message, int line)
{
    diagnostics.inform(id, message, { line, QString() });
}

namespace
{

// The first character after a byte-order mark and white space; a blank if there is none.
char firstCharacterOf(const QByteArray &head)
{
    const CSProTextContent content = decodeCSProText(head);
    const std::string_view text = content.text();
    const size_t first = text.find_first_not_of(" \t\n\v\f\r");
    return first != std::string_view::npos ? text[first] : ' ';
}

} // namespace

bool isBlankCSProText(const QByteArray &head)
{
    return firstCharacterOf(head) == ' ';
}

bool isCSProText(const QByteArray &head)
{
    return firstCharacterOf(head) == '[';
}

void readCSProText(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics)
{
    CSProTextReader(layout, diagnostics).read(bytes);
}

void readCSProText(Input &input, Layout &layout, Diagnostics &diagnostics)
{
    QString problem;
    const QByteArray bytes = readAllOf(input.device, problem);
    if (problem.isEmpty())
        CSProTextReader(layout, diagnostics, input.options.lines).read(bytes);
    else
        diagnostics.fail("cannot-read", problem);
}

} // namespace vanlayout
