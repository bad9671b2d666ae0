#ifndef LAYOUT_WRITE_JSONSCHEMA_H
#define LAYOUT_WRITE_JSONSCHEMA_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// Settings for writeJsonSchema().
struct VANLAYOUT_EXPORT JsonSchemaOptions {
    QString title;    ///< title of the study; empty for the label of the layout, or its name
    QString language; ///< code of the language of the titles; empty for the primary one
    JsonStyle style = JsonStyle::Pretty;
};

/// Writes a JSON Schema (draft 2020-12) in UTF-8 that describes a case of the data as JSON.
///
/// - `$defs` has a definition per record: an object with one property per column, the ids of all levels first. The ids
///   are required; a blank value is omitted. Other properties are not allowed.
/// - A case is an object with one property per record: the record if a case has it at most once, else a list, with
///   `maxItems`, and `minItems` if the record is required. Records of lower levels are lists without bounds, because a
///   case has any number of entries of such a level; their ids show which belong together. A file with one record
///   without ids, such as a statistical file, describes a row: the root is the definition of its record.
/// - `type` is `integer`, `number` or `string` with `maxLength`; documents, images and similar items have none. Dates
///   of statistical files are ISO 8601 texts.
/// - Value sets of CSPro have all valid values: `oneOf` if there are only codes, each `const` with its label as
///   `title`, `anyOf` with `minimum` and `maximum` if there are ranges. Labels of statistical files name some of the
///   values: the last entry of `anyOf` allows any other value, as for CSPro if all values of the sets are missing
///   values. `description` marks special and user-missing values; a blank one is `null`.
/// - Codes of numbers are JSON numbers if every program reads the same number. Others are texts: an item of more than
///   15 characters may be a number or a text of digits, and a bound that a double would round is omitted. A code that
///   is not a value of its type, such as 0.5 of an integer, is omitted.
///
/// Streams onto \a device, which must be open for writing. Returns false if the device did not accept all bytes; its
/// error string gives the reason. Not to be called for a layout with an exportProblem().
VANLAYOUT_EXPORT bool writeJsonSchema(const Layout &layout, QIODevice &device, const JsonSchemaOptions &options = {});

} // namespace vanlayout

#endif
