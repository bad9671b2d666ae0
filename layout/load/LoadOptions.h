#ifndef LAYOUT_LOAD_LOADOPTIONS_H
#define LAYOUT_LOAD_LOADOPTIONS_H

#include "vanlayout_export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The settings and the files of a load program.
namespace vanlayout
{

/// A program or database that a load program is written for.
enum class LoadTarget { Sqlite, Postgresql, Duckdb, Dask, R, Pandas, Spss, Stata, Sas };

/// The encoding of a data file.
enum class DataEncoding { Utf8, Windows1252 };

/// The form of the occurrences of a repeating item: columns or rows.
enum class OccurrenceForm {
    Wide, ///< one column for each occurrence
    Long, ///< a separate table, with one row for each occurrence that is not blank
};

/// The cells of the codes of special values. Blank numbers, and codes of "notApplicable", are missing in both.
enum class SpecialForm {
    Missing, ///< missing, in the way of the target
    Keep,    ///< numbers or texts with their label
};

/// Settings for makeLoadProgram().
struct VANLAYOUT_EXPORT LoadOptions {
    QString data; ///< path of the data file as written in the program; empty for the name of the dictionary and `.dat`
    DataEncoding encoding = DataEncoding::Utf8;
    QString language; ///< code of the language of the labels; empty for the primary one
    OccurrenceForm occurrences = OccurrenceForm::Wide;
    SpecialForm specials = SpecialForm::Missing;
    QStringList records; ///< names of the records to load, compared exactly; empty for all
};

/// One file of a load program.
struct VANLAYOUT_EXPORT LoadFile {
    QString name;    ///< without directory; letters a to z and A to Z, digits, `_` and one extension
    QByteArray text; ///< in UTF-8
};

} // namespace vanlayout

#endif
