#include "cspro/GroupSearch_p.h"

#include <algorithm>

namespace cspro
{

GroupSearch::GroupSearch(const QStringList &list)
    : texts(list)
    , nodes(1)
{
    addTexts();
    linkSuffixes();
    findTexts();
}

QString GroupSearch::firstWith(const QString &text) const
{
    const int node = nodeOf(text);
    if (node > 0 && nodes[size_t(node)].isWhole)
        return texts.at(nodes[size_t(node)].firstText);
    const auto found
        = std::find_if(texts.cbegin(), texts.cend(), [&](const QString &entry) { return entry.contains(text); });
    return found != texts.cend() ? *found : QString();
}

// Level by level: each node has a span of the sorted texts, those that begin with its characters.
void GroupSearch::addTexts()
{
    QStringList sorted = texts;
    std::sort(sorted.begin(), sorted.end());
    struct Span {
        int begin;
        int end;
    };
    std::vector<Span> spans = { { 0, sorted.size() } };
    for (size_t index = 0; index < nodes.size(); ++index) {
        auto [text, end] = spans[index];
        Node node = nodes[index];
        node.firstChild = int(nodes.size());
        for (; text < end && sorted.at(text).size() == node.depth; ++text)
            node.isWhole = index > 0;
        while (text < end) {
            const int begin = text;
            const QChar unit = sorted.at(begin).at(node.depth);
            while (text < end && sorted.at(text).at(node.depth) == unit)
                ++text;
            Node added;
            added.parent = int(index);
            added.depth = node.depth + 1;
            added.unit = unit.unicode();
            nodes.push_back(added);
            spans.push_back({ begin, text });
        }
        node.children = int(nodes.size()) - node.firstChild;
        nodes[index] = node;
    }
}

// 0 if there is none.
int GroupSearch::child(int node, QChar unit) const
{
    const auto first = nodes.cbegin() + nodes[size_t(node)].firstChild;
    const auto end = first + nodes[size_t(node)].children;
    const auto found = std::lower_bound(first, end, unit.unicode(),
                                        [](const Node &entry, ushort wanted) { return entry.unit < wanted; });
    return found != end && found->unit == unit.unicode() ? int(found - nodes.cbegin()) : 0;
}

int GroupSearch::nodeOf(const QString &text) const
{
    int node = 0;
    for (const QChar unit : text) {
        node = child(node, unit);
        if (node == 0)
            return 0;
    }
    return node;
}

// The node of the longest end of the node's characters and one more.
int GroupSearch::longestEnd(int node, QChar unit) const
{
    for (;;) {
        const int next = child(node, unit);
        if (next != 0 || node == 0)
            return next;
        node = nodes[size_t(node)].suffix;
    }
}

// Short nodes first: the suffix of a node is shorter than the node.
void GroupSearch::linkSuffixes()
{
    for (size_t index = 0; index < nodes.size(); ++index) {
        Node &node = nodes[index];
        if (node.depth > 1)
            node.suffix = longestEnd(nodes[size_t(node.parent)].suffix, QChar(node.unit));
        node.wholeSuffix = node.isWhole ? int(index) : nodes[size_t(node.suffix)].wholeSuffix;
    }
}

// Walks all texts in order. A text that was found before needs no second look, nor do its own ends.
void GroupSearch::findTexts()
{
    for (int index = 0; index < texts.size(); ++index) {
        int node = 0;
        for (const QChar unit : texts.at(index)) {
            node = longestEnd(node, unit);
            int whole = nodes[size_t(node)].wholeSuffix;
            while (whole > 0 && nodes[size_t(whole)].firstText < 0) {
                nodes[size_t(whole)].firstText = index;
                whole = nodes[size_t(nodes[size_t(whole)].suffix)].wholeSuffix;
            }
        }
    }
}

} // namespace cspro
