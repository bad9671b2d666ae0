#ifndef CSPRO_TEXTLINES_P_H
#define CSPRO_TEXTLINES_P_H

#include <QStringList>
#include <QStringView>

#include <vector>

/// The lines of a text or of a list of texts, read in their order. They are views: the text or list must outlive them.
/// Going forward through all lines takes one pass over the text; going back starts again at its first line.
class TextLines
{
public:
    /// The texts of a list, unchanged; null counts as empty.
    TextLines(const QStringList *list);
    TextLines(const QStringList &list);
    /// The lines of \a text, each ended by a line feed or by the end of the text. No line follows a final line feed.
    static TextLines ofText(QStringView text);

    /// Returns whether there is a line at a 0-based index.
    bool has(int index) const
    {
        if (texts)
            return index >= 0 && index < texts->size();
        find(index);
        return line == index && begin < text.size();
    }
    /// Returns the line at an index for which has() is true.
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
    qsizetype feedAfter(qsizetype position) const;

    const QStringList *texts = nullptr;
    QStringView text;
    // the line of the last call and its place in the text
    mutable int line = 0;
    mutable qsizetype begin = 0;
    mutable qsizetype end = 0;
};

/// The lines of one section, or of a list of texts. They are views: the text or list must outlive them.
class SectionLines
{
public:
    SectionLines() = default;
    /// The texts of a list, unchanged; null counts as empty.
    SectionLines(const QStringList *list);
    SectionLines(const QStringList &list);

    bool isEmpty() const { return views.empty(); }
    void append(QStringView line) { views.push_back(line); }
    /// Stores the number in the file of the line appended last. Either all lines of a section have a number or none
    /// has.
    void numberLast(int number) { numbers.push_back(number); }
    /// Returns the 1-based number in the file of the line at \a index; 0 if the lines have no numbers.
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

#endif
