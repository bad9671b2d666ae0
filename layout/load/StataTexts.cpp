#include "StataTexts_p.h"

#include "PlanLists_p.h"
#include "PlanTexts_p.h"
#include "ProgramText_p.h"
#include "StataVariables_p.h"
#include "read/Decoding_p.h"

#include <algorithm>
#include <utility>

namespace vanlayout
{

namespace
{

constexpr int maxLiteral = 100;                // characters of a text in one pair of quotes
constexpr int maxValueLabel = 32000;           // characters
constexpr int maxOperands = 40;                // of an expression: each edition of Stata takes as many
constexpr int maxCodings = 65536;              // codes of a value label
constexpr qint64 maxLabelledCode = 2147483620; // greatest value of the type long

constexpr int firstWideByte = 0x80;
constexpr int lastByte = 0xff;

bool isExpanded(QChar character)
{
    return character == QLatin1Char('`') || character == QLatin1Char('$');
}

// Blocks of commands end with a brace, and the manual does not say that one within a text counts for nothing.
bool isBrace(QChar character)
{
    return character == QLatin1Char('{') || character == QLatin1Char('}');
}

// Whether the character has to be written by its code.
bool needsCode(const QString &text, int i)
{
    const QChar character = text.at(i);
    const bool isSlash = character == QLatin1Char('/');
    const bool mayComment
        = isSlash && i + 1 < text.size() && (text.at(i + 1) == QLatin1Char('/') || text.at(i + 1) == QLatin1Char('*'));
    return isExpanded(character) || isBrace(character) || character == QLatin1Char('"') || character.unicode() < ' '
        || mayComment;
}

QVector<QByteArray> operandsOf(const QString &text)
{
    QVector<QByteArray> operands;
    QString literal;
    const auto addLiteral = [&] {
        if (!literal.isEmpty())
            operands.append('"' + std::exchange(literal, QString()).toUtf8() + '"');
    };
    for (int i = 0; i < text.size(); ++i) {
        if (literal.size() >= maxLiteral && !text.at(i).isLowSurrogate())
            addLiteral();
        if (!needsCode(text, i)) {
            literal += text.at(i);
            continue;
        }
        addLiteral();
        operands.append("char(" + QByteArray::number(text.at(i).unicode()) + ')');
    }
    addLiteral();
    return operands;
}

QByteArray sumOf(const QVector<QByteArray> &operands)
{
    return operands.isEmpty() ? "\"\"" : stataJoined(operands, " + ");
}

bool needsMacro(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != QLatin1Char('"') && needsCode(text, i))
            return true;
    }
    return text.size() > maxLiteral;
}

QString withoutQuoteEnds(QString text)
{
    text.replace(QLatin1String("`\""), QLatin1String("'\""));
    if (text.endsWith(QLatin1Char('`')))
        text.replace(text.size() - 1, 1, QLatin1Char('\''));
    return text.replace(QLatin1String("\"'"), QLatin1String("\" '"));
}

// The label in the form that Stata can hold, as much of it as has at most \a max characters.
QString labelOf(const QString &text, int max)
{
    if (!text.contains(QLatin1Char('`')) && !text.contains(QLatin1Char('"')))
        return cutTo(text, { max, LengthUnit::Characters });
    for (LengthLimit limit = { max, LengthUnit::Characters };; --limit.max) {
        QString label = withoutQuoteEnds(limit.max > 0 ? cutTo(text, limit) : QString());
        if (limit.max <= 0 || cutTo(label, { max, LengthUnit::Characters }) == label)
            return label;
    }
}

QByteArray conditionOf(const QByteArray &name, const SpecialRule &rule)
{
    if (rule.low == rule.high)
        return name + " == " + rule.low.toLatin1();
    return name + " >= " + rule.low.toLatin1() + " & " + name + " <= " + rule.high.toLatin1();
}

// The number or missing value that a label is assigned to; empty if there is none.
QByteArray placeOf(const CodeLabel &label)
{
    if (label.outcome == CellOutcome::Missing)
        return QByteArray();
    if (label.outcome != CellOutcome::Value)
        return missingValueOf(label.outcome);
    bool isWhole = false;
    const qint64 code = label.code.toLongLong(&isWhole);
    return isWhole && qAbs(code) <= maxLabelledCode ? label.code.toLatin1() : QByteArray();
}

// The places of all labels, of which a value label holds so many; empty for a label without one. A missing value has
// the first of its labels.
QVector<QByteArray> placesOf(const CodeList &codes)
{
    QVector<QByteArray> places;
    places.reserve(codes.labels.size());
    QVector<QByteArray> used;
    int count = 0;
    for (const CodeLabel &label : codes.labels) {
        const QByteArray place = placeOf(label);
        const bool isRepeated = place.startsWith('.') && used.contains(place);
        const bool isHeld = !place.isEmpty() && !isRepeated && count < maxCodings;
        if (isHeld && place.startsWith('.'))
            used.append(place);
        count += isHeld ? 1 : 0;
        places.append(isHeld ? place : QByteArray());
    }
    return places;
}

QByteArray isBlank(const QByteArray &name)
{
    return "rtrim(" + name + ") == \"\"";
}

} // namespace

QByteArray stataExpression(const QString &text)
{
    return sumOf(operandsOf(text));
}

