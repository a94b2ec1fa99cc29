// Detects the sanitizers with which a source file is compiled. g++ 12 defines a macro for each of
// them, and clang 14 has `__has_feature`.
#ifndef TESTS_SUPPORT_SANITIZERS_H_
#define TESTS_SUPPORT_SANITIZERS_H_

/// Each of the macros TESTS_HAS_ADDRESS_SANITIZER and TESTS_HAS_THREAD_SANITIZER is defined if and
/// only if its sanitizer is on.
#if defined(__SANITIZE_ADDRESS__)
#define TESTS_HAS_ADDRESS_SANITIZER
#endif
#if defined(__SANITIZE_THREAD__)
#define TESTS_HAS_THREAD_SANITIZER
#endif

#if defined(__has_feature)
#if __has_feature(address_sanitizer) && !defined(TESTS_HAS_ADDRESS_SANITIZER)
#define TESTS_HAS_ADDRESS_SANITIZER
#endif
#if __has_feature(thread_sanitizer) && !defined(TESTS_HAS_THREAD_SANITIZER)
#define TESTS_HAS_THREAD_SANITIZER
#endif
#endif

#endif  // TESTS_SUPPORT_SANITIZERS_H_
