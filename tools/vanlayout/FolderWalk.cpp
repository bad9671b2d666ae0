#include "FolderWalk.h"

#include "Answer.h"
#include "Descriptor.h"
#include "OutputFolder.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace
{

/// The files below a directory that is named in a call.
class FolderWalk
{
public:
    /// Skips the directory \a without; empty for none.
    explicit FolderWalk(const QString &withoutFolder)
        : without(withoutFolder)
    {
    }

    // Pending directories are kept in a list: they can be nested deeper than the stack allows.
    QStringList filesBelow(const QString &top)
    {
        QStringList found;
        QStringList folders = { top };
        while (!folders.isEmpty()) {
            const QString folder = folders.takeLast();
            if (folder == top || without.isEmpty() || !isSameFile(folder, without))
                gatherEntries(folder, found, folders);
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    int status() const { return worst; }

private:
    // The names are read as bytes: QDir skips those that are not valid in the encoding of the locale.
    void gatherEntries(const QString &folder, QStringList &found, QStringList &folders)
    {
        std::error_code error;
        std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            const std::string name = entry->path().filename().string();
            if (name.front() != '.')
                gather(inFolder(folder, QFile::decodeName(name.c_str())), found, folders);
        }
        if (error)
            worst = noAnswerFor(folder, QStringLiteral("the folder cannot be read"));
    }

    // Broken links are kept: reading them fails with a reason. Pipes, sockets and devices are skipped: reading one may
    // never end.
    static void gather(const QString &path, QStringList &found, QStringList &folders)
    {
        const QFileInfo entry(path);
        if (entry.isDir() && !entry.isSymLink())
            folders.append(path);
        else if (entry.isFile() || !entry.exists())
            found.append(path);
    }

    QString without;
    int worst = statusFine;
};

QString problemWithFolder(const QString &folder, bool isWalked, const QString &without)
{
    if (!isWalked)
        return QStringLiteral("is a folder; add -r to read the files in it");
    if (!without.isEmpty() && isSameFile(folder, without))
        return QStringLiteral("is the folder to read, and is not written into; name another one by -o");
    return QString();
}

} // namespace

NamedFiles filesNamed(const std::vector<std::string> &names, bool walksFolders, const QString &without)
{
    NamedFiles named;
    FolderWalk walk(without);
    for (const std::string &name : names) {
        const QString file = QFile::decodeName(name.c_str());
        if (!QFileInfo(file).isDir()) {
            named.files.append(file);
            continue;
        }
        const QString problem = problemWithFolder(file, walksFolders, without);
        const QStringList found = problem.isEmpty() ? walk.filesBelow(file) : QStringList();
        if (!problem.isEmpty())
            named.status = noAnswerFor(file, problem);
        else if (found.isEmpty() && walk.status() == statusFine)
            named.status = noAnswerFor(file, QStringLiteral("has no file to read"));
        named.files.append(found);
    }
    named.status = std::max(named.status, walk.status());
    return named;
}
