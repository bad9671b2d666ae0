#ifndef VANLAYOUT_LOCALETEXT_H
#define VANLAYOUT_LOCALETEXT_H

#include <QByteArray>
#include <QString>

#include <string>

/// Text in the encoding of the locale, as the arguments of the program are and as standard error is written. The
/// functions of Qt 6 for it take every locale for UTF-8.
QString fromLocale(const std::string &text);
QByteArray toLocale(const QString &text);

#endif
