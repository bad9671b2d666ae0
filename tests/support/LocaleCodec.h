#ifndef SUPPORT_LOCALECODEC_H
#define SUPPORT_LOCALECODEC_H

#include <QTextCodec>

/// Sets the codec of the locale while it lives.
class LocaleCodec
{
public:
    explicit LocaleCodec(const char *name)
    {
        QTextCodec *codec = QTextCodec::codecForName(name);
        if (!codec)
            qFatal("no codec %s", name);
        QTextCodec::setCodecForLocale(codec);
    }
    ~LocaleCodec() { QTextCodec::setCodecForLocale(nullptr); }
    LocaleCodec(const LocaleCodec &) = delete;
    LocaleCodec &operator=(const LocaleCodec &) = delete;
};

#endif
