#include "convert/DictionaryNames_p.h"

#include "check/ReservedWords_p.h"
#include "text/Words_p.h"

namespace vanlayout
{

namespace
{

bool isLetter(QChar character)
{
    return character >= QLatin1Char('A') && character <= QLatin1Char('Z');
}

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

} // namespace

QString DictionaryNames::folded(const QString &original)
{
    QString name;
    const QString upper = foldedText(original).toUpper();
    for (const QChar character : upper) {
        if (isLetter(character) || isDigit(character))
            name += character;
        else if (!name.isEmpty() && (character == QLatin1Char('_') || !name.endsWith(QLatin1Char('_'))))
            name += QLatin1Char('_');
    }
    while (name.endsWith(QLatin1Char('_')))
        name.chop(1);
    if (!name.isEmpty() && !isLetter(name.at(0)))
        name.prepend(QLatin1Char('V'));
    return name;
}

QString DictionaryNames::give(const QString &original, const QString &otherwise)
{
    const QString wanted = folded(original);
    if (isCSProWord(wanted))
        names.give(wanted); // so that it gets a number
    return names.give(wanted.isEmpty() ? otherwise : wanted);
}

} // namespace vanlayout
