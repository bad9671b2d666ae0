#include "record/QuestIndex.h"
#include "record/Record.h"
#include "support/Callable.h"
#include "support/Sanitizer.h"

#include <QtTest>

#include <memory>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

// The library only holds pointers to references; a caller defines the class.
class TVpRecordReference
{
};

struct TestAccess {
    static QString &name(TVpRecord &record) { return record.name; }
    static QString &caption(TVpRecord &record) { return record.caption; }
    static QString &text1(TVpRecord &record) { return record.text1; }
    static QString &text2(TVpRecord &record) { return record.text2; }
    static QString &text3(TVpRecord &record) { return record.text3; }
    static QString &text4(TVpRecord &record) { return record.text4; }
    static int *numbers1(TVpRecord &record) { return record.numbers1; }
    static int *numbers2(TVpRecord &record) { return record.numbers2; }
    static int &number1(TVpRecord &record) { return record.number1; }
    static bool &flag1(TVpRecord &record) { return record.flag1; }
    static bool &flag2(TVpRecord &record) { return record.flag2; }
    static TVpRecord *&child(TVpRecord *record) { return record->child; }
    static TVpRecord *&parent(TVpRecord *record) { return record->parent; }
    static TVpRecord *&brother(TVpRecord *record) { return record->brother; }
    static QList<TVpRecordReference *> *&references(TVpRecord &record) { return record.references; }
    static TVpRecordType *&recordType(TVpRecord &record) { return record.recordType; }

    static void addChild(TVpRecord *record, TVpRecord *added) { record->addChild(added); }
    static void addBrother(TVpRecord *record, TVpRecord *added) { record->addBrother(added); }
    static void insertChild(TVpRecord *record, TVpRecord *before, TVpRecord *added)
    {
        record->insertChild(before, added);
    }
    static void deleteChild(TVpRecord *record, const QString &name, bool flag = false)
    {
        record->deleteChild(name, flag);
    }
    static TVpRecord *preOrderNextBrother(TVpRecord *record) { return record->preOrderNextBrother(); }
    static void addReference(TVpRecord &record, TVpRecordReference *added) { record.addRecordReferenceToList(added); }
    static void removeReference(TVpRecord &record, TVpRecordReference *removed)
    {
        record.removeRecordReferenceFromList(removed);
    }
    static QString keyValue(TVpRecord &record, const QString &line) { return record.getKeyValue(line); }
    static QString parentKeyValue(TVpRecord &record, const QString &line) { return record.getParentKeyValue(line); }
    static QString assemble(TVpRecord &record, TQuestIndex &index) { return record.assembleRecord(&index); }
    static QString assemble(TVpRecord &record, TQuestIndex &index, const QString &key)
    {
        return record.assembleRecord(&index, key);
    }
    static QStringList answersOfNull(TVpRecord &record)
    {
        return { record.assembleRecord(nullptr), record.assembleRecord(nullptr, QStringLiteral("K")),
                 record.checkQuestionnaire(nullptr), record.checkQuestionnaire(nullptr, QString()) };
    }
    static QString check(TVpRecord *record, TQuestIndex &index) { return record->checkQuestionnaire(&index); }
    static QString check(TVpRecord *record, TQuestIndex &index, const QString &parentKey)
    {
        return record->checkQuestionnaire(&index, parentKey);
    }
};

using Access = TestAccess;

namespace
{

constexpr int manyBrothers = 100000;
constexpr int manyLevels = sanitizesMemory ? 100000 : 1000000;
constexpr int manyLines = 200000;

CALLABLE(CallsRetrieveRecord, retrieveRecord(QString()));
CALLABLE(CallsPreOrderNext, preOrderNext());
CALLABLE(CallsNodeCaption, nodeCaption());
CALLABLE(CallsAddChild, addChild(static_cast<TVpRecord *>(nullptr)));
CALLABLE(CallsAddBrother, addBrother(static_cast<TVpRecord *>(nullptr)));
CALLABLE(CallsInsertChild, insertChild(static_cast<TVpRecord *>(nullptr), static_cast<TVpRecord *>(nullptr)));
CALLABLE(CallsDeleteChild, deleteChild(QString(), false));
CALLABLE(CallsPreOrderNextBrother, preOrderNextBrother());
CALLABLE(CallsAddReference, addRecordReferenceToList(static_cast<TVpRecordReference *>(nullptr)));
CALLABLE(CallsRemoveReference, removeRecordReferenceFromList(static_cast<TVpRecordReference *>(nullptr)));
CALLABLE(CallsGetKeyValue, getKeyValue(QString()));
CALLABLE(CallsGetParentKeyValue, getParentKeyValue(QString()));
CALLABLE(CallsAssemble, assembleRecord(static_cast<TQuestIndex *>(nullptr)));
CALLABLE(CallsAssembleWithKey, assembleRecord(static_cast<TQuestIndex *>(nullptr), QString()));
CALLABLE(CallsCheck, checkQuestionnaire(static_cast<TQuestIndex *>(nullptr)));
CALLABLE(CallsLowerCheck, checkQuestionnaire(static_cast<TQuestIndex *>(nullptr), QString()));

// Tests inside a subclass which operations it may call.
class Insider : public TVpRecord
{
public:
    template <typename T> static auto reachesNodeCaption(T *record) -> decltype(record->nodeCaption(), true)
    {
        return true;
    }
    static bool reachesNodeCaption(...) { return false; }
    template <typename T> static auto reachesAddChild(T *record) -> decltype(record->addChild(record), true)
    {
        return true;
    }
    static bool reachesAddChild(...) { return false; }
    template <typename T>
    static auto reachesCheck(T *record)
        -> decltype(record->checkQuestionnaire(static_cast<TQuestIndex *>(nullptr)), true)
    {
        return true;
    }
    static bool reachesCheck(...) { return false; }
};

// The records of one test. The builder of a tree frees it.
class Forest
{
public:
    Forest() = default;
    ~Forest()
    {
        for (const auto &record : records)
            delete Access::references(*record);
    }
    Forest(const Forest &) = delete;
    Forest &operator=(const Forest &) = delete;

    TVpRecord *make(const QString &name, const QString &type = QString())
    {
        records.push_back(std::make_unique<TVpRecord>());
        TVpRecord *record = records.back().get();
        Access::name(*record) = name;
        if (!type.isNull()) {
            types.push_back(std::make_unique<TVpRecordType>(TVpRecordType{ type }));
            Access::recordType(*record) = types.back().get();
        }
        return record;
    }

    TVpRecord *makeChild(TVpRecord *parent, const QString &name, const QString &type = QString())
    {
        TVpRecord *record = make(name, type);
        Access::addChild(parent, record);
        return record;
    }

private:
    std::vector<std::unique_ptr<TVpRecord>> records;
    std::vector<std::unique_ptr<TVpRecordType>> types;
};

// The tree of most tests:
//   R
//     A
//       A1
//       A2
//         A2X
//     B
//     C
//       C1
//         C1X
struct Tree : Forest {
    TVpRecord *r = make(QStringLiteral("R"));
    TVpRecord *a = makeChild(r, QStringLiteral("A"));
    TVpRecord *a1 = makeChild(a, QStringLiteral("A1"));
    TVpRecord *a2 = makeChild(a, QStringLiteral("A2"));
    TVpRecord *a2x = makeChild(a2, QStringLiteral("A2X"));
    TVpRecord *b = makeChild(r, QStringLiteral("B"));
    TVpRecord *c = makeChild(r, QStringLiteral("C"));
    TVpRecord *c1 = makeChild(c, QStringLiteral("C1"));
    TVpRecord *c1x = makeChild(c1, QStringLiteral("C1X"));
};

// Every record of the tree with its three neighbours.
QList<const TVpRecord *> linksOf(const Tree &tree)
{
    QList<const TVpRecord *> links;
    for (TVpRecord *record : { tree.r, tree.a, tree.a1, tree.a2, tree.a2x, tree.b, tree.c, tree.c1, tree.c1x })
        links << record << Access::child(record) << Access::parent(record) << Access::brother(record);
    return links;
}

// A single record that frees its list of references.
struct LoneRecord : TVpRecord {
    ~LoneRecord() override { delete Access::references(*this); }
};

// Lines whose first character is the record type.
struct Questionnaire {
    explicit Questionnaire(const QStringList &content)
        : lines(content)
    {
        index.typeLength = 1;
        index.status = untouched;
        index.text = QStringLiteral("piece");
        index.lines = &lines;
    }

