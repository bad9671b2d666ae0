#ifndef LAYOUT_CONVERT_DICTIONARYITEMS_P_H
#define LAYOUT_CONVERT_DICTIONARYITEMS_P_H

#include "convert/DictionaryNames_p.h"
#include "convert/LossesByKind_p.h"

namespace vanlayout
{

/// Makes the items of a CSPro dictionary from variables of another format.
class DictionaryItems
{
public:
    /// Variables of files of lines keep their columns; others get the width of their format.
    enum class Columns { Kept, Made };
    enum class Use { Id, Item };

    /// The names and the losses must exist as long as the object. \a format is that of the source.
    DictionaryItems(Columns columnsOfItems, Format format, DictionaryNames &namesInUse, Losses &lossesOfLayout)
        : columns(columnsOfItems)
        , hasNamedLabels(format == Format::Stata || format == Format::Sas || format == Format::SasXport)
        , names(namesInUse)
        , losses(lossesOfLayout)
    {
    }

    /// Returns the item with this name, which is in use.
    Item make(const Item &variable, const QString &name, Use use);
    /// Appends the losses that are listed once for all variables.
    void appendLosses() { general.appendTo(losses); }

private:
    Item copyOf(const Item &variable) const;
    void setWidthOfText(Item &item, const Item &variable);
    void setWidthOfNumber(Item &item, const Item &variable);
    void keepWidth(Item &item, const Item &variable);
    void removeDecimals(Item &id, const Item &variable);
    void addValueSets(Item &item, const Item &variable);
    void addValueSet(Item &item, const Item &variable, const ValueSet &source);
    void addValue(ValueSet &set, const Item &variable, const Value &value);
    void addMissing(ValueSet &set, const Item &variable);
    void markMissing(Value &value, const Item &variable, const Range &code);
    void lose(const Item &variable, const QString &what);
    void loseProperties(const Item &variable);

    Columns columns;
    bool hasNamedLabels;
    DictionaryNames &names;
    Losses &losses;
    LossesByKind general;
    KeyedSet<QString> missingCodes; // of the variable
    bool hasMissing = false;        // whether the value set has a value that means "missing"
};

} // namespace vanlayout

#endif
