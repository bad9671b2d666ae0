#include "LineDiff.h"

#include "Printable.h"
#include "util/KeyedHash_p.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace
{

using Lines = std::vector<std::string_view>;

constexpr int context = 3;
constexpr int maxEdits = 1000;   // the shortest list of edits is only searched up to this length
constexpr size_t maxPasses = 64; // over all lines, in search of pairs

Lines linesOf(const QByteArray &text)
{
    Lines lines;
    std::string_view rest(text.constData(), size_t(text.size()));
    while (!rest.empty()) {
        const size_t end = std::min(rest.find('\n'), rest.size() - 1);
        lines.push_back(rest.substr(0, end + 1));
        rest.remove_prefix(end + 1);
    }
    return lines;
}

/// A part of both texts.
struct Part {
    int beforeBegin;
    int beforeEnd;
    int afterBegin;
    int afterEnd;
};

/// Searches the shortest list of removed and added lines that makes one part of a text from the other.
///
/// `reach[d][k]` is the last line before which the parts are paired with d edits, if k more lines are removed than
/// added; each row follows from the one before it.
class EditSearch
{
public:
    EditSearch(const Lines &linesBefore, const Lines &linesAfter, const Part &searchedPart)
        : before(linesBefore)
        , after(linesAfter)
        , part(searchedPart)
        , count(part.beforeEnd - part.beforeBegin)
        , countAfter(part.afterEnd - part.afterBegin)
    {
    }

    /// Sets the pairs of the part. Returns false if it takes too many edits.
    bool pair(std::vector<int> &pairOf)
    {
        const int longest = std::min(count + countAfter, maxEdits);
        for (int edits = 0; edits <= longest; ++edits) {
            reach.emplace_back(size_t(2 * edits + 1));
            for (int diagonal = -edits; diagonal <= edits; diagonal += 2) {
                const int line = followed(start(edits, diagonal), diagonal);
                at(edits, diagonal) = line;
                if (line >= count && line - diagonal >= countAfter) {
                    collect(edits, diagonal, pairOf);
                    return true;
                }
            }
        }
        return false;
    }

private:
    int &at(int edits, int diagonal)
    {
        const int index = diagonal + edits;
        return reach[size_t(edits)][size_t(index)];
    }

    bool isByAdding(int edits, int diagonal)
    {
        return diagonal == -edits || (diagonal != edits && at(edits - 1, diagonal - 1) < at(edits - 1, diagonal + 1));
    }
    // The line that is reached by one more edit, before equal lines are followed.
    int start(int edits, int diagonal)
    {
        if (edits == 0)
            return 0;
        return isByAdding(edits, diagonal) ? at(edits - 1, diagonal + 1) : at(edits - 1, diagonal - 1) + 1;
    }
    int followed(int line, int diagonal) const
    {
        int index = part.beforeBegin + line;
        int indexAfter = part.afterBegin + line - diagonal;
        while (index < part.beforeEnd && indexAfter < part.afterEnd
               && before[size_t(index)] == after[size_t(indexAfter)]) {
            ++index;
            ++indexAfter;
        }
        return index - part.beforeBegin;
    }
    void collect(int edits, int diagonal, std::vector<int> &pairOf)
    {
        for (; edits >= 0; --edits) {
            const int first = start(edits, diagonal);
            for (int line = at(edits, diagonal) - 1; line >= first; --line) {
                const int index = part.beforeBegin + line;
                pairOf[size_t(index)] = part.afterBegin + line - diagonal;
            }
            if (edits > 0)
                diagonal += isByAdding(edits, diagonal) ? 1 : -1;
        }
    }

    const Lines &before;
    const Lines &after;
    const Part part;
    const int count;
    const int countAfter;
    std::vector<std::vector<int>> reach;
};

/// Finds the lines that both texts have, in the same order.
class LinePairs
{
public:
    LinePairs(const Lines &linesBefore, const Lines &linesAfter)
        : before(linesBefore)
        , after(linesAfter)
        , pairOf(linesBefore.size(), -1)
        , budget(maxPasses * (before.size() + after.size() + 1))
    {
        pair({ 0, int(before.size()), 0, int(after.size()) });
    }

    /// For each line of the first text the index of its pair in the second one; -1 for none.
    const std::vector<int> &pairs() const { return pairOf; }

private:
    // Parts are kept in a list: a recursion could be as deep as the text is long.
    void pair(const Part &whole)
    {
        std::vector<Part> parts = { whole };
        while (!parts.empty()) {
            Part part = parts.back();
            parts.pop_back();
            pairEnds(part);
            if (EditSearch(before, after, part).pair(pairOf))
                continue;
            const std::vector<std::pair<int, int>> anchors = anchorsOf(part);
            Part next = part;
            for (const auto &[first, second] : anchors) {
                pairOf[size_t(first)] = second;
                parts.push_back({ next.beforeBegin, first, next.afterBegin, second });
                next.beforeBegin = first + 1;
                next.afterBegin = second + 1;
            }
            if (!anchors.empty())
                parts.push_back(next);
        }
    }

    void pairEnds(Part &part)
    {
        const auto areLeft = [&] { return part.beforeBegin < part.beforeEnd && part.afterBegin < part.afterEnd; };
        while (areLeft() && before[size_t(part.beforeBegin)] == after[size_t(part.afterBegin)])
            pairOf[size_t(part.beforeBegin++)] = part.afterBegin++;
        while (areLeft() && before[size_t(part.beforeEnd) - 1] == after[size_t(part.afterEnd) - 1])
            pairOf[size_t(--part.beforeEnd)] = --part.afterEnd;
    }

    /// A line that occurs in a part, how often in each text, and where last.
    struct Occurrence {
        int timesBefore = 0;
        int timesAfter = 0;
        int before = 0;
        int after = 0;
    };

    static QByteArray keyOf(std::string_view line) { return QByteArray::fromRawData(line.data(), int(line.size())); }

    // The lines that occur once in both texts: of these the longest list with the same order in both.
    std::vector<std::pair<int, int>> anchorsOf(const Part &part)
    {
        const size_t count = size_t(part.beforeEnd - part.beforeBegin) + size_t(part.afterEnd - part.afterBegin);
        if (part.beforeBegin == part.beforeEnd || part.afterBegin == part.afterEnd || count > budget)
            return {};
        budget -= count;
        KeyedMap<QByteArray, Occurrence> occurrences;
        for (int index = part.beforeBegin; index < part.beforeEnd; ++index) {
            Occurrence &occurrence = occurrences[keyOf(before[size_t(index)])];
            ++occurrence.timesBefore;
            occurrence.before = index;
        }
        for (int index = part.afterBegin; index < part.afterEnd; ++index) {
            Occurrence &occurrence = occurrences[keyOf(after[size_t(index)])];
            ++occurrence.timesAfter;
            occurrence.after = index;
        }
        std::vector<std::pair<int, int>> once;
        for (int index = part.beforeBegin; index < part.beforeEnd; ++index) {
            const Occurrence &occurrence = occurrences.at(keyOf(before[size_t(index)]));
            if (occurrence.timesBefore == 1 && occurrence.timesAfter == 1)
                once.emplace_back(index, occurrence.after);
        }
        return longestRising(once);
    }

    // The longest list whose second members rise, by the ends of the lists of each length.
    static std::vector<std::pair<int, int>> longestRising(const std::vector<std::pair<int, int>> &pairs)
    {
        std::vector<size_t> ends;
        std::vector<size_t> previous(pairs.size());
        for (size_t index = 0; index < pairs.size(); ++index) {
            const auto place = std::lower_bound(ends.begin(), ends.end(), pairs[index].second,
                                                [&](size_t end, int second) { return pairs[end].second < second; });
            previous[index] = place != ends.begin() ? *(place - 1) : index;
            if (place == ends.end())
                ends.push_back(index);
            else
                *place = index;
        }
        std::vector<std::pair<int, int>> rising(ends.size());
        size_t index = ends.empty() ? 0 : ends.back();
        for (size_t place = ends.size(); place > 0; --place) {
            rising[place - 1] = pairs[index];
            index = previous[index];
        }
        return rising;
    }

    const Lines &before;
    const Lines &after;
    std::vector<int> pairOf;
    size_t budget; ///< lines that may still be looked at
};

/// Lines of both texts between two lines that they have in common.
using Changes = std::vector<Part>;

Changes changesOf(const std::vector<int> &pairs, int countAfter)
{
    Changes changes;
    int begin = 0;
    int beginAfter = 0;
    for (int index = 0; index <= int(pairs.size()); ++index) {
        const bool isEnd = index == int(pairs.size());
        const int pair = isEnd ? countAfter : pairs[size_t(index)];
        if (!isEnd && pair < 0)
            continue;
        if (begin < index || beginAfter < pair)
            changes.push_back({ begin, index, beginAfter, pair });
        begin = index + 1;
        beginAfter = pair + 1;
    }
    return changes;
}

/// Prints changes as hunks with context.
class HunkPrinter
{
public:
    HunkPrinter(const Lines &linesBefore, const Lines &linesAfter, bool isTerminal, QIODevice &device)
        : before(linesBefore)
        , after(linesAfter)
        , isForTerminal(isTerminal)
        , out(device)
    {
    }

    void print(const Changes &changes)
    {
        for (size_t first = 0; first < changes.size();) {
            size_t end = first + 1;
            while (end < changes.size() && changes[end].beforeBegin - changes[end - 1].beforeEnd <= 2 * context)
                ++end;
            printHunk(changes, first, end);
            first = end;
        }
    }

private:
    void printHunk(const Changes &changes, size_t first, size_t end)
    {
        const int leading = std::min(context, changes[first].beforeBegin);
        const int trailing = std::min(context, int(before.size()) - changes[end - 1].beforeEnd);
        const int begin = changes[first].beforeBegin - leading;
        printHead(begin, changes[end - 1].beforeEnd + trailing, changes[first].afterBegin - leading,
                  changes[end - 1].afterEnd + trailing);
        int next = begin;
        for (size_t index = first; index < end; ++index) {
            printLines(' ', before, next, changes[index].beforeBegin);
            printLines('-', before, changes[index].beforeBegin, changes[index].beforeEnd);
            printLines('+', after, changes[index].afterBegin, changes[index].afterEnd);
            next = changes[index].beforeEnd;
        }
        printLines(' ', before, next, next + trailing);
    }

    // An empty range is after its line, which is 0 at the beginning.
    static QByteArray rangeOf(int begin, int end)
    {
        const int count = end - begin;
        const QByteArray start = QByteArray::number(count > 0 ? begin + 1 : begin);
        return count == 1 ? start : start + ',' + QByteArray::number(count);
    }
    void printHead(int begin, int end, int beginAfter, int endAfter)
    {
        out.write("@@ -" + rangeOf(begin, end) + " +" + rangeOf(beginAfter, endAfter) + " @@\n");
    }

    static QByteArray shown(std::string_view line)
    {
        QByteArray text(line.data(), int(line.size()));
        const bool hasEnd = text.endsWith('\n');
        text.chop(text.endsWith("\r\n") ? 2 : hasEnd ? 1 : 0);
        return printable(QString::fromUtf8(text)).toUtf8() + (hasEnd ? "\n" : "");
    }

    void printLines(char mark, const Lines &lines, int begin, int end)
    {
        for (int index = begin; index < end; ++index) {
            const std::string_view line = lines[size_t(index)];
            out.putChar(mark);
            if (isForTerminal)
                out.write(shown(line));
            else
                out.write(line.data(), qint64(line.size()));
            if (line.back() != '\n')
                out.write("\n\\ No newline at end of file\n");
        }
    }

    const Lines &before;
    const Lines &after;
    bool isForTerminal;
    QIODevice &out;
};

} // namespace

void printLineDiff(const QByteArray &before, const QByteArray &after, const QString &nameBefore,
                   const QString &nameAfter, bool isForTerminal, QIODevice &out)
{
    if (before == after)
        return;
    const Lines linesBefore = linesOf(before);
    const Lines linesAfter = linesOf(after);
    const LinePairs pairs(linesBefore, linesAfter);
    out.write("--- " + printable(nameBefore).toUtf8() + "\n+++ " + printable(nameAfter).toUtf8() + '\n');
    HunkPrinter(linesBefore, linesAfter, isForTerminal, out).print(changesOf(pairs.pairs(), int(linesAfter.size())));
}
