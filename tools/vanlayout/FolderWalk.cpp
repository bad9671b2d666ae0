#include "FolderWalk.h"

#include "Answer.h"
#include "Descriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace
{

// Folders that are still to be walked are kept in a list: they can be nested deeper than the stack is.
QStringList filesBelow(const QString &top, const QString &without)
{
    QStringList found;
    QStringList folders = { top };
    while (!folders.isEmpty()) {
        const QString folder = folders.takeLast();
        if (!without.isEmpty() && isSameFile(folder, without))
            continue;
        const QFileInfoList entries = QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : entries) {
            if (entry.isDir() && !entry.isSymLink())
                folders.append(entry.filePath());
            else if (entry.isFile())
                found.append(entry.filePath());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace

NamedFiles filesNamed(const std::vector<std::string> &names, bool walksFolders, const QString &without)
{
    NamedFiles named;
    for (const std::string &name : names) {
        const QString file = QFile::decodeName(name.c_str());
        if (!QFileInfo(file).isDir())
            named.files.append(file);
        else if (walksFolders)
            named.files.append(filesBelow(file, without));
        else
            named.status = noAnswerFor(file, QStringLiteral("is a folder; add -r to read the files in it"));
    }
    return named;
}
