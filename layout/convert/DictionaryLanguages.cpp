#include "convert/DictionaryLanguages_p.h"

#include "convert/DictionaryNames_p.h"

namespace vanlayout
{

namespace
{

void nameIn(Labels &labels)
{
    for (Label &part : labels.parts) {
        if (!part.language.isEmpty())
            part.language = DictionaryNames::folded(part.language);
    }
}

void nameIn(QVector<OccurrenceLabel> &labels)
{
    for (OccurrenceLabel &label : labels)
        nameIn(label.labels);
}

void nameIn(QVector<Item> &items)
{
    for (Item &item : items) {
        nameIn(item.labels);
        nameIn(item.occurrenceLabels);
        for (ValueSet &set : item.valueSets) {
            nameIn(set.labels);
            for (Value &value : set.values)
                nameIn(value.labels);
        }
    }
}

} // namespace

void nameLanguages(Layout &layout)
{
    for (Language &language : layout.languages) {
        if (language.label.isEmpty())
            language.label = language.name;
        language.name = DictionaryNames::folded(language.name);
    }
    nameIn(layout.labels);
    for (Level &level : layout.levels) {
        nameIn(level.labels);
        nameIn(level.ids);
        for (Record &record : level.records) {
            nameIn(record.labels);
            nameIn(record.occurrenceLabels);
            nameIn(record.items);
        }
    }
}

} // namespace vanlayout
