#ifndef IMPORT_GENERICFIELD_H
#define IMPORT_GENERICFIELD_H

#include "import/Constants.h"
#include "model_vanadmin_export.h"

#include <QString>

class TDataImport;

/// Description of one variable of a data source, and its current value, stored as text and as numbers.
///
/// Each format derives its own field class, which decides which values are missing, not applicable and blank. The
/// description fields are public and filled by the importer. Lengths are in characters; a text that does not convert to
/// a number counts as 0. A field points to its importer without owning it. The texts of a new field are empty and not
/// null, except `label`, which is null.
///
/// A field is used by the thread that uses its importer. Fields of different importers share nothing.
class MODEL_VANADMIN_EXPORT TGenericField
{
public:
    /// Size of `textValue` in units of 16 bits, on every platform.
    static constexpr int textValueSize = 255;

    /// \a importer may be null; it is not owned.
    explicit TGenericField(TDataImport *importer);
    TGenericField(const TGenericField &other);
    TGenericField &operator=(const TGenericField &other);
    /// Takes nothing from its argument: texts are null, numbers 0, flags false, and `owner` is null.
    TGenericField(TGenericField &&other);

    // Virtual operations, in slot order.
    virtual ~TGenericField();
    virtual bool isMissing() = 0;
    virtual bool isNotApplicable() = 0;
    virtual bool isBlank() = 0;
    virtual void addValueLabel(QString code, QString text); ///< does nothing
    virtual QString getGroup();                             ///< ""

    /// Sets the current value. Copies at most `length` characters of \a value into `textValue`: a shorter value is
    /// followed by zeros up to `length`, a longer one has no end mark. The copy stops at 255 units and at a NUL.
    ///
    /// Unless the value is missing, not applicable or blank, a field of type 1 (integer) or 2 (real) then stores it as
    /// a number too. If `hasDecimalChar` is false, a real number is divided by 10 to the power of `decimals`. In a
    /// field without a type, the first eight bytes of `textValue` become 0x15.
    void setAsString(QString value);
    /// Like setAsString(), for a wide text; null counts as empty. A number is trimmed before it is converted.
    void setAsStringChar(const wchar_t *value);

    /// Finds \a code in `valueLabels`, taken as one line. Returns null if it is not found.
    ///
    /// Every line feed in `valueLabels` becomes a tab first, in the field itself. The code of the line is the text from
    /// its second character up to the first blank: the first character is skipped in the comparison and kept in the
    /// result. This is intended.
    QString getValueLabel(QString code);

    /// Returns `textValue` up to the first zero, or all of it.
    QString currentText() const;

    bool optional = false; ///< true on fields of Stata and SPSS files; has no effect
    QString name;          ///< variable name, the key in the importer
    QString label;         ///< variable label
    eVanVarType type = vtNone;
    int length = 0;                         ///< width in characters; bounds the copy into `textValue`
    int start = 0;                          ///< position as the source states it; CSPro counts from 1
    QString valueLabels;                    ///< entries code, " ", label, each ended by a tab
    QString missingValue;                   ///< code of the missing value
    QString notApplicable;                  ///< code of the not-applicable value
    QString minimum;                        ///< lowest valid value, as text
    QString maximum;                        ///< highest valid value, as text
    QString decimals;                       ///< number of decimals, as text
    bool hasDecimalChar = true;             ///< false: stored numbers have implied decimals
    bool isUnset = false;                   ///< cleared by both string setters
    char16_t textValue[textValueSize] = {}; ///< current value as text
    /// Current value of a real field. The start value lies just below the smallest normal double.
    double realValue = 2.22507e-308;
    double intValue = 0; ///< current value of an integer field, stored as a double
    TDataImport *owner;  ///< the importer, not owned

protected:
    friend struct TestAccess;

    /// Returns the current value as text: `missingValue`, `notApplicable` or "" if the value is missing, not applicable
    /// or blank, otherwise the value of its type, a number in format g with precision 6. The text of a field without a
    /// type is "". The empty text is not null.
    QString getAsString();
    /// Returns the current value as a number, and `missingValue` as a number if the value is missing. The number of a
    /// field without a type is 0.
    double getAsFloat();
    /// Returns the same number, truncated toward zero. A text is converted in base 10.
    int getAsInteger();
    void setAsFloat(double value); ///< sets `realValue` and nothing else, whatever the type
    void setAsInteger(int value);  ///< sets `intValue` and nothing else, whatever the type

private:
    bool isString() const;
    void setText(const QString &value, const QString &number);
};

#endif
