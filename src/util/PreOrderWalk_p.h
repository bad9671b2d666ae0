#ifndef UTIL_PREORDERWALK_P_H
#define UTIL_PREORDERWALK_P_H

#include <utility>
#include <vector>

/// A walk through a tree in pre-order: a node, then everything below it, then the node after it.
///
/// The nodes from the start to the current one are in a list and not on the call stack, so a tree of any depth is safe.
///
/// \a Tree has a type `Node`, which converts to false if there is no node, and two operations that return a node:
/// `firstBelow(node)` is called at most once for each node, when the walk has arrived there; `after(node)`, its next
/// sibling, is called once, when everything below the node has been visited.
template <typename Tree> class PreOrderWalk
{
public:
    using Node = typename Tree::Node;

    /// Starts at \a start. The walk is over at once if \a start is no node.
    PreOrderWalk(Tree &walkedTree, Node start)
        : tree(walkedTree)
    {
        enter(std::move(start));
    }

    bool isOver() const { return path.empty(); }
    /// The current node. The walk must not be over.
    const Node &node() const { return path.back(); }

    /// Goes to the first node below the current one. Returns false, and stays, if there is none.
    bool goBelow() { return enter(tree.firstBelow(path.back())); }

    /// Goes to the first node after everything below the current one. Returns false, and the walk is over, if there is
    /// none.
    bool goOn()
    {
        while (!path.empty()) {
            Node next = tree.after(path.back());
            path.pop_back();
            if (enter(std::move(next)))
                return true;
        }
        return false;
    }

    /// Goes to the next node. Returns false, and the walk is over, if there is none.
    bool advance() { return goBelow() || goOn(); }

private:
    bool enter(Node node)
    {
        if (!node)
            return false;
        path.push_back(std::move(node));
        return true;
    }

    Tree &tree;
    std::vector<Node> path;
};

#endif
