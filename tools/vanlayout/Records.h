#ifndef VANLAYOUT_RECORDS_H
#define VANLAYOUT_RECORDS_H

#include "Layout.h"

#include <QString>
#include <QVector>

/// A record type: its name in the layout, and the value in the data that tells it.
struct RecordType {
    QString name;
    QString value;
};

/// The records of a layout, in the order of the importer.
///
/// The importer names each with its value, as in "HOUSING=H". Both can hold a "=": the name is the longest one that is
/// the group of a variable. Of a record without variables it ends at the last "=".
QVector<RecordType> recordTypesOf(const Layout &layout);

#endif
