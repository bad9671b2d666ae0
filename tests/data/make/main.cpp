// Makes the Stata and SPSS files of the tests in a folder.

#include "StatFile.h"

#include <cstdio>

namespace
{

// Numbers of every type, widths and formats, and label sets of every kind.
void everyStataType(const std::string &path, int version)
{
    StatFile file(StatFile::dta, version);
    const bool hasLongInts = version > 110;
    const readstat_type_t widest = hasLongInts ? READSTAT_TYPE_INT32 : READSTAT_TYPE_INT16;
    const auto *yesNo = file.intLabels("yesno", { { 1, "Yes" }, { 2, "No" } });
    const auto *oddLabels = file.intLabels(
        "odd", { { -1, "Minus one" }, { 0, "Zero" }, { 9, "" }, { 30000, "Na\xC3\xAFve caf\xC3\xA9" } });
    file.variable("tiny", READSTAT_TYPE_INT8, "A byte", "%8.0g");
    file.variable("small", READSTAT_TYPE_INT16, "An int", "%8.0g", yesNo);
    file.variable("wide", widest, "A long", "%12.0g", yesNo);
    file.variable("odd", widest, "Odd labels", "%12.0g", oddLabels);
    file.variable("single", READSTAT_TYPE_FLOAT, "A float", "%9.0g");
    file.variable("full", READSTAT_TYPE_DOUBLE, "\xC3\x89tat civil", "%10.0g");
    file.text("name", 5, "A text", "%9s");
    file.text("remark", 80, "A longer text");
    if (version >= 117) {
        readstat_add_string_ref(file.writer(), "a long text");
        file.variable("essay", READSTAT_TYPE_STRING_REF, "A strL", "%9s");
    }
    file.save(path);
}

void everySpssType(const std::string &path, StatFile::Kind kind)
{
    StatFile file(kind);
    const auto *yesNo = file.labels("yesno", { { 1, "Yes" }, { 2, "No" } });
    const auto *shared = file.labels("shared", { { 1, "One" }, { 2.5, "Two and a half" }, { 7, "Seven" } });
    const auto *halves = file.labels("halves", { { 0.5, "Half" }, { -1, "Minus one" }, { 1.5, "" } });
    const auto *texts = file.textLabels("texts", { { "M", "Male" }, { "F", "F\xC3\xA9minin" } });
    file.variable("F80", READSTAT_TYPE_DOUBLE, "Whole number", "F8.0", yesNo);
    file.variable("F82", READSTAT_TYPE_DOUBLE, "With decimals", "F8.2",
                  file.labels("own", { { 1, "Yes" }, { 2, "No" } }));
    file.variable("F100", READSTAT_TYPE_DOUBLE, "Wide", "F10.0");
    file.variable("F102", READSTAT_TYPE_DOUBLE, "Wide with decimals", "F10.2", halves);
    file.variable("WHOLE", READSTAT_TYPE_DOUBLE, "Shares, no decimals", "F4.0", shared);
    file.variable("REAL", READSTAT_TYPE_DOUBLE, "Shares, decimals", "F6.2", shared);
    file.variable("DAY", READSTAT_TYPE_DOUBLE, "\xE6\x97\xA5\xE4\xBB\x98", "DATE11");
    file.text("SEX", 8, "A text", "A8", texts);
    file.text("NAME", 20, "A wider text", "A20");
    file.text("ESSAY", 600, "A very long text", "A600");
    file.save(path);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const std::string folder = std::string(argv[1]) + '/';
    for (const int version : { 105, 108, 110, 111, 113, 114, 115, 117, 118, 119 })
        everyStataType(folder + "types-" + std::to_string(version) + ".dta", version);
    everySpssType(folder + "types.sav", StatFile::sav);
    everySpssType(folder + "types-rows.sav", StatFile::savOfRows);
    everySpssType(folder + "types.zsav", StatFile::zsav);
    return 0;
}
