#ifndef IMPORT_LOADERMANAGER_P_H
#define IMPORT_LOADERMANAGER_P_H

#include <QObject>
#include <QString>
#include <QStringList>

class TDataImport;

/// Registry of the known formats, by provider type text.
///
/// No code registers a format or creates the registry. This is intended: callers create importers directly, and every
/// use of the registry fails. Destroying a manager leaves its list alive.
class TLoaderManager : public QObject
{
public:
    TLoaderManager();
    ~TLoaderManager() override;

    QStringList *formats; ///< registered provider type texts; stays empty
};

/// The registry of the process; null until GetDataClassLoader() makes one. It is not locked and never released.
extern TLoaderManager *loaderManager;

/// Returns whether \a format is registered. Throws a `VpErrorManager *` with code 106, without a log line, if there is
/// no registry.
bool IsFormatRegistered(QString format);

/// Replaces the registry by a new one, leaves the former one alive, and requests the loader of \a format from the new
/// one.
///
/// The new registry is empty, so this always throws a `VpErrorManager *` with code 107 and the format as text.
TDataImport *GetDataClassLoader(QString format);

/// Second half of GetDataClassLoader(): returns the loader that \a manager has for \a format. This is null for a
/// registered format. Throws a `VpErrorManager *` with code 107 for any other format, and if \a manager has no list.
TDataImport *loaderFromManager(const TLoaderManager *manager, const QString &format);

#endif