    static constexpr int untouched = 99;
    QStringList lines;
    TQuestIndex index;
};

QString pieces(int count)
{
    return QStringLiteral("piece\r\n").repeated(count);
}

QStringList namesOf(TVpRecord *record)
{
    QStringList names;
    for (; record; record = Access::brother(record))
        names.append(Access::name(*record));
    return names;
}

QStringList walkFrom(const TVpRecord *record)
{
    QStringList names;
    for (; record; record = record->preOrderNext())
        names.append(record->nodeCaption());
    return names;
}

// Recursive form of the check below.
QString recursiveLowerCheck(TVpRecord *record, TQuestIndex &index, const QString &parentKey)
{
    const TVpRecordType *type = Access::recordType(*record);
    QString gathered;
    for (const QString &line : qAsConst(*index.lines)) {
        if (line.mid(index.typeStart, index.typeLength) != (type ? type->code : QString())
            || Access::parentKeyValue(*record, line) != parentKey)
            continue;
        const QString key = Access::keyValue(*record, line);
        const QString piece = Access::assemble(*record, index, key);
        if (piece.isEmpty())
            return {};
        gathered += piece + QLatin1String("\r\n");
        if (Access::child(record))
            gathered += recursiveLowerCheck(Access::child(record), index, key);
    }
    if (Access::brother(record))
        gathered += recursiveLowerCheck(Access::brother(record), index, parentKey);
    return gathered;
}

// Recursive form of the search.
TVpRecord *recursiveSearch(TVpRecord *record, const QString &name)
{
    if (!record || Access::name(*record) == name)
        return record;
    if (TVpRecord *found = recursiveSearch(Access::child(record), name))
        return found;
    return recursiveSearch(Access::brother(record), name);
}

void fillEveryMember(TVpRecord &record)
{
    Access::name(record) = QStringLiteral("HOUSE");
    Access::caption(record) = QStringLiteral("Housing");
    Access::text1(record) = QStringLiteral("one");
    Access::text2(record) = QStringLiteral("two");
    Access::text3(record) = QStringLiteral("three");
    Access::text4(record) = QStringLiteral("four");
    for (int i = 0; i < 4; ++i)
        Access::numbers1(record)[i] = 10 + i;
    for (int i = 0; i < 3; ++i)
        Access::numbers2(record)[i] = 20 + i;
    Access::number1(record) = 30;
    Access::flag1(record) = true;
    Access::flag2(record) = true;
}

} // namespace

class RecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // access from other classes
    void threeOperationsArePublic();
    void linkingAndCheckingArePrivate();

    // making, copying, destroying
    void newRecordHasTheDefaultsOfEveryMember();
    void everyRecordHasAnEmptyListOfReferencesOfItsOwn();
    void destructorIsVirtual();
    void copyConstructorCopiesEveryMember();
    void assignmentCopiesEveryMember();
    void copySharesNeighboursListAndTypeWithItsSource();
    void neighboursStillPointAtTheSourceOfACopy();
    void movedToRecordTakesNothing();
    void movedFromRecordKeepsEverything();
    void destructorFreesNothing();

    // linking
    void threeChildrenAreInTheOrderOfTheCalls();
    void secondChildTakesTheParentOfTheFirst();
    void thirdChildTakesTheParentOfTheLastSibling();
    void addedChildKeepsItsOwnBrother();
    void addBrotherAppendsToTheLastSibling();
    void addedBrotherTakesTheParentOfTheLastSibling();
    void addedBrotherOfARootHasNoParent();
    void addedBrotherKeepsItsOwnBrother();
    void addingARecordOfTheChainDoesNothing_data();
    void addingARecordOfTheChainDoesNothing();
    void addingNothingDoesNothing_data();
    void addingNothingDoesNothing();
    void insertChildPutsARecordInFrontOfAChild_data();
    void insertChildPutsARecordInFrontOfAChild();
    void insertedChildGetsItsParentAndBrother();
    void insertChildBeforeNothingAppends();
    void insertChildBeforeNoChildDoesNothing();
    void insertChildBeforeItselfDoesNothing_data();
    void insertChildBeforeItselfDoesNothing();
    void insertingNothingDoesNothing_data();
    void insertingNothingDoesNothing();
    void deleteChildUnlinksADirectChild_data();
    void deleteChildUnlinksADirectChild();
    void deleteChildOfTheOnlyChildLeavesNone();
    void deletedChildLosesItsBrotherAndKeepsItsParentAndChildren();
    void deleteChildOfNoDirectChildDoesNothing_data();
    void deleteChildOfNoDirectChildDoesNothing();
    void deleteChildGoesByTheFirstRecordOfThatName();
    void deleteChildKnowsTheAlias();

    // walking
    void preOrderNextVisitsChildrenBeforeBrothers();
    void preOrderNextOfALoneRootIsNull();
    void preOrderNextTakesTheFirstOfItsSteps_data();
    void preOrderNextTakesTheFirstOfItsSteps();
    void preOrderNextFromAChildOfTheRootIgnoresABrotherlessRoot();
    void preOrderNextReturnsABrotherOfTheRoot();
    void preOrderNextBrotherClimbsToTheNextBrother();

    // searching
    void retrieveRecordFindsEveryRecordOfTheTree_data();
    void retrieveRecordFindsEveryRecordOfTheTree();
    void retrieveRecordOfAnUnknownNameIsNull_data();
    void retrieveRecordOfAnUnknownNameIsNull();
    void retrieveRecordCoversLaterBrothersAndTheirSubtrees();
    void retrieveRecordLooksNeitherUpNorAtEarlierBrothers();
    void retrieveRecordTakesTheNodeBeforeChildrenBeforeBrothers();
    void commonFindsTheRecordInCapitalsAtAnyDepth();
    void capitalsDoNotFindTheCommonRecord();
    void aliasHoldsOnlyForTheTwoSpellings();
    void aliasTakesWhicheverComesFirst();
    void emptyNameFindsARecordWithoutName();

    // texts
    void nodeCaptionPutsTheCaptionInBrackets_data();
    void nodeCaptionPutsTheCaptionInBrackets();
    void typeOfARecordIsReadForTheProvider();

    // references, keys, assembling
    void referencesAreAppendedAndRemoved();
    void referenceIsAddedToAMovedToRecord();
    void keysAreEmptyWhateverTheLine_data();
    void keysAreEmptyWhateverTheLine();
    void assemblingCountsLinesOfTheEmptyTypeForEachReference_data();
    void assemblingCountsLinesOfTheEmptyTypeForEachReference();
    void assemblingWithoutAListOfReferencesCountsNoLines();
    void assemblingWithAKeyReturnsTheTextWhateverKeyAndReferences_data();
    void assemblingWithAKeyReturnsTheTextWhateverKeyAndReferences();

    // the check, from the record where it starts
    void checkGivesOneTextForEachLineOfTheRecord_data();
    void checkGivesOneTextForEachLineOfTheRecord();
    void checkOfATypeWithoutLinesIsEmptyAndLeavesTheStatus();
    void checkWithAnEmptyTextIsEmptyAndLeavesTheStatus();
    void checkWithAnEmptyTextIsEmptyWhateverTheTree();
    void emptyTextHasNoEffectIfNothingIsFoundAgain();
    void failedCheckDoesNotChangeTheNextOne();
    void checkSetsStatus6WhereAnOccurrenceIsNotFoundAgain_data();
    void checkSetsStatus6WhereAnOccurrenceIsNotFoundAgain();
    void checkWithoutLinesIsEmpty();
    void checkVisitsNoBrothersOfTheFirstRecord();
    void checkIgnoresReferences();
    void linesOfAChildRepeatUnderEveryLineOfItsParent();
    void linesOfAGrandchildRepeatUnderEveryLineAbove();
    void checkVisitsEveryChild();
    void emptyResultOfAChildIsNotAdded();
    void childrenOfARecordWithoutLinesAreNotVisited();

    // the check, below
    void lowerCheckVisitsBrothers();
    void lowerCheckMatchesNoLineWithAParentKey();
    void lowerCheckOfTheEmptyTypeTakesTheShortLines();
    void lowerCheckWithAnEmptyTextIsEmptyAndLeavesTheStatus();
    void lowerCheckWithAnEmptyTextIsEmptyWhateverTheTree_data();
    void lowerCheckWithAnEmptyTextIsEmptyWhateverTheTree();
    void lowerCheckWithoutLinesIsEmpty();

    void nullQuestionnaireGivesAnEmptyText();
    void walksFollowTheirRecursiveRules();

    // size
    void manyBrothersNeedNoStack();
    void manyLevelsNeedNoStack();
    void checksOfManyLevelsNeedNoStack();
    void checksOfManyLinesAreQuick();
};

void RecordTest::threeOperationsArePublic()
{
    QVERIFY(CallsRetrieveRecord<TVpRecord>::value);
    QVERIFY(CallsPreOrderNext<TVpRecord>::value);
    QVERIFY(CallsNodeCaption<TVpRecord>::value);
    QVERIFY(Insider::reachesNodeCaption(static_cast<Insider *>(nullptr)));
}

