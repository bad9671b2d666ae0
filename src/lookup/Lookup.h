#ifndef LOOKUP_LOOKUP_H
#define LOOKUP_LOOKUP_H

#include "import/Constants.h"
#include "model_vanadmin_export.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <map>

class QFile;
class ReadReport;

/// A lookup file, which pairs a key with a value on each line, and its check.
///
/// A line is a key, one separator and a value. The key is everything before the first separator and has at least one
/// character. The value is everything after that separator and may contain further separators. Nothing is trimmed,
/// except that the blanks before a value are removed if the separator is the space. There is no header, no comment and
/// no quoting. The text is read by `QTextStream`: in the encoding of the locale, or in UTF-8, UTF-16 or UTF-32 after a
/// byte-order mark. A line ends at LF or CR LF.
///
/// Only a check reads the file. A check runs on the caller's thread and throws no exception of its own. An object may
/// be used by one thread at a time; different objects share nothing.
class MODEL_VANADMIN_EXPORT TVpLookup
{
public:
    /// Function that is called with the progress of a check: the number of bytes that have been read, and the size of
    /// the file in bytes.
    using ProgressListener = std::function<void(qint64 done, qint64 size)>;

    /// The texts of a new lookup are empty and not null, except those of the current line, which are null.
    TVpLookup();
    /// Copies share the texts of the entries.
    TVpLookup(const TVpLookup &other);
    TVpLookup &operator=(const TVpLookup &other);
    /// Takes nothing from its argument: all texts are null, numbers 0 and flags false.
    TVpLookup(TVpLookup &&other);
    virtual ~TVpLookup();

    QString getId() const;
    void setId(const QString &newId);
    QString getLabel() const;
    void setLabel(const QString &newLabel);
    QString getFfileName() const;
    void setFfileName(const QString &newFileName);
    /// Returns the separator as a number: 0 space, 1 tab, 2 comma, 3 semicolon, 4 colon. Any other number means a space
    /// too, but the blanks before the value are kept.
    int getSeparator() const;
    void setSeparator(int newSeparator);
    /// Returns the max number of messages over the whole life of the object; 0 in a new object.
    int getMaxMessages() const;
    void setMaxMessages(int limit);

    /// Takes \a name as the file name if such a file exists. The file name does not change if there is no such file, or
    /// if \a name is empty.
    void updateFileName(QString name);

    /// Reads the file and adds the results to the caller's objects. Nothing is removed from them.
    ///
    /// \a mode 1 counts frequencies, 2 reports errors, 3 does both, and any other does neither. A file that does not
    /// exist or cannot be opened leaves both objects unchanged. If reading fails before the end of the file, both keep
    /// the results of the lines before that place, and getReadProblem() returns the reason.
    ///
    /// Three things are tested for each line, in this order: it has a separator, its key is as long as the first key of
    /// the check, and its key is new. Each failed test adds a message of the form "LINE_TEXT", in which LINE is the
    /// 1-based number of the line. A line without a separator, or with a separator in the first column, is treated as a
    /// repetition of the line before. The first value of a key is kept. The first message beyond the limit is replaced
    /// by a message about the limit, once in the life of the object. All later messages are issued. \a errors may be
    /// null: messages are then counted and dropped.
    ///
    /// For each new key, an int of 1 is entered into \a frequencies under the **value**. It replaces an entry of that
    /// value, so a count stays 1. If \a frequencies has an entry of the **key**, nothing changes. This is intended. The
    /// caller owns the ints.
    void consistencyCheck(econsistencyCheck mode, std::map<QString, int *> &frequencies, QStringList *errors);

    /// Sets the report to which later checks add a note for each line that does not mean what it seems to mean. Null,
    /// as in a new object, means no report. The report is not owned and must outlive the checks. Copies use the same
    /// report.
    void setReadReport(ReadReport *newReport);

    /// Returns the reason why the last check could not read the file to its end, as one line for a person, such as
    /// "cannot be read: Input/output error"; null if reading has succeeded. The line at which reading failed and all
    /// later lines are not counted, and the check keeps no entries.
    QString getReadProblem() const;

    /// Sets the function that checks call with their progress, a few times for each megabyte. A new object has none.
    /// Copies share it.
    void setProgressListener(ProgressListener listener);

private:
    friend struct TestAccess;

    class Import; ///< one run of importAVL()

    bool openLookup();
    bool readLookup(); ///< reads the whole file into `currentLine`; nothing calls it
    bool hasReadFailed(QFile &file);
    bool importAVL(std::map<QString, int *> &frequencies, QStringList *errors);
    void splitKeyValueAVL(QStringList *errors);
    void issueErrorMessage(QStringList *errors, QString message);
    bool isCounting() const;
    bool isReporting() const;
    QString separatorText() const;
    int separatorPosition() const;

    QString id;
    QString label;
    QString errorText;  ///< the reason of a failure to open or to read
    int errorCode = -1; ///< 1 after a failure to open or to read
    int separator = 0;  ///< see getSeparator()
    QString text1;      ///< carried; never read
    int maxMessages = 0;
    QString text2;                      ///< carried; never read
    std::map<QString, QString> entries; ///< key and value of the last check
    bool readFailed = false;            ///< the system failed to read the file of the last check
    bool fileAccepted = false;          ///< set by updateFileName()
    bool flag1 = true;                  ///< carried; never read
    QString key;                        ///< that of the current line; kept from check to check
    QString value;                      ///< that of the current line; kept from check to check
    int keySize = 0;                    ///< carried; never read: a check compares with the length of its first key
    econsistencyCheck consistency = ccNone;
    QString fileName;
    int lineNumber = 0;         ///< number of the current line, from 1
    int errorCount = 0;         ///< messages issued over the object's whole life
    bool tooManyIssued = false; ///< the message about the limit has been issued
    QString currentLine;
    qint64 fileSize = 0;    ///< in bytes
    qint64 currentSize = 0; ///< length of the current line in characters
    ProgressListener progressListener;
    ReadReport *report = nullptr; ///< see setReadReport()
};

#endif
