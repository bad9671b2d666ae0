#ifndef VANLAYOUT_PRINTABLE_H
#define VANLAYOUT_PRINTABLE_H

#include <QString>

/// The text with a sign in place of each character that a terminal would act on.
QString printable(const QString &text);

#endif