void RecordTest::linkingAndCheckingArePrivate()
{
    QVERIFY(!CallsAddChild<TVpRecord>::value);
    QVERIFY(!CallsAddBrother<TVpRecord>::value);
    QVERIFY(!CallsInsertChild<TVpRecord>::value);
    QVERIFY(!CallsDeleteChild<TVpRecord>::value);
    QVERIFY(!CallsPreOrderNextBrother<TVpRecord>::value);
    QVERIFY(!CallsAddReference<TVpRecord>::value);
    QVERIFY(!CallsRemoveReference<TVpRecord>::value);
    QVERIFY(!CallsGetKeyValue<TVpRecord>::value);
    QVERIFY(!CallsGetParentKeyValue<TVpRecord>::value);
    QVERIFY(!CallsAssemble<TVpRecord>::value);
    QVERIFY(!CallsAssembleWithKey<TVpRecord>::value);
    QVERIFY(!CallsCheck<TVpRecord>::value);
    QVERIFY(!CallsLowerCheck<TVpRecord>::value);
    // Subclasses cannot call them either.
    QVERIFY(!Insider::reachesAddChild(static_cast<Insider *>(nullptr)));
    QVERIFY(!Insider::reachesCheck(static_cast<Insider *>(nullptr)));
}

void RecordTest::newRecordHasTheDefaultsOfEveryMember()
{
    LoneRecord record;
    QCOMPARE(Access::name(record), QString());
    QCOMPARE(Access::caption(record), QString());
    QCOMPARE(Access::text1(record), QString());
    QCOMPARE(Access::numbers1(record)[0], -1);
    QCOMPARE(Access::numbers1(record)[1], 0);
    QCOMPARE(Access::numbers1(record)[2], 0);
    QCOMPARE(Access::numbers1(record)[3], 0);
    QCOMPARE(Access::flag1(record), false);
    QCOMPARE(Access::text2(record), QString());
    QVERIFY(Access::text3(record).isNull());
    for (int i = 0; i < 3; ++i)
        QCOMPARE(Access::numbers2(record)[i], 0);
    QVERIFY(!Access::child(&record));
    QVERIFY(!Access::parent(&record));
    QVERIFY(!Access::brother(&record));
    QCOMPARE(Access::number1(record), 0);
    QCOMPARE(Access::flag2(record), false);
    QCOMPARE(Access::text4(record), QString());
    QVERIFY(!Access::recordType(record));
}

void RecordTest::everyRecordHasAnEmptyListOfReferencesOfItsOwn()
{
    LoneRecord first;
    LoneRecord second;
    QVERIFY(Access::references(first));
    QVERIFY(Access::references(first)->isEmpty());
    QVERIFY(Access::references(second));
    QVERIFY(Access::references(first) != Access::references(second));
}

void RecordTest::destructorIsVirtual()
{
    QVERIFY(std::has_virtual_destructor<TVpRecord>::value);
}

static void verifySameContent(TVpRecord &copy, TVpRecord &source)
{
    QCOMPARE(Access::name(copy), QStringLiteral("HOUSE"));
    QCOMPARE(Access::caption(copy), QStringLiteral("Housing"));
    QCOMPARE(Access::text1(copy), QStringLiteral("one"));
    QCOMPARE(Access::text2(copy), QStringLiteral("two"));
    QCOMPARE(Access::text3(copy), QStringLiteral("three"));
    QCOMPARE(Access::text4(copy), QStringLiteral("four"));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(Access::numbers1(copy)[i], 10 + i);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(Access::numbers2(copy)[i], 20 + i);
    QCOMPARE(Access::number1(copy), 30);
    QCOMPARE(Access::flag1(copy), true);
    QCOMPARE(Access::flag2(copy), true);
    QCOMPARE(Access::child(&copy), Access::child(&source));
    QCOMPARE(Access::parent(&copy), Access::parent(&source));
    QCOMPARE(Access::brother(&copy), Access::brother(&source));
    QCOMPARE(Access::references(copy), Access::references(source));
    QCOMPARE(Access::recordType(copy), Access::recordType(source));
}

void RecordTest::copyConstructorCopiesEveryMember()
{
    Tree tree;
    TVpRecordType type{ QStringLiteral("1") };
    fillEveryMember(*tree.a);
    Access::recordType(*tree.a) = &type;
    TVpRecord copy(*tree.a);
    verifySameContent(copy, *tree.a);
}

void RecordTest::assignmentCopiesEveryMember()
{
    Tree tree;
    TVpRecordType type{ QStringLiteral("1") };
    fillEveryMember(*tree.a);
    Access::recordType(*tree.a) = &type;
    TVpRecord assigned;
    delete Access::references(assigned);
    assigned = *tree.a;
    verifySameContent(assigned, *tree.a);
}

void RecordTest::copySharesNeighboursListAndTypeWithItsSource()
{
    Tree tree;
    TVpRecordReference reference;
    TVpRecordType type{ QStringLiteral("1") };
    Access::recordType(*tree.a) = &type;
    TVpRecord copy(*tree.a);
    QCOMPARE(Access::child(&copy), tree.a1);
    QCOMPARE(Access::parent(&copy), tree.r);
    QCOMPARE(Access::brother(&copy), tree.b);
    QCOMPARE(Access::recordType(copy), &type);

    Access::addReference(copy, &reference);
    QCOMPARE(*Access::references(*tree.a), QList<TVpRecordReference *>{ &reference });
}

void RecordTest::neighboursStillPointAtTheSourceOfACopy()
{
    Tree tree;
    const TVpRecord copy(*tree.a);
    QCOMPARE(Access::child(tree.r), tree.a);
    QCOMPARE(Access::parent(tree.a1), tree.a);
    QCOMPARE(walkFrom(&copy).mid(0, 2), QStringList({ QStringLiteral("A"), QStringLiteral("A1") }));
}

void RecordTest::movedToRecordTakesNothing()
{
    Tree tree;
    TVpRecordType type{ QStringLiteral("1") };
    fillEveryMember(*tree.a);
    Access::recordType(*tree.a) = &type;

    TVpRecord moved(std::move(*tree.a));
    QVERIFY(Access::name(moved).isNull());
    QVERIFY(Access::caption(moved).isNull());
    QVERIFY(Access::text1(moved).isNull());
    QVERIFY(Access::text2(moved).isNull());
    QVERIFY(Access::text3(moved).isNull());
    QVERIFY(Access::text4(moved).isNull());
    for (int i = 0; i < 4; ++i)
        QCOMPARE(Access::numbers1(moved)[i], 0);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(Access::numbers2(moved)[i], 0);
    QCOMPARE(Access::number1(moved), 0);
    QCOMPARE(Access::flag1(moved), false);
    QCOMPARE(Access::flag2(moved), false);
    QVERIFY(!Access::child(&moved));
    QVERIFY(!Access::parent(&moved));
    QVERIFY(!Access::brother(&moved));
    QVERIFY(!Access::references(moved));
    QVERIFY(!Access::recordType(moved));
}

void RecordTest::movedFromRecordKeepsEverything()
{
    Tree tree;
    TVpRecordType type{ QStringLiteral("1") };
    fillEveryMember(*tree.a);
    Access::recordType(*tree.a) = &type;
    const TVpRecord copy(*tree.a);
    const TVpRecord moved(std::move(*tree.a));
    verifySameContent(*tree.a, const_cast<TVpRecord &>(copy));
    QCOMPARE(Access::child(tree.a), tree.a1);
    QVERIFY(Access::references(*tree.a));
}

void RecordTest::destructorFreesNothing()
{
    static int destroyed = 0;
    struct CountedRecord : LoneRecord {
        ~CountedRecord() override { ++destroyed; }
    };
    {
        CountedRecord parent;
        CountedRecord child;
        CountedRecord brother;
        TVpRecordReference reference;
        TVpRecordType type{ QStringLiteral("1") };
        auto *record = new TVpRecord;
        QList<TVpRecordReference *> *references = Access::references(*record);
        Access::recordType(*record) = &type;
        Access::addChild(&parent, record);
        Access::addChild(record, &child);
        Access::addBrother(record, &brother);
        Access::addReference(*record, &reference);

        delete record;
        QCOMPARE(destroyed, 0);
        QCOMPARE(Access::child(&parent), record);
        QCOMPARE(Access::parent(&child), record);
        QCOMPARE(Access::parent(&brother), &parent);
        QCOMPARE(*references, QList<TVpRecordReference *>{ &reference });
        QCOMPARE(type.code, QStringLiteral("1"));
        delete references;
    }
    QCOMPARE(destroyed, 3);
}

