#ifndef UTIL_UTILSTRINGS_H
#define UTIL_UTILSTRINGS_H

#include "model_vanadmin_export.h"

#include <QString>

class QLabel;

/// Cuts lines into words, restores line breaks, and shortens paths for display. Holds no state.
class MODEL_VANADMIN_EXPORT UtilStrings
{
public:
    UtilStrings() = default;
    UtilStrings(const UtilStrings &) = default;
    UtilStrings(UtilStrings &&) = default;
    UtilStrings &operator=(const UtilStrings &other); ///< does nothing
    UtilStrings &operator=(UtilStrings &&other);      ///< does nothing
    ~UtilStrings() = default;

    /// The word of \a line from \a position (from 0) up to the next \a separator, a text of one character; a longer one
    /// never matches.
    ///
    /// \a position moves behind the separator, or becomes -1 where the line is finished; a separator that stands last
    /// finishes it too, so no empty word follows. Where the **second** character of the word is \a qualifier, the
    /// result is the word from the third on; the first is not looked at.
    static QString GetWordSeparator(QString line, int &position, QString separator, QString qualifier);

    /// \a text with each `#\#n` turned into CR LF and each `#\#t` into a tab.
    static QString returnLineBreak(QString text);

    /// \a path, in backslash form, without as many folders before the last part as it takes to be narrower than
    /// \a width pixels, a tenth added, in Arial of \a fontSize points; "..." stands for them. The last part is never
    /// shortened. Needs a QGuiApplication on this thread; without one nothing can be measured and the path is returned
    /// whole.
    static QString getBetterPathString(QString path, int width, int fontSize);

    /// Repairs a path with `UtilFiles::getDataBaseEntityFilePath` and returns it. \a label shows it shortened to
    /// \a width pixels, in native separators, with the whole of it as the tool tip; null shows it nowhere.
    static QString setBetterPathInQDockWidget(QString path, int width, QLabel *label);
};

#endif
