#ifdef __GNUC__
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor" // entities are deleted through a pointer to their own class
#endif

#include "import/Model_VanAdmin.h"
#include "model/Config.h"
#include "model/Entity.h"
#include "model/Metadata.h"
#include "model/Selection.h"
#include "model/Variable.h"
#include "support/Sanitizer.h"

#include <QDir>
#include <QSet>
#include <QtTest>

#include <cstring>
#include <memory>
#include <random>
#include <type_traits>
#include <vector>

struct TestAccess {
    template <typename Record> static bool &flag(Record &record) { return record.flag1; }
};

namespace
{

TVpEntity *newEntity(const QString &name, TVpEntity *parent = nullptr)
{
    auto *entity = new TVpEntity;
    entity->setName(name);
    if (parent)
        parent->addChildren(entity);
    return entity;
}

/// Result of a search. `found` is null if the returned entity was made for the search.
struct Search {
    const TVpEntity *found;
    bool isSuccess; ///< the result has the name that was wanted
};

// Recursive form of the search.
Search recursiveSearch(const TVpEntity &entity, const QString &wanted)
{
    if (entity.getName() == wanted)
        return { &entity, true };
    for (const TVpEntity *child : qAsConst(*entity.getChildren())) {
        if (!child)
            continue;
        const Search below = recursiveSearch(*child, wanted);
        if (below.isSuccess)
            return below;
    }
    return { nullptr, wanted == QLatin1String("nullEntity") };
}

} // namespace

