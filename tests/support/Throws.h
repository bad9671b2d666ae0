#ifndef SUPPORT_THROWS_H
#define SUPPORT_THROWS_H

#include <QtTest>

#ifndef QVERIFY_THROWS_EXCEPTION
/// The name of the macro in Qt 6.3 and later, in the form that has the type first.
#define QVERIFY_THROWS_EXCEPTION(type, expression) QVERIFY_EXCEPTION_THROWN(expression, type)
#endif

#endif
