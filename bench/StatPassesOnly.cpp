// The minimal work of a reader of a Stata or SPSS file, as a separate process: two passes with handlers that copy names
// and labels.

#include <readstat.h>

#include <cstring>
#include <string>
#include <vector>

namespace
{

struct Copies {
    std::vector<std::string> names;
    std::vector<std::string> labels;
};

int copyLabel(const char *set, readstat_value_t /*value*/, const char *label, void *context)
{
    auto *copies = static_cast<Copies *>(context);
    copies->names.emplace_back(set);
    copies->labels.emplace_back(label ? label : "");
    return READSTAT_HANDLER_OK;
}

int copyVariable(int /*index*/, readstat_variable_t *variable, const char * /*set*/, void *context)
{
    auto *copies = static_cast<Copies *>(context);
    copies->names.emplace_back(variable->name);
    copies->labels.emplace_back(variable->label);
    return READSTAT_HANDLER_OK;
}

readstat_error_t pass(const char *path, bool isLabels, Copies &copies)
{
    readstat_parser_t *parser = readstat_parser_init();
    if (isLabels)
        readstat_set_value_label_handler(parser, copyLabel);
    else
        readstat_set_variable_handler(parser, copyVariable);
    const size_t length = std::strlen(path);
    const bool isStata = length > 4 && std::strcmp(path + length - 4, ".dta") == 0;
    const readstat_error_t result
        = isStata ? readstat_parse_dta(parser, path, &copies) : readstat_parse_sav(parser, path, &copies);
    readstat_parser_free(parser);
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    Copies copies;
    const bool isRead = pass(argv[1], true, copies) == READSTAT_OK && pass(argv[1], false, copies) == READSTAT_OK;
    return isRead && !copies.names.empty() ? 0 : 1;
}
