// Marks what the shared library exports; everything else in it is hidden.
#ifndef ORNAPPSUPPORT_EXPORT_H_
#define ORNAPPSUPPORT_EXPORT_H_

/// Stands before every public class and function of this module that has code in the library.
#if defined(__GNUC__)
#define ORNAPPSUPPORT_EXPORT __attribute__((visibility("default")))
#else
#define ORNAPPSUPPORT_EXPORT
#endif

#endif  // ORNAPPSUPPORT_EXPORT_H_