void RecordTest::threeChildrenAreInTheOrderOfTheCalls()
{
    Forest forest;
    TVpRecord *parent = forest.make(QStringLiteral("P"));
    TVpRecord *first = forest.make(QStringLiteral("1"));
    TVpRecord *second = forest.make(QStringLiteral("2"));
    TVpRecord *third = forest.make(QStringLiteral("3"));
    Access::addChild(parent, first);
    Access::addChild(parent, second);
    Access::addChild(parent, third);
    QCOMPARE(Access::child(parent), first);
    QCOMPARE(Access::brother(first), second);
    QCOMPARE(Access::brother(second), third);
    QVERIFY(!Access::brother(third));
    for (TVpRecord *child : { first, second, third })
        QCOMPARE(Access::parent(child), parent);
}

void RecordTest::secondChildTakesTheParentOfTheFirst()
{
    Forest forest;
    TVpRecord *parent = forest.make(QStringLiteral("P"));
    TVpRecord *other = forest.make(QStringLiteral("Q"));
    TVpRecord *first = forest.makeChild(parent, QStringLiteral("1"));
    Access::parent(first) = other;
    TVpRecord *second = forest.makeChild(parent, QStringLiteral("2"));
    QCOMPARE(Access::parent(second), other);
}

void RecordTest::thirdChildTakesTheParentOfTheLastSibling()
{
    Forest forest;
    TVpRecord *parent = forest.make(QStringLiteral("P"));
    TVpRecord *other = forest.make(QStringLiteral("Q"));
    forest.makeChild(parent, QStringLiteral("1"));
    TVpRecord *second = forest.makeChild(parent, QStringLiteral("2"));
    Access::parent(second) = other;
    TVpRecord *third = forest.makeChild(parent, QStringLiteral("3"));
    QCOMPARE(Access::parent(third), other);
    QCOMPARE(Access::brother(second), third);
}

void RecordTest::addedChildKeepsItsOwnBrother()
{
    Forest forest;
    TVpRecord *parent = forest.make(QStringLiteral("P"));
    TVpRecord *first = forest.make(QStringLiteral("1"));
    TVpRecord *behind = forest.make(QStringLiteral("2"));
    Access::brother(first) = behind;
    Access::addChild(parent, first);
    QCOMPARE(Access::brother(first), behind);
    QVERIFY(!Access::parent(behind));
}

void RecordTest::addBrotherAppendsToTheLastSibling()
{
    Tree tree;
    TVpRecord *added = tree.make(QStringLiteral("D"));
    Access::addBrother(tree.a, added);
    QCOMPARE(namesOf(tree.a), QStringList({ "A", "B", "C", "D" }));
    QVERIFY(!Access::brother(added));
}

void RecordTest::addedBrotherTakesTheParentOfTheLastSibling()
{
    Tree tree;
    TVpRecord *added = tree.make(QStringLiteral("D"));
    Access::parent(tree.c) = tree.a2;
    Access::addBrother(tree.a, added);
    QCOMPARE(Access::parent(added), tree.a2);
    QCOMPARE(Access::parent(tree.a), tree.r);
}

void RecordTest::addedBrotherOfARootHasNoParent()
{
    Tree tree;
    TVpRecord *added = tree.make(QStringLiteral("S"));
    Access::parent(added) = tree.c;
    Access::addBrother(tree.r, added);
    QCOMPARE(Access::brother(tree.r), added);
    QVERIFY(!Access::parent(added));
}

void RecordTest::addedBrotherKeepsItsOwnBrother()
{
    Tree tree;
    TVpRecord *added = tree.make(QStringLiteral("D"));
    TVpRecord *behind = tree.make(QStringLiteral("E"));
    Access::brother(added) = behind;
    Access::addBrother(tree.b, added);
    QCOMPARE(namesOf(tree.a), QStringList({ "A", "B", "C", "D", "E" }));
    QVERIFY(!Access::parent(behind));
}

void RecordTest::addingARecordOfTheChainDoesNothing_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("added");
    QTest::addColumn<bool>("asChild");

    // clang-format off
    QTest::newRow("brother: the next one")      << "A"  << "B"  << false;
    QTest::newRow("brother: the last one")      << "A"  << "C"  << false;
    QTest::newRow("brother: the node itself")   << "A"  << "A"  << false;
    QTest::newRow("brother: the last, itself")  << "C"  << "C"  << false;
    QTest::newRow("brother: the root itself")   << "R"  << "R"  << false;
    QTest::newRow("child: the first")           << "R"  << "A"  << true;
    QTest::newRow("child: one in the middle")   << "R"  << "B"  << true;
    QTest::newRow("child: the last")            << "R"  << "C"  << true;
    QTest::newRow("child: the only one")        << "A2" << "A2X" << true;
    // clang-format on
}

void RecordTest::addingARecordOfTheChainDoesNothing()
{
    QFETCH(QString, node);
    QFETCH(QString, added);
    QFETCH(bool, asChild);

    const Tree tree;
    const QList<const TVpRecord *> links = linksOf(tree);
    TVpRecord *record = tree.r->retrieveRecord(node);
    if (asChild)
        Access::addChild(record, tree.r->retrieveRecord(added));
    else
        Access::addBrother(record, tree.r->retrieveRecord(added));
    QCOMPARE(linksOf(tree), links);
}

void RecordTest::addingNothingDoesNothing_data()
{
    QTest::addColumn<QString>("node");
    for (const char *node : { "R", "A", "A1", "C", "C1X" })
        QTest::newRow(node) << node;
}

void RecordTest::addingNothingDoesNothing()
{
    QFETCH(QString, node);

    const Tree tree;
    const QList<const TVpRecord *> links = linksOf(tree);
    Access::addChild(tree.r->retrieveRecord(node), nullptr);
    Access::addBrother(tree.r->retrieveRecord(node), nullptr);
    QCOMPARE(linksOf(tree), links);
}

void RecordTest::insertChildPutsARecordInFrontOfAChild_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QStringList>("children");

    // clang-format off
    QTest::newRow("the first: it becomes the first child") << "A" << QStringList{"N", "A", "B", "C"};
    QTest::newRow("one in the middle")                     << "B" << QStringList{"A", "N", "B", "C"};
    QTest::newRow("the last")                              << "C" << QStringList{"A", "B", "N", "C"};
    // clang-format on
}

void RecordTest::insertChildPutsARecordInFrontOfAChild()
{
    QFETCH(QString, before);
    QFETCH(QStringList, children);

    Tree tree;
    Access::insertChild(tree.r, tree.r->retrieveRecord(before), tree.make(QStringLiteral("N")));
    QCOMPARE(namesOf(Access::child(tree.r)), children);
}

void RecordTest::insertedChildGetsItsParentAndBrother()
{
    Tree tree;
    TVpRecord *added = tree.make(QStringLiteral("N"));
    Access::parent(added) = tree.c1;
    Access::brother(added) = tree.c1x;
    Access::parent(tree.b) = tree.a2;
    Access::insertChild(tree.r, tree.b, added);
    QCOMPARE(Access::parent(added), tree.r);
    QCOMPARE(Access::brother(added), tree.b);
    QCOMPARE(Access::parent(tree.b), tree.a2);
}

void RecordTest::insertChildBeforeNothingAppends()
{
    Tree tree;
    TVpRecord *last = tree.make(QStringLiteral("N"));
    Access::insertChild(tree.r, nullptr, last);
    QCOMPARE(namesOf(Access::child(tree.r)), QStringList({ "A", "B", "C", "N" }));
    QCOMPARE(Access::parent(last), tree.r);

    TVpRecord *only = tree.make(QStringLiteral("M"));
    Access::insertChild(tree.b, nullptr, only);
    QCOMPARE(Access::child(tree.b), only);
    QCOMPARE(Access::parent(only), tree.b);
}

void RecordTest::insertChildBeforeNoChildDoesNothing()
{
    Tree tree;
    TVpRecord *added = tree.make(QStringLiteral("N"));
    Access::insertChild(tree.r, tree.a1, added);
    QCOMPARE(namesOf(Access::child(tree.r)), QStringList({ "A", "B", "C" }));
    QCOMPARE(namesOf(Access::child(tree.a)), QStringList({ "A1", "A2" }));
    QVERIFY(!Access::parent(added));
    QVERIFY(!Access::brother(added));
}

void RecordTest::insertChildBeforeItselfDoesNothing_data()
{
    QTest::addColumn<QString>("child");
    for (const char *child : { "A", "B", "C", "A1", "R" })
        QTest::newRow(child) << child;
}

void RecordTest::insertChildBeforeItselfDoesNothing()
{
    QFETCH(QString, child);

    const Tree tree;
    const QList<const TVpRecord *> links = linksOf(tree);
    TVpRecord *record = tree.r->retrieveRecord(child);
    Access::insertChild(tree.r, record, record);
    QCOMPARE(linksOf(tree), links);
}