QByteArray stataMacro(const QByteArray &name, const QString &text)
{
    const QVector<QByteArray> operands = operandsOf(text);
    if (operands.size() <= maxOperands)
        return "    local " + name + " = " + sumOf(operands) + '\n';
    QByteArray commands;
    for (int i = 0; i < operands.size(); i += maxOperands)
        commands += "    scalar van_text = " + QByteArray(i == 0 ? "" : "scalar(van_text) + ")
            + sumOf(operands.mid(i, maxOperands)) + '\n';
    return commands + "    local " + name + " = scalar(van_text)\n";
}

QByteArray stataCharacter(QChar character)
{
    if (character.unicode() < firstWideByte)
        return stataExpression(QString(character));
    for (int byte = firstWideByte; byte <= lastByte; ++byte) {
        const char encoded = static_cast<char>(byte);
        if (decoding::fromWindows1252(&encoded, 1) == QString(character))
            return "char(" + QByteArray::number(byte) + ')';
    }
    return "char(0)"; // no line has this character
}

QByteArray stataLine(const QByteArray &command)
{
    return "    " + command + '\n';
}

QByteArray stataJoined(const QVector<QByteArray> &parts, const QByteArray &between)
{
    constexpr int longLine = 200; // bytes
    QByteArray text;
    int start = 0;
    for (const QByteArray &part : parts) {
        text += text.isEmpty() ? QByteArray() : between;
        if (text.size() - start > longLine) {
            text += "///\n        ";
            start = text.size();
        }
        text += part;
    }
    return text;
}

QByteArray stataJoinedTexts(const QVector<QByteArray> &names)
{
    QVector<QByteArray> parts;
    for (int i = 0; i < names.size(); ++i) {
        const bool isLast = i + 1 == names.size();
        const QByteArray width = number(maxStataText);
        const QByteArray filled = "substr(" + names.at(i) + " + " + width + " * \" \", 1, " + width + ')';
        parts.append(isLast ? names.at(i) : filled);
    }
    return stataJoined(parts, " + ");
}

QByteArray stataAreBlank(const QVector<QByteArray> &names)
{
    QVector<QByteArray> conditions;
    for (const QByteArray &name : names)
        conditions.append(isBlank(name));
    return stataJoined(conditions, " & ");
}

QByteArray stataHasMark(const QString &mark, int length, const QByteArray &name)
{
    if (mark.size() > length)
        return "1 == 0";
    QVector<QByteArray> conditions;
    for (int i = 0; i < mark.size(); ++i) {
        const QByteArray character = name + number(i + 1);
        const QByteArray condition = character + " == " + stataCharacter(mark.at(i));
        conditions.append(mark.at(i) == QLatin1Char(' ') ? isBlank(character) : condition);
    }
    return stataJoined(conditions, " & ");
}

QByteArray stataLabelCommand(const QByteArray &command, const QString &text, int max, const QByteArray &options)
{
    const QString label = labelOf(text, max);
    if (!needsMacro(label))
        return "    " + command + " `\"" + label.toUtf8() + "\"'" + options + '\n';
    return stataMacro("van_label", label) + "    " + command + " `\"`macval(van_label)'\"'" + options + '\n';
}

QByteArray stataTypeOf(const PlannedColumn &column)
{
    constexpr int maxByteDigits = 2;
    constexpr int maxIntDigits = 4;
    constexpr int maxLongDigits = 9;
    if (column.type == CellType::Decimal || column.length > maxLongDigits)
        return "double";
    return column.length <= maxByteDigits ? "byte" : column.length <= maxIntDigits ? "int" : "long";
}

QByteArray stataSpecials(const QByteArray &name, const CodeList &codes)
{
    const auto ofRule = [&](const SpecialRule &rule) { return conditionOf(name, rule); };
    return specialStatements(codes, " & !(", ofRule, [&](const QByteArray &condition, CellOutcome outcome) {
        return stataLine("replace " + name + " = " + missingValueOf(outcome) + " if " + condition);
    });
}

bool stataHasValueLabel(const CodeList &codes)
{
    return std::any_of(codes.labels.begin(), codes.labels.end(),
                       [](const CodeLabel &label) { return !placeOf(label).isEmpty(); });
}

QByteArray stataValueLabel(const QByteArray &name, const CodeList &codes)
{
    const QVector<QByteArray> places = placesOf(codes);
    QByteArray commands;
    const QByteArray command = "label define " + name + ' ';
    for (int i = 0; i < places.size(); ++i) {
        if (!places.at(i).isEmpty())
            commands += stataLabelCommand(command + places.at(i), codes.labels.at(i).text, maxValueLabel,
                                          commands.isEmpty() ? "" : ", add");
    }
    return commands;
}

QStringList stataUnlabelled(const CodeList &codes, bool areTexts)
{
    const QVector<QByteArray> places = placesOf(codes);
    QStringList unlabelled;
    for (int i = 0; i < places.size(); ++i) {
        const CodeLabel &label = codes.labels.at(i);
        if (areTexts || (label.outcome == CellOutcome::Value && places.at(i).isEmpty()))
            unlabelled.append(label.code + QLatin1String(" (") + label.text + QLatin1Char(')'));
    }
    return unlabelled;
}

} // namespace vanlayout
