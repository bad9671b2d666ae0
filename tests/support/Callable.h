#ifndef SUPPORT_CALLABLE_H
#define SUPPORT_CALLABLE_H

#include <type_traits>
#include <utility>

/// Declares the test Probe<T>: whether code in the place of the probe can use the call or member that follows the name
/// on an object of type T. The test is false for an inaccessible one, for example a protected one.
#define CALLABLE(Probe, ...)                                                                                           \
    template <typename T, typename = void> struct Probe : std::false_type {                                            \
    };                                                                                                                 \
    template <typename T> struct Probe<T, std::void_t<decltype(std::declval<T &>().__VA_ARGS__)>> : std::true_type {   \
    }

#endif
