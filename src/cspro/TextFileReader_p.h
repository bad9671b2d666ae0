#ifndef CSPRO_TEXTFILEREADER_P_H
#define CSPRO_TEXTFILEREADER_P_H

#include <QByteArray>
#include <QString>

#include <functional>

/// Reads the text of a dictionary file in blocks of whole lines, decoded as `textfile::decode` does. Only one block of
/// the text is in memory at a time.
///
/// Every block except the first begins with a line that begins with "[", so that no section is divided. A file that
/// cannot be opened, or that the system fails to read to its end, has no block.
class TextFileReader
{
public:
    /// Size in bytes after which a block ends at the next possible place.
    static constexpr int usualBlockSize = 1 << 18;

    /// Throws `ReadingGivenUp` for a file that no `QString` can hold (about a gigabyte).
    explicit TextFileReader(const QString &fileName);

    /// Sets \a text to the next block. Returns false at the end of the file.
    bool readBlock(QString &text);

    bool isOpened() const { return opened; }
    /// Returns the reason why the system failed to read the file, as one line for a person; null if it did not fail.
    const QString &problem() const { return readProblem; }
    /// Returns whether nothing in the file declares its encoding.
    bool isEncodingGuessed() const { return encodingGuessed; }
    /// If a mark declares the file as UTF-8, calls \a report with the 1-based number and the text of each line whose
    /// bytes are not valid UTF-8. Without a mark such a file is read in another encoding.
    void forEachBrokenLine(const std::function<void(int, const QString &)> &report) const;

private:
    int endOfBlock() const;

    QByteArray bytes; ///< of the whole file
    QString readProblem;
    int position = 0; ///< of the next block, in bytes
    bool opened = false;
    bool encodingGuessed = false;
    bool hasUtf8Mark = false;
    bool isInBlocks = false; ///< whether the file is read in blocks: UTF-8 is, any other encoding is read in one piece
};

#endif
