#ifndef CSPRO_CSPRODATAIMPORT_H
#define CSPRO_CSPRODATAIMPORT_H

#include "cspro/CSProImportBase.h"
#include "cspro/DecimalQuestion.h"
#include "model_vanadmin_export.h"

class TCSPro;

/// Reads the layout of a CSPro text dictionary: one field for each item and occurrence, one group for each record.
///
/// It reads no data. Columns count from 1, lengths are in characters. For a file that cannot be read the importer opens
/// with no groups and no fields. Reading may ask about decimal codes (see setDecimalAnswer()), so it must run on the
/// thread that may show widgets. If the contents of a dictionary cannot be read to their end, a `VpErrorManager *` with
/// code 242 is thrown.
///
/// The dictionary, the list of groups and the fields outlive the importer; releaseContents() frees them. Copies share
/// all of them. Call the operations through a `TDataImport` pointer or reference.
class MODEL_VANADMIN_EXPORT TCSProDataImport : public TCSProImportBase
{
public:
    /// Keeps the path, unchanged; reads nothing yet. Logs "TCSProDataImport Constructor".
    explicit TCSProDataImport(QString fileName);
    /// Makes an empty importer: no path and no list of groups.
    TCSProDataImport();
    TCSProDataImport(const TCSProDataImport &other);
    TCSProDataImport &operator=(const TCSProDataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TCSProDataImport(TCSProDataImport &&other);
    ~TCSProDataImport() override;

    /// Sets the function that answers the question on decimal codes in the readings of this importer, in place of the
    /// function or the dialog of the process. An empty function, as in a new importer, leaves the question to those.
    /// Copies of the importer keep a copy of the function; a reading does not keep it after it has ended.
    void setDecimalAnswer(DecimalAnswerFunction answer);
    void releaseContents() override; ///< frees the groups and the dictionary too

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "CSPRO_" and the source name
    QString getDataProviderType() override; ///< "CSPRO"
    /// Logs the line "TCSProDataImport - selectLayoutSource", then calls the base class.
    QStringList *selectLayoutSource() override;

private:
    CSProDictionary *currentDictionary() const override;
    void readNewDictionary(QString fileName) override;
    TCSProFieldBase *newField(TCSProItem *item) override;
    const TCSProItem *itemOf(TGenericField *field) const override;
    void renewDictionary();

    TCSPro *dictionary = nullptr;        ///< kept: the fields point to its items
    DecimalAnswerFunction decimalAnswer; ///< empty: the function of the process is used
};

/// The field of a CSPro text dictionary. It points to its item without owning it.
class MODEL_VANADMIN_EXPORT TCSProVariable : public TCSProFieldBase
{
public:
    TCSProVariable(TDataImport *importer, TCSProItem *sourceItem);
    ~TCSProVariable() override;

private:
    friend struct TestAccess;
};

#endif
