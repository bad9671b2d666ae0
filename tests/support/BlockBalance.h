#ifndef SUPPORT_BLOCKBALANCE_H
#define SUPPORT_BLOCKBALANCE_H

#include "support/ScarceMemory.h"

#include <QtTest>

/// Fails the test if its scope ends with more blocks of memory than it began with (a leak), or with fewer (a double
/// free). Must be created before the objects of the test, and after objects that are made once for the process.
class BlockBalance
{
public:
    BlockBalance()
        : atStart(scarce::blocksHeld)
    {
    }
    ~BlockBalance()
    {
        const long atEnd = scarce::blocksHeld; // the comparison itself allocates blocks
        QCOMPARE(atEnd, atStart);
    }
    BlockBalance(const BlockBalance &) = delete;
    BlockBalance &operator=(const BlockBalance &) = delete;

private:
    const long atStart;
};

#endif
