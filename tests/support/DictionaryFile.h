#ifndef SUPPORT_DICTIONARYFILE_H
#define SUPPORT_DICTIONARYFILE_H

#include <QFile>
#include <QString>
#include <QTemporaryDir>

/// A file with the text of a dictionary, in UTF-8. It is removed with this object.
class DictionaryFile
{
public:
    explicit DictionaryFile(const QString &text) { write(text); }

    QString path() const { return directory.filePath(QStringLiteral("dictionary.dcf")); }

    /// Replaces the content of the file.
    void write(const QString &text)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
            qFatal("%s cannot be written", qPrintable(path()));
    }

private:
    QTemporaryDir directory;
};

#endif
