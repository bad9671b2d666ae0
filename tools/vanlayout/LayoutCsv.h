#ifndef VANLAYOUT_LAYOUTCSV_H
#define VANLAYOUT_LAYOUTCSV_H

#include "CsvLine.h"
#include "model/Layout.h"

#include <QString>
#include <QStringList>

#include <cstdio>
#include <map>

/// Writes the items of exact layouts as CSV: a header line before the first layout, then one line an item.
class ItemCsv
{
public:
    /// \a withFile adds a first column with the file; \a language is the one of the labels, empty for the primary one.
    ItemCsv(std::FILE *out, bool withFile, QString language);
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

/// Writes the codes of exact layouts as CSV: a header line before the first layout, then one line a code or range of a
/// value set.
class CodeCsv
{
public:
    /// \a languages are the codes of the languages that have a column of their own: `label_EN`. The first column has
    /// the primary label where that language has none, the others are empty then. Without languages, the one column
    /// `label` has the primary label.
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
    std::map<QString, int> columns; ///< of the languages, in small letters
};

#endif
