#ifndef SUPPORT_CORPUS_H
#define SUPPORT_CORPUS_H

#include <QDir>
#include <QFileInfo>
#include <QString>
#include <QStringList>

/// Returns the paths of the real files of one kind; none if the corpus is absent.
inline QStringList corpusFiles(const QString &kind)
{
    QStringList paths;
    for (const QFileInfo &file : QDir(QStringLiteral(VAN_CORPUS "/") + kind).entryInfoList(QDir::Files))
        paths.append(file.filePath());
    return paths;
}

#endif
