#include "util/ValuePointer.h"

#include <QtTest>

class ValuePointerTest : public QObject
{
    Q_OBJECT

private slots:
    void newPointerHasAnObject()
    {
        const ValuePointer<QString> pointer;
        QVERIFY(pointer->isNull());
    }

    void copyHasAnObjectOfItsOwn()
    {
        const ValuePointer<QString> original;
        *original = QStringLiteral("one");
        const ValuePointer<QString> copy(original);
        QCOMPARE(*copy, QStringLiteral("one"));
        *original = QStringLiteral("two");
        QCOMPARE(*copy, QStringLiteral("one"));
    }

    void assignmentAssignsTheObjectAndKeepsItsAddress()
    {
        const ValuePointer<QString> source;
        *source = QStringLiteral("one");
        ValuePointer<QString> target;
        const QString *address = &*target;
        target = source;
        QCOMPARE(*target, QStringLiteral("one"));
        QCOMPARE(&*target, address);
        QVERIFY(&*source != address);
    }

    void assignmentToItselfChangesNothing()
    {
        ValuePointer<QString> pointer;
        *pointer = QStringLiteral("one");
        const ValuePointer<QString> &same = pointer;
        pointer = same;
        QCOMPARE(*pointer, QStringLiteral("one"));
    }
};

QTEST_APPLESS_MAIN(ValuePointerTest)
#include "ValuePointerTest.moc"
