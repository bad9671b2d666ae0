// Writes household.sav and household.dta into a directory: the same small household survey as an SPSS and as a Stata
// file.

#include "StatFile.h"

#include <cstdio>

namespace
{

// Display formats, in the notation of SPSS or of Stata.
struct Formats {
    const char *code;
    const char *count;
    const char *amount;
    const char *day;
    const char *name;
};
const Formats spssFormats = { "F2.0", "F3.0", "F9.2", "DATE11", "A40" };
const Formats stataFormats = { "%8.0g", "%8.0g", "%9.2f", "%td", "%40s" };

void makeHousehold(StatFile file, const Formats &formats, readstat_type_t code, const std::string &path)
{
    const bool isSpss = code == READSTAT_TYPE_DOUBLE;
    const auto labels = [&](const char *name, std::initializer_list<std::pair<int, const char *>> values) {
        readstat_label_set_t *set = readstat_add_label_set(file.writer(), isSpss ? code : READSTAT_TYPE_INT32, name);
        for (const auto &[value, label] : values) {
            if (isSpss)
                readstat_label_double_value(set, value, label);
            else
                readstat_label_int32_value(set, value, label);
        }
        return set;
    };
    const auto *province = labels("province", { { 1, "Artesia" }, { 2, "Copal" }, { 3, "Dari" } });
    const auto *yesNo = labels("yesno", { { 1, "Yes" }, { 2, "No" }, { 9, "Not stated" } });
    const auto *relation = labels(
        "relation", { { 1, "Head" }, { 2, "Spouse" }, { 3, "Child" }, { 4, "Other relative" }, { 5, "No relative" } });
    file.variable("province", code, "Province", formats.code, province);
    file.variable("urban", code, "Urban area", formats.code, yesNo);
    file.variable("rooms", code, "Number of rooms", formats.count);
    file.variable("electric", code, "Electric light", formats.code, yesNo);
    file.variable("income", READSTAT_TYPE_DOUBLE, "Monthly income", formats.amount);
    file.text("name", 40, "Name of the person", formats.name);
    file.variable("relation", code, "Relation to the head", formats.code, relation);
    file.variable("age", code, "Age in years", formats.count);
    file.variable("visited", READSTAT_TYPE_DOUBLE, "Day of the visit", formats.day);
    file.save(path, 3);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIRECTORY\n", argv[0]);
        return 2;
    }
    const std::string directory = std::string(argv[1]) + '/';
    makeHousehold(StatFile(StatFile::savOfRows), spssFormats, READSTAT_TYPE_DOUBLE, directory + "household.sav");
    makeHousehold(StatFile(StatFile::dta, 118), stataFormats, READSTAT_TYPE_INT16, directory + "household.dta");
    return 0;
}
