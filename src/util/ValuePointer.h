#ifndef UTIL_VALUEPOINTER_H
#define UTIL_VALUEPOINTER_H

#include <memory>

/// Owns one object of a class that a public header only declares. It is never null.
///
/// Copies behave as if the object were a member: a copy copies the object, an assignment assigns it, and the object
/// stays at its address. \a T must be complete in code that uses a constructor, the destructor or the assignment.
template <typename T> class ValuePointer
{
public:
    ValuePointer()
        : object(std::make_unique<T>())
    {
    }
    ValuePointer(const ValuePointer &other)
        : object(std::make_unique<T>(*other.object))
    {
    }
    ValuePointer &operator=(const ValuePointer &other)
    {
        *object = *other.object;
        return *this;
    }
    ~ValuePointer() = default;

    T &operator*() const { return *object; }
    T *operator->() const { return object.get(); }

private:
    std::unique_ptr<T> object;
};

#endif
