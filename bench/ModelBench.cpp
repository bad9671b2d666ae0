// The cost of the records: a search in a hierarchy, and copies.

#ifdef __GNUC__
// The static type of a deleted entity is always its dynamic one.
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor"
#endif

#include "model/Entity.h"
#include "model/Selection.h"
#include "model/Variable.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace
{

/// A hierarchy of entities with ten children each.
class Hierarchy
{
public:
    explicit Hierarchy(int count)
        : entities(static_cast<size_t>(count))
    {
        constexpr size_t children = 10;
        for (size_t i = 0; i < entities.size(); ++i) {
            entities[i].setName(QStringLiteral("entity%1").arg(i));
            if (i > 0)
                entities[(i - 1) / children].addChildren(&entities[i]);
        }
    }
    TVpEntity &root() { return entities.front(); }

private:
    std::vector<TVpEntity> entities;
};

// A search makes one entity for each entity that it visits and frees none, so there are only a few rounds.
void failedSearch(benchmark::State &state)
{
    Hierarchy hierarchy(int(state.range(0)));
    for (auto round : state)
        benchmark::DoNotOptimize(hierarchy.root().findEntity(QStringLiteral("absent")));
    state.SetComplexityN(state.range(0));
    state.counters["time/entity"] = benchmark::Counter(
        double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// A variable with typical texts.
TVpVariable usualVariable()
{
    TVpVariable variable;
    variable.setEntity(QStringLiteral("Person"));
    variable.setPath(QStringLiteral("Household/Person"));
    variable.setName(QStringLiteral("P04_AGE"));
    variable.setLabel(QStringLiteral("Age in years"));
    variable.setField(QStringLiteral("P04_AGE"));
    variable.setVarType(QStringLiteral("INTEGER"));
    return variable;
}

StructVariableItem usualItem()
{
    StructVariableItem item;
    item.setData(usualVariable());
    return item;
}

template <typename Record> void copies(benchmark::State &state, const Record &record)
{
    constexpr int count = 1000000;
    for (auto round : state) {
        for (int i = 0; i < count; ++i) {
            Record copy(record);
            benchmark::DoNotOptimize(&copy);
        }
    }
    state.SetItemsProcessed(state.iterations() * count);
}

} // namespace

BENCHMARK(failedSearch)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Iterations(10)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(copies, TVpVariable, usualVariable())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(copies, StructVariableItem, usualItem())->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
