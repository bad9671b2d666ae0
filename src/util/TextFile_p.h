#ifndef UTIL_TEXTFILE_P_H
#define UTIL_TEXTFILE_P_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <vector>

/// The lines of a text or of a list of texts, asked for one after the other: views, so what they are made from must
/// outlive them. Going forward costs one pass over the text; going back begins anew.
class TextLines
{
public:
    /// The texts of a list, as they are; null counts as empty.
    TextLines(const QStringList *list);
    TextLines(const QStringList &list);
    /// The lines of \a text, each ended by a line feed or by the end of the text. No line follows a final line feed.
    static TextLines ofText(QStringView text);

    /// Whether there is a line at an index from 0.
    bool has(int index) const
    {
        if (texts)
            return index >= 0 && index < texts->size();
        find(index);
        return line == index && begin < text.size();
    }
    /// The line at an index that there is.
    QStringView at(int index) const
    {
        if (texts)
            return texts->at(index);
        find(index);
        return QStringView(text.data() + begin, end - begin);
    }

private:
    TextLines() = default;
    void find(int index) const
    {
        if (index != line)
            moveTo(index);
    }
    void moveTo(int index) const;
    qsizetype feedBehind(qsizetype position) const;

    const QStringList *texts = nullptr;
    QStringView text;
    // where the line that was last asked for stands
    mutable int line = 0;
    mutable qsizetype begin = 0;
    mutable qsizetype end = 0;
};

/// The lines of one section, or of a list of texts: views, so what they are made from must outlive them.
class SectionLines
{
public:
    SectionLines() = default;
    /// The texts of a list, as they are; null counts as empty.
    SectionLines(const QStringList *list);
    SectionLines(const QStringList &list);

    bool isEmpty() const { return views.empty(); }
    void append(QStringView line) { views.push_back(line); }
    /// Remembers the number in the file of the line appended last; for all lines of a section or for none.
    void numberLast(int number) { numbers.push_back(number); }
    /// The number in the file, from 1, of the line at \a index; 0 where none was given.
    int numberOf(size_t index) const { return index < numbers.size() ? numbers[index] : 0; }
    size_t size() const { return views.size(); }
    QStringView at(size_t index) const { return views[index]; }
    void reserve(int count) { views.reserve(size_t(count)); }
    auto begin() const { return views.cbegin(); }
    auto end() const { return views.cend(); }

private:
    std::vector<QStringView> views;
    std::vector<int> numbers;
};

namespace textfile
{

/// The index of the first \a character in \a line at or behind \a from, or -1. Quicker than Qt's own search in the few
/// characters of a line.
inline int indexOf(QStringView line, char character, qsizetype from = 0)
{
    const auto *found = std::find(line.begin() + std::min(from, line.size()), line.end(), QLatin1Char(character));
    return found == line.end() ? -1 : int(found - line.begin());
}

/// Whether all of \a bytes are well-formed UTF-8.
bool isUtf8(const QByteArray &bytes);

/// The text that \a bytes stand for, without its carriage returns.
///
/// A byte-order mark (UTF-8, UTF-16, UTF-32) decides on the encoding and is no part of the text. Without one the text
/// is UTF-8 where all of it is valid UTF-8; otherwise in the locale's encoding, or in Windows-1252 where the locale's
/// is UTF-8 or ASCII.
QString decode(const QByteArray &bytes);

} // namespace textfile

/// Reads the text of a file in blocks of whole lines, decoded as `textfile::decode` does. Of the
/// text, only a block is in memory at a time.
///
/// Every block but the first begins with a line that begins with "[", so that a section is never parted. A file that
/// cannot be opened, or that the system fails to read to its end, has no block.
class TextFileReader
{
public:
    /// Bytes after which a block ends as soon as it can.
    static constexpr int usualBlockSize = 1 << 18;

    /// Raises `ReadingGivenUp` for a file that no `QString` can hold (a gigabyte).
    explicit TextFileReader(const QString &fileName);

    /// Sets \a text to the next block; false at the end of the file.
    bool readBlock(QString &text);

    bool isOpened() const { return opened; }
    /// The reason why the system failed to read the file, as one line for a person; null where it did not fail.
    const QString &problem() const { return readProblem; }
    /// Whether nothing in the file tells its encoding.
    bool isEncodingGuessed() const { return encodingGuessed; }
    /// Calls \a tell with the number, from 1, and the text of each line that has bytes which are no text, where a mark
    /// says that the file is UTF-8. Without a mark such a file is not taken for UTF-8.
    void forEachBrokenLine(const std::function<void(int, const QString &)> &tell) const;

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
