// Marks what the library exports. Every other symbol in it is hidden.
#ifndef ORNCORE_EXPORT_H_
#define ORNCORE_EXPORT_H_

// The first of our headers that a host includes ends up here, so that a compiler in an older mode
// reports this line and not the first C++20 construct that it cannot parse.
#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "ornwhatsnew requires C++20: compile with -std=c++20 or newer (/std:c++20)"
#endif

/// Precedes every public class, function and variable that is defined in the library. The build
/// defines `ORNWHATSNEW_BUILDING` while it compiles the library, and `ORNWHATSNEW_STATIC` for the
/// library and its users when the library is static; only Windows distinguishes these cases.
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
