#ifndef VANLAYOUT_EXPORT_H
#define VANLAYOUT_EXPORT_H

#include "Layout.h"

#include <QIODevice>

#include <string>

/// What `vanlayout export` was asked for.
struct ExportOptions {
    std::string target;          ///< ddi, csvw or json-schema
    std::string type = "auto";   ///< auto, or the name of a file type
    std::string decimals = "no"; ///< yes or no
    std::string output = "-";    ///< file to write, in the encoding of the system; - is standard output
    std::string file;            ///< in the encoding of the system
};

/// Writes the layout of the file in the form that was asked for, and answers the status.
int exportLayout(const ExportOptions &options);

/// Writes the layout as a DDI Codebook 2.5.
void writeDdi(const Layout &layout, QIODevice &device);

/// Writes the layout as metadata of CSV on the Web, for one table with a column for each variable.
void writeCsvw(const Layout &layout, QIODevice &device);

/// Writes a JSON Schema of the layout: of its JSON form, and of one record of the data, as an object with a property
/// for each variable.
void writeJsonSchema(const Layout &layout, QIODevice &device);

#endif
