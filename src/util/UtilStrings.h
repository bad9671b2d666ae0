#ifndef UTIL_UTILSTRINGS_H
#define UTIL_UTILSTRINGS_H

#include "model_vanadmin_export.h"

#include <QString>

class QLabel;

/// Operations that split lines into words, restore line breaks, and shorten paths for display. They have no state.
class MODEL_VANADMIN_EXPORT UtilStrings
{
public:
    UtilStrings() = default;
    UtilStrings(const UtilStrings &) = default;
    UtilStrings(UtilStrings &&) = default;
    UtilStrings &operator=(const UtilStrings &other); ///< does nothing
    UtilStrings &operator=(UtilStrings &&other);      ///< does nothing
    ~UtilStrings() = default;

    /// Returns the word of \a line from \a position (0-based) up to the next \a separator. \a separator is a text of
    /// one character; a longer text never matches.
    ///
    /// \a position moves to the character after the separator, or becomes -1 at the end of the line. A separator at the
    /// end of the line ends it too, so no empty word follows. If the **second** character of the word is \a qualifier,
    /// the result is the word from its third character on; the first character is ignored.
    static QString GetWordSeparator(QString line, int &position, QString separator, QString qualifier);

    /// Returns \a text with each `#\#n` replaced by CR LF and each `#\#t` by a tab.
    static QString returnLineBreak(QString text);

    /// Returns \a path with backslashes, shortened to fit \a width pixels. Directories before the last part are
    /// replaced by "..." until the path, plus a tenth of its width, is narrower than \a width in Arial of \a fontSize
    /// points. The last part is never shortened. Needs a QGuiApplication on this thread: without one, nothing can be
    /// measured and the whole path is returned.
    static QString getBetterPathString(QString path, int width, int fontSize);

    /// Repairs a path with `UtilFiles::getDataBaseEntityFilePath` and returns it. \a label, if not null, shows the path
    /// shortened to \a width pixels, in native separators, and the whole path as its tool tip.
    static QString setBetterPathInQDockWidget(QString path, int width, QLabel *label);
};

#endif
