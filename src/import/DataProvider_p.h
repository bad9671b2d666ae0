#ifndef IMPORT_DATAPROVIDER_P_H
#define IMPORT_DATAPROVIDER_P_H

/// The number of the data record at hand; set to 0 by `TVpDataProvider::openDataProvider`. One for the process, no
/// lock.
extern int currentRecordNumber;

#endif
