// Writes lines to a log that the developers of the host read. The lines describe failures that
// cannot be reported to a caller.
//
//   orncore::debug::SetLogSink([](std::string_view line) { hostLog.Append(line); });
//
// `SetLogSink` and `Log` are safe to call from any thread, and from static constructors and
// destructors. The sink may call both functions, but `Log` then calls the sink recursively.
#ifndef ORNCORE_DEBUG_LOG_H_
#define ORNCORE_DEBUG_LOG_H_

#include <functional>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::debug {

/// Replaces the sink. An empty function restores the default, which writes to standard error. A
/// thread that is logging during the call may still use the previous sink.
///
/// The sink receives each line as it was passed to `Log`, without an additional line end. The line
/// can contain control characters or ill-formed UTF-8, for example in the message of an exception.
/// The view is valid only during the call. Several threads may call the sink at the same time.
///
/// If memory runs out, throws `std::bad_alloc` and keeps the previous sink.
ORN_EXPORT void SetLogSink(std::function<void(std::string_view line)> sink);

/// Passes `line` to the sink on the calling thread. Never throws.
///
/// If there is no sink or the sink throws, writes `line` to standard error as one line. In this
/// output, `?` replaces each byte of a control character. If memory runs out, writes a fixed
/// message instead of `line`.
ORN_EXPORT void Log(std::string_view line) noexcept;

}  // namespace orncore::debug

#endif  // ORNCORE_DEBUG_LOG_H_
