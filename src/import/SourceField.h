#ifndef IMPORT_SOURCEFIELD_H
#define IMPORT_SOURCEFIELD_H

#include "import/Constants.h"
#include "model_vanadmin_export.h"

#include <QString>
#include <QStringList>

/// Description of one variable that does not depend on the format of its file. `TDataImport::getDictionary` makes it
/// and a `TVpDataProvider` holds it.
///
/// It reads no file, but can cut its value out of a given line. Copies share the list of type texts. Lengths are in
/// characters. Destroying a source field leaves `typeNames` alive.
///
/// Different objects may be used on different threads, except copies that share `typeNames` while one of them is
/// written to. One object may be used by one thread at a time.
class MODEL_VANADMIN_EXPORT TVpSourceField
{
public:
    /// The texts are empty and not null.
    TVpSourceField();
    TVpSourceField(const TVpSourceField &other);
    TVpSourceField &operator=(const TVpSourceField &other);
    /// Takes nothing from its argument: texts are null, numbers 0, flags false, and `typeNames` is null.
    TVpSourceField(TVpSourceField &&other);
    virtual ~TVpSourceField();

    QString getFieldType() const;
    /// Sets only the text: `fieldTypeIndex` stays 0 on every source field. This is intended.
    void setFieldType(QString value);
    QString getDataProviderType() const;
    /// Sets the type to \a type, and its index to the position in `typeNames`. "NONE" and a text that is not in the
    /// list change nothing, so "SPSS" and "CSPRO8" leave the field unchanged.
    void setDataProviderType(QString type);

    /// Returns the field's value in \a line: `length` characters from `start`, or fewer at the end of the line. Null if
    /// the line ends before `start` or is empty. Sets `isBlankValue` to whether the value equals `blankValue`.
    ///
    /// The cut uses `start` as 0-based, and the test of the length uses it as 1-based. This is intended.
    QString getStringValue(QString line);

    QStringList
        *typeNames; ///< "NONE", "CSPRO", "CSV", "SSPS", "STATA"; one list for each field, which no destructor releases
    QString fieldName;         ///< variable name
    QString label;             ///< variable label
    int decimals = 0;          ///< number of decimals
    int length = 0;            ///< width in characters
    int start = 0;             ///< position as the source states it (CSPro counts from 1); used as an index from 0
    QString valueLabels;       ///< entries code, " ", label, each ended by a tab
    QString minimum;           ///< lowest valid value
    QString maximum;           ///< highest valid value
    QString notApplicable;     ///< not-applicable code
    QString missingValue;      ///< missing code
    QString text1;             ///< carried for callers
    QString text2;             ///< carried for callers
    QString text3;             ///< carried for callers
    QString providerId;        ///< id of the importer's data provider
    QString group;             ///< the record of the field in a source with several records, else empty
    int number1 = 0;           ///< carried for callers
    QString text4;             ///< carried for callers
    QString blankValue;        ///< the text with which getStringValue() compares
    bool isBlankValue = false; ///< result of that comparison
    bool flag1 = true;         ///< carried for callers
    bool flag2 = false;        ///< carried for callers
    int number2 = 0;           ///< carried for callers
    bool flag3 = false;        ///< carried for callers
    int number3 = 0;           ///< carried for callers
    QString text5;             ///< carried for callers
    QString text6;             ///< carried for callers
    int number4 = 0;           ///< carried for callers
    QString FieldType;         ///< "INTEGER", "REAL" or "STRING"
    eVanVarType fieldTypeIndex = vtNone;              ///< stays 0: nothing writes it
    QString DataProviderType;                         ///< the type text
    eDataProviderType dataProviderTypeIndex = dpNone; ///< the type value

private:
    friend struct TestAccess;

    eVanVarType getFieldTypeIndex() const;
    eDataProviderType getDataProviderTypeIndex() const;
    /// Returns false on every source field, since `fieldTypeIndex` stays 0.
    bool isString() const;
};

#endif
