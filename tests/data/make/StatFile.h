#ifndef MAKE_STATFILE_H
#define MAKE_STATFILE_H

#include <readstat.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A Stata, SPSS or SAS file that is put together and written through ReadStat's writer. The process ends with a
/// message where ReadStat refuses something.
class StatFile
{
public:
    /// savOfRows: with compressed rows; sas7bcat: a catalog of label sets, which has no variables
    enum Kind { sav, savOfRows, zsav, por, dta, sas7bdat, sas7bcat, xpt };

    /// \a version is that of a Stata or SAS file; 0 is the writer's own choice.
    explicit StatFile(Kind fileKind, int version = 0);

    readstat_label_set_t *labels(const char *name, std::initializer_list<std::pair<double, const char *>> values);
    readstat_label_set_t *intLabels(const char *name, std::initializer_list<std::pair<int, const char *>> values);
    readstat_label_set_t *textLabels(const char *name,
                                     std::initializer_list<std::pair<const char *, const char *>> values);

    /// Appends a variable; \a width applies only to texts; \a format and \a labels may be null.
    readstat_variable_t *variable(const char *name, readstat_type_t type, const char *label = "",
                                  const char *format = nullptr, const readstat_label_set_t *labels = nullptr,
                                  size_t width = 0);

    /// Appends a text of this declared length.
    readstat_variable_t *text(const char *name, size_t width, const char *label = "", const char *format = nullptr,
                              const readstat_label_set_t *labels = nullptr);

    readstat_writer_t *writer() const { return handle.get(); }

    /// The whole file, with rows in which all values are missing.
    std::string bytes(int rows = 1);
    void save(const std::string &path, int rows = 1);

private:
    readstat_error_t begin(std::string &written, int rows);

    std::unique_ptr<readstat_writer_t, void (*)(readstat_writer_t *)> handle;
    Kind kind;
    std::vector<readstat_variable_t *> variables;
};

#endif
