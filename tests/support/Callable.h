#ifndef SUPPORT_CALLABLE_H
#define SUPPORT_CALLABLE_H

#include <type_traits>
#include <utility>

/// Declares the test Probe<T>: whether \a call, an expression over an `object` of type T, may be written where the
/// probe stands. An operation that is out of reach there, protected for example, makes it false.
#define CALLABLE(Probe, ...)                                                                                           \
    template <typename T, typename = void> struct Probe : std::false_type {                                            \
    };                                                                                                                 \
    template <typename T>                                                                                              \
    struct Probe<T, std::void_t<decltype([](auto &object) -> decltype(__VA_ARGS__) {}(std::declval<T &>()))>>          \
        : std::true_type {                                                                                             \
    }

#endif
