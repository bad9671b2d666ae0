#ifndef VANLAYOUT_FINDARGUMENTS_H
#define VANLAYOUT_FINDARGUMENTS_H

#include <QString>

#include <string>
#include <vector>

/// The words and the paths of a call. Texts are in the encoding of the system.
struct FindArguments {
    std::vector<std::string> words;
    std::vector<std::string> paths;
    QString problem; ///< the reason why they cannot be divided; empty if they can
};

/// How the arguments of a call are divided.
enum class FindWords {
    Required, ///< the first argument is a word
    Optional, ///< the first argument may be a path, because there is something else to find
    None,     ///< all arguments are paths
};

/// Divides arguments into words and the paths after them.
///
/// The paths begin with the first argument that is `-`, an existing file or directory, has a slash, or has the
/// extension of a layout. If words are required, the first argument is a word even then, unless it is an existing file
/// with a slash or such an extension.
FindArguments divideArguments(const std::vector<std::string> &arguments, FindWords words);

#endif
