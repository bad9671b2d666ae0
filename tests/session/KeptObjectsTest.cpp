#include <QtTest>

#include "import/KeptObjects_p.h"
#include "support/BlockBalance.h"
#include "support/FakeImporter.h"

namespace
{

/// A field whose destructor adds its name to a list.
class MarkedField : public FakeField
{
public:
    explicit MarkedField(QStringList *goneFields, const QString &fieldName)
        : FakeField(nullptr, fieldName)
        , gone(goneFields)
    {
    }
    ~MarkedField() override { gone->append(name); }

private:
    QStringList *gone;
};

} // namespace

/// Tests that objects stay reachable, and in which order they are released.
class KeptObjectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { gone.clear(); }

    void lastAddedIsFreedFirst()
    {
        KeptObjects kept;
        addMark(kept, "list");
        addMark(kept, "dictionary");
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "dictionary", "list" }));
    }

    void fieldsAreFreedBeforeWhatTheyPointAt()
    {
        KeptObjects kept;
        kept.addField(new MarkedField(&gone, "AGE"));
        addMark(kept, "dictionary");
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "AGE", "dictionary" }));
    }

    void fieldThatWasAddedOftenIsFreedOnce()
    {
        KeptObjects kept;
        auto *age = new MarkedField(&gone, "AGE");
        auto *sex = new MarkedField(&gone, "SEX");
        for (int i = 0; i < 1000; ++i) {
            kept.addField(age);
            kept.addField(sex);
        }
        kept.freeAll();
        gone.sort();
        QCOMPARE(gone, QStringList({ "AGE", "SEX" }));
    }

    // A format may add its fields again after an assignment.
    void fieldThatWasAddedBeforeAndAfterAnAssignmentIsFreedOnce()
    {
        auto *age = new MarkedField(&gone, "AGE");
        KeptObjects target;
        target.addField(age);
        addMark(target, "dictionary");
        KeptObjects source;
        target = source;
        target.addField(age);
        target.freeAll();
        QCOMPARE(gone, QStringList({ "AGE", "dictionary" }));
    }

    void assignmentLeavesToACopyWhatItShared()
    {
        KeptObjects target;
        addMark(target, "shared");
        KeptObjects formerCopy(target);
        KeptObjects source;
        target = source;
        addMark(formerCopy, "later");
        target.freeAll();
        QCOMPARE(gone, QStringList());
        formerCopy.freeAll();
        QCOMPARE(gone, QStringList({ "later", "shared" }));
    }

    // Two objects that were assigned one after the other have nothing in common.
    void formerSourceIsNotReached()
    {
        KeptObjects first;
        addMark(first, "of the first");
        KeptObjects second;
        addMark(second, "of the second");
        KeptObjects target;
        addMark(target, "of the target");
        target = first;
        target = second;
        target.freeAll();
        gone.sort();
        QCOMPARE(gone, QStringList({ "of the second", "of the target" }));
    }

    // The objects are freed in the reverse order of the assignments.
    void allFormerAssignmentsStayWithinReach()
    {
        KeptObjects target;
        QStringList expected;
        for (int i = 0; i < 20000; ++i) { // takes hours if an assignment costs as much as all earlier ones
            target = KeptObjects();
            addMark(target, QString::number(i));
            expected.prepend(QString::number(i));
        }
        target.freeAll();
        QCOMPARE(gone, expected);
    }

    void nothingIsFreedTwice()
    {
        KeptObjects kept;
        addMark(kept, "list");
        kept.freeAll();
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "list" }));
    }

    void copiesShareWhatEitherAddsBeforeOrAfter()
    {
        KeptObjects kept;
        addMark(kept, "before");
        KeptObjects copy(kept);
        addMark(kept, "after");
        addMark(copy, "of the copy");
        copy.freeAll();
        QCOMPARE(gone, QStringList({ "of the copy", "after", "before" }));
        kept.freeAll();
        QCOMPARE(gone.size(), 3);
    }

    void assignmentKeepsWhatItsTargetHadWithinReach()
    {
        KeptObjects target;
        addMark(target, "of the target");
        KeptObjects source;
        addMark(source, "of the source");
        target = source;
        addMark(target, "later");
        target.freeAll();
        gone.sort();
        QCOMPARE(gone, QStringList({ "later", "of the source", "of the target" }));
    }

    void sourceOfAnAssignmentDoesNotReachWhatTheTargetHad()
    {
        KeptObjects target;
        addMark(target, "of the target");
        KeptObjects source;
        target = source;
        source.freeAll();
        QCOMPARE(gone, QStringList());
        target.freeAll();
        QCOMPARE(gone, QStringList({ "of the target" }));
    }

    void selfAssignmentChangesNothing()
    {
        KeptObjects kept;
        addMark(kept, "list");
        const KeptObjects &same = kept;
        kept = same;
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "list" }));
    }

    // Only the copy still reaches the objects that both have made.
    void selfAssignmentWithACopyAliveChangesNothing()
    {
        KeptObjects kept;
        addMark(kept, "before the copy");
        KeptObjects copy(kept);
        const KeptObjects &same = kept;
        kept = same;
        addMark(kept, "later");
        addMark(copy, "of the copy");
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "of the copy", "later", "before the copy" }));
        addMark(kept, "anew");
        copy.freeAll();
        QCOMPARE(gone.last(), QString("anew"));
    }

    // Copies of each other are no different from the same object.
    void assignmentBetweenCopiesChangesNothing()
    {
        KeptObjects kept;
        addMark(kept, "of an earlier assignment");
        kept = KeptObjects();
        addMark(kept, "before the copy");
        KeptObjects copy(kept);
        kept = copy;
        copy = kept;
        addMark(copy, "later");
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "later", "before the copy", "of an earlier assignment" }));
        copy.freeAll();
        QCOMPARE(gone.size(), 3);
    }

    void destroyingTheLastCopyFreesNothing()
    {
        {
            KeptObjects kept;
            addMark(kept, "list");
        }
        QCOMPARE(gone, QStringList());
    }

    void whatIsForgottenIsNotFreed()
    {
        KeptObjects kept;
        int former = 0;
        int later = 0;
        kept.add(&former, [this] { gone.append("former"); });
        kept.add(&later, [this] { gone.append("later"); });
        kept.forget(&former);
        kept.forget(this); // never added
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "later" }));
    }

    void whatIsAddedWhileOthersGoIsKept()
    {
        KeptObjects kept;
        kept.add(nullptr, [&] { addMark(kept, "added meanwhile"); });
        kept.freeAll();
        QCOMPARE(gone, QStringList());
        kept.freeAll();
        QCOMPARE(gone, QStringList({ "added meanwhile" }));
    }

    void madeObjectIsFreedByItsType()
    {
        const BlockBalance balance;
        KeptObjects kept;
        auto *list = kept.make<QStringList>();
        list->append("a text");
        const long before = scarce::blocksHeld;
        kept.freeAll();
        const long freed = before - scarce::blocksHeld;
        QVERIFY(freed >= 1);
    }

private:
    void addMark(KeptObjects &kept, const QString &name)
    {
        kept.add(nullptr, [this, name] { gone.append(name); });
    }

    QStringList gone;
};

QTEST_APPLESS_MAIN(KeptObjectsTest)
#include "KeptObjectsTest.moc"