/// Tests the rules of the records that the table of accessors does not cover: copies, moves and constructors.
class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchFindsTheEntityItself()
    {
        TVpEntity entity;
        entity.setName("Household");
        QVERIFY(entity.findEntity("Household") == &entity);
    }

    void searchGoesParentsFirstAndInOrder()
    {
        TVpEntity root;
        root.setName("root");
        TVpEntity *first = newEntity("first", &root);
        TVpEntity *deep = newEntity("twice", first);
        TVpEntity *second = newEntity("twice", &root);
        TVpEntity *last = newEntity("last", second);
        QVERIFY(root.findEntity("twice") == deep);
        QVERIFY(root.findEntity("last") == last);
        QVERIFY(root.findEntity("first") == first);
        QVERIFY(second->findEntity("twice") == second);
        QVERIFY(root.findEntity("First") != first); // case-sensitive
    }

    void failedSearchGivesANewEntity()
    {
        TVpEntity leaf;
        leaf.setName("leaf");
        TVpEntity *found = leaf.findEntity("absent");
        QCOMPARE(found->getName(), QString("nullEntity"));
        QCOMPARE(found->getLabel(), QString());
        QVERIFY(found->getChildren()->isEmpty());
        QVERIFY(found->getVariables()->isEmpty());
        QVERIFY(leaf.findEntity("absent") != found);
    }

    void searchForTheNameOfAFailureSucceeds()
    {
        TVpEntity root;
        root.setName("root");
        TVpEntity *child = newEntity("child", &root);
        TVpEntity *found = root.findEntity("nullEntity");
        QCOMPARE(found->getName(), QString("nullEntity"));
        QVERIFY(found != child && found != &root);
        newEntity("nullEntity", child);
        QVERIFY(root.findEntity("nullEntity") == child->getChildren()->first());
        // The search below the first child ends before the second child is visited.
        TVpEntity other;
        newEntity("a", &other);
        TVpEntity *named = newEntity("nullEntity", &other);
        QVERIFY(other.findEntity("nullEntity") != named);
    }

    void nullAndMissingChildrenArePassedOver()
    {
        TVpEntity root;
        root.setName("root");
        root.addChildren(nullptr);
        TVpEntity *child = newEntity("child", &root);
        child->setChildren(nullptr);
        root.addChildren(nullptr);
        QVERIFY(root.findEntity("child") == child);
        QCOMPARE(root.findEntity("absent")->getName(), QString("nullEntity"));
        QCOMPARE(root.findEntity("nullEntity")->getName(), QString("nullEntity"));
    }

    void entityThatIsItsOwnAncestorIsNotEnteredAgain()
    {
        TVpEntity root;
        root.setName("root");
        TVpEntity *child = newEntity("child", &root);
        child->addChildren(&root);
        child->addChildren(child);
        TVpEntity *last = newEntity("last", child);
        QVERIFY(root.findEntity("last") == last);
        QCOMPARE(root.findEntity("absent")->getName(), QString("nullEntity"));
    }

    void deepHierarchyIsSearched()
    {
        constexpr int levels = sanitizesMemory ? 200000 : 1000000;
        std::vector<TVpEntity> chain(levels);
        for (int i = 0; i + 1 < levels; ++i)
            chain[size_t(i)].addChildren(&chain[size_t(i) + 1]);
        chain.back().setName("last");
        QVERIFY(chain.front().findEntity("last") == &chain.back());
    }

    void searchFollowsItsRecursiveRules()
    {
        std::mt19937 random(1); // NOLINT: the same hierarchies every time are wanted
        const auto drawn = [&random](int limit) { return int(random() % unsigned(limit)); };
        const QStringList names = { "a", "b", "c", "d", "nullEntity" };
        for (int round = 0; round < 300; ++round) {
            std::vector<TVpEntity> entities(size_t(1 + drawn(8)));
            for (size_t i = 0; i < entities.size(); ++i) {
                entities[i].setName(names.at(drawn(names.size())));
                TVpEntity &parent = entities[i > 0 ? size_t(drawn(int(i))) : 0];
                parent.addChildren(i > 0 ? &entities[i] : nullptr);
            }
            for (const QString &name : names) {
                const Search expected = recursiveSearch(entities.front(), name);
                const TVpEntity *found = entities.front().findEntity(name);
                const bool isNew = found < entities.data() || found >= entities.data() + entities.size();
                QCOMPARE(isNew ? nullptr : found, expected.found);
                QCOMPARE(found->getName(), expected.isSuccess ? name : QString("nullEntity"));
            }
        }
    }

    void toStringIsTheName()
    {
        TVpEntity entity;
        entity.setName(QString::fromUtf8("M\xC3\xA9nage"));
        QCOMPARE(entity.toString(), std::string("M\xC3\xA9nage"));
    }

    void destructorOfAnEntityIsNotVirtual()
    {
        QVERIFY(std::is_polymorphic<TVpEntity>::value);
        QVERIFY(!std::has_virtual_destructor<TVpEntity>::value);
        QVERIFY(std::is_empty<Model_VanAdmin>::value);
    }

    void onlyEntityHasVirtualOperations()
    {
        QVERIFY((noneIsPolymorphic<TVpVariable, Range, ValueLabelElement, VarWipChoice>));
        QVERIFY((noneIsPolymorphic<Config, ConfigDb, ConfigOptions, ConfigEntities>));
        QVERIFY((noneIsPolymorphic<ConfigToolsExtend, ConfigToolsSplit, ConfigWipxToJson>));
        QVERIFY((noneIsPolymorphic<Dictionary, MetadataDictionary, Datasource, MetadataDataSource>));
        QVERIFY((noneIsPolymorphic<MetadataVariables, LookupDictionary>));
        QVERIFY((noneIsPolymorphic<SelectionTreeUnit, StructVariableItem>));
    }

    void dictionariesHaveNoDestructorOfTheirOwn()
    {
        QVERIFY(std::is_trivially_destructible<Dictionary>::value);
        QVERIFY(std::is_trivially_destructible<MetadataDictionary>::value);
    }

    void rangeIsTwoNumbersThatAreCopiedBitByBit()
    {
        QVERIFY(std::is_trivially_copy_constructible<Range>::value);
        QVERIFY(std::is_trivially_copy_assignable<Range>::value);
        QVERIFY(std::is_trivially_destructible<Range>::value);
        QCOMPARE(sizeof(Range), 2 * sizeof(double));
        Range range;
        range.setRangeMin(1);
        range.setRangeMax(2);
        double numbers[2];
        std::memcpy(numbers, &range, sizeof(numbers));
        QCOMPARE(numbers[0], 1.0);
        QCOMPARE(numbers[1], 2.0);
    }

    void flagWithoutAccessorIsCopied()
    {
        TVpEntity entity;
        QVERIFY(!TestAccess::flag(entity));
        verifyFlagIsCopied<TVpEntity>();
        verifyFlagIsCopied<ConfigEntities>();
    }

    void copiesShareWhatTheyPointTo()
    {
        TVpEntity entity;
        entity.setName("name");
        shareLists(
            entity, [](TVpEntity &record) { record.addChildren(nullptr); },
            [](const TVpEntity &record) { return record.getChildren(); });
        shareLists(
            entity, [](TVpEntity &record) { record.addVariables(nullptr); },
            [](const TVpEntity &record) { return record.getVariables(); });

        TVpVariable variable;
        Range range;
        ValueLabelElement element;
        shareLists(
            variable, [&](TVpVariable &record) { record.addItemRange(&range); },
            [](const TVpVariable &record) { return record.getRange(); });
        shareLists(
            variable, [&](TVpVariable &record) { record.addValueLabelElement(&element); },
            [](const TVpVariable &record) { return record.getValueLabelElementList(); });
        QVERIFY(TVpVariable(variable).getMetadataVariables() == variable.getMetadataVariables());

        Config config;
        ConfigEntities entities;
        shareLists(
            config, [&](Config &record) { record.addEntities(&entities); },
            [](const Config &record) { return record.getEntities(); });
        shareLists(
            entities, [](ConfigEntities &record) { record.addVariables("v"); },
            [](const ConfigEntities &record) { return record.getVariables(); });
        const Config copy(config);
        copy.getDataBase()->setName("shared");
        QCOMPARE(config.getDataBase()->getName(), QString("shared"));
        QVERIFY(copy.getOptions() == config.getOptions());

        Dictionary dictionary;
        QVERIFY(Dictionary(dictionary).getRoot() == dictionary.getRoot());
        QVERIFY(Dictionary(dictionary).getMetadataDictionary() == dictionary.getMetadataDictionary());
        MetadataDictionary metadata;
        LookupDictionary lookup;
        shareLists(
            metadata, [&](MetadataDictionary &record) { record.addLookUp(&lookup); },
            [](const MetadataDictionary &record) { return record.getLookUp(); });
        QVERIFY(MetadataDictionary(metadata).getDatasource() == metadata.getDatasource());
        Datasource source;
        QVERIFY(Datasource(source).getMetadataDataSource() == source.getMetadataDataSource());
        MetadataVariables variables;
        shareLists(
            variables, [&](MetadataVariables &record) { record.addItemRange(&range); },
            [](const MetadataVariables &record) { return record.getRange(); });

        SelectionTreeUnit unit;
        shareLists(
            unit, [](SelectionTreeUnit &record) { record.addChildren(nullptr); },
            [](const SelectionTreeUnit &record) { return record.getChildren(); });
        StructVariableItem item;
        StructVariableItem *none = nullptr;
        shareLists(
            item, [&](StructVariableItem &record) { record.addChildren(none); },
            [](const StructVariableItem &record) { return record.getChildren(); });
    }

    void copiesHoldTextsOfTheirOwn()
    {
        TVpVariable variable;
        variable.setName("a");
        TVpVariable copy(variable);
        copy.setName("b");
        QCOMPARE(variable.getName(), QString("a"));
        variable = copy;
        QCOMPARE(variable.getName(), QString("b"));
        TVpVariable &same = variable;
        variable = same; // assigned to itself
        QCOMPARE(variable.getName(), QString("b"));
        MetadataDataSource source;
        QString field("f");
        source.addCsvFields(field);
        MetadataDataSource sourceCopy(source);
        sourceCopy.addCsvFields(field);
        QCOMPARE(source.getCsvFields(), QStringList("f"));
    }

    void copyHoldsWhatItsSourceHolds()
    {
        // clang-format off
        verifyCopies<ConfigDb>(&ConfigDb::setName, &ConfigDb::getName, "a");
        verifyCopies<ConfigOptions>(&ConfigOptions::setCreateNoRanges, &ConfigOptions::getCreateNoRanges, true);
        verifyCopies<ConfigToolsExtend>(&ConfigToolsExtend::setUrlPrimaryBd, &ConfigToolsExtend::getUrlPrimaryBd, "a");
        verifyCopies<ConfigToolsSplit>(&ConfigToolsSplit::setFileName, &ConfigToolsSplit::getFileName, "a");
        verifyCopies<ConfigWipxToJson>(&ConfigWipxToJson::setInputFile, &ConfigWipxToJson::getInputFile, "a");
        verifyCopies<Dictionary>(&Dictionary::setRoot, &Dictionary::getRoot, nullptr);
        verifyCopies<Datasource>(&Datasource::setType, &Datasource::getType, "a");
        verifyCopies<MetadataDataSource>(&MetadataDataSource::setCsvHasHeader, &MetadataDataSource::getCsvHasHeader, true);
        verifyCopies<LookupDictionary>(&LookupDictionary::setFile, &LookupDictionary::getFile, "a");
        verifyCopies<ValueLabelElement>(&ValueLabelElement::setLabel, &ValueLabelElement::getLabel, "a");
        // clang-format on
    }

    void moveTakesNothing()
    {
        TVpEntity entity;
        fillNames(entity);
        TestAccess::flag(entity) = true;
        TVpEntity movedEntity(std::move(entity));
        QCOMPARE(movedEntity.getName(), QString());
        QVERIFY(!movedEntity.getChildren() && !movedEntity.getVariables());
        QVERIFY(!TestAccess::flag(movedEntity));
        QCOMPARE(entity.getName(), QString("name")); // NOLINT(bugprone-use-after-move): it keeps all
        QVERIFY(entity.getChildren() != nullptr);

        TVpVariable variable;
        fillNames(variable);
        variable.setLevel(7);
        TVpVariable movedVariable(std::move(variable));
        QCOMPARE(movedVariable.getName(), QString());
        QCOMPARE(movedVariable.getLevel(), 1);
        QVERIFY(!movedVariable.getRange() && !movedVariable.getValueLabelElementList());
        QVERIFY(!movedVariable.getMetadataVariables());
        QCOMPARE(variable.getName(), QString("name")); // NOLINT(bugprone-use-after-move)

        Range range;
        range.setRangeMax(3);
        QCOMPARE(Range(std::move(range)).getRangeMax(), 0.0);
        QCOMPARE(range.getRangeMax(), 3.0); // NOLINT(bugprone-use-after-move)
        ValueLabelElement element;
        element.setValue("v");
        QCOMPARE(ValueLabelElement(std::move(element)).getValue(), QString());
        VarWipChoice choice;
        choice.setStart(3);
        QCOMPARE(VarWipChoice(std::move(choice)).getStart(), 0);

        Config config;
        config.setPath("path");
        Config movedConfig(std::move(config));
        QCOMPARE(movedConfig.getPath(), QString());
        QVERIFY(!movedConfig.getDataBase() && !movedConfig.getOptions() && !movedConfig.getEntities());
        ConfigDb db;
        db.setName("name");
        QCOMPARE(ConfigDb(std::move(db)).getName(), QString());
        ConfigOptions options;
        options.setCreateNoRanges(true);
        QVERIFY(!ConfigOptions(std::move(options)).getCreateNoRanges());
        ConfigEntities entities;
        entities.setName("name");
        entities.setCreateSDC(true);
        const ConfigEntities movedEntities(std::move(entities));
        QCOMPARE(movedEntities.getName(), QString());
        QVERIFY(!movedEntities.getCreateSDC() && !movedEntities.getVariables());
        ConfigWipxToJson json;
        json.setInputFile("file");
        QCOMPARE(ConfigWipxToJson(std::move(json)).getInputFile(), QString());

        Dictionary dictionary;
        const Dictionary movedDictionary(std::move(dictionary));
        QVERIFY(!movedDictionary.getRoot() && !movedDictionary.getMetadataDictionary());
        MetadataDictionary metadata;
        const MetadataDictionary movedMetadata(std::move(metadata));
        QVERIFY(!movedMetadata.getDatasource() && !movedMetadata.getLookUp());
        Datasource source;
        source.setType("type");
        const Datasource movedSource(std::move(source));
        QCOMPARE(movedSource.getType(), QString());
        QVERIFY(!movedSource.getMetadataDataSource());
        MetadataDataSource text;
        text.setCsvHasHeader(true);
        QVERIFY(!MetadataDataSource(std::move(text)).getCsvHasHeader());
        LookupDictionary lookup;
        lookup.setName("name");
        QCOMPARE(LookupDictionary(std::move(lookup)).getName(), QString());
        MetadataVariables variables;
        variables.setStart(3);
        variables.setRecord("record");
        const MetadataVariables movedVariables(std::move(variables));
        QCOMPARE(movedVariables.getRecord(), QString());
        QCOMPARE(movedVariables.getStart(), 0);
        QVERIFY(!movedVariables.getRange());

        StructVariableItem item;
        item.setLevel(3);
        item.setChecked(true);
        const StructVariableItem movedItem(std::move(item));
        QCOMPARE(movedItem.getLevel(), 0);
        QVERIFY(!movedItem.getChecked() && !movedItem.getChildren());
        QVERIFY(movedItem.getData().getRange() != nullptr); // a default variable
    }

    void trueMoveOfExtendSettingsTakesBothTexts()
    {
        ConfigToolsExtend extend;
        extend.setUrlPrimaryBd("one");
        extend.setUrlSecondaryBd("two");
        ConfigToolsExtend moved(std::move(extend));
        QCOMPARE(moved.getUrlPrimaryBd() + moved.getUrlSecondaryBd(), QString("onetwo"));
        QCOMPARE(extend.getUrlPrimaryBd(), QString()); // NOLINT(bugprone-use-after-move): it loses them
        QCOMPARE(extend.getUrlSecondaryBd(), QString());
        extend.setUrlPrimaryBd("former");
        extend = std::move(moved);
        QCOMPARE(extend.getUrlPrimaryBd() + extend.getUrlSecondaryBd(), QString("onetwo"));
        QCOMPARE(moved.getUrlPrimaryBd(), QString()); // NOLINT(bugprone-use-after-move)
        QCOMPARE(moved.getUrlSecondaryBd(), QString());
    }

    void trueMoveOfSplitSettingsTakesBothTextsAndCopiesTheRest()
    {
        ConfigToolsSplit split;
        split.setFileName("file");
        split.setFolder("folder");
        split.setFactor(2.5);
        split.setOptionSampling(true);
        const TVpEntity *entity = split.getEntitySampling();
        ConfigToolsSplit moved(std::move(split));
        QCOMPARE(moved.getFileName() + moved.getFolder(), QString("filefolder"));
        QCOMPARE(moved.getFactor(), 2.5);
        QVERIFY(moved.getEntitySampling() == entity);
        QCOMPARE(split.getFileName(), QString()); // NOLINT(bugprone-use-after-move)
        QCOMPARE(split.getFolder(), QString());
        QVERIFY(split.getEntitySampling() == entity && split.getOptionSampling());
        split = std::move(moved);
        QCOMPARE(split.getFileName() + split.getFolder(), QString("filefolder"));
        QCOMPARE(moved.getFileName(), QString()); // NOLINT(bugprone-use-after-move)
        QCOMPARE(moved.getFolder(), QString());
    }

    void trueMoveOfASelectionUnitTakesTextsAreasAndProperties()
    {
        SelectionTreeUnit unit = filledUnit();
        SelectionTreeUnit moved(std::move(unit));
        verifyIsFilledUnit(moved);
        verifyIsEmptiedUnit(unit);                          // NOLINT(bugprone-use-after-move): it loses them
        QVERIFY(moved.getChildren() == unit.getChildren()); // shared
        unit.setName("former");
        unit = std::move(moved);
        verifyIsFilledUnit(unit);
        verifyIsEmptiedUnit(moved); // NOLINT(bugprone-use-after-move)
        QVERIFY(moved.getChildren() == unit.getChildren());
    }

    void movedRecordMakesItsListWhenSomethingIsAppended()
    {
        TVpEntity entity((TVpEntity()));
        TVpEntity source;
        TVpEntity movedEntity(std::move(source));
        movedEntity.addChildren(&entity);
        movedEntity.addVariables(nullptr);
        QCOMPARE(movedEntity.getChildren()->size() + movedEntity.getVariables()->size(), 2);
        TVpVariable variable;
        TVpVariable movedVariable(std::move(variable));
        movedVariable.addItemRange(nullptr);
        movedVariable.addValueLabelElement(nullptr);
        QCOMPARE(movedVariable.getRange()->size(), 1);
        Config config;
        Config movedConfig(std::move(config));
        movedConfig.addEntities(nullptr);
        QCOMPARE(movedConfig.getEntities()->size(), 1);
        ConfigEntities entities;
        ConfigEntities movedEntities(std::move(entities));
        movedEntities.addVariables("v");
        QCOMPARE(*movedEntities.getVariables(), QList<QString>({ "v" }));
        MetadataDictionary metadata;
        MetadataDictionary movedMetadata(std::move(metadata));
        movedMetadata.addLookUp(nullptr);
        QCOMPARE(movedMetadata.getLookUp()->size(), 1);
        StructVariableItem item;
        StructVariableItem movedItem(std::move(item));
        StructVariableItem *child = &item;
        movedItem.addChildren(child);
        movedItem.addChildren(child); // twice
        QCOMPARE(movedItem.getChildren()->size(), 2);
    }

    void constructorsMakeTheirObjects()
    {
        Config config;
        QVERIFY(config.getDataBase() && config.getOptions());
        QVERIFY(config.getEntities()->isEmpty());
        const ConfigToolsSplit split;
        const QSet<TVpEntity *> entities
            = { split.getEntitySelect(), split.getEntitySampling(), split.getEntityRestartSampling() };
        QCOMPARE(entities.size(), 3);
        QVERIFY(!entities.contains(nullptr));
        const Dictionary dictionary;
        QVERIFY(dictionary.getRoot()->getChildren()->isEmpty());
        QVERIFY(dictionary.getMetadataDictionary()->getDatasource()->getMetadataDataSource());
        QVERIFY(dictionary.getMetadataDictionary()->getLookUp()->isEmpty());
        QVERIFY(TVpVariable().getMetadataVariables()->getRange()->isEmpty());
    }

    void destructorsFreeNothingTheyPointTo()
    {
        auto config = std::make_unique<Config>();
        std::unique_ptr<ConfigDb> db(config->getDataBase());
        config.reset();
        db->setName("alive");
        QCOMPARE(db->getName(), QString("alive"));
        auto unit = std::make_unique<SelectionTreeUnit>();
        const std::unique_ptr<QList<SelectionTreeUnit *>> children(unit->getChildren());
        unit.reset();
        QVERIFY(children->isEmpty());
    }

    void pathsAreReadInNativeSeparators()
    {
        const QString path("C:/data\\base/x");
        ConfigDb db;
        db.setFolder(path);
        db.setSourceFile(path);
        db.setFileFilter(path);
        Datasource source;
        source.setFile(path);
        LookupDictionary lookup;
        lookup.setFile(path);
        for (const QString &shown : { db.getFolder(), db.getSourceFile(), source.getFile() })
            QCOMPARE(shown, QDir::toNativeSeparators(path));
        QCOMPARE(db.getFileFilter(), path);
        QCOMPARE(lookup.getFile(), path);
        QCOMPARE(ConfigDb().getFolder(), QString());
        db.setFolder("");
        db.setSourceFile("");
        source.setFile("");
        for (const QString &shown : { db.getFolder(), db.getSourceFile(), source.getFile() })
            QVERIFY(shown.isEmpty() && !shown.isNull());
    }

    void checkedIsOneOrNothing_data()
    {
        QTest::addColumn<int>("number");
        for (const int number : { 0, 1, 5, -1, 256, 1 << 31 })
            QTest::addRow("%d", number) << number;
    }
    void checkedIsOneOrNothing()
    {
        QFETCH(int, number);
        TVpVariable variable;
        variable.setChecked(number);
        QCOMPARE(variable.getChecked(), number != 0 ? 1 : 0);
    }

    void fieldsOfDelimitedTextAreNotTestedForDoubles()
    {
        MetadataDataSource source;
        QString field("f");
        source.addCsvFields(field);
        source.addCsvFields(field);
        QCOMPARE(source.getCsvFields(), (QStringList{ "f", "f" }));
        source.getCsvFields().append("more");
        QCOMPARE(source.getCsvFields().size(), 2);
    }

    void appendingTestsNothingAndSetsNoParent()
    {
        SelectionTreeUnit unit;
        SelectionTreeUnit child;
        unit.addChildren(&child);
        unit.addChildren(&child);
        QCOMPARE(unit.getChildren()->size(), 2);
        QVERIFY(!child.getParent());
        child.setUnitState(Qt::Checked);
        QCOMPARE(unit.getUnitState(), Qt::Unchecked);
        QList<SelectionTreeUnit *> others;
        const QList<SelectionTreeUnit *> *former = unit.getChildren();
        unit.setChildren(&others);
        QCOMPARE(former->size(), 2); // neither freed nor emptied
    }

