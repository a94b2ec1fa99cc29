// Defines `ORNWHATSNEWQT_EXPORT`, which marks the exported classes of the Qt companion. The symbols
// of all other classes and functions are hidden.
#ifndef ORNWHATSNEWQT_EXPORT_H_
#define ORNWHATSNEWQT_EXPORT_H_

#include <QtCore/qglobal.h>

/// Exports a public class of the Qt companion.
///
/// The CMake targets define `ORNWHATSNEWQT_BUILDING` while the companion itself is compiled, and
/// `ORNWHATSNEW_STATIC` if the libraries are static.
#if defined(ORNWHATSNEW_STATIC)
#define ORNWHATSNEWQT_EXPORT
#elif defined(ORNWHATSNEWQT_BUILDING)
#define ORNWHATSNEWQT_EXPORT Q_DECL_EXPORT
#else
#define ORNWHATSNEWQT_EXPORT Q_DECL_IMPORT
#endif

#endif  // ORNWHATSNEWQT_EXPORT_H_
