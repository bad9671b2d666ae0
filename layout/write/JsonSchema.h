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
    QString title;    ///< of the whole; empty for the label of the layout, or its name
    QString language; ///< of the titles; empty for the primary one
    JsonStyle style = JsonStyle::Pretty;
};

/// Writes a JSON Schema (draft 2020-12) in UTF-8 that describes a case of the data as JSON.
///
/// - `$defs` has a definition a record: an object with a property a column, the ids of all levels in front. The ids are
///   required; a value that is blank is left out. No other property is allowed.
/// - A case is an object with a property a record: the record where a case has one at most, else a list, with
///   `maxItems`, and `minItems` where the record is required. Records of lower levels are lists without bounds, as a
///   case has any number of such levels; their ids show which belong together. A file of one record without ids, as
///   statistical files are, describes a row: the root is the definition of its record.
/// - `type` is `integer`, `number` or `string` with `maxLength`; documents, images and the like have none. Dates of
///   statistical files are texts of ISO 8601.
/// - Value sets of CSPro hold all valid values: `oneOf` where there are codes alone, each `const` with its label as
///   `title`, `anyOf` with `minimum` and `maximum` where there are ranges. Labels of statistical files name some of the
///   values: the last of `anyOf` allows any other, as in CSPro where all values of the sets are missing ones. Special
///   and user-missing values say so in `description`; a blank one is `null`.
/// - Codes of numbers are JSON numbers where every program reads the same number. Others are texts: an item of more
/// than
///   15 characters may be a number or a text of digits, and a bound that a double would round is left out. A code that
///   is no value of its type, such as 0.5 of an integer, is left out.
///
/// Streams onto \a device, which is open for writing. False if the device did not take all bytes; its error string says
/// why. A layout that exportProblem() refuses must not be written.
VANLAYOUT_EXPORT bool writeJsonSchema(const Layout &layout, QIODevice &device, const JsonSchemaOptions &options = {});

} // namespace vanlayout

#endif
