#ifndef CSPRO_CSPROJSONRULES_P_H
#define CSPRO_CSPROJSONRULES_P_H

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

/// The rules for parts of a document that the reader and its diagnostics share.
namespace cspro
{

/// The list that an item is in. The items of a record can occur several times, the id items once.
enum class ItemPlace { ids, record };

/// Returns the object of the key "dictionary", or the whole document if there is none.
QJsonObject dictionaryOf(const QJsonObject &root);
/// Returns whether a "contentType" is that of a text; any other is that of a number.
bool isAlpha(const QJsonValue &contentType);
/// Returns how often an item of a record occurs, by its "occurrences".
int occurrencesOf(const QJsonValue &occurrences);
/// Returns the code of a pair: its "value", even one that is not a text, or else its "range"; null if it has neither.
QString codeOf(const QJsonObject &pair);
QString codeOf(const QJsonValue &value, const QJsonValue &range);
QString codeOfRange(const QJsonValue &range);

} // namespace cspro

#endif
