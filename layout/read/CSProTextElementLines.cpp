#include "read/CSProTextReader_p.h"

namespace vanlayout
{

void CSProTextReader::noteLevelLine()
{
    if (elementLines)
        elementLines->levels.push_back({ sectionLine, {}, {} });
}

void CSProTextReader::noteRecordLine()
{
    if (elementLines)
        elementLines->levels.back().records.push_back({ sectionLine, {} });
}

void CSProTextReader::noteItemLine()
{
    if (!elementLines)
        return;
    ElementLines::Level &lines = elementLines->levels.back();
    (record ? lines.records.back().items : lines.ids).push_back({ sectionLine, {} });
}

void CSProTextReader::noteValueSetLine()
{
    if (elementLines)
        itemLines().valueSets.push_back({ sectionLine, {} });
}

void CSProTextReader::noteValueLine()
{
    if (elementLines)
        itemLines().valueSets.back().values.push_back(sectionLine);
}

ElementLines::Element &CSProTextReader::itemLines() const
{
    ElementLines::Level &lines = elementLines->levels[size_t(itemLevel)];
    return (itemRecord < 0 ? lines.ids : lines.records[size_t(itemRecord)].items).back();
}

} // namespace vanlayout