void RecordTest::insertingNothingDoesNothing_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("before");

    // clang-format off
    QTest::newRow("before the first")        << "R" << "A";
    QTest::newRow("before one in the middle") << "R" << "B";
    QTest::newRow("before the last")         << "R" << "C";
    QTest::newRow("before no child")         << "R" << "A1";
    QTest::newRow("at the end")              << "R" << "";
    QTest::newRow("as the only child")       << "B" << "";
    // clang-format on
}

void RecordTest::insertingNothingDoesNothing()
{
    QFETCH(QString, node);
    QFETCH(QString, before);

    const Tree tree;
    const QList<const TVpRecord *> links = linksOf(tree);
    Access::insertChild(tree.r->retrieveRecord(node), tree.r->retrieveRecord(before), nullptr);
    QCOMPARE(linksOf(tree), links);
}

void RecordTest::deleteChildUnlinksADirectChild_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<QStringList>("children");

    // clang-format off
    QTest::newRow("the first")                   << "A" << false << QStringList{"B", "C"};
    QTest::newRow("one in the middle")           << "B" << false << QStringList{"A", "C"};
    QTest::newRow("the last")                    << "C" << false << QStringList{"A", "B"};
    QTest::newRow("the flag has no effect")      << "A" << true  << QStringList{"B", "C"};
    QTest::newRow("nor has it in the middle")    << "B" << true  << QStringList{"A", "C"};
    // clang-format on
}

void RecordTest::deleteChildUnlinksADirectChild()
{
    QFETCH(QString, name);
    QFETCH(bool, flag);
    QFETCH(QStringList, children);

    Tree tree;
    Access::deleteChild(tree.r, name, flag);
    QCOMPARE(namesOf(Access::child(tree.r)), children);
}

void RecordTest::deleteChildOfTheOnlyChildLeavesNone()
{
    Tree tree;
    Access::deleteChild(tree.a2, QStringLiteral("A2X"));
    QVERIFY(!Access::child(tree.a2));
}

void RecordTest::deletedChildLosesItsBrotherAndKeepsItsParentAndChildren()
{
    Tree tree;
    Access::deleteChild(tree.r, QStringLiteral("A"));
    QVERIFY(!Access::brother(tree.a));
    QCOMPARE(Access::parent(tree.a), tree.r);
    QCOMPARE(namesOf(Access::child(tree.a)), QStringList({ "A1", "A2" }));
    QCOMPARE(Access::name(*tree.a), QStringLiteral("A"));
}

void RecordTest::deleteChildOfNoDirectChildDoesNothing_data()
{
    QTest::addColumn<QString>("node");
    QTest::addColumn<QString>("name");

    // clang-format off
    QTest::newRow("unknown name")           << "R" << "X";
    QTest::newRow("child of a child")       << "R" << "A1";
    QTest::newRow("child of a later child") << "R" << "C1X";
    QTest::newRow("the node itself")        << "R" << "R";
    QTest::newRow("later brother")          << "A" << "B";
    QTest::newRow("child of a brother")     << "A" << "C1";
    QTest::newRow("node without children")  << "A1" << "A2";
    QTest::newRow("another case")           << "R" << "a";
    // clang-format on
}

void RecordTest::deleteChildOfNoDirectChildDoesNothing()
{
    QFETCH(QString, node);
    QFETCH(QString, name);

    Tree tree;
    Access::deleteChild(tree.r->retrieveRecord(node), name);
    QCOMPARE(walkFrom(tree.r), QStringList({ "R", "A", "A1", "A2", "A2X", "B", "C", "C1", "C1X" }));
}

void RecordTest::deleteChildGoesByTheFirstRecordOfThatName()
{
    Tree tree;
    Access::name(*tree.a1) = QStringLiteral("B");
    Access::deleteChild(tree.r, QStringLiteral("B"));
    QCOMPARE(namesOf(Access::child(tree.r)), QStringList({ "A", "B", "C" }));
    QCOMPARE(namesOf(Access::child(tree.a)), QStringList({ "B", "A2" }));
}

void RecordTest::deleteChildKnowsTheAlias()
{
    Tree tree;
    Access::name(*tree.b) = QStringLiteral("COMMON");
    Access::deleteChild(tree.r, QStringLiteral("Common"));
    QCOMPARE(namesOf(Access::child(tree.r)), QStringList({ "A", "C" }));
}

void RecordTest::preOrderNextVisitsChildrenBeforeBrothers()
{
    Forest forest;
    TVpRecord *root = forest.make(QStringLiteral("R"));
    TVpRecord *a = forest.makeChild(root, QStringLiteral("A"));
    TVpRecord *b = forest.makeChild(root, QStringLiteral("B"));
    TVpRecord *a1 = forest.makeChild(a, QStringLiteral("A1"));
    QCOMPARE(root->preOrderNext(), a);
    QCOMPARE(a->preOrderNext(), a1);
    QCOMPARE(a1->preOrderNext(), b);
    QVERIFY(!b->preOrderNext());

    const Tree tree;
    QCOMPARE(walkFrom(tree.r), QStringList({ "R", "A", "A1", "A2", "A2X", "B", "C", "C1", "C1X" }));
}

void RecordTest::preOrderNextOfALoneRootIsNull()
{
    const LoneRecord root;
    QVERIFY(!root.preOrderNext());
}

void RecordTest::preOrderNextTakesTheFirstOfItsSteps_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("next");

    // clang-format off
    QTest::newRow("child before brother")                << "A"   << "A1";
    QTest::newRow("brother")                             << "A1"  << "A2";
    QTest::newRow("brother of the grandparent")          << "A2X" << "B";
    QTest::newRow("brother without children")            << "B"   << "C";
    QTest::newRow("only child before the rest")          << "C"   << "C1";
    QTest::newRow("end of the tree below several levels") << "C1X" << "";
    // clang-format on
}

void RecordTest::preOrderNextTakesTheFirstOfItsSteps()
{
    QFETCH(QString, from);
    QFETCH(QString, next);

    Tree tree;
    const TVpRecord *found = tree.r->retrieveRecord(from)->preOrderNext();
    QCOMPARE(found ? found->nodeCaption() : QString(), next);
}

void RecordTest::preOrderNextFromAChildOfTheRootIgnoresABrotherlessRoot()
{
    Forest forest;
    TVpRecord *root = forest.make(QStringLiteral("R"));
    const TVpRecord *only = forest.makeChild(root, QStringLiteral("A"));
    QVERIFY(!only->preOrderNext());
}

void RecordTest::preOrderNextReturnsABrotherOfTheRoot()
{
    Tree tree;
    TVpRecord *second = tree.make(QStringLiteral("S"));
    Access::addBrother(tree.r, second);
    QCOMPARE(tree.c->preOrderNext(), tree.c1);
    QCOMPARE(tree.c1x->preOrderNext(), second); // goes up past the parents without a brother
    Access::deleteChild(tree.c, QStringLiteral("C1"));
    QCOMPARE(tree.c->preOrderNext(), second); // the parent's brother
}

void RecordTest::preOrderNextBrotherClimbsToTheNextBrother()
{
    Tree tree;
    QCOMPARE(Access::preOrderNextBrother(tree.a), tree.b); // its own brother: children are not visited
    QCOMPARE(Access::preOrderNextBrother(tree.a2), tree.b);
    QCOMPARE(Access::preOrderNextBrother(tree.a2x), tree.b);
    QVERIFY(!Access::preOrderNextBrother(tree.c1x));
    QVERIFY(!Access::preOrderNextBrother(tree.r));
}

void RecordTest::retrieveRecordFindsEveryRecordOfTheTree_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : { "R", "A", "A1", "A2", "A2X", "B", "C", "C1", "C1X" })
        QTest::newRow(name) << name;
}

void RecordTest::retrieveRecordFindsEveryRecordOfTheTree()
{
    QFETCH(QString, name);

    Tree tree;
    TVpRecord *found = tree.r->retrieveRecord(name);
    QVERIFY(found);
    QCOMPARE(Access::name(*found), name);
}

void RecordTest::retrieveRecordOfAnUnknownNameIsNull_data()
{
    QTest::addColumn<QString>("name");

    // clang-format off
    QTest::newRow("unknown")         << "X";
    QTest::newRow("another case")    << "a2x";
    QTest::newRow("part of a name")  << "A2";
    QTest::newRow("more than a name") << "A2XY";
    QTest::newRow("empty")           << "";
    QTest::newRow("alias without a record of either name") << "Common";
    // clang-format on
}

