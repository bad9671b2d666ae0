#include "util/PreOrderWalk_p.h"

#include <QtTest>

namespace
{

constexpr int branching = 3;
constexpr int levels = 3;

/// The paths, such as "102", of a tree in which every node above the last level has three children, and the calls of
/// the walk.
struct Paths {
    struct Node {
        QString path;
        explicit operator bool() const { return !path.isEmpty(); }
    };

    Node firstBelow(const Node &node)
    {
        asked.append(node.path + QLatin1String(" below"));
        return node.path.size() < levels ? Node{ node.path + QLatin1Char('0') } : Node();
    }
    Node after(const Node &node)
    {
        asked.append(node.path + QLatin1String(" after"));
        const int number = node.path.right(1).toInt() + 1;
        return number < branching ? Node{ node.path.chopped(1) + QString::number(number) } : Node();
    }

    QStringList asked;
};

void addPathsBelow(const QString &path, QStringList &paths)
{
    if (path.size() == levels)
        return;
    for (int i = 0; i < branching; ++i) {
        const QString below = path + QString::number(i);
        paths.append(below);
        addPathsBelow(below, paths);
    }
}

/// A chain of numbers. Each number is the child of the one before it; 0 is no node.
struct Chain {
    using Node = int;

    Node firstBelow(Node node) const { return node < length ? node + 1 : 0; }
    static Node after(Node /*node*/) { return 0; }

    int length;
};

QStringList visitedFrom(const QString &path)
{
    Paths paths;
    QStringList visited;
    for (PreOrderWalk walk(paths, { path }); !walk.isOver(); walk.advance())
        visited.append(walk.node().path);
    return visited;
}

} // namespace

/// Tests the walk through a tree that keeps its path in a list.
class PreOrderWalkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nodesComeBeforeWhatIsBelowThemAndInOrder()
    {
        QStringList expected;
        addPathsBelow(QString(), expected);
        QCOMPARE(expected.size(), 3 + 9 + 27);
        QCOMPARE(visitedFrom("0"), expected);
    }

    void walkCoversTheLaterSiblingsOfItsStart() { QCOMPARE(visitedFrom("121"), QStringList({ "121", "122" })); }

    void walkFromNoNodeIsOver() { QCOMPARE(visitedFrom(QString()), QStringList()); }

    void nodeIsAskedForItsNextSiblingOnceAfterEverythingBelowIt()
    {
        Paths paths;
        PreOrderWalk walk(paths, { "11" });
        while (walk.advance()) { }
        QCOMPARE(paths.asked,
                 QStringList({ "11 below", "110 below", "110 after", "111 below", "111 after", "112 below", "112 after",
                               "11 after", "12 below", "120 below", "120 after", "121 below", "121 after", "122 below",
                               "122 after", "12 after" }));
    }

    void goBelowStaysWhereNothingIsBelow()
    {
        Paths paths;
        PreOrderWalk walk(paths, { "01" });
        QVERIFY(walk.goBelow());
        QCOMPARE(walk.node().path, QString("010"));
        QVERIFY(!walk.goBelow());
        QCOMPARE(walk.node().path, QString("010"));
    }

    void goOnPassesOverWhatIsBelow()
    {
        Paths paths;
        PreOrderWalk walk(paths, { "0" });
        QVERIFY(walk.goBelow());
        QVERIFY(walk.goOn());
        QCOMPARE(walk.node().path, QString("01"));
        QVERIFY(walk.goOn());
        QVERIFY(walk.goOn()); // "02" is the last node below "0"
        QCOMPARE(walk.node().path, QString("1"));
        QVERIFY(walk.goOn());
        QVERIFY(!walk.goOn());
        QVERIFY(walk.isOver());
    }

    void manyLevelsNeedNoStack()
    {
        Chain chain{ 1000000 };
        int visited = 0;
        for (PreOrderWalk walk(chain, 1); !walk.isOver(); walk.advance())
            visited += walk.node() == visited + 1 ? 1 : 0;
        QCOMPARE(visited, chain.length);
    }
};

QTEST_APPLESS_MAIN(PreOrderWalkTest)
#include "PreOrderWalkTest.moc"
