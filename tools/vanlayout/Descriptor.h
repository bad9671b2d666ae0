#ifndef VANLAYOUT_DESCRIPTOR_H
#define VANLAYOUT_DESCRIPTOR_H

#include <QString>

#include <optional>

/// The descriptor named by a path such as /dev/fd/3 or /proc/self/fd/3, which is already open. The path looks like a
/// link to a file, but the content of that file belongs to the process that opened it.
struct Descriptor {
    int number;
    bool isOwn; ///< whether it is a descriptor of this process
};

/// The descriptor that a path names; none for other paths.
std::optional<Descriptor> descriptorNamed(const QString &path);

/// Follows links from \a path and returns the last target: a descriptor, a file, a path that does not exist, or a link
/// if the links are circular.
QString followed(const QString &path);

/// True if two paths refer to the same file, by device and inode if the system has them: a file may have several names.
bool isSameFile(const QString &first, const QString &second);

#endif
