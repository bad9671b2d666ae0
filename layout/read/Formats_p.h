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
    QString path;      ///< of the file; empty if the layout is read from a device
    QByteArray head;   ///< first bytes of the file, at least `headSize` of them unless the file is shorter
    const ReadOptions &options;
};

/// Number of bytes at the beginning of a file that are enough to recognise its format, unless it begins with white
/// space or comments. In that case more bytes are read, at most `maxHeadSize`, until something else follows.
constexpr int headSize = 1024;
constexpr int maxHeadSize = 16 << 20;

/// The bytes at the position of the device that identify the format; the position does not change. \a isAll is set to
/// whether the device has no further bytes or failed after them.
QByteArray headOf(QIODevice &device, bool &isAll);

/// Reads one format into \a layout, whose member `file` is set. Problems of the file are reported to \a diagnostics;
/// for a file without a layout, `Diagnostics::fail` is called.
///
/// The same applies to a read error of the device, with the id "cannot-read" and the message "cannot be read: "
/// followed by the error string of the device.
using FormatReader = void (*)(Input &input, Layout &layout, Diagnostics &diagnostics);

/// One format: how to recognise it and how to read it.
struct FileFormat {
    bool (*recognises)(const QByteArray &head);
    FormatReader read;
};

bool isCSProText(const QByteArray &head);
/// True if \a head has only a byte-order mark and white space.
bool isBlankCSProText(const QByteArray &head);
void readCSProText(Input &input, Layout &layout, Diagnostics &diagnostics);
/// Reads the text form from \a bytes, as within a data file.
void readCSProText(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics);

bool isCSProJson(const QByteArray &head);
/// True if \a head has only a byte-order mark, white space and comments.
bool isBlankCSProJson(const QByteArray &head);
void readCSProJson(Input &input, Layout &layout, Diagnostics &diagnostics);
/// Reads the JSON form from \a bytes, as within a data file.
void readCSProJson(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics, ElementLines *lines = nullptr);

bool isCSProDatabase(const QByteArray &head);
void readCSProDatabase(Input &input, Layout &layout, Diagnostics &diagnostics);

/// SPSS, SPSS portable, Stata, SAS data set, SAS transport file.
bool isStatFile(const QByteArray &head);
void readStatFile(Input &input, Layout &layout, Diagnostics &diagnostics);

/// DDI Codebook, and any other XML document that is not a page of HTML, so that its root is in the message.
bool isDdi(const QByteArray &head);
void readDdi(Input &input, Layout &layout, Diagnostics &diagnostics);

/// Reports in one line what an unrecognised file seems to be, such as a CSV file, a PNG image or a ZIP archive. \a head
/// are its first bytes, \a isWhole states whether these are all of the file.
void reportUnknownFile(const QByteArray &head, bool isWhole, Diagnostics &diagnostics);

/// All bytes from the device's position to its end. \a problem is set to the message of a failure, or to an empty text
/// if all were read.
QByteArray readAllOf(QIODevice &device, QString &problem);

} // namespace vanlayout

#endif
