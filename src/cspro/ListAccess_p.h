#ifndef CSPRO_LISTACCESS_P_H
#define CSPRO_LISTACCESS_P_H

#include "import/ErrorManager.h"
#include "util/NumberCharacter_p.h"

#include <QList>
#include <QString>

#include <stdexcept>

/// Access to a list of pointers that may be missing, with the errors that the accessors of a dictionary throw.
namespace cspro
{

constexpr int codeNoList = 101;
constexpr int codeBadIndex = 211;

/// Returns the list. Throws a std::invalid_argument if there is none.
template <typename T> const QList<T *> &existingList(const QList<T *> *list)
{
    if (!list)
        throw std::invalid_argument("no list");
    return *list;
}

/// Logs the failure of an accessor; the code is logged as the character with that number. Does nothing if \a operation
/// is null, as for an accessor that logs no failures.
void logFailure(const char *operation, const QString &classTag, int code);

/// Returns the size of \a list. If that throws, as it does if \a list is null, logs the failure of \a operation (unless
/// \a operation is null) and throws a `VpErrorManager *` with code 101 under \a classTag.
template <typename T> int sizeOf(const QList<T *> *list, const QString &classTag, const char *operation = nullptr)
{
    try {
        return existingList(list).size();
    } catch (...) {
        logFailure(operation, classTag, codeNoList);
        throw new VpErrorManager(classTag, codeNoList);
    }
}

/// Returns the element of \a list at the 0-based \a index; null outside of the list, which is not a failure. Fails like
/// sizeOf(), with code 211 and a text of one character whose code is the index.
template <typename T>
T *elementOf(const QList<T *> *list, int index, const QString &classTag, const char *operation = nullptr)
{
    try {
        return existingList(list).value(index, nullptr);
    } catch (...) {
        logFailure(operation, classTag, codeBadIndex);
        throw new VpErrorManager(classTag, codeBadIndex, QString(numberCharacter(index)));
    }
}

} // namespace cspro

#endif
