#ifndef RECORD_QUESTINDEX_H
#define RECORD_QUESTINDEX_H

#include "model_vanadmin_export.h"

#include <QString>
#include <QStringList>

/// The raw lines of one questionnaire, against which a record tree is checked.
///
/// It owns nothing. If `lines` is null, there are no lines. The record type of a line is `mid(typeStart, typeLength)`,
/// with the start counted from 0. Record types are compared case-sensitively.
///
/// Re-entrant: different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT TQuestIndex
{
public:
    int countRecords(QString type) const; ///< number of lines of that record type
    /// Returns the type code of the line that is match number \a occurrence, counted from 0, of the record type \a
    /// type. The code is returned, not the line. If there is no such match, the result is empty and not null.
    QString findRecord(QString type, int occurrence) const;
    /// Returns the record type of a line of this questionnaire.
    QString typeOf(const QString &line) const;

    int typeStart = 0;  ///< start of the record-type code in a line, from 0
    int typeLength = 0; ///< its length in characters
    int status = 0; ///< outcome of a check: 4 more than one line for a reference; 6 an occurrence was not found again
    QString text;   ///< the text that every record of the tree is assembled into
    QStringList *lines = nullptr; ///< the questionnaire lines, not owned
};

#endif
