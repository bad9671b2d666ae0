#ifndef IMPORT_LAYOUTNOTES_P_H
#define IMPORT_LAYOUTNOTES_P_H

#include "import/GenericField.h"
#include "import/ReadReport.h"

#include <QList>

/// Tells of variables of one name: a search by name finds the last one alone. There are \a names different names.
void tellOfRepeatedNames(ReadReport &report, const QList<TGenericField *> *fields, size_t names);

/// Whether a number reads the same in the six digits that the layout has for it. One of more digits does not, even if
/// those that an exponent leaves out are zeros.
bool isWrittenInFull(double number);

/// Tells of a file that cannot be read at all; false if there is one.
bool tellOfMissingFile(ReadReport &report, const QString &path);

#endif
