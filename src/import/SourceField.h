#ifndef IMPORT_SOURCEFIELD_H
#define IMPORT_SOURCEFIELD_H

#include "import/Constants.h"
#include "model_vanadmin_export.h"

#include <QString>
#include <QStringList>

/// The format-free description of one variable, as `TDataImport::getDictionary` makes it and a `TVpDataProvider` holds
/// it.
///
/// It reads no file; it can cut its own value out of a line that it is given. Copies share the list of type texts.
/// Lengths are in characters. Destroying a source field leaves `typeNames` alive.
///
/// Re-entrant: different objects may be used on different threads, except where copies share `typeNames` and one of
/// them is written to. One object is used by one thread at a time.
class MODEL_VANADMIN_EXPORT TVpSourceField
{
public:
    /// Its texts are empty and not null.
    TVpSourceField();
    TVpSourceField(const TVpSourceField &other);
    TVpSourceField &operator=(const TVpSourceField &other);
    /// Takes nothing from its argument: texts null, numbers 0, flags false, `typeNames` null.
    TVpSourceField(TVpSourceField &&other);
    virtual ~TVpSourceField();

    QString getFieldType() const;
    /// Sets the text alone: `fieldTypeIndex` stays 0 on every source field.
    void setFieldType(QString value);
    QString getDataProviderType() const;
    /// Takes over \a type and its position in `typeNames`. A text that is not in the list, and "NONE", change nothing,
    /// so "SPSS" and "CSPRO8" leave the field as it was.
    void setDataProviderType(QString type);

    /// The field's value in \a line: `length` characters from `start`, fewer at the end of the line. Null where the
    /// line ends before `start` or is empty. Sets `isBlankValue` to whether that equals `blankValue`.
    ///
    /// The line is cut with `start` counted from 0, while the test of its length counts from 1.
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
    QString group;             ///< the record that holds the field in a source with several, else empty
    int number1 = 0;           ///< carried for callers
    QString text4;             ///< carried for callers
    QString blankValue;        ///< what getStringValue() compares with
    bool isBlankValue = false; ///< outcome of that comparison
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
    /// False on every source field, as `fieldTypeIndex` stays 0.
    bool isString() const;
};

#endif