void RecordTest::retrieveRecordOfAnUnknownNameIsNull()
{
    QFETCH(QString, name);

    Tree tree;
    Access::name(*tree.a2) = QStringLiteral("OTHER");
    QVERIFY(!tree.r->retrieveRecord(name));
}

void RecordTest::retrieveRecordCoversLaterBrothersAndTheirSubtrees()
{
    Tree tree;
    QCOMPARE(tree.a->retrieveRecord(QStringLiteral("B")), tree.b);
    QCOMPARE(tree.a->retrieveRecord(QStringLiteral("C")), tree.c);
    QCOMPARE(tree.a->retrieveRecord(QStringLiteral("C1X")), tree.c1x);
    QCOMPARE(tree.a1->retrieveRecord(QStringLiteral("A2X")), tree.a2x);
}

void RecordTest::retrieveRecordLooksNeitherUpNorAtEarlierBrothers()
{
    Tree tree;
    QVERIFY(!tree.b->retrieveRecord(QStringLiteral("A")));
    QVERIFY(!tree.b->retrieveRecord(QStringLiteral("R")));
    QVERIFY(!tree.a1->retrieveRecord(QStringLiteral("B")));
}

void RecordTest::retrieveRecordTakesTheNodeBeforeChildrenBeforeBrothers()
{
    Tree tree;
    for (TVpRecord *record : { tree.a, tree.a2x, tree.b })
        Access::name(*record) = QStringLiteral("SAME");
    QCOMPARE(tree.r->retrieveRecord(QStringLiteral("SAME")), tree.a);
    Access::name(*tree.a) = QStringLiteral("A");
    QCOMPARE(tree.r->retrieveRecord(QStringLiteral("SAME")), tree.a2x);
    Access::name(*tree.a2x) = QStringLiteral("A2X");
    QCOMPARE(tree.r->retrieveRecord(QStringLiteral("SAME")), tree.b);
}

void RecordTest::commonFindsTheRecordInCapitalsAtAnyDepth()
{
    const QString wanted = QStringLiteral("Common");
    const QString capitals = QStringLiteral("COMMON");
    for (const char *place : { "R", "A", "A2X", "C", "C1X" }) {
        Tree tree;
        TVpRecord *record = tree.r->retrieveRecord(QLatin1String(place));
        Access::name(*record) = capitals;
        QCOMPARE(tree.r->retrieveRecord(wanted), record);
        QCOMPARE(tree.r->retrieveRecord(capitals), record);
    }
}

void RecordTest::capitalsDoNotFindTheCommonRecord()
{
    for (const char *place : { "R", "A", "A2X", "C", "C1X" }) {
        Tree tree;
        TVpRecord *record = tree.r->retrieveRecord(QLatin1String(place));
        Access::name(*record) = QStringLiteral("Common");
        QVERIFY(!tree.r->retrieveRecord(QStringLiteral("COMMON")));
        QCOMPARE(tree.r->retrieveRecord(QStringLiteral("Common")), record);
    }
}

void RecordTest::aliasHoldsOnlyForTheTwoSpellings()
{
    Tree tree;
    Access::name(*tree.b) = QStringLiteral("COMMON");
    QVERIFY(!tree.r->retrieveRecord(QStringLiteral("common")));
    QVERIFY(!tree.r->retrieveRecord(QStringLiteral("COMMOn")));
    Access::name(*tree.b) = QStringLiteral("common");
    QVERIFY(!tree.r->retrieveRecord(QStringLiteral("Common")));
}

void RecordTest::aliasTakesWhicheverComesFirst()
{
    Tree tree;
    Access::name(*tree.a2) = QStringLiteral("COMMON");
    Access::name(*tree.b) = QStringLiteral("Common");
    QCOMPARE(tree.r->retrieveRecord(QStringLiteral("Common")), tree.a2);
    QCOMPARE(tree.b->retrieveRecord(QStringLiteral("Common")), tree.b);
}

void RecordTest::emptyNameFindsARecordWithoutName()
{
    Tree tree;
    Access::name(*tree.a2) = QString();
    QCOMPARE(tree.r->retrieveRecord(QString()), tree.a2);
    QCOMPARE(tree.r->retrieveRecord(QStringLiteral("")), tree.a2);
}

void RecordTest::nodeCaptionPutsTheCaptionInBrackets_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("text");

    // clang-format off
    QTest::newRow("both")             << "HOUSE" << "Housing" << "HOUSE (Housing)";
    QTest::newRow("no caption")       << "HOUSE" << ""        << "HOUSE";
    QTest::newRow("no name")          << ""      << "Housing" << " (Housing)";
    QTest::newRow("neither")          << ""      << ""        << "";
    QTest::newRow("caption is not trimmed") << "H" << " "     << "H ( )";
    // clang-format on
}

void RecordTest::nodeCaptionPutsTheCaptionInBrackets()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QString, text);

    LoneRecord record;
    Access::name(record) = name;
    Access::caption(record) = caption;
    QCOMPARE(record.nodeCaption(), text);
}

void RecordTest::typeOfARecordIsReadForTheProvider()
{
    LoneRecord record;
    QCOMPARE(record.typeCode(), QString());
    QCOMPARE(record.typeNumber(), -1);
    Access::text1(record) = QStringLiteral("H1");
    Access::numbers1(record)[0] = 0x141;
    QCOMPARE(record.typeCode(), QStringLiteral("H1"));
    QCOMPARE(record.typeNumber(), 0x141);
}

void RecordTest::referencesAreAppendedAndRemoved()
{
    LoneRecord record;
    TVpRecordReference first;
    TVpRecordReference second;
    TVpRecordReference unknown;
    Access::addReference(record, &first);
    Access::addReference(record, &second);
    QCOMPARE(*Access::references(record), (QList<TVpRecordReference *>{ &first, &second }));
    Access::removeReference(record, &unknown);
    QCOMPARE(*Access::references(record), (QList<TVpRecordReference *>{ &first, &second }));
    Access::removeReference(record, &first);
    QCOMPARE(*Access::references(record), QList<TVpRecordReference *>{ &second });
    Access::removeReference(record, &second);
    QVERIFY(Access::references(record)->isEmpty());
}

void RecordTest::referenceIsAddedToAMovedToRecord()
{
    LoneRecord source;
    TVpRecord moved(std::move(source));
    TVpRecordReference reference;
    Access::removeReference(moved, &reference);
    Access::addReference(moved, &reference);
    QCOMPARE(*Access::references(moved), QList<TVpRecordReference *>{ &reference });
    QVERIFY(Access::references(source)->isEmpty());
    delete Access::references(moved);
}

void RecordTest::keysAreEmptyWhateverTheLine_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "";
    QTest::newRow("a code") << "H";
    QTest::newRow("a whole line") << "H0012345 text";
}

void RecordTest::keysAreEmptyWhateverTheLine()
{
    QFETCH(QString, line);

    LoneRecord record;
    QCOMPARE(Access::keyValue(record, line), QString());
    QCOMPARE(Access::parentKeyValue(record, line), QString());
}

void RecordTest::assemblingCountsLinesOfTheEmptyTypeForEachReference_data()
{
    QTest::addColumn<int>("references");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("status");

    constexpr int untouched = Questionnaire::untouched;
    // clang-format off
    QTest::newRow("two lines without a type")          << 1 << QStringList{"", "H", ""} << 4;
    QTest::newRow("several references")                << 3 << QStringList{"", ""}      << 4;
    QTest::newRow("one line without a type")           << 2 << QStringList{"", "H"}     << untouched;
    QTest::newRow("lines of any type do not count")    << 2 << QStringList{"H", "H"}    << untouched;
    QTest::newRow("no line")                           << 1 << QStringList{}            << untouched;
    QTest::newRow("no reference")                      << 0 << QStringList{"", ""}      << untouched;
    // clang-format on
}

