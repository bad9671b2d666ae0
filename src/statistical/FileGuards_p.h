#ifndef STATISTICAL_FILEGUARDS_P_H
#define STATISTICAL_FILEGUARDS_P_H

#include "statistical/StatisticalImport_p.h"

#include <QString>

/// What is looked at in a file before ReadStat reads it.
namespace statistical
{

/// Most variables of an SPSS file with long names, or with very long texts, that ReadStat has room for; with more it
/// writes through a null pointer.
constexpr int mostLongNames = 419328;

/// Whether ReadStat 1.1.8 can read an SPSS file without harm. What is no such file, or none at all, is safe.
bool isSafeSpssFile(const QString &path);

/// How long the names of label sets can be in a Stata file, by the version in its head.
NameBounds stataNameBounds(const QString &path);

} // namespace statistical

#endif
