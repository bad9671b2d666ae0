#ifndef VANLAYOUT_DESCRIPTOR_H
#define VANLAYOUT_DESCRIPTOR_H

#include <QString>

#include <optional>

/// The descriptor that a path such as /dev/fd/3 or /proc/self/fd/3 names: something that is open already. It looks like
/// a link to a file, but what stands in the file is the business of who opened it.
struct Descriptor {
    int number;
    bool isOwn; ///< of this process
};

/// The descriptor that a path itself names; none where it is another path.
std::optional<Descriptor> descriptorNamed(const QString &path);

/// The end of the links that begin at \a path: a descriptor, a file, what does not exist, or a link where the links
/// have no end.
QString followed(const QString &path);

/// Whether two paths lead to one file, by device and inode where the system has them: the file may have several names.
bool isSameFile(const QString &first, const QString &second);

#endif
