#ifndef IMPORT_ERRORMANAGER_H
#define IMPORT_ERRORMANAGER_H

#include "model_vanadmin_export.h"

#include <QException>
#include <QString>

/// Exception of this library. It is thrown by pointer, and the handler that catches it owns and deletes it.
///
/// Catch a `VpErrorManager *` (or a pointer to one of its bases); a handler by value or by reference does not match.
/// The message of an error goes only to the debug log: what() does not contain it.
///
/// It belongs to the thread that catches it. The constructors change no shared state.
class MODEL_VANADMIN_EXPORT VpErrorManager : public QException
{
public:
    /// Stores the three values and line 0, then composes the message and writes it to the debug log.
    VpErrorManager(QString classTag, int errorCode, QString extraText);
    /// Stores the two values and logs nothing.
    VpErrorManager(QString classTag, int errorCode);
    ~VpErrorManager() override;

    /// Returns "Unknown exception" on every platform, never the composed message.
    const char *what() const noexcept override;

    /// Returns the error as text, with lines ended by CR LF: class, code, an empty line, message. A number is written
    /// as the one character with that code, not as digits. With code 2 and a text, the text is the whole result; with
    /// code 1 and a text, the text is the message.
    QString composeMessage() const;
    /// Returns the text that the catalogue of messages has for the code; "Unknow or not set error" for a code that it
    /// lacks.
    QString catalogueMessage() const;

    // Accessors for a handler.
    int getCode() const;
    int getLine() const;          ///< 0; no constructor sets another
    QString getClassName() const; ///< the class tag
    QString getText() const;      ///< the extra text; for codes 211 and 242 the one character whose code is an index

private:
    friend struct TestAccess;

    int code;
    int line = 0;
    QString className;
    QString text;
};

/// Replaces all occurrences of the placeholders %1 to %6 in \a message, in that order, by \a a1 to \a a6.
///
/// Each replacement works on the result of the one before, so a %3 in an argument may be replaced by a later one. An
/// empty argument removes its placeholder. \a key identifies the message for a translation and is not used.
MODEL_VANADMIN_EXPORT QString formatMessage(QString key, QString message, QString a1 = QString(),
                                            QString a2 = QString(), QString a3 = QString(), QString a4 = QString(),
                                            QString a5 = QString(), QString a6 = QString());

#endif
