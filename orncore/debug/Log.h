// Lines for whoever maintains the host: failures that nobody is there to catch.
//
// Both functions may be called from any thread, from static constructors and destructors, and from
// a sink. Several threads may be in the sink at once.
#ifndef ORNCORE_DEBUG_LOG_H_
#define ORNCORE_DEBUG_LOG_H_

#include <functional>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::debug {

/// Takes one line of UTF-8, without a line end; the view lives as long as the call.
using LogSink = std::function<void(std::string_view line)>;

/// Sends what is logged from now on to `sink`, of which a copy is kept; an empty one brings the
/// default back. A thread that is logging at this moment may still finish with the sink before.
ORN_EXPORT void SetLogSink(LogSink sink);

/// Hands `line` to the sink. Never throws: a line that the sink throws at goes to the default,
/// which writes it to standard error as one line, control characters replaced by `?`.
ORN_EXPORT void Log(std::string_view line) noexcept;

}  // namespace orncore::debug

#endif  // ORNCORE_DEBUG_LOG_H_
