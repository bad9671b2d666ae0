#ifndef CSPRO_CSPROJSONDATAIMPORT_H
#define CSPRO_CSPROJSONDATAIMPORT_H

#include "cspro/CSProImportBase.h"
#include "model_vanadmin_export.h"

class TCSProJson;

/// Reads the layout of a CSPro 8 JSON dictionary: one field for each item and occurrence, one group for each record.
///
/// It reads no data, asks nothing and throws nothing. Columns count from 1, lengths are in characters. A file that
/// cannot be read gives an open importer with no groups and no fields. The twin of `TCSProDataImport`: both do the same
/// with their dictionaries.
///
/// The dictionary and the list of groups outlive the importer, as the fields do. Copies share all of them. Call the
/// operations through a `TDataImport` pointer or reference.
///
/// Everything runs on the caller's thread; nothing is locked. Different importers may be used on different threads.
class MODEL_VANADMIN_EXPORT TCSProJsonDataImport : public TCSProImportBase
{
public:
    /// Keeps the path, unchanged; reads nothing yet. Logs "TCSProJsonImport Constructor".
    explicit TCSProJsonDataImport(QString fileName);
    /// Empty: no path and no list of groups.
    TCSProJsonDataImport();
    TCSProJsonDataImport(const TCSProJsonDataImport &other);
    TCSProJsonDataImport &operator=(const TCSProJsonDataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TCSProJsonDataImport(TCSProJsonDataImport &&other);
    ~TCSProJsonDataImport() override;

    void releaseContents() override; ///< groups and dictionary included

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "CSPRO8_" and the source name
    QString getDataProviderType() override; ///< "CSPRO8"
    /// As the base, after the line "TCSProJsonImport - selectLayoutSource" in the log.
    QStringList *selectLayoutSource() override;

private:
    CSProDictionary *currentDictionary() const override;
    void readNewDictionary(QString fileName) override;
    TCSProFieldBase *newField(TCSProItem *item) override;
    const TCSProItem *itemOf(TGenericField *field) const override;
    void renewDictionary();

    TCSProJson *dictionary = nullptr; ///< kept: the fields point at its items
};

/// The field of a CSPro 8 JSON dictionary. It points at its item without owning it.
/// Used by the thread that uses its importer.
class MODEL_VANADMIN_EXPORT TCSProJsonVariable : public TCSProFieldBase
{
public:
    TCSProJsonVariable(TDataImport *importer, TCSProItem *sourceItem);
    ~TCSProJsonVariable() override;

private:
    friend struct TestAccess;
};

#endif
