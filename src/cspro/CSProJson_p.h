#ifndef CSPRO_CSPROJSON_P_H
#define CSPRO_CSPROJSON_P_H

#include "cspro/CSProJsonNotes_p.h"
#include "cspro/CSProJsonRules_p.h"
#include "cspro/CSProModel_p.h"

class QJsonArray;
class QJsonObject;

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
