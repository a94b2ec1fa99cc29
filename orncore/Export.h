// Defines `ORN_EXPORT`, which exports a symbol of the library. All other symbols are hidden.
//
// Every public header includes this header, directly or through another one.
#ifndef ORNCORE_EXPORT_H_
#define ORNCORE_EXPORT_H_

// Stop the compilation here if the compiler uses a version of C++ before C++20. Otherwise, it would
// report a syntax error in another header.
#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "ornwhatsnew requires C++20: compile with -std=c++20 or newer (/std:c++20)"
#endif

/// Exports a public class, function or variable that is defined in a source file of the library.
///
/// The CMake targets define two macros, which only Windows needs:
/// - `ORNWHATSNEW_BUILDING`, while the library itself is compiled;
/// - `ORNWHATSNEW_STATIC`, for a static library and for the targets that link to it.
#if defined(_WIN32)
#if defined(ORNWHATSNEW_STATIC)
#define ORN_EXPORT
#elif defined(ORNWHATSNEW_BUILDING)
#define ORN_EXPORT __declspec(dllexport)
#else
#define ORN_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define ORN_EXPORT __attribute__((visibility("default")))
#else
#define ORN_EXPORT
#endif

#endif  // ORNCORE_EXPORT_H_
