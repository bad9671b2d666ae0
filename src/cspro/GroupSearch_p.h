#ifndef CSPRO_GROUPSEARCH_P_H
#define CSPRO_GROUPSEARCH_P_H

#include <QString>
#include <QStringList>

#include <vector>

namespace cspro
{

/// Tells for each text of a list which text is the first to contain it, case-sensitively. Prepared in one pass over the
/// list, so that asking for all of a long list costs no more than reading it. (The method is that of Aho and Corasick.)
class GroupSearch
{
public:
    explicit GroupSearch(const QStringList &list);

    const QStringList &list() const { return texts; }
    /// The first text that contains \a text, which may be any text; null if none does.
    QString firstWith(const QString &text) const;

private:
    // The texts as paths from a root, which is node 0; a node stands for the characters on the way to it.
    struct Node {
        int parent = 0;
        int depth = 0;
        int firstChild = 0; // the others follow it, in the order of their characters
        int children = 0;
        ushort unit = 0;     // the last character on the way
        int suffix = 0;      // of the longest proper end of these characters that is a node
        int wholeSuffix = 0; // of the longest end that is a whole text, this node included; 0 if there is none
        int firstText = -1;  // at the end of a text: the index of the first text that contains it
        bool isWhole = false;
    };

    int child(int node, QChar unit) const;
    int longestEnd(int node, QChar unit) const;
    int nodeOf(const QString &text) const;
    void addTexts();
    void linkSuffixes();
    void findTexts();

    QStringList texts;
    std::vector<Node> nodes; // the shorter ones first
};

} // namespace cspro

#endif
