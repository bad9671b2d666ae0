#include "read/DdiMarkup_p.h"

namespace vanlayout::ddi
{

namespace
{

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t') || character == QLatin1Char('\n')
        || character == QLatin1Char('\r');
}

} // namespace

bool MarkupScan::accepts(const QString &block)
{
    int index = 0;
    while (!found && index < block.size()) {
        const QChar character = block.at(index++);
        if (character == QLatin1Char('\n'))
            ++lineNumber;
        if (state != State::Text)
            take(character);
        else if (character == QLatin1Char('<'))
            state = State::Opened;
    }
    return !found;
}

void MarkupScan::take(QChar character)
{
    switch (state) {
    case State::Text:
        break;
    case State::Opened:
        open(character);
        break;
    case State::Declared:
        declare(character);
        break;
    case State::Tag:
        takeInTag(character);
        break;
    case State::Quoted:
        if (character == quote)
            state = State::Tag;
        break;
    case State::Comment:
        takeUntil(character, "-->");
        break;
    case State::CData:
        takeUntil(character, "]]>");
        break;
    case State::Instruction:
        takeUntil(character, "?>");
        break;
    }
}

// The character after `<`.
void MarkupScan::open(QChar character)
{
    word.clear();
    attributes = 0;
    isAfterSign = false;
    if (character == QLatin1Char('!'))
        state = State::Declared;
    else if (character == QLatin1Char('?'))
        state = State::Instruction;
    else
        takeInTag(character);
}

// The characters after `<!`, until it is known what they begin.
void MarkupScan::declare(QChar character)
{
    const QLatin1String entity("ENTITY");
    const QLatin1String attributeList("ATTLIST");
    const QLatin1String section("[CDATA[");
    word += character;
    if (word == QLatin1String("--")) {
        word.clear();
        state = State::Comment;
    } else if (word == section) {
        word.clear();
        state = State::CData;
    } else if (word == entity) {
        found
            = "declares entities, which are not expanded; replace each entity by its text, and delete the declarations";
    } else if (word == attributeList) {
        // A small document could have a long default in each of its elements.
        found = "declares attributes, whose defaults are not expanded; delete the declarations";
    } else if (!section.startsWith(word) && !entity.startsWith(word) && !attributeList.startsWith(word)
               && word != QLatin1String("-")) {
        word.clear();
        takeInTag(character);
    }
}

// In a tag, and in a declaration, which can contain others.
void MarkupScan::takeInTag(QChar character)
{
    state = State::Tag;
    if (character == QLatin1Char('<')) {
        state = State::Opened;
    } else if (character == QLatin1Char('>')) {
        state = State::Text;
    } else if (character == QLatin1Char('"') || character == QLatin1Char('\'')) {
        quote = character;
        state = State::Quoted;
        if (isAfterSign && ++attributes > maxAttributes)
            found = "has an element with more than 1000 attributes";
    }
    if (!isBlank(character))
        isAfterSign = character == QLatin1Char('=');
}

void MarkupScan::takeUntil(QChar character, const char *end)
{
    const QLatin1String wanted(end);
    word += character;
    if (word.size() > wanted.size())
        word.remove(0, 1);
    if (word == wanted)
        state = State::Text;
}

} // namespace vanlayout::ddi
