#ifndef IMPORT_ERRORMANAGER_H
#define IMPORT_ERRORMANAGER_H

#include "model_vanadmin_export.h"

#include <QException>
#include <QString>

/// The library's own exception: thrown by pointer, owned and deleted by the handler that catches it.
///
/// Catch a `VpErrorManager *` (or a pointer to one of its bases); a handler by value or by reference does not match.
/// The words of an error go to the debug log and nowhere else: what() knows none of them.
///
/// Belongs to the thread that catches it; making one writes to the debug log and touches nothing shared.
class MODEL_VANADMIN_EXPORT VpErrorManager : public QException
{
public:
    /// Keeps the three values and line 0, then composes the message and writes it to the debug log.
    VpErrorManager(QString classTag, int errorCode, QString extraText);
    /// Keeps the two values and logs nothing.
    VpErrorManager(QString classTag, int errorCode);
    ~VpErrorManager() override;

    /// "Unknown exception", on every platform; never the composed message.
    const char *what() const noexcept override;

    /// The words of the error, lines ended by CR LF: class, code, an empty line, message. Numbers stand in it as the
    /// one character with that code, not as digits. With code 2 and a text the text is the whole result; with code 1
    /// and a text the text is the message.
    QString composeMessage() const;
    /// The default text for the code; "Unknow or not set error" for a code without one.
    QString catalogueMessage() const;

    // readers for a handler
    int getCode() const;
    int getLine() const;          ///< 0; no constructor sets another
    QString getClassName() const; ///< the class tag
    QString getText() const;      ///< the free extra text; for codes 211 and 242 one character whose code is an index

private:
    friend struct TestAccess;

    int code;
    int line = 0;
    QString className;
    QString text;
};

/// Fills the placeholders %1 to %6 of \a message, in that order and each everywhere, with \a a1 to \a a6.
///
/// The replacement works on the running result, so an argument that holds %3 is filled in by a later step; an empty
/// argument removes its placeholder. \a key names the message for a translation and is not used.
MODEL_VANADMIN_EXPORT QString formatMessage(QString key, QString message, QString a1 = QString(),
                                            QString a2 = QString(), QString a3 = QString(), QString a4 = QString(),
                                            QString a5 = QString(), QString a6 = QString());

#endif
