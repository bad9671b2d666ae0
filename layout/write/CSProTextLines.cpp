#include "write/CSProTextLines_p.h"

#include "read/CSProCommon_p.h"

#include <algorithm>
#include <set>

namespace vanlayout
{

namespace
{

bool isLineBreak(QChar character)
{
    return character == QLatin1Char('\n') || character == QLatin1Char('\r');
}

// A text on one line, without white space at its end.
QString endOfLine(const QString &value)
{
    QString line = cspro::cleanNote(value);
    std::replace_if(line.begin(), line.end(), isLineBreak, QLatin1Char(' '));
    return line;
}

// Whether a code looks like a number of the width of its item; CSPro then writes no quotation marks.
bool isPlainText(const QString &code, int length)
{
    const auto isOfNumber = [](QChar character) {
        return (character >= QLatin1Char('0') && character <= QLatin1Char('9')) || character == QLatin1Char('-')
            || character == QLatin1Char('.');
    };
    return !code.isEmpty() && code.size() == length && std::all_of(code.begin(), code.end(), isOfNumber);
}

bool needsMarks(const QString &code)
{
    return code.isEmpty() || std::any_of(code.begin(), code.end(), [](QChar character) {
               return cspro::isWhiteSpace(character) || character == QLatin1Char(':') || character == QLatin1Char('\'')
                   || character == QLatin1Char('"');
           });
}

// The width to which codes are padded: that of the item, unless no data could have it.
int paddedWidth(const Item &item)
{
    constexpr int longestRecord = 32000;
    return item.length <= longestRecord ? std::max(item.length, 0) : 0;
}

QString inMarks(const QString &code)
{
    const QChar mark = code.contains(QLatin1Char('\'')) ? QLatin1Char('"') : QLatin1Char('\'');
    return mark + code + mark;
}

// Whether a line of a note can begin with this text. White space would be cut off, and `~` is read as a blank; a blank
// at the beginning is therefore written as `~`.
bool canBegin(QStringView text)
{
    if (text.isEmpty())
        return true;
    const QChar first = text.at(0);
    return first != QLatin1Char('~') && (first == QLatin1Char(' ') || !cspro::isWhiteSpace(first));
}

// The position of the blank at which a line of a note is divided, the first of several; -1 if the line is short or has
// no blank at which it can be divided.
int divisionOf(QStringView line)
{
    constexpr int longest = 117; // so that CSPro's own lines are at most 120 characters
    if (line.size() <= longest)
        return -1;
    for (int blank = longest; blank > 0; --blank) {
        const QChar before = line.at(blank - 1);
        if (line.at(blank) == QLatin1Char(' ') && !cspro::isWhiteSpace(before) && canBegin(line.mid(blank + 1)))
            return blank;
    }
    return -1;
}

// A blank at the beginning of a line would be lost.
QString withLeadingBlank(QStringView piece)
{
    const bool isBlank = piece.startsWith(QLatin1Char(' '));
    return (isBlank ? QStringLiteral("~") : QString()) + piece.mid(isBlank ? 1 : 0).toString();
}

} // namespace

CSProTextSpelling::CSProTextSpelling(const QVector<Language> &languageList, Losses *lossList)
    : languages(languageList)
    , losses(lossList)
{
    if (languages.isEmpty())
        languages.append({ QStringLiteral("EN"), QString() });
    for (int place = 0; place < languages.size(); ++place)
        places.emplace(languages.at(place).name.toUpper(), place);
}

void CSProTextSpelling::lose(const QString &path, const QString &what) const
{
    if (losses)
        losses->append({ path, what });
}

QString CSProTextSpelling::text(const QString &value, const QString &path, const QString &what) const
{
    int begin = 0;
    while (begin < value.size() && cspro::isWhiteSpace(value.at(begin)))
        ++begin;
    QString line = endOfLine(value.mid(begin));
    if (line != value)
        lose(path, what + QStringLiteral(": line breaks, and white space at both ends"));
    return line;
}

QString CSProTextSpelling::languageCode(const QString &name) const
{
    QString code = text(name, QString(), QStringLiteral("name of a language"));
    const bool isBegun = code.startsWith(QLatin1Char('[')) || code.startsWith(QLatin1Char('.'));
    if (isBegun || code.contains(QLatin1Char('='))) {
        lose(QString(),
             QStringLiteral("the name of the language %1, because of its characters").arg(cspro::quoted(code)));
        code.remove(QLatin1Char('='));
        while (code.startsWith(QLatin1Char('[')) || code.startsWith(QLatin1Char('.')))
            code.remove(0, 1);
    }
    return code;
}

QString CSProTextSpelling::recordType(const QString &value, const QString &path) const
{
    QString type = value;
    const bool hasBoth = type.contains(QLatin1Char('\'')) && type.contains(QLatin1Char('"'));
    if (hasBoth || std::any_of(type.cbegin(), type.cend(), isLineBreak)) {
        lose(path, QStringLiteral("the record type %1, because of its characters").arg(cspro::quoted(type)));
        type.remove(QLatin1Char('"'));
        std::replace_if(type.begin(), type.end(), isLineBreak, QLatin1Char(' '));
    }
    return inMarks(type);
}

// The place of a part in a label of all languages; -1 if it has none. A part is usually at the place of its language.
int CSProTextSpelling::placeOf(const Label &part, int index) const
{
    // The first part without a language is in the primary one.
    if (index == 0 && part.language.isEmpty())
        return 0;
    if (index < languages.size() && languages.at(index).name.compare(part.language, Qt::CaseInsensitive) == 0)
        return index;
    const auto found = places.find(part.language.toUpper());
    return found == places.end() ? -1 : found->second;
}

QStringList CSProTextSpelling::inOrder(const Labels &labels, const QString &path) const
{
    QStringList texts;
    const auto put = [&](int place, const QString &value) {
        while (texts.size() <= place)
            texts.append(QString());
        texts[place] = value;
    };
    std::set<int> taken;
    QStringList further;
    for (int index = 0; index < labels.parts.size(); ++index) {
        const Label &part = labels.parts.at(index);
        const int place = placeOf(part, index);
        if (place >= 0 && taken.insert(place).second) {
            put(place, part.text);
            continue;
        }
        if (!part.language.isEmpty())
            lose(path, QStringLiteral("the language of a label: \"%1\"").arg(part.language));
        further.append(part.text);
    }
    // A text stands for the first one if that is absent.
    if (taken.count(0) == 0 && !labels.parts.isEmpty())
        put(0, labels.parts.constFirst().text);
    for (int index = 0; index < further.size(); ++index)
        put(int(languages.size()) + index, further.at(index));
    return texts;
}

QString CSProTextSpelling::part(QString value, const QString &path) const
{
    if (!value.contains(QLatin1Char('|')))
        return value;
    lose(path, QStringLiteral("\"|\" in a label; it is a blank"));
    return value.replace(QLatin1Char('|'), QLatin1Char(' '));
}

QString CSProTextSpelling::joined(const Labels &labels, const QString &path) const
{
    QString line;
    const QStringList texts = inOrder(labels, path);
    for (int index = 0; index < texts.size(); ++index) {
        if (index > 0)
            line += QLatin1Char('|');
        line += part(texts.at(index), path);
    }
    return line;
}

QString CSProTextSpelling::label(const Labels &labels, const QString &path) const
{
    return text(joined(labels, path), path, QStringLiteral("label"));
}

QString CSProTextSpelling::valueLabel(const Labels &labels, const QString &path) const
{
    const QString whole = joined(labels, path);
    QString line = endOfLine(whole);
    if (line != whole)
        lose(path, QStringLiteral("label: line breaks, and white space at the end"));
    return line;
}

QString CSProTextSpelling::code(const QString &value, const Item &item) const
{
    if (value.isEmpty())
        return inMarks(QString(paddedWidth(item), QLatin1Char(' ')));
    if (!item.isAlpha())
        return needsMarks(value) ? inMarks(value) : value;
    const QString padded = value.leftJustified(paddedWidth(item), QLatin1Char(' '));
    return isPlainText(padded, item.length) ? padded : inMarks(padded);
}

bool CSProTextSpelling::isWritable(const Range &range, const Item &item, const QString &path) const
{
    const QString both = range.from + range.to;
    if (range.from.isEmpty() && paddedWidth(item) == 0) {
        lose(path, QStringLiteral("the code of a blank field, because the item has no length"));
        return false;
    }
    if (both.contains(QLatin1Char(';')) || std::any_of(both.begin(), both.end(), isLineBreak)
        || (both.contains(QLatin1Char('\'')) && both.contains(QLatin1Char('"')))) {
        lose(path, QStringLiteral("the code \"%1\", because of its characters").arg(range.from));
        return false;
    }
    return true;
}

QString CSProTextSpelling::codes(const Value &value, const Item &item, const QString &path) const
{
    QStringList codes;
    for (const Range &range : value.ranges) {
        if (!isWritable(range, item, path))
            continue;
        QString spelled = code(range.from, item);
        if (!range.to.isEmpty())
            spelled += QLatin1Char(':') + code(range.to, item);
        codes.append(spelled);
    }
    return codes.join(QLatin1Char(' '));
}

QStringList CSProTextSpelling::note(const QString &text, const QString &path) const
{
    const QString lineEnd = QStringLiteral("\\r\\n");
    if (text.contains(QLatin1Char('\r')) || text.contains(lineEnd) || !canBegin(text))
        lose(path, QStringLiteral("note: a carriage return, \"\\r\\n\" as text, or \"~\" or a tab at the beginning"));
    QStringList pieces;
    const QStringList lines = QString(text).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    for (int index = 0; index < lines.size(); ++index) {
        QStringView line(lines.at(index));
        QString piece = canBegin(line) || pieces.isEmpty() ? QString() : pieces.takeLast();
        for (int division = divisionOf(line); division >= 0; division = divisionOf(line)) {
            piece += withLeadingBlank(line.left(division));
            pieces.append(piece);
            piece = QString();
            line = line.mid(division + 1);
        }
        piece += withLeadingBlank(line);
        if (index + 1 < lines.size())
            piece += lineEnd;
        if (!piece.isEmpty())
            pieces.append(piece);
    }
    return pieces;
}

} // namespace vanlayout
