#include "DirectoryWalk.h"

#include "Answer.h"
#include "Descriptor.h"
#include "OutputDirectory.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace
{

/// The files below a directory that is named in a call.
class DirectoryWalk
{
public:
    /// Skips the directory \a without; empty for none.
    explicit DirectoryWalk(const QString &withoutDirectory)
        : without(withoutDirectory)
    {
    }

    // Pending directories are kept in a list: they can be nested deeper than the stack allows.
    QStringList filesBelow(const QString &top)
    {
        QStringList found;
        QStringList directories = { top };
        while (!directories.isEmpty()) {
            const QString directory = directories.takeLast();
            if (directory == top || without.isEmpty() || !isSameFile(directory, without))
                gatherEntries(directory, found, directories);
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    int status() const { return worst; }

private:
    // The names are read as bytes: QDir skips those that are not valid in the encoding of the locale.
    void gatherEntries(const QString &directory, QStringList &found, QStringList &directories)
    {
        std::error_code error;
        std::filesystem::directory_iterator entry(QFile::encodeName(directory).toStdString(), error);
        for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
            const std::string name = entry->path().filename().string();
            if (name.front() != '.')
                gather(inDirectory(directory, QFile::decodeName(name.c_str())), found, directories);
        }
        if (error)
            worst = noAnswerFor(directory, QStringLiteral("the directory cannot be read"));
    }

    // Broken links are kept: reading them fails with a reason. Pipes, sockets and devices are skipped: reading one may
    // never end.
    static void gather(const QString &path, QStringList &found, QStringList &directories)
    {
        const QFileInfo entry(path);
        if (entry.isDir() && !entry.isSymLink())
            directories.append(path);
        else if (entry.isFile() || !entry.exists())
            found.append(path);
    }

    QString without;
    int worst = statusFine;
};

QString problemWithDirectory(const QString &directory, bool isWalked, const QString &without)
{
    if (!isWalked)
        return QStringLiteral("is a directory; add -r to read the files in it");
    if (!without.isEmpty() && isSameFile(directory, without))
        return QStringLiteral("is the directory to read, and no file is written into it; name another one with -o");
    return QString();
}

} // namespace

NamedFiles filesNamed(const std::vector<std::string> &names, bool walksDirectories, const QString &without)
{
    NamedFiles named;
    DirectoryWalk walk(without);
    for (const std::string &name : names) {
        const QString file = QFile::decodeName(name.c_str());
        if (!QFileInfo(file).isDir()) {
            named.files.append(file);
            named.areWalked.append(false);
            continue;
        }
        const QString problem = problemWithDirectory(file, walksDirectories, without);
        const QStringList found = problem.isEmpty() ? walk.filesBelow(file) : QStringList();
        if (!problem.isEmpty())
            named.status = noAnswerFor(file, problem);
        else if (found.isEmpty() && walk.status() == statusFine)
            named.status = noAnswerFor(file, QStringLiteral("has no file to read"));
        named.files.append(found);
        named.areWalked.insert(named.areWalked.size(), found.size(), true);
    }
    named.status = std::max(named.status, walk.status());
    return named;
}
