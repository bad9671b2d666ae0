#ifndef IMPORT_DATAPROVIDER_P_H
#define IMPORT_DATAPROVIDER_P_H

/// Number of the current data record. `TVpDataProvider::openDataProvider` sets it to 0. The process has one, without a
/// lock.
extern int currentRecordNumber;

#endif
