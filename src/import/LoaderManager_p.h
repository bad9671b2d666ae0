#ifndef IMPORT_LOADERMANAGER_P_H
#define IMPORT_LOADERMANAGER_P_H

#include <QObject>
#include <QString>
#include <QStringList>

class TDataImport;

/// The registry that would tell, by provider type text, whether a format is known.
///
/// Nothing ever registers a format and nothing creates the registry: callers create importers directly, and what is
/// left are the failures of a registry that is not there. Destroying a manager leaves its list alive.
class TLoaderManager : public QObject
{
public:
    TLoaderManager();
    ~TLoaderManager() override;

    QStringList *formats; ///< registered provider type texts; stays empty
};

/// The registry of the process; null until GetDataClassLoader() makes one. Not guarded, never released.
extern TLoaderManager *loaderManager;

/// Whether \a format is registered. Without a registry throws a `VpErrorManager *` with code 106, which logs nothing.
bool IsFormatRegistered(QString format);

/// Replaces the registry by a new one, leaving the former alive, and asks it for the loader of \a format.
///
/// The new registry is empty, so this ends in a thrown `VpErrorManager *` with code 107 and the format as text.
TDataImport *GetDataClassLoader(QString format);

/// The second half of GetDataClassLoader(): the loader that \a manager has for \a format. A registered format has none
/// and gives null; any other, and a manager without a list, throws a `VpErrorManager *` with code 107.
TDataImport *loaderFromManager(const TLoaderManager *manager, const QString &format);

#endif
