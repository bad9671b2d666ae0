// Makes the Stata, SPSS and SAS files of the tests in a directory.

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

// A little of everything, in every format.
void survey(const std::string &path, StatFile::Kind kind, int version = 0)
{
    StatFile file(kind, version);
    const bool isSas = kind == StatFile::sas7bdat || kind == StatFile::xpt;
    const readstat_label_set_t *yesNo
        = isSas ? nullptr : file.labels("yesno", { { 1, "Yes" }, { 2, "No" }, { 9, "" } });
    readstat_writer_set_file_label(file.writer(), "A small survey");
    if (!isSas) {
        for (const char *line : { "First line", "", "Third line" })
            readstat_add_note(file.writer(), line);
    }
    readstat_variable_t *age = file.variable("AGE", READSTAT_TYPE_DOUBLE, "Age in years");
    file.variable("MARRIED", READSTAT_TYPE_DOUBLE, "Married", isSas ? "YESNO1" : nullptr, yesNo);
    file.variable("WORKS", READSTAT_TYPE_DOUBLE, "", isSas ? "YESNO" : nullptr, yesNo);
    file.text("NAME", 20, "Name of the person");
    if (kind == StatFile::sav || kind == StatFile::por) {
        readstat_variable_add_missing_double_range(age, 97, 99);
        readstat_variable_add_missing_double_value(age, -1);
        readstat_writer_set_fweight_variable(file.writer(), age);
    }
    if (kind == StatFile::sav) {
        file.text("REMARK", 300, "A very long text", nullptr,
                  file.textLabels("remarks", { { "none at all", "None" } }));
        readstat_variable_add_missing_string_value(file.text("WORD", 12, "A long text"), "unknown");
    }
    file.save(path, 3);
}

void catalog(const std::string &path)
{
    StatFile file(StatFile::sas7bcat);
    file.labels("YESNO", { { 1, "Yes" }, { 2, "No" } });
    file.save(path, 0);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIRECTORY\n", argv[0]);
        return 2;
    }
    const std::string directory = std::string(argv[1]) + '/';
    for (const int version : { 105, 108, 110, 111, 113, 114, 115, 117, 118, 119 })
        everyStataType(directory + "types-" + std::to_string(version) + ".dta", version);
    everySpssType(directory + "types.sav", StatFile::sav);
    everySpssType(directory + "types-rows.sav", StatFile::savOfRows);
    everySpssType(directory + "types.zsav", StatFile::zsav);
    survey(directory + "survey.sav", StatFile::sav);
    survey(directory + "survey.por", StatFile::por);
    survey(directory + "survey.dta", StatFile::dta);
    survey(directory + "survey.sas7bdat", StatFile::sas7bdat);
    survey(directory + "survey-5.xpt", StatFile::xpt, 5);
    survey(directory + "survey-8.xpt", StatFile::xpt, 8);
    catalog(directory + "formats.sas7bcat");
    return 0;
}
