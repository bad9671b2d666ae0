#ifndef CSPRO_CSPRODATAIMPORT_H
#define CSPRO_CSPRODATAIMPORT_H

#include "cspro/CSProImportBase.h"
#include "cspro/DecimalQuestion.h"
#include "model_vanadmin_export.h"

class TCSPro;

/// Reads the layout of a CSPro text dictionary: one field for each item and occurrence, one group for each record.
///
/// It reads no data. Columns count from 1, lengths are in characters. A file that cannot be read gives an open importer
/// with no groups and no fields. Reading may ask about decimal codes (see setDecimalAnswer()), so it must run on the
/// thread that may show widgets. A dictionary that cannot be read to its end ends in a thrown `VpErrorManager *` with
/// code 242.
///
/// The dictionary and the list of groups outlive the importer, as the fields do. Copies share all of them. Call the
/// operations through a `TDataImport` pointer or reference.
class MODEL_VANADMIN_EXPORT TCSProDataImport : public TCSProImportBase
{
public:
    /// Keeps the path, unchanged; reads nothing yet. Logs "TCSProDataImport Constructor".
    explicit TCSProDataImport(QString fileName);
    /// Empty: no path and no list of groups.
    TCSProDataImport();
    TCSProDataImport(const TCSProDataImport &other);
    TCSProDataImport &operator=(const TCSProDataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TCSProDataImport(TCSProDataImport &&other);
    ~TCSProDataImport() override;

    /// Sets the function that answers the question on decimal codes in the readings of this importer, in place of the
    /// function or the dialog of the process. An empty function, as in a new importer, leaves the question to those.
    /// Copies of the importer keep a copy of the function, and no reading keeps it when it has ended.
    void setDecimalAnswer(DecimalAnswerFunction answer);
    void releaseContents() override; ///< groups and dictionary included

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "CSPRO_" and the source name
    QString getDataProviderType() override; ///< "CSPRO"
    /// As the base, after the line "TCSProDataImport - selectLayoutSource" in the log.
    QStringList *selectLayoutSource() override;

private:
    CSProDictionary *currentDictionary() const override;
    void readNewDictionary(QString fileName) override;
    TCSProFieldBase *newField(TCSProItem *item) override;
    const TCSProItem *itemOf(TGenericField *field) const override;
    void renewDictionary();

    TCSPro *dictionary = nullptr;        ///< kept: the fields point at its items
    DecimalAnswerFunction decimalAnswer; ///< empty for that of the process
};

/// The field of a CSPro text dictionary. It points at its item without owning it.
class MODEL_VANADMIN_EXPORT TCSProVariable : public TCSProFieldBase
{
public:
    TCSProVariable(TDataImport *importer, TCSProItem *sourceItem);
    ~TCSProVariable() override;

private:
    friend struct TestAccess;
};

#endif
