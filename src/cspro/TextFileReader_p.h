#ifndef CSPRO_TEXTFILEREADER_P_H
#define CSPRO_TEXTFILEREADER_P_H

#include <QByteArray>
#include <QString>

#include <functional>

/// Reads the text of a dictionary file in blocks of whole lines, decoded as `textfile::decode` does. Only one block of
/// the text is in memory at a time.
///
/// Every block but the first begins with a line that begins with "[", so that no section is divided. A file that cannot
/// be opened, or that the system fails to read to its end, has no block.
class TextFileReader
{
public:
    /// Size in bytes from which on a block ends as soon as it can.
    static constexpr int usualBlockSize = 1 << 18;

    /// Throws `ReadingGivenUp` for a file that no `QString` can hold (a gigabyte).
    explicit TextFileReader(const QString &fileName);

    /// Sets \a text to the next block; false at the end of the file.
    bool readBlock(QString &text);

    bool isOpened() const { return opened; }
    /// The reason why the system failed to read the file, as one line for a person; null where it did not fail.
    const QString &problem() const { return readProblem; }
    /// Whether nothing in the file declares its encoding.
    bool isEncodingGuessed() const { return encodingGuessed; }
    /// Calls \a report with the number, from 1, and the text of each line whose bytes are not valid UTF-8, where a mark
    /// declares the file as UTF-8. Without a mark such a file is read in another encoding.
    void forEachBrokenLine(const std::function<void(int, const QString &)> &report) const;

private:
    int endOfBlock() const;

    QByteArray bytes; ///< of the whole file
    QString readProblem;
    int position = 0; ///< of the next block
    bool opened = false;
    bool encodingGuessed = false;
    bool hasUtf8Mark = false;
    bool isInBlocks = false; ///< UTF-8 can be read in blocks, any other encoding in one piece
};

#endif
