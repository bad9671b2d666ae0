#ifndef UTIL_UTILFILES_H
#define UTIL_UTILFILES_H

#include "model_vanadmin_export.h"

#include <QString>

/// Operations on paths. They have no state, throw nothing, write nothing, and may be called from any thread.
class MODEL_VANADMIN_EXPORT UtilFiles
{
public:
    UtilFiles() = default;
    UtilFiles(const UtilFiles &) = default;
    UtilFiles(UtilFiles &&) = default;
    UtilFiles &operator=(const UtilFiles &other); ///< does nothing
    UtilFiles &operator=(UtilFiles &&other);      ///< does nothing
    ~UtilFiles() = default;

    /// Returns the status of \a path, the first that applies: 1 the path is empty, 2 its directory does not exist, 3
    /// the directory exists and the file does not, 4 the file is not writable, 0 it is. A directory counts as a file
    /// here.
    static int GetFileStatus(QString path);
    static int CheckFileStatus(QString path); ///< the same as GetFileStatus()
    /// Returns 0 if a file can be saved, which means status 0 or 3, and otherwise the status. \a other is not used.
    static int GetFileSaveStatus(QString path, QString other);
    /// Returns whether a file can be saved, also if it does not exist yet. \a other is not used.
    static bool CheckFileSave(QString path, QString other);

    static bool DirExists(QString path);  ///< whether it exists and is a directory
    static bool FileExists(QString path); ///< whether it exists and is a file
    /// Returns whether the size in kilobytes (1024 bytes, rounded down) is above \a sizeKB. A missing file has size 0.
    static bool FileSizeReachedInKB(QString path, int sizeKB);
    static QString GetFileDir(QString path); ///< absolute path of the directory of the file
    /// Repairs the path of an entity file that was stored one directory too deep. Returns the path itself if such a
    /// file exists. Otherwise returns the absolute path without the directory above the file's own, in native
    /// separators, which is not tested for existence.
    static QString getDataBaseEntityFilePath(QString path);
};

#endif
