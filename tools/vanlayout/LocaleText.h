#ifndef VANLAYOUT_LOCALETEXT_H
#define VANLAYOUT_LOCALETEXT_H

#include <QByteArray>
#include <QString>

#include <string>

/// Conversion from and to the encoding of the locale, which the arguments of the program and standard error have. The
/// functions of Qt 6 for it treat every locale as UTF-8.
QString fromLocale(const std::string &text);
QByteArray toLocale(const QString &text);

#endif
