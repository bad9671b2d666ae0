#ifndef LAYOUT_READ_FORMATS_P_H
#define LAYOUT_READ_FORMATS_P_H

#include "read/Diagnostics_p.h"
#include "read/Reader.h"

#include <QByteArray>

class QIODevice;

namespace vanlayout
{

/// The input of a format reader.
struct Input {
    QIODevice &device; ///< open for reading, random access, at the position of the first byte
    QString path;      ///< of the file; empty where the layout comes from a device
    QByteArray head;   ///< first bytes of the file, `headSize` of them or more where the file is as long
    const ReadOptions &options;
};

/// Bytes at the beginning of a file that are enough to recognise its format, unless it begins with white space or
/// comments. Then it takes as many more as show what follows them, at most `maxHeadSize`.
constexpr int headSize = 1024;
constexpr int maxHeadSize = 16 << 20;

/// The bytes from the device's position on that show the format; the position stays. \a isAll is whether the device
/// has no more, or failed behind them.
QByteArray headOf(QIODevice &device, bool &isAll);

/// Each reads one format into \a layout, whose member `file` is set. What the file has wrong goes to \a diagnostics; a
/// file that gives no layout ends in `Diagnostics::fail`.
///
/// A read error of the device is such an end: id "cannot-read", message "cannot be read: " and the device's own words.
using FormatReader = void (*)(Input &input, Layout &layout, Diagnostics &diagnostics);

/// One format: how to recognise it and how to read it.
struct FileFormat {
    bool (*recognises)(const QByteArray &head);
    FormatReader read;
};

bool isCSProText(const QByteArray &head);
/// Whether nothing but a mark and white space is in \a head.
bool isBlankCSProText(const QByteArray &head);
void readCSProText(Input &input, Layout &layout, Diagnostics &diagnostics);
/// Reads the text form from \a bytes, as within a data file.
void readCSProText(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics);

bool isCSProJson(const QByteArray &head);
/// Whether nothing but a mark, white space and comments is in \a head.
bool isBlankCSProJson(const QByteArray &head);
void readCSProJson(Input &input, Layout &layout, Diagnostics &diagnostics);
/// Reads the JSON form from \a bytes, as within a data file.
void readCSProJson(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics);

bool isCSProDatabase(const QByteArray &head);
void readCSProDatabase(Input &input, Layout &layout, Diagnostics &diagnostics);

/// SPSS, SPSS portable, Stata, SAS data set, SAS transport file.
bool isStatFile(const QByteArray &head);
void readStatFile(Input &input, Layout &layout, Diagnostics &diagnostics);

/// Reports in one line what a file that no reader recognises seems to be, a CSV file, a PNG image, a ZIP archive. \a
/// head is as much of its begin as describes it, \a isWhole says whether that is all of the file.
void reportUnknownFile(const QByteArray &head, bool isWhole, Diagnostics &diagnostics);

/// All bytes from the device's position to its end. An empty text in \a problem says that all were read; otherwise it
/// holds the message of the failure.
QByteArray readAllOf(QIODevice &device, QString &problem);

} // namespace vanlayout

#endif
