#include "StatFile.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace
{

[[noreturn]] void fail(const std::string &problem)
{
    std::fprintf(stderr, "%s\n", problem.c_str());
    std::exit(1);
}

void must(readstat_error_t result)
{
    if (result != READSTAT_OK)
        fail(readstat_error_message(result));
}

ssize_t append(const void *data, size_t size, void *context)
{
    static_cast<std::string *>(context)->append(static_cast<const char *>(data), size);
    return ssize_t(size);
}

} // namespace

StatFile::StatFile(Kind fileKind, int version)
    : handle(readstat_writer_init(), readstat_writer_free)
    , kind(fileKind)
{
    if (version != 0)
        must(readstat_writer_set_file_format_version(writer(), static_cast<uint8_t>(version)));
    if (kind == savOfRows)
        must(readstat_writer_set_compression(writer(), READSTAT_COMPRESS_ROWS));
    if (kind == zsav) {
        must(readstat_writer_set_file_format_version(writer(), 3));
        must(readstat_writer_set_compression(writer(), READSTAT_COMPRESS_BINARY));
    }
    must(readstat_writer_set_file_timestamp(writer(), 0)); // the same bytes every time
}

readstat_label_set_t *StatFile::labels(const char *name, std::initializer_list<std::pair<double, const char *>> values)
{
    readstat_label_set_t *set = readstat_add_label_set(writer(), READSTAT_TYPE_DOUBLE, name);
    for (const auto &[value, label] : values)
        readstat_label_double_value(set, value, label);
    return set;
}

readstat_label_set_t *StatFile::intLabels(const char *name, std::initializer_list<std::pair<int, const char *>> values)
{
    readstat_label_set_t *set = readstat_add_label_set(writer(), READSTAT_TYPE_INT32, name);
    for (const auto &[value, label] : values)
        readstat_label_int32_value(set, value, label);
    return set;
}

readstat_label_set_t *StatFile::textLabels(const char *name,
                                           std::initializer_list<std::pair<const char *, const char *>> values)
{
    readstat_label_set_t *set = readstat_add_label_set(writer(), READSTAT_TYPE_STRING, name);
    for (const auto &[value, label] : values)
        readstat_label_string_value(set, value, label);
    return set;
}

readstat_variable_t *StatFile::variable(const char *name, readstat_type_t type, const char *label, const char *format,
                                        const readstat_label_set_t *labels, size_t width)
{
    readstat_variable_t *variable = readstat_add_variable(writer(), name, type, width);
    readstat_variable_set_label(variable, label);
    if (format)
        readstat_variable_set_format(variable, format);
    if (labels)
        readstat_variable_set_label_set(variable, const_cast<readstat_label_set_t *>(labels));
    variables.push_back(variable);
    return variable;
}

readstat_variable_t *StatFile::text(const char *name, size_t width, const char *label, const char *format,
                                    const readstat_label_set_t *labels)
{
    return variable(name, READSTAT_TYPE_STRING, label, format, labels, width);
}

readstat_error_t StatFile::begin(std::string &written, int rows)
{
    switch (kind) {
    case por:
        return readstat_begin_writing_por(writer(), &written, rows);
    case dta:
        return readstat_begin_writing_dta(writer(), &written, rows);
    case sas7bdat:
        return readstat_begin_writing_sas7bdat(writer(), &written, rows);
    case sas7bcat:
        return readstat_begin_writing_sas7bcat(writer(), &written);
    case xpt:
        return readstat_begin_writing_xport(writer(), &written, rows);
    default:
        return readstat_begin_writing_sav(writer(), &written, rows);
    }
}

std::string StatFile::bytes(int rows)
{
    std::string written;
    must(readstat_set_data_writer(writer(), append));
    must(begin(written, rows));
    for (int row = 0; row < rows; ++row) {
        must(readstat_begin_row(writer()));
        for (const readstat_variable_t *variable : variables) {
            // A long text has no missing value.
            must(variable->type == READSTAT_TYPE_STRING_REF
                     ? readstat_insert_string_ref(writer(), variable, readstat_get_string_ref(writer(), 0))
                     : readstat_insert_missing_value(writer(), variable));
        }
        must(readstat_end_row(writer()));
    }
    must(readstat_end_writing(writer()));
    return written;
}

void StatFile::save(const std::string &path, int rows)
{
    const std::string content = bytes(rows);
    std::ofstream file(path, std::ios::binary);
    if (!file.write(content.data(), std::streamsize(content.size())).flush())
        fail(path + " cannot be written");
}
