// Marks what the shared library exports; everything else in it is hidden.
#ifndef ORNWHATSNEW_EXPORT_H_
#define ORNWHATSNEW_EXPORT_H_

/// Stands before every public class and function of this module that has code in the library.
#if defined(__GNUC__)
#define ORNWHATSNEW_EXPORT __attribute__((visibility("default")))
#else
#define ORNWHATSNEW_EXPORT
#endif

#endif  // ORNWHATSNEW_EXPORT_H_
