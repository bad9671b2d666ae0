#include "cspro/GroupSearch_p.h"

#include <algorithm>
#include <numeric>

namespace cspro
{

GroupSearch::GroupSearch(const QStringList &list)
    : texts(list)
    , nodes(1)
{
    for (const QString &text : qAsConst(texts))
        addText(text);
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

void GroupSearch::addText(const QString &text)
{
    int node = 0;
    for (const QChar unit : text) {
        int &next = children[edge(node, unit)];
        if (next == 0) {
            next = int(nodes.size());
            Node added;
            added.parent = node;
            added.depth = nodes[size_t(node)].depth + 1;
            added.unit = unit.unicode();
            nodes.push_back(added);
        }
        node = next;
    }
    nodes[size_t(node)].isWhole = node > 0;
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
    std::vector<int> order(nodes.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [this](int a, int b) { return nodes[size_t(a)].depth < nodes[size_t(b)].depth; });
    for (const int index : order) {
        Node &node = nodes[size_t(index)];
        if (node.depth > 1)
            node.suffix = longestEnd(nodes[size_t(node.parent)].suffix, QChar(node.unit));
        node.wholeSuffix = node.isWhole ? index : nodes[size_t(node.suffix)].wholeSuffix;
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
