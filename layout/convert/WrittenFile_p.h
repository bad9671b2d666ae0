#ifndef LAYOUT_CONVERT_WRITTENFILE_P_H
#define LAYOUT_CONVERT_WRITTENFILE_P_H

#include "util/KeyedHash_p.h"

#include <QByteArray>

namespace vanlayout
{

/// Corrections of what ReadStat 1.1.8 writes and other programs do not read. The bytes are a whole file that ReadStat
/// wrote on this machine, without rows; any other bytes are returned unchanged.
namespace writtenfile
{

/// Corrects an SPSS file:
/// - The value labels of long texts have the width of the text. ReadStat rounds it up to a multiple of 8, and other
///   readers then ignore the labels. \a widths are those of the texts by name.
/// - A short name does not end within a character. ReadStat cuts names at 8 bytes.
QByteArray correctedSav(const QByteArray &bytes, const KeyedMap<QByteArray, int> &widths);

/// Corrects a Stata file of version 118 or 119:
/// - Value labels are in the order of their codes, also if codes are more than 2,147,483,647 apart.
/// - The number of the notes is stated, without which Stata does not show them. \a notes is that number.
QByteArray correctedDta(const QByteArray &bytes, int notes);

} // namespace writtenfile

} // namespace vanlayout

#endif
