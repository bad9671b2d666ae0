#ifndef IMPORT_LAYOUTNOTES_P_H
#define IMPORT_LAYOUTNOTES_P_H

#include "import/GenericField.h"
#include "import/ReadReport.h"

#include <QList>

/// Reports variables that share a name: a search by name finds only the last one. \a differentNames is the number of
/// distinct names.
void reportRepeatedNames(ReadReport &report, const QList<TGenericField *> *fields, size_t differentNames);

/// Returns whether the layout keeps a number exactly, although it writes six digits. A number of more digits counts as
/// not kept exactly, even if the digits that an exponent omits are zeros.
bool isWrittenInFull(double number);

/// Reports a file that cannot be read at all, and returns true for it. Otherwise reports nothing and returns false.
bool reportMissingFile(ReadReport &report, const QString &path);

#endif
