// Messages for the maintainers of the host about failures that no caller can handle.
//
// Both functions may be called from any thread, from static constructors and destructors, and from
// the sink. Several threads may be in the sink at once.
#ifndef ORNCORE_DEBUG_LOG_H_
#define ORNCORE_DEBUG_LOG_H_

#include <functional>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::debug {

/// Replaces the sink, which receives each line as UTF-8 without a line end; the view is valid
/// during the call. An empty function restores the default. A thread that is logging at this moment
/// may still use the previous sink.
ORN_EXPORT void SetLogSink(std::function<void(std::string_view line)> sink);

/// Writes `line` to the sink. If there is no sink or the sink throws, writes it to standard error
/// as one line, with `?` in place of control characters. Never throws.
ORN_EXPORT void Log(std::string_view line) noexcept;

}  // namespace orncore::debug

#endif  // ORNCORE_DEBUG_LOG_H_
