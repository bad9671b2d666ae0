#ifndef SUPPORT_BLOCKBALANCE_H
#define SUPPORT_BLOCKBALANCE_H

#include "support/ScarceMemory.h"

#include <QtTest>

/// Fails the test in whose scope it is made where the scope ends with more blocks of memory than it began with, which
/// were left, or with fewer, which were freed twice. It is made before the objects of the test. What is
/// made once for the process must have been made before.
class BlockBalance
{
public:
    BlockBalance()
        : atStart(scarce::blocksHeld)
    {
    }
    ~BlockBalance()
    {
        const long atEnd = scarce::blocksHeld; // the comparison itself makes blocks
        QCOMPARE(atEnd, atStart);
    }
    BlockBalance(const BlockBalance &) = delete;
    BlockBalance &operator=(const BlockBalance &) = delete;

private:
    const long atStart;
};

#endif