void RecordTest::assemblingCountsLinesOfTheEmptyTypeForEachReference()
{
    QFETCH(int, references);
    QFETCH(QStringList, lines);
    QFETCH(int, status);

    LoneRecord record;
    TVpRecordReference reference;
    for (int i = 0; i < references; ++i)
        Access::addReference(record, &reference);
    Questionnaire questionnaire(lines);
    QCOMPARE(Access::assemble(record, questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, status);
}

void RecordTest::assemblingWithoutAListOfReferencesCountsNoLines()
{
    LoneRecord record;
    delete std::exchange(Access::references(record), nullptr);
    Questionnaire questionnaire({ "", "" });
    QCOMPARE(Access::assemble(record, questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::assemblingWithAKeyReturnsTheTextWhateverKeyAndReferences_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("references");
    QTest::addColumn<QString>("text");

    // clang-format off
    QTest::newRow("plain")            << ""    << 0 << "some text";
    QTest::newRow("key")              << "K"   << 0 << "some text";
    QTest::newRow("references")       << ""    << 2 << "some text";
    QTest::newRow("empty text")       << "K"   << 2 << "";
    // clang-format on
}

void RecordTest::assemblingWithAKeyReturnsTheTextWhateverKeyAndReferences()
{
    QFETCH(QString, key);
    QFETCH(int, references);
    QFETCH(QString, text);

    LoneRecord record;
    TVpRecordReference reference;
    for (int i = 0; i < references; ++i)
        Access::addReference(record, &reference);
    Questionnaire questionnaire({ QString(), QString() });
    questionnaire.index.text = text;
    QCOMPARE(Access::assemble(record, questionnaire.index, key), text);
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::checkGivesOneTextForEachLineOfTheRecord_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("count");

    // clang-format off
    QTest::newRow("one")                 << QStringList{"H1"} << 1;
    QTest::newRow("several")             << QStringList{"H1", "H1", "H2"} << 3;
    QTest::newRow("others in between")   << QStringList{"P", "H1", "P", "H1"} << 2;
    QTest::newRow("case-sensitively")    << QStringList{"h1", "H1"} << 1;
    // clang-format on
}

void RecordTest::checkGivesOneTextForEachLineOfTheRecord()
{
    QFETCH(QStringList, lines);
    QFETCH(int, count);

    Forest forest;
    Questionnaire questionnaire(lines);
    QCOMPARE(Access::check(forest.make(QStringLiteral("HOUSE"), QStringLiteral("H")), questionnaire.index),
             pieces(count));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
    QCOMPARE(questionnaire.lines, lines);
    QCOMPARE(questionnaire.index.text, QStringLiteral("piece"));
}

void RecordTest::checkOfATypeWithoutLinesIsEmptyAndLeavesTheStatus()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    Questionnaire questionnaire({ QStringLiteral("P"), QStringLiteral("P") });
    QCOMPARE(Access::check(house, questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::checkWithAnEmptyTextIsEmptyAndLeavesTheStatus()
{
    Forest forest;
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("H") });
    questionnaire.index.text.clear();
    QCOMPARE(Access::check(forest.make(QStringLiteral("HOUSE"), QStringLiteral("H")), questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::checkWithAnEmptyTextIsEmptyWhateverTheTree()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    TVpRecord *person = forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    forest.makeChild(person, QStringLiteral("TRIP")); // its empty type would not be found again
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("P"), QString(), QStringLiteral("H") });
    questionnaire.index.text.clear();
    QCOMPARE(Access::check(house, questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::emptyTextHasNoEffectIfNothingIsFoundAgain()
{
    Forest forest;
    Questionnaire questionnaire({ QString(), QStringLiteral("H") });
    questionnaire.index.text.clear();
    QCOMPARE(Access::check(forest.make(QStringLiteral("HOUSE")), questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, 6);
}

void RecordTest::failedCheckDoesNotChangeTheNextOne()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("P"), QStringLiteral("P") });
    const QString before = Access::check(house, questionnaire.index);
    questionnaire.index.text.clear();
    QCOMPARE(Access::check(house, questionnaire.index), QString());
    questionnaire.index.text = QStringLiteral("piece");
    QCOMPARE(Access::check(house, questionnaire.index), pieces(1 + 2));
    QCOMPARE(before, pieces(1 + 2));
}

void RecordTest::checkSetsStatus6WhereAnOccurrenceIsNotFoundAgain_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("lines");

    // The code of the empty type is empty, so it is never found again.
    // clang-format off
    QTest::newRow("empty code")     << QStringLiteral("") << QStringList{"H", ""};
    QTest::newRow("no type object") << QString()          << QStringList{"", "", "H"};
    // clang-format on
}

void RecordTest::checkSetsStatus6WhereAnOccurrenceIsNotFoundAgain()
{
    QFETCH(QString, type);
    QFETCH(QStringList, lines);

    Forest forest;
    TVpRecord *record = forest.make(QStringLiteral("HOUSE"), type);
    QCOMPARE(Access::recordType(*record) == nullptr, type.isNull());
    Questionnaire questionnaire(lines);
    QCOMPARE(Access::check(record, questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, 6);
}

void RecordTest::checkWithoutLinesIsEmpty()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    Questionnaire questionnaire({});
    QCOMPARE(Access::check(house, questionnaire.index), QString());
    questionnaire.index.lines = nullptr;
    QCOMPARE(Access::check(house, questionnaire.index), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::checkVisitsNoBrothersOfTheFirstRecord()
{
    Forest forest;
    TVpRecord *root = forest.make(QStringLiteral("ROOT"));
    TVpRecord *house = forest.makeChild(root, QStringLiteral("HOUSE"), QStringLiteral("H"));
    forest.makeChild(root, QStringLiteral("PERSON"), QStringLiteral("P"));
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("P"), QStringLiteral("P") });
    QCOMPARE(Access::check(house, questionnaire.index), pieces(1));
}

void RecordTest::checkIgnoresReferences()
{
    Forest forest;
    TVpRecordReference reference;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    Access::addReference(*house, &reference);
    Questionnaire questionnaire({ QStringLiteral("H"), QString(), QString() });
    QCOMPARE(Access::check(house, questionnaire.index), pieces(1));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::linesOfAChildRepeatUnderEveryLineOfItsParent()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    Questionnaire questionnaire({ QStringLiteral("H1"), QStringLiteral("P1"), QStringLiteral("H2"),
                                  QStringLiteral("P2"), QStringLiteral("P3") });
    // 2 houses, and 3 persons under each of them
    QCOMPARE(Access::check(house, questionnaire.index), pieces(2 + 2 * 3));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::linesOfAGrandchildRepeatUnderEveryLineAbove()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    TVpRecord *person = forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    forest.makeChild(person, QStringLiteral("TRIP"), QStringLiteral("T"));
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("H"), QStringLiteral("P"), QStringLiteral("P"),
                                  QStringLiteral("P"), QStringLiteral("T"), QStringLiteral("T") });
    QCOMPARE(Access::check(house, questionnaire.index), pieces(2 + 2 * 3 + 2 * 3 * 2));
}

void RecordTest::checkVisitsEveryChild()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    for (const char *type : { "P", "T", "A" })
        forest.makeChild(house, QLatin1String(type), QLatin1String(type));
    Questionnaire questionnaire({ QStringLiteral("A"), QStringLiteral("H"), QStringLiteral("P"), QStringLiteral("A"),
                                  QStringLiteral("T"), QStringLiteral("A") });
    QCOMPARE(Access::check(house, questionnaire.index), pieces(1 + 1 + 1 + 3));
}

void RecordTest::emptyResultOfAChildIsNotAdded()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("H") });
    QCOMPARE(Access::check(house, questionnaire.index), pieces(2));
}

void RecordTest::childrenOfARecordWithoutLinesAreNotVisited()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    TVpRecord *person = forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    forest.makeChild(person, QStringLiteral("TRIP"), QStringLiteral("T"));
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("T"), QStringLiteral("T") });
    QCOMPARE(Access::check(house, questionnaire.index), pieces(1));
}

