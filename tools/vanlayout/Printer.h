#ifndef VANLAYOUT_PRINTER_H
#define VANLAYOUT_PRINTER_H

#include "FileCount.h"
#include "Layout.h"

#include <cstdio>
#include <memory>

/// Prints layouts in one form, one after the other.
class Printer
{
public:
    virtual ~Printer() = default;
    /// Prints a layout that was read.
    virtual void printLayout(const Layout &layout) = 0;
    /// Prints an entry for a file that has no layout; nothing in most forms.
    virtual void printProblem(const Layout & /*layout*/) { }
};

/// A table for reading; \a width is that of the terminal in columns, 0 for no limit.
std::unique_ptr<Printer> makeTablePrinter(std::FILE *out, FileCount files, int width);
/// JSON objects: an indented one, or one per line for several files.
std::unique_ptr<Printer> makeJsonPrinter(std::FILE *out, FileCount files);
/// RFC 4180 with a header line; a first column with the file for several files.
std::unique_ptr<Printer> makeCsvPrinter(std::FILE *out, FileCount files);

#endif
