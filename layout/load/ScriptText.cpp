#include "ScriptText_p.h"

#include "PlanLists_p.h"

#include <QChar>

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int pieceWidth = 300; // bytes of the pieces of a long text
constexpr int lineWidth = 110;  // bytes

QByteArray hexDigits(char32_t character, int digits)
{
    return QByteArray::number(uint(character), 16).rightJustified(digits, '0');
}

QByteArray pythonEscape(char32_t character)
{
    return character > 0xFFFF ? "\\U" + hexDigits(character, 8) : "\\u" + hexDigits(character, 4);
}

// Braces, so that a digit that follows is no part of the number. R has no texts with U+0000.
QByteArray rEscape(char32_t character)
{
    if (character == 0)
        return "\\u{fffd}";
    return (character > 0xFFFF ? "\\U{" : "\\u{") + hexDigits(character, 1) + '}';
}

QByteArray written(char32_t character, const ScriptLanguage &language)
{
    if (character == U'\\' || (character < 0x80 && char(character) == *language.quote))
        return QByteArray("\\") + char(character);
    return QChar::isPrint(uint(character)) ? QString::fromUcs4(&character, 1).toUtf8() : language.escape(character);
}

QByteArrayList piecesOf(const QString &text, const ScriptLanguage &language)
{
    QByteArrayList pieces = { QByteArray() };
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        if (pieces.constLast().size() >= pieceWidth)
            pieces.append(QByteArray());
        pieces.last() += written(character, language);
    }
    return pieces;
}

// Whether a text is written as it is, in one piece. Most labels and all names are.
bool isPlain(const QString &text, const ScriptLanguage &language)
{
    const auto isWritten = [&](QChar character) {
        return character >= QLatin1Char(' ') && character <= QLatin1Char('~') && character != QLatin1Char('\\')
            && character != QLatin1Char(*language.quote);
    };
    return text.size() <= pieceWidth && std::all_of(text.begin(), text.end(), isWritten);
}

QByteArray quoted(const QString &plain, char quote)
{
    QByteArray made(plain.size() + 2, quote);
    std::transform(plain.begin(), plain.end(), made.begin() + 1, [](QChar character) { return character.toLatin1(); });
    return made;
}

} // namespace

const ScriptLanguage &python()
{
    static const ScriptLanguage language = { "'", "(", "\n    ", "None", pythonEscape };
    return language;
}

const ScriptLanguage &r()
{
    static const ScriptLanguage language = { "\"", "paste0(", ",\n    ", "NA", rEscape };
    return language;
}

QByteArray literal(const QString &text, const ScriptLanguage &language)
{
    if (isPlain(text, language))
        return quoted(text, *language.quote);
    QByteArrayList pieces = piecesOf(text, language);
    for (QByteArray &piece : pieces)
        piece = language.quote + piece + language.quote;
    return pieces.size() == 1 ? pieces.constFirst() : language.opening + pieces.join(language.joining) + ')';
}

QByteArray literalOrNothing(const QString &text, const ScriptLanguage &language)
{
    return text.isNull() ? QByteArray(language.nothing) : literal(text, language);
}

QByteArray wordLiteral(const char *word, const ScriptLanguage &language)
{
    return language.quote + QByteArray(word) + language.quote;
}

QByteArray roleLiteral(ColumnRole role, const ScriptLanguage &language)
{
    switch (role) {
    case ColumnRole::Id:
        return wordLiteral("id", language);
    case ColumnRole::Occurrence:
        return wordLiteral("occ", language);
    case ColumnRole::ItemOccurrence:
        return wordLiteral("item_occ", language);
    case ColumnRole::Item:
        break;
    }
    return wordLiteral("item", language);
}

QByteArrayList codeLiterals(const CodeRow &row, const ScriptLanguage &language)
{
    const QString special = row.special == Special::None ? QString() : wordOf(row.special);
    return { literal(row.from, language), literalOrNothing(row.to, language), literal(row.label, language),
             literalOrNothing(special, language) };
}

QByteArrayList literals(const QStringList &texts, const ScriptLanguage &language)
{
    QByteArrayList made;
    for (const QString &text : texts)
        made.append(literal(text, language));
    return made;
}

QByteArray argumentLines(const QByteArrayList &arguments, const QByteArray &indent)
{
    QByteArray lines;
    lines.reserve(2 * lineWidth);
    for (const QByteArray &argument : arguments) {
        const int width = lines.size() - lines.lastIndexOf('\n');
        const bool isNew = !lines.isEmpty() && width + argument.size() > lineWidth;
        if (!lines.isEmpty())
            lines += isNew ? ",\n" : ", ";
        if (isNew)
            lines += indent;
        lines += argument;
    }
    return lines;
}

QByteArray elementLines(const QByteArrayList &elements, const QByteArray &indent)
{
    return elements.isEmpty() ? QByteArray() : '\n' + indent + elements.join(",\n" + indent);
}

QByteArray settingsComment()
{
    return "# The data file, its encoding (utf-8 or windows-1252), the first column and the length of the record "
           "type,\n"
           "# and the types of all records.\n";
}

QVector<CellType> typesOfCodes(const LoadPlan &plan)
{
    QVector<CellType> types(plan.codes.size(), CellType::Integer);
    forEachCodeList(
        plan, [&](const PlannedTable & /*table*/, const PlannedColumn &column) { types[column.codes] = column.type; });
    return types;
}

} // namespace vanlayout
