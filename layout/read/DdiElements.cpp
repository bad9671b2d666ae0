#include "read/DdiElements_p.h"

#include "read/CSProCommon_p.h"
#include "util/Numbers_p.h"

#include <algorithm>

namespace vanlayout::ddi
{

namespace
{

constexpr int longestKey = 200; // characters, because elements within each other could have any number of them

bool isBlank(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.isSpace(); });
}

bool isOfMarkup(const QString &attribute)
{
    return attribute.startsWith(QLatin1String("xml")) || attribute.startsWith(QLatin1String("xsi:"));
}

} // namespace

QStringList wordsOf(const QString &list)
{
    const QString words = list.simplified();
    return words.isEmpty() ? QStringList() : words.split(QLatin1Char(' '));
}

std::optional<int> countOf(const QString &text)
{
    bool isNumber = false;
    const int number = numbers::toInt(text, &isNumber);
    return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

QStringList aliasesOf(const QString &text)
{
    return text.split(QLatin1String(", "));
}

void readLabel(Xml &xml, Labels &labels)
{
    const QString language = xml.language();
    const QString text = xml.text();
    if (!text.isEmpty())
        labels.parts.append({ language, text });
}

Note readNote(Xml &xml)
{
    Note note = { xml.language(), xml.attribute("type"), xml.attribute("subject"), QString(), xml.line() };
    note.text = xml.text();
    return note;
}

void appendText(QString &note, const QString &text)
{
    if (!note.isEmpty() && !text.isEmpty())
        note += QLatin1Char('\n');
    note += text;
}

void keep(Xml &xml, QVector<Statement> &statements, const QString &prefix, int category)
{
    struct Element {
        QString key;
        QString text;
        int line;
        bool hasText;
    };
    QVector<Element> open;
    int markup = 0; // open elements within a text, such as emphasis, which belong to it
    const auto begin = [&](const QString &parent) {
        open.append({ cspro::shortened(parent + xml.name(), longestKey), QString(), xml.line(), false });
        keepAttributes(xml, statements, qAsConst(open).last().key, " ID ", category);
        if (!xml.ownLanguage().isEmpty())
            statements.append({ cspro::shortened(qAsConst(open).last().key + QLatin1String("@xml:lang"), longestKey),
                                xml.ownLanguage(), xml.line(), category });
    };
    const auto keepText = [&](const Element &element) {
        if (element.hasText)
            statements.append({ element.key, withoutIndentation(element.text), element.line, category });
    };
    const auto breakAtParagraph = [&] {
        if (xml.isParagraph())
            addBreak(open.last().text);
    };
    begin(prefix);
    while (!open.isEmpty()) {
        switch (xml.nextPart()) {
        case Xml::Part::Text:
            open.last().hasText = open.constLast().hasText || !isBlank(xml.partText());
            if (open.constLast().hasText)
                open.last().text += xml.partText();
            break;
        case Xml::Part::Begin:
            if (markup > 0 || open.constLast().hasText) {
                ++markup;
                breakAtParagraph();
            } else {
                begin(open.last().key + QLatin1Char('/'));
            }
            break;
        case Xml::Part::End:
            if (markup > 0) {
                --markup;
                breakAtParagraph();
            } else {
                keepText(open.takeLast());
            }
            break;
        case Xml::Part::Nothing:
            return;
        }
    }
}

void keepAttributes(const Xml &xml, QVector<Statement> &statements, const QString &prefix, const char *known,
                    int category)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    const QLatin1String knownNames(known);
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QString name = attribute.qualifiedName().toString();
        const QString value = attribute.value().toString();
        if (!value.isEmpty() && !isOfMarkup(name)
            && !QString(knownNames).contains(QLatin1Char(' ') + name + QLatin1Char(' ')))
            statements.append(
                { cspro::shortened(prefix + QLatin1Char('@') + name, longestKey), value, xml.line(), category });
    }
}

void keepNote(const Note &note, QVector<Statement> &statements, const QString &key)
{
    if (!note.type.isEmpty())
        statements.append({ key + QLatin1String("@type"), note.type, note.line, 0 });
    if (!note.subject.isEmpty())
        statements.append({ key + QLatin1String("@subject"), note.subject, note.line, 0 });
    if (!isBlank(note.text))
        statements.append({ key, note.text, note.line, 0 });
}

} // namespace vanlayout::ddi