private:
    template <typename... Records> static constexpr bool noneIsPolymorphic = (!std::is_polymorphic_v<Records> && ...);

    template <typename Record> static void verifyFlagIsCopied()
    {
        Record record;
        for (const bool flag : { true, false }) {
            TestAccess::flag(record) = flag;
            Record copy(record);
            QCOMPARE(TestAccess::flag(copy), flag);
            Record assigned;
            TestAccess::flag(assigned) = !flag;
            assigned = record;
            QCOMPARE(TestAccess::flag(assigned), flag);
        }
    }

    static SelectionTreeUnit filledUnit()
    {
        SelectionTreeUnit unit;
        unit.setName("name");
        unit.setCode("code");
        unit.setCodeEntity("entity");
        unit.setArea({ "a", "b" });
        unit.setChildAreas({ { "c", "d" } });
        unit.setInfoProperties({ { "info", 1 } });
        unit.setLevel(3);
        return unit;
    }
    static void verifyIsFilledUnit(const SelectionTreeUnit &unit)
    {
        QCOMPARE(unit.getName() + unit.getCode() + unit.getCodeEntity(), QString("namecodeentity"));
        QCOMPARE(unit.getArea().second, std::string("b"));
        QCOMPARE(unit.getChildAreas().size(), size_t(1));
        QCOMPARE(unit.getInfoProperties().size(), 1);
        QCOMPARE(unit.getLevel(), 3);
    }
    static void verifyIsEmptiedUnit(const SelectionTreeUnit &unit)
    {
        QVERIFY(unit.getName().isEmpty() && unit.getCode().isEmpty() && unit.getCodeEntity().isEmpty());
        QVERIFY(unit.getArea().first.empty() && unit.getArea().second.empty());
        QVERIFY(unit.getChildAreas().empty() && unit.getInfoProperties().isEmpty());
        QCOMPARE(unit.getLevel(), 3);
    }

    template <typename Record> static void fillNames(Record &record)
    {
        record.setName("name");
        record.setLabel("label");
    }

    // A new record with a copy's value differs from the copy in its previous value.
    template <typename Record, typename Set, typename Get, typename Value>
    static void verifyCopies(Set set, Get get, const Value &value)
    {
        Record record;
        QVERIFY((record.*get)() != value);
        (record.*set)(value);
        const Record copy(record);
        QVERIFY((copy.*get)() == value);
        Record assigned;
        assigned = record;
        QVERIFY((assigned.*get)() == value);
        QVERIFY((record.*get)() == value);
    }

    // An entry that is appended through a copy is in the source too.
    template <typename Record, typename Append, typename ListOf>
    static void shareLists(Record &record, Append append, ListOf listOf)
    {
        Record copy(record);
        Record assigned;
        assigned = record;
        const int before = listOf(record)->size();
        append(copy);
        append(assigned);
        QCOMPARE(listOf(record)->size(), before + 2);
        QVERIFY(listOf(copy) == listOf(record));
        QVERIFY(listOf(assigned) == listOf(record));
    }
};

QTEST_APPLESS_MAIN(RecordsTest)
#include "RecordsTest.moc"
