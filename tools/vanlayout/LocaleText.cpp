#include "LocaleText.h"

#include <QTextCodec>

QString fromLocale(const std::string &text)
{
    return QTextCodec::codecForLocale()->toUnicode(text.data(), int(text.size()));
}

QByteArray toLocale(const QString &text)
{
    return QTextCodec::codecForLocale()->fromUnicode(text);
}
