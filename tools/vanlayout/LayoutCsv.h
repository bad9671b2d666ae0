#ifndef VANLAYOUT_LAYOUTCSV_H
#define VANLAYOUT_LAYOUTCSV_H

#include "CsvLine.h"
#include "FileCount.h"
#include "model/Layout.h"

#include <QString>
#include <QStringList>

#include <cstdio>
#include <map>

/// Writes the items of exact layouts as CSV: a header line before the first layout, then one line per item.
class ItemCsv
{
public:
    /// The first column has the file if there are several \a files; \a language is the one of the labels, empty for the
    /// primary one.
    ItemCsv(std::FILE *out, FileCount files, QString language);
    void write(const vanlayout::Layout &layout);

private:
    void writeHeader();
    void writeItem(const vanlayout::Layout &layout, const vanlayout::Level &level, const vanlayout::Record *record,
                   const vanlayout::Item &item);

    CsvLine line;
    bool hasFile;
    bool hasHeader = false;
    QString language;
};

/// Writes the codes of exact layouts as CSV: a header line before the first layout, then one line per code or range
/// of a value set.
class CodeCsv
{
public:
    /// \a languages are the codes of the languages; each has a column: `label_EN`. The first column has the primary
    /// label if that language has none; the others are then empty. Without languages, the only column `label` has the
    /// primary label.
    CodeCsv(std::FILE *out, QStringList languages);
    void write(const vanlayout::Layout &layout);

private:
    void writeHeader();
    void writeValue(const QString &file, const QString &item, const vanlayout::ValueSet &set,
                    const vanlayout::Value &value);
    QStringList textsOf(const vanlayout::Labels &labels) const;

    CsvLine line;
    bool hasHeader = false;
    QStringList languages;
    std::map<QString, int> columns; ///< of the languages, in lower case
};

#endif
