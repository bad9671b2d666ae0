#ifndef VANLAYOUT_FILECOUNT_H
#define VANLAYOUT_FILECOUNT_H

/// Whether the output of a call is about one file or about several. Some forms name the file of each entry only if
/// there are several.
enum class FileCount { one, several };

template <typename Files> FileCount fileCountOf(const Files &files)
{
    return files.size() > 1 ? FileCount::several : FileCount::one;
}

#endif
