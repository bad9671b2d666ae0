#ifndef SUPPORT_CALLABLE_H
#define SUPPORT_CALLABLE_H

#include <type_traits>
#include <utility>

/// Declares the test Probe<T>: whether the call or member that follows the name may be written on an object of type T
/// where the probe stands. One that is out of reach there, a protected one for example, makes it false.
#define CALLABLE(Probe, ...)                                                                                           \
    template <typename T, typename = void> struct Probe : std::false_type {                                            \
    };                                                                                                                 \
    template <typename T> struct Probe<T, std::void_t<decltype(std::declval<T &>().__VA_ARGS__)>> : std::true_type {   \
    }

#endif
