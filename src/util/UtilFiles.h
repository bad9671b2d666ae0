#ifndef UTIL_UTILFILES_H
#define UTIL_UTILFILES_H

#include "model_vanadmin_export.h"

#include <QString>

/// Answers questions about paths. Holds no state, throws nothing, writes nothing; may be called from any thread.
class MODEL_VANADMIN_EXPORT UtilFiles
{
public:
    UtilFiles() = default;
    UtilFiles(const UtilFiles &) = default;
    UtilFiles(UtilFiles &&) = default;
    UtilFiles &operator=(const UtilFiles &other); ///< does nothing
    UtilFiles &operator=(UtilFiles &&other);      ///< does nothing
    ~UtilFiles() = default;

    /// What stands at \a path, the first that applies: 1 the path is empty, 2 its folder does not exist, 3 the folder
    /// exists and the file does not, 4 it is not writable, 0 it is. A folder counts as a file here.
    static int GetFileStatus(QString path);
    static int CheckFileStatus(QString path); ///< the same as GetFileStatus()
    /// 0 where a file can be saved, that is at the statuses 0 and 3; else the status. \a other is not used.
    static int GetFileSaveStatus(QString path, QString other);
    /// Whether a file can be saved, one that does not exist yet included. \a other changes nothing.
    static bool CheckFileSave(QString path, QString other);

    static bool DirExists(QString path);  ///< exists and is a folder
    static bool FileExists(QString path); ///< exists and is a file
    /// Whether the size in whole kilobytes (of 1024 bytes, rounded down) is above \a sizeKB. A missing file has size 0.
    static bool FileSizeReachedInKB(QString path, int sizeKB);
    static QString GetFileDir(QString path); ///< absolute path of the folder that the file stands in
    /// Repairs the path of an entity file that was stored one folder too deep: the path itself where such a file
    /// exists, else the absolute path without the folder next above the file's own, in native separators; not tested
    /// for existence.
    static QString getDataBaseEntityFilePath(QString path);
};

#endif
