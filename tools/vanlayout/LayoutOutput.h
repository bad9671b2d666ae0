#ifndef VANLAYOUT_LAYOUTOUTPUT_H
#define VANLAYOUT_LAYOUTOUTPUT_H

#include "read/Reader.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

class QIODevice;

/// Arguments of a command that writes one form of each layout.
struct LayoutOutput {
    std::vector<std::string> files; ///< files and directories, in the encoding of the system; - is standard input
    bool walksDirectories = false;
    std::string output = "-"; ///< file or directory to write, in the encoding of the system; - is standard output
    std::string catalog;      ///< SAS catalog with value labels; empty for none
    std::string language;     ///< code of the language; empty for the primary one
    QString ending;           ///< extension of the files in an output directory, such as ".xml"
    QString index;            ///< reserved name of the index in the output directory; empty for none
};

/// The operations that write a form.
struct LayoutForm {
    /// The reason why a layout cannot be written in this form; empty if it can.
    std::function<QString(const vanlayout::Layout &layout)> problem = [](const auto &) { return QString(); };
    std::function<void(const vanlayout::Layout &layout, QIODevice &device)> write;
    /// Called for each file that was written into an output directory, with its name there.
    std::function<void(const vanlayout::Layout &layout, const QString &name)> written
        = [](const auto &, const auto &) {};
    /// Writes the index, if there is one, to its path in the output directory; called after the last file.
    std::function<int(const QString &path)> writeIndex = [](const QString &) { return 0; };
};

/// Writes a form of each layout to the given file or directory, and returns the worst status. A file that cannot be
/// read or written gives one line on standard error, and the others are still written.
int writeLayouts(const LayoutOutput &call, const LayoutForm &form);

#endif
