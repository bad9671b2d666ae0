#ifndef CSPRO_CSPROJSON_P_H
#define CSPRO_CSPROJSON_P_H

#include "cspro/CSProJsonNotes_p.h"
#include "cspro/CSProModel_p.h"

class QJsonArray;
class QJsonObject;
class QJsonValue;

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

/// Reads a CSPro 8 JSON dictionary (the JSON form of the CSPro dictionary format) into the same model as a text
/// dictionary.
///
/// The reader is lenient: it throws nothing and asks nothing, skips what it cannot read, and adds a note to the report
/// if there is one. Types are strict: a text is only a JSON string, an integer only a JSON number without a fraction, a
/// flag only a JSON boolean; anything else counts as its default. Columns count from 1, lengths are in characters. Not
/// thread-safe.
class TCSProJson : public CSProDictionary
{
public:
    TCSProJson();
    ~TCSProJson() override;

    /// Sends notes on everything that the next readings lose or change to \a newReport, which is not owned; null turns
    /// reporting off.
    void setReport(ReadReport *newReport) { notes.setReport(newReport); }

    /// Reads a file if it begins with "{" after white space, all within its first 16 bytes. A second call appends.
    ///
    /// A dictionary that needs more items, name characters or values than the limits allow is read up to the item that
    /// exceeds them.
    void readFile(QString fileName);

private:
    friend struct TestAccess;

    /// The settings of the dictionary for items that lack the key.
    struct Defaults {
        bool relativePositions;
        bool decimalMark;
        bool zeroFill;
    };

    void parseJson(const QString &fileName);
    Defaults readSettings(const QJsonObject &dictionary);
    bool readLevels(const QJsonArray &levels, const Defaults &defaults);
    bool readIds(const QJsonObject &level, const Defaults &defaults);
    bool readRecords(const QJsonObject &level, const Defaults &defaults);
    TCSProRecord *readRecord(const QJsonObject &object);
    bool readItems(const QJsonArray &objects, TCSProRecord *record, cspro::ItemPlace place, const Defaults &defaults);
    bool addCopies(const QJsonObject &object, TCSProRecord *record, int count, int &position, const Defaults &defaults);

    /// Returns the text of the first label of \a object; "" if there is none.
    QString readJsonLabel(const QJsonObject &object) const;
    /// Attaches the first value set of \a object to \a item, with its values in the order of the document.
    void readJsonValueSets(TCSProItem *item, const QJsonObject &object);
    /// Adds one item, and moves \a position after it. Without a "start" the item begins at the position, but not before
    /// column 1; with a "start" the position is computed from that, whatever the flag is. Does nothing for a null
    /// record.
    void readJsonItem(const QJsonObject &object, TCSProRecord *record, int &position, bool relativePositions,
                      bool decimalMarkDefault, bool zeroFillDefault);

    cspro::JsonDictionaryNotes notes;
};

#endif
