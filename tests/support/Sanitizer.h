#ifndef SUPPORT_SANITIZER_H
#define SUPPORT_SANITIZER_H

#ifdef __has_feature // the way of clang
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SUPPORT_SANITIZES_MEMORY
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SUPPORT_SANITIZES_MEMORY
#endif

/// Whether the program is built with a sanitizer that keeps far more memory than the program requests: no bound holds
/// under it.
#ifdef SUPPORT_SANITIZES_MEMORY
constexpr bool sanitizesMemory = true;
#else
constexpr bool sanitizesMemory = false;
#endif

#endif
