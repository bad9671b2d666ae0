#ifndef LAYOUT_READ_ELEMENTLINES_H
#define LAYOUT_READ_ELEMENTLINES_H

#include <vector>

namespace vanlayout
{

/// The 1-based line at which each element of a CSPro dictionary begins, in the order of the layout: that of its section
/// or its JSON object, or for a value of the text form that of its codes. Elements without a line have line 0.
struct ElementLines {
    struct Set {
        int line = 0;
        std::vector<int> values;
    };
    struct Element {
        int line = 0;
        std::vector<Set> valueSets;
    };
    struct Record {
        int line = 0;
        std::vector<Element> items;
    };
    struct Level {
        int line = 0;
        std::vector<Element> ids;
        std::vector<Record> records;
    };

    int dictionary = 0;
    std::vector<Level> levels;
    std::vector<int> relations;
};

} // namespace vanlayout

#endif
