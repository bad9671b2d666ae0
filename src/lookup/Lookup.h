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
/// character; the value is everything behind it, further separators included. Nothing is trimmed, but for the blanks in
/// front of a value where the separator is the space. There is no header, no comment and no quoting. The text is read
/// by `QTextStream`: in the encoding of the locale, or in UTF-8, UTF-16 or UTF-32 after a byte-order mark; a line ends
/// at LF or CR LF.
///
/// Reads no file before a check. A check runs on the caller's thread and throws nothing of its own. An object is used
/// by one thread at a time; different objects share nothing.
class MODEL_VANADMIN_EXPORT TVpLookup
{
public:
    /// Hears of the progress of a check: bytes read, and bytes of the whole file. Answers whether anything more is to
    /// be heard of it.
    using ProgressListener = std::function<void(qint64 done, qint64 size)>;

    /// Its texts are empty and not null, but for those of the line in hand, which are null.
    TVpLookup();
    /// Copies share the texts of the entries.
    TVpLookup(const TVpLookup &other);
    TVpLookup &operator=(const TVpLookup &other);
    /// Takes nothing from its argument: texts null, numbers 0, flags false.
    TVpLookup(TVpLookup &&other);
    virtual ~TVpLookup();

    QString getId() const;
    void setId(const QString &newId);
    QString getLabel() const;
    void setLabel(const QString &newLabel);
    QString getFfileName() const;
    void setFfileName(const QString &newFileName);
    /// 0 space, 1 tab, 2 comma, 3 semicolon, 4 colon; any other splits at a space, and keeps blanks in front of the
    /// value.
    int getSeparator() const;
    void setSeparator(int newSeparator);
    /// The limit of issued messages over the object's whole life; 0 in a new object.
    int getMaxMessages() const;
    void setMaxMessages(int limit);

    /// Takes \a name as the file name if such a file exists. Nothing changes where it does not, nor where \a name is
    /// empty and a file name is set.
    void updateFileName(QString name);

    /// Reads the file and reports into the caller's objects, to which it only adds.
    ///
    /// \a mode 1 counts frequencies, 2 reports errors, 3 does both, any other neither. A file that does not exist or
    /// cannot be opened leaves both objects as they are. Where reading fails on the way, both keep what came of the
    /// lines in front of that place, and getReadProblem() says why the check has no result.
    ///
    /// Each line is checked for its separator, the length of its key (that of the first key of the check) and a key
    /// that was there before, in this order; each gives a message, "LINE_TEXT" with the line's number from 1. A line
    /// without a separator, or with one in the first column, is treated as a repeat of the line before. The first value
    /// of a key stands. The first message beyond the limit is replaced by one about the limit, once in the object's
    /// life; none is held back. \a errors may be null: messages are then counted and dropped.
    ///
    /// For each new key, \a frequencies gets an int of 1 under the **value**, replacing the entry that may be there, so
    /// a count stays 1; where the **key** is an entry already, nothing changes. This is meant. The ints are the
    /// caller's.
    void consistencyCheck(econsistencyCheck mode, std::map<QString, int *> &frequencies, QStringList *errors);

    /// Has checks from now on tell \a newReport where a line is not what it looks like; null, as in a new object, tells
    /// nobody. Not owned: it must outlive the checks. Copies tell the same report.
    void setReadReport(ReadReport *newReport);

    /// The reason why the last check could not read the file to its end, as one line for a person, such as "cannot be
    /// read: Input/output error"; null where nothing went wrong. No line at or behind that place has counted, and the
    /// entries of the check are none.
    QString getReadProblem() const;

    /// Who hears of the progress of checks, a few times for each megabyte; nobody in a new object. Copies share it.
    void setProgressListener(ProgressListener listener);

private:
    friend struct TestAccess;

    class Import; ///< one run of importAVL()

    bool openLookup();
    bool readLookup(); ///< the whole file into `currentLine`; nothing calls it
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
    QString errorText;  ///< of a failure to open or to read
    int errorCode = -1; ///< 1 after a failure to open or to read
    int separator = 0;  ///< see getSeparator()
    QString text1;      ///< carried
    int maxMessages = 0;
    QString text2;                      ///< carried
    std::map<QString, QString> entries; ///< key and value of the last check
    bool readFailed = false;            ///< the system failed to read the file of the last check
    bool fileAccepted = false;          ///< set by updateFileName()
    bool flag1 = true;                  ///< carried
    QString key;                        ///< of the line in hand; stays from check to check
    QString value;                      ///< of the line in hand; stays from check to check
    int keySize = 0;                    ///< carried; a check compares with a length of its own
    econsistencyCheck consistency = ccNone;
    QString fileName;
    int lineNumber = 0;         ///< of the line in hand, from 1
    int errorCount = 0;         ///< messages issued over the object's whole life
    bool tooManyIssued = false; ///< the message about the limit has been issued
    QString currentLine;
    qint64 fileSize = 0;    ///< in bytes
    qint64 currentSize = 0; ///< length in characters of the line in hand
    ProgressListener progressListener;
    ReadReport *report = nullptr; ///< see setReadReport()
};

#endif