void RecordTest::lowerCheckVisitsBrothers()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    TVpRecord *person = forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    forest.makeChild(house, QStringLiteral("EMPTY"), QStringLiteral("E"));
    TVpRecord *trip = forest.makeChild(house, QStringLiteral("TRIP"), QStringLiteral("T"));
    forest.makeChild(trip, QStringLiteral("LEG"), QStringLiteral("L"));
    Questionnaire questionnaire({ QStringLiteral("H"), QStringLiteral("P"), QStringLiteral("P"), QStringLiteral("T"),
                                  QStringLiteral("L"), QStringLiteral("L"), QStringLiteral("T") });
    // 2 persons, 2 trips, 2 legs under each trip; the house above is not visited
    QCOMPARE(Access::check(person, questionnaire.index, QString()), pieces(2 + 2 + 2 * 2));
    QCOMPARE(Access::check(trip, questionnaire.index, QString()), pieces(2 + 2 * 2));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::lowerCheckMatchesNoLineWithAParentKey()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    TVpRecord *person = forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    forest.makeChild(person, QStringLiteral("TRIP"), QStringLiteral("T"));
    forest.makeChild(house, QStringLiteral("OTHER"), QStringLiteral("P"));
    Questionnaire questionnaire({ QStringLiteral("P"), QStringLiteral("T") });
    // The key of a line is empty: it equals only the empty key.
    QCOMPARE(Access::check(person, questionnaire.index, QStringLiteral("K")), QString());
    QCOMPARE(Access::check(person, questionnaire.index, QString()), pieces(1 + 1 + 1));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::lowerCheckOfTheEmptyTypeTakesTheShortLines()
{
    Forest forest;
    Questionnaire questionnaire({ QString(), QStringLiteral("H"), QString() });
    TVpRecord *emptyCode = forest.make(QStringLiteral("NONE"), QStringLiteral(""));
    TVpRecord *noType = forest.make(QStringLiteral("NONE"));
    QCOMPARE(Access::check(emptyCode, questionnaire.index, QString()), pieces(2));
    QCOMPARE(Access::check(noType, questionnaire.index, QString()), pieces(2));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::lowerCheckWithAnEmptyTextIsEmptyAndLeavesTheStatus()
{
    Forest forest;
    TVpRecord *person = forest.make(QStringLiteral("PERSON"), QStringLiteral("P"));
    Access::addBrother(person, forest.make(QStringLiteral("TRIP"), QStringLiteral("T")));
    Questionnaire questionnaire({ QStringLiteral("P"), QStringLiteral("T") });
    questionnaire.index.text.clear();
    QCOMPARE(Access::check(person, questionnaire.index, QString()), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::lowerCheckWithAnEmptyTextIsEmptyWhateverTheTree_data()
{
    QTest::addColumn<QStringList>("lines");

    // clang-format off
    QTest::newRow("first record fails")                  << QStringList{"P", "T"};
    QTest::newRow("first record fails at a later line")  << QStringList{"X", "", "P", "P"};
    QTest::newRow("later brother fails")                 << QStringList{"T"};
    QTest::newRow("last brother, of no type, fails")     << QStringList{""};
    QTest::newRow("child of a record without lines")     << QStringList{"L"};
    QTest::newRow("no line of the tree")                 << QStringList{"X"};
    // clang-format on
}

void RecordTest::lowerCheckWithAnEmptyTextIsEmptyWhateverTheTree()
{
    QFETCH(QStringList, lines);

    Forest forest;
    TVpRecord *person = forest.make(QStringLiteral("PERSON"), QStringLiteral("P"));
    forest.makeChild(person, QStringLiteral("LEG"), QStringLiteral("L"));
    Access::addBrother(person, forest.make(QStringLiteral("TRIP"), QStringLiteral("T")));
    Access::addBrother(person, forest.make(QStringLiteral("NONE")));
    Questionnaire questionnaire(lines);
    questionnaire.index.text.clear();
    QCOMPARE(Access::check(person, questionnaire.index, QString()), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::lowerCheckWithoutLinesIsEmpty()
{
    Forest forest;
    TVpRecord *person = forest.make(QStringLiteral("PERSON"), QStringLiteral("P"));
    Questionnaire questionnaire({});
    QCOMPARE(Access::check(person, questionnaire.index, QString()), QString());
    questionnaire.index.lines = nullptr;
    QCOMPARE(Access::check(person, questionnaire.index, QString()), QString());
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

void RecordTest::nullQuestionnaireGivesAnEmptyText()
{
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    forest.makeChild(house, QStringLiteral("PERSON"), QStringLiteral("P"));
    TVpRecordReference reference;
    Access::addReference(*house, &reference);
    const QStringList answers = Access::answersOfNull(*house);
    QCOMPARE(answers, QStringList({ "", "", "", "" }));
    for (const QString &answer : answers)
        QVERIFY(!answer.isNull());
}

void RecordTest::walksFollowTheirRecursiveRules()
{
    std::mt19937 random(1); // NOLINT: the same trees every time are wanted
    const auto drawn = [&random](int limit) { return int(random() % unsigned(limit)); };
    const char *const types[] = { "H", "P", "T", "" };
    constexpr int typeCount = 4;
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        Forest forest;
        std::vector<TVpRecord *> records = { forest.make(QStringLiteral("0"), QStringLiteral("H")) };
        for (int i = 1 + drawn(8); i > 0; --i)
            records.push_back(forest.makeChild(records[size_t(drawn(int(records.size())))], QString::number(drawn(6)),
                                               QLatin1String(types[drawn(typeCount)])));
        QStringList lines;
        for (int i = drawn(6); i > 0; --i)
            lines.append(QLatin1String(types[drawn(typeCount)]));
        Questionnaire questionnaire(lines);
        for (TVpRecord *record : records) {
            for (int name = 0; name < 6; ++name) {
                TVpRecord *wanted = recursiveSearch(record, QString::number(name));
                QCOMPARE(record->retrieveRecord(QString::number(name)), wanted);
                found += wanted ? 1 : 0;
            }
            const QString expected = recursiveLowerCheck(record, questionnaire.index, QString());
            QCOMPARE(Access::check(record, questionnaire.index, QString()), expected);
            found += expected.isEmpty() ? 0 : 1;
        }
    }
    QVERIFY(found > 1000);
}

void RecordTest::manyBrothersNeedNoStack()
{
    Forest forest;
    TVpRecord *root = forest.make(QStringLiteral("R"), QStringLiteral("R"));
    TVpRecord *last = nullptr;
    for (int i = 0; i < manyBrothers; ++i) {
        TVpRecord *record = forest.make(QString::number(i), QStringLiteral("H"));
        Access::parent(record) = root;
        (last ? Access::brother(last) : Access::child(root)) = record;
        last = record;
    }
    TVpRecord *added = forest.make(QStringLiteral("ADDED"), QStringLiteral("H"));
    Access::addChild(root, added);
    QCOMPARE(Access::brother(last), added);
    QCOMPARE(Access::parent(added), root);

    QCOMPARE(walkFrom(root).size(), manyBrothers + 2);
    QCOMPARE(root->retrieveRecord(QStringLiteral("ADDED")), added);
    QVERIFY(!root->retrieveRecord(QStringLiteral("absent")));
    Questionnaire questionnaire({ QStringLiteral("R"), QStringLiteral("H") });
    QVERIFY(Access::check(root, questionnaire.index) == pieces(1 + manyBrothers + 1));
    Access::deleteChild(root, QStringLiteral("ADDED"));
    QVERIFY(!Access::brother(last));
}

void RecordTest::manyLevelsNeedNoStack()
{
    Forest forest;
    TVpRecord *root = forest.make(QStringLiteral("R"));
    TVpRecord *deepest = root;
    for (int i = 0; i < manyLevels; ++i)
        deepest = forest.makeChild(deepest, QString::number(i));
    TVpRecord *next = forest.make(QStringLiteral("NEXT"));
    Access::addBrother(root, next);

    QCOMPARE(walkFrom(root).size(), manyLevels + 2);
    QCOMPARE(deepest->preOrderNext(), next);
    QCOMPARE(root->retrieveRecord(QString::number(manyLevels - 1)), deepest);
    QCOMPARE(root->retrieveRecord(QStringLiteral("NEXT")), next);
    QVERIFY(!root->retrieveRecord(QStringLiteral("absent")));
}

void RecordTest::checksOfManyLevelsNeedNoStack()
{
    // One line that every level matches: the walk would not go below a level without a line.
    Forest forest;
    TVpRecord *root = forest.make(QStringLiteral("R"), QStringLiteral("H"));
    TVpRecord *deepest = root;
    for (int i = 0; i < manyLevels; ++i)
        deepest = forest.makeChild(deepest, QString(), QStringLiteral("H"));
    Access::addBrother(deepest, forest.make(QStringLiteral("LAST"), QStringLiteral("L")));
    Questionnaire questionnaire({ QStringLiteral("X"), QStringLiteral("H"), QStringLiteral("L") });

    QVERIFY(Access::check(root, questionnaire.index) == pieces(1 + manyLevels + 1));
    QVERIFY(Access::check(root, questionnaire.index, QString()) == pieces(1 + manyLevels + 1));
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);

    // The walk ends below the first level.
    questionnaire.lines = QStringList{ QStringLiteral("R"), QStringLiteral("L") };
    TVpRecordType type{ QStringLiteral("R") };
    Access::recordType(*root) = &type;
    QCOMPARE(Access::check(root, questionnaire.index), pieces(1));
    QCOMPARE(Access::check(root, questionnaire.index, QString()), pieces(1));
}

void RecordTest::checksOfManyLinesAreQuick()
{
    // A search from the first line on for each line would exceed the time limit of a test.
    Forest forest;
    TVpRecord *house = forest.make(QStringLiteral("HOUSE"), QStringLiteral("H"));
    QStringList lines;
    lines.reserve(manyLines);
    for (int i = 0; i < manyLines; ++i)
        lines.append(QStringLiteral("H"));
    Questionnaire questionnaire(lines);
    const int size = manyLines * int(qstrlen("piece\r\n"));
    QCOMPARE(Access::check(house, questionnaire.index).size(), size);
    QCOMPARE(Access::check(house, questionnaire.index, QString()).size(), size);
    QCOMPARE(questionnaire.index.status, Questionnaire::untouched);
}

QTEST_GUILESS_MAIN(RecordTest)
#include "RecordTest.moc"
