// Marks what the shared library exports; everything else in it is hidden.
#ifndef ORNCORE_EXPORT_H_
#define ORNCORE_EXPORT_H_

/// Stands before every public class and function of this module that has code in the library.
#if defined(__GNUC__)
#define ORNCORE_EXPORT __attribute__((visibility("default")))
#else
#define ORNCORE_EXPORT
#endif

#endif  // ORNCORE_EXPORT_H_
