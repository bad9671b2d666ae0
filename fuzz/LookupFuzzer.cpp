// A lookup file. The first byte chooses separator, mode and limit of the check.

#include "FuzzedFile.h"
#include "import/ReadReport.h"
#include "lookup/Lookup.h"
#include "lookup/Reports.h"

#include <set>

namespace
{

std::set<int *> intsOf(const std::map<QString, int *> &frequencies)
{
    std::set<int *> ints;
    for (const auto &entry : frequencies)
        ints.insert(entry.second);
    return ints;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedFile file;
    if (size == 0)
        return 0;
    TVpLookup lookup;
    lookup.setFfileName(file.holding(data + 1, size - 1));
    lookup.setSeparator(data[0] % 6);
    lookup.setMaxMessages(data[0] & 0x40 ? 3 : 1000000);
    ReadReport report;
    lookup.setReadReport(&report);
    std::map<QString, int *> frequencies;
    QStringList errors;
    const auto mode = econsistencyCheck(data[0] / 6 % 4);
    lookup.consistencyCheck(mode, frequencies, &errors);
    // A second check replaces these numbers.
    std::set<int *> ints = intsOf(frequencies);
    lookup.consistencyCheck(mode, frequencies, data[0] & 0x80 ? nullptr : &errors);
    ints.merge(intsOf(frequencies));
    for (const int *count : ints)
        delete count;
    return 0;
}
