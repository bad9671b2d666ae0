#ifndef CSPRO_CSPROJSONDATAIMPORT_H
#define CSPRO_CSPROJSONDATAIMPORT_H

#include "cspro/CSProImportBase.h"
#include "model_vanadmin_export.h"

class TCSProJson;

/// Reads the layout of a CSPro 8 JSON dictionary: one field for each item and occurrence, one group for each record.
///
/// It reads no data, asks nothing and throws nothing. Columns count from 1, lengths are in characters. For a file that
/// cannot be read the importer opens with no groups and no fields. This class and `TCSProDataImport` treat their
/// dictionaries in the same way.
///
/// The dictionary, the list of groups and the fields outlive the importer; releaseContents() frees them. Copies share
/// all of them. Call the operations through a `TDataImport` pointer or reference.
///
/// All calls are made on the caller's thread; nothing is locked. Different importers may be used on different threads.
class MODEL_VANADMIN_EXPORT TCSProJsonDataImport : public TCSProImportBase
{
public:
    /// Keeps the path, unchanged; reads nothing yet. Logs "TCSProJsonImport Constructor".
    explicit TCSProJsonDataImport(QString fileName);
    /// Makes an empty importer: no path and no list of groups.
    TCSProJsonDataImport();
    TCSProJsonDataImport(const TCSProJsonDataImport &other);
    TCSProJsonDataImport &operator=(const TCSProJsonDataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TCSProJsonDataImport(TCSProJsonDataImport &&other);
    ~TCSProJsonDataImport() override;

    void releaseContents() override; ///< frees the groups and the dictionary too

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "CSPRO8_" and the source name
    QString getDataProviderType() override; ///< "CSPRO8"
    /// Logs the line "TCSProJsonImport - selectLayoutSource", then calls the base class.
    QStringList *selectLayoutSource() override;

private:
    CSProDictionary *currentDictionary() const override;
    void readNewDictionary(QString fileName) override;
    TCSProFieldBase *newField(TCSProItem *item) override;
    const TCSProItem *itemOf(TGenericField *field) const override;
    void renewDictionary();

    TCSProJson *dictionary = nullptr; ///< kept: the fields point to its items
};

/// The field of a CSPro 8 JSON dictionary. It points to its item without owning it. It is used by the thread that uses
/// its importer.
class MODEL_VANADMIN_EXPORT TCSProJsonVariable : public TCSProFieldBase
{
public:
    TCSProJsonVariable(TDataImport *importer, TCSProItem *sourceItem);
    ~TCSProJsonVariable() override;

private:
    friend struct TestAccess;
};

#endif
