#include "model/Config.h"
#include "model/Entity.h"
#include "model/Metadata.h"
#include "model/Selection.h"
#include "model/Variable.h"

#include <QVector>
#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <optional>
#include <utility>

namespace
{

using Places = QVector<const void *>;

struct Allocation {
    const void *place;
    std::size_t size;
};

/// The blocks that new allocated and delete freed, in order.
struct AllocationLog {
    Places ofSize(std::size_t size) const
    {
        Places found;
        for (const Allocation &allocation : made) {
            if (allocation.size == size)
                found.append(allocation.place);
        }
        return found;
    }
    Places among(const Places &wanted) const
    {
        Places found;
        for (const Allocation &allocation : made) {
            if (wanted.contains(allocation.place))
                found.append(allocation.place);
        }
        return found;
    }

    QVector<Allocation> made;
    Places freed;
};

thread_local AllocationLog *currentLog = nullptr;

template <typename Action> AllocationLog logOf(Action action)
{
    AllocationLog log;
    currentLog = &log;
    action();
    currentLog = nullptr;
    return log;
}

// The log does not record its own allocations.
template <typename Note> void noteInLog(Note note)
{
    AllocationLog *const log = std::exchange(currentLog, nullptr);
    if (log)
        note(*log);
    currentLog = log;
}

void *allocate(std::size_t size)
{
    void *place = std::malloc(std::max<std::size_t>(size, 1));
    noteInLog([&](AllocationLog &log) { log.made.append({ place, size }); });
    return place;
}

void release(void *place)
{
    if (place)
        noteInLog([&](AllocationLog &log) { log.freed.append(place); });
    std::free(place);
}

} // namespace

// Every object of the program, the library's included, is allocated here. New and delete are replaced together because
// the sanitizers require the two to match.
void *operator new(std::size_t size)
{
    if (void *place = allocate(size))
        return place;
    throw std::bad_alloc();
}
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return allocate(size);
}
void operator delete(void *place) noexcept
{
    release(place);
}
void operator delete(void *place, std::size_t /*size*/) noexcept
{
    release(place);
}

/// Tests which objects the records make on the heap, in which order, and that they free none of them.
class AllocationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The search goes through root, a, c below a, and b.
    void searchMakesAnEntityForEachThatItLooksAtAndFreesNone_data()
    {
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<int>("madeCount");
        QTest::newRow("the entity itself") << "root" << 1;
        QTest::newRow("its first child") << "a" << 2;
        QTest::newRow("the child of that") << "c" << 3;
        QTest::newRow("its second child") << "b" << 4;
        QTest::newRow("unknown") << "unknown" << 4;
        QTest::newRow("found in the one made for the first leaf") << "nullEntity" << 3;
    }
    void searchMakesAnEntityForEachThatItLooksAtAndFreesNone()
    {
        QFETCH(QString, wanted);
        Tree tree;
        const AllocationLog log = logOf([&] { tree.root.findEntity(wanted); });
        const Places made = log.ofSize(sizeof(TVpEntity));
        QTEST(int(made.size()), "madeCount");
        for (const void *place : made) {
            QVERIFY(!log.freed.contains(place));
            QCOMPARE(static_cast<const TVpEntity *>(place)->getName(), QString("nullEntity"));
        }
    }

    void configMakesItsOptionsThenItsDatabaseThenItsList()
    {
        std::optional<Config> config;
        const AllocationLog log = logOf([&] { config.emplace(); });
        const Places wanted = { config->getOptions(), config->getDataBase(), config->getEntities() };
        QCOMPARE(log.among(wanted), wanted);
        QCOMPARE(log.made.size(), 3);
    }

    void splitSettingsMakeThreeEntitiesAndTheSelectedOneFirst()
    {
        std::optional<ConfigToolsSplit> split;
        const AllocationLog log = logOf([&] { split.emplace(); });
        const Places entities = log.ofSize(sizeof(TVpEntity));
        QCOMPARE(entities.size(), 3);
        QVERIFY(entities.first() == split->getEntitySelect());
        QVERIFY(entities.contains(split->getEntitySampling()));
        QVERIFY(entities.contains(split->getEntityRestartSampling()));
    }

    void dictionaryMakesItsRootThenItsMetadataFromTheOutsideInAndTheListLast()
    {
        std::optional<Dictionary> dictionary;
        const AllocationLog log = logOf([&] { dictionary.emplace(); });
        const MetadataDictionary *metadata = dictionary->getMetadataDictionary();
        const Datasource *source = metadata->getDatasource();
        const Places wanted
            = { dictionary->getRoot(), metadata, source, source->getMetadataDataSource(), metadata->getLookUp() };
        QCOMPARE(log.among(wanted), wanted);
        QCOMPARE(log.made.size(), wanted.size() + 2); // the lists of the root
    }

    void constructorsMakeWhatDestructorsLeaveAlive()
    {
        verifyAllStaysAlive<TVpEntity>(2);
        verifyAllStaysAlive<TVpVariable>(4);
        verifyAllStaysAlive<Config>(3);
        verifyAllStaysAlive<ConfigEntities>(1);
        verifyAllStaysAlive<ConfigToolsSplit>(9);
        verifyAllStaysAlive<Dictionary>(7);
        verifyAllStaysAlive<MetadataDictionary>(3);
        verifyAllStaysAlive<Datasource>(1);
        verifyAllStaysAlive<MetadataVariables>(1);
        verifyAllStaysAlive<SelectionTreeUnit>(1);
        verifyAllStaysAlive<StructVariableItem>(5);
    }

    void areasOfAnEntityOutliveIt()
    {
        QList<QList<QPair<QString, QString>> *> areas;
        const AllocationLog log = logOf([&] {
            TVpEntity entity;
            entity.setChildAreas(&areas);
        });
        QVERIFY(log.freed.isEmpty());
    }

private:
    struct Tree {
        Tree()
        {
            root.setName("root");
            a.setName("a");
            b.setName("b");
            c.setName("c");
            root.addChildren(&a);
            root.addChildren(&b);
            a.addChildren(&c);
        }

        TVpEntity root;
        TVpEntity a;
        TVpEntity b;
        TVpEntity c;
    };

    template <typename Record> static void verifyAllStaysAlive(int madeCount)
    {
        const AllocationLog log = logOf([] { const Record record; });
        QCOMPARE(log.made.size(), madeCount);
        QCOMPARE(log.freed, Places());
    }
};

QTEST_APPLESS_MAIN(AllocationsTest)
#include "AllocationsTest.moc"
