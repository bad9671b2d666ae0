#ifndef LAYOUT_LOAD_PROGRAMTEXT_P_H
#define LAYOUT_LOAD_PROGRAMTEXT_P_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <utility>

/// The text of a load program, put together from fixed parts and lists.
namespace vanlayout
{

/// A whole number in decimal digits.
inline QByteArray number(int value)
{
    return QByteArray::number(value);
}

/// A place `<<name>>` of a fixed part, and the text for it.
using PartValue = std::pair<const char *, QByteArray>;
using PartValues = std::initializer_list<PartValue>;

/// A fixed part of a program, such as "spss/read.sps".
QByteArray readPart(const char *name);

/// A part with its places filled in. Text that is filled in is not searched for places.
QByteArray filledPart(const QByteArray &part, PartValues values);

/// A fixed part with its places filled in.
QByteArray programPart(const char *name, PartValues values = {});

/// Words separated by blanks, in lines of at most 100 bytes if no word is longer. Further lines begin with \a indent.
QByteArray wordLines(const QStringList &words, const QByteArray &indent = "    ");

/// The path of a data file as programs may use it. A relative path begins with `./` or `../`, so that it is neither an
/// option nor a command.
QString safePath(const QString &path);

} // namespace vanlayout

#endif
