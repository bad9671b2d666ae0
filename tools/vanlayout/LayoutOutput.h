#ifndef VANLAYOUT_LAYOUTOUTPUT_H
#define VANLAYOUT_LAYOUTOUTPUT_H

#include "read/Reader.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

class QIODevice;

/// The call of a command that writes a form of each layout.
struct LayoutOutput {
    std::vector<std::string> files; ///< files and folders, in the encoding of the system; - is standard input
    bool walksFolders = false;
    std::string output = "-"; ///< file or folder to write, in the encoding of the system; - is standard output
    std::string catalog;      ///< SAS catalog with value labels; empty for none
    std::string language;     ///< code of the language; empty for the primary one
    QString ending;           ///< of the files that are written into a folder, such as ".xml"
    QString index;            ///< name in the folder that belongs to no file; empty for none
};

/// How a form is written.
struct LayoutForm {
    /// Why there can be no such form of a layout; empty where there can.
    std::function<QString(const vanlayout::Layout &layout)> problem = [](const auto &) { return QString(); };
    std::function<void(const vanlayout::Layout &layout, QIODevice &device)> write;
    /// Hears of each file that was written into a folder, by its name there.
    std::function<void(const vanlayout::Layout &layout, const QString &name)> written
        = [](const auto &, const auto &) {};
    /// Writes the index where there is one, after the last file, to the path in the folder.
    std::function<int(const QString &path)> writeIndex = [](const QString &) { return 0; };
};

/// Writes a form of each layout to the file or into the folder that was asked for, and answers the worst status. A file
/// that cannot be read or written is one line on standard error, and the others are still written.
int writeLayouts(const LayoutOutput &call, const LayoutForm &form);

#endif
