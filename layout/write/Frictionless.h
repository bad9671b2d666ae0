#ifndef LAYOUT_WRITE_FRICTIONLESS_H
#define LAYOUT_WRITE_FRICTIONLESS_H

#include "model/Layout.h"
#include "vanlayout_export.h"
#include "write/LayoutJson.h"

class QIODevice;

namespace vanlayout
{

/// Settings for writeFrictionless().
struct VANLAYOUT_EXPORT FrictionlessOptions {
    QString title;    ///< title of the package; empty for the label of the layout, or its name
    QString language; ///< code of the language of the titles and labels; empty for the primary one
    JsonStyle style = JsonStyle::Pretty;
};

/// Writes a Data Package (version 2) in UTF-8 with one resource per record type, for the data as CSV files with a
/// header line. The tables, their columns and keys are those of writeCsvw().
///
/// - `type` of a field: `integer`, `number`, `string`, `date`, `datetime`, or `any` for documents, images and similar
///   items. Dates of CSPro that keep their digits have a `format` such as `%Y%m%d`.
/// - `constraints`: `required` for ids, `maxLength` of texts, `minimum` and `maximum` if one range of the file contains
///   all values.
/// - `categories`, which the standard defines only for integers and texts: present if single codes are all values of
///   the item. In a statistical file these are the labels of a variable whose measure is not scale; if its format has
///   no decimals and all codes are integers, it is an `integer`. `categoriesOrdered` marks the ordinal measure. Labels
///   that cannot be categories are in `valueLabels`, a property of this program, with `value`, or `minimum` and
///   `maximum`.
/// - `missingValues` of a field: the empty cell, codes of special values and user-missing codes, with their labels.
///
/// A record without columns has no resource. Streams onto \a device, which must be open for writing. Returns false if
/// the device did not accept all bytes; its error string gives the reason. Not to be called for a layout with an
/// exportProblem().
VANLAYOUT_EXPORT bool writeFrictionless(const Layout &layout, QIODevice &device,
                                        const FrictionlessOptions &options = {});

} // namespace vanlayout

#endif
