#ifndef VANLAYOUT_PRINTER_H
#define VANLAYOUT_PRINTER_H

#include "Layout.h"

#include <cstdio>
#include <memory>

/// Prints layouts in one form, one after the other.
class Printer
{
public:
    virtual ~Printer() = default;
    /// Prints a layout that is an answer.
    virtual void printLayout(const Layout &layout) = 0;
    /// Prints what the form has to say of a file without an answer; nothing in most forms.
    virtual void printProblem(const Layout & /*layout*/) { }
};

/// A table for a person; \a width is that of the terminal in columns, 0 for no bound.
std::unique_ptr<Printer> makeTablePrinter(std::FILE *out, bool severalFiles, int width);
/// JSON objects: one for a person to read, or one a line for several files.
std::unique_ptr<Printer> makeJsonPrinter(std::FILE *out, bool severalFiles);
/// RFC 4180 with a header line; a first column with the file for several files.
std::unique_ptr<Printer> makeCsvPrinter(std::FILE *out, bool severalFiles);

#endif
