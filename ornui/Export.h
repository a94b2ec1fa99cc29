// Marks what the shared library exports; everything else in it is hidden.
#ifndef ORNUI_EXPORT_H_
#define ORNUI_EXPORT_H_

/// Stands before every public class and function of this module that has code in the library.
#if defined(__GNUC__)
#define ORNUI_EXPORT __attribute__((visibility("default")))
#else
#define ORNUI_EXPORT
#endif

#endif  // ORNUI_EXPORT_H_
