#ifndef SUPPORT_LOCALECODEC_H
#define SUPPORT_LOCALECODEC_H

#include <QTextCodec>

/// Whether the names of files are UTF-8 in every locale, as in Qt 6.
constexpr bool fileNamesAreUtf8 = QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);

/// Sets the codec of the locale while this object exists.
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
