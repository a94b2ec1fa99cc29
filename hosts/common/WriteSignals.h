// Ignores the signals that the system sends for certain failed writes. These writes then return
// errors and do not end the process.
#ifndef HOSTS_COMMON_WRITESIGNALS_H_
#define HOSTS_COMMON_WRITESIGNALS_H_

namespace hosts::common {

/// Makes the process ignore SIGPIPE and SIGXFSZ, which would otherwise end it. A write to a pipe
/// without a reader, or beyond the file size limit, then returns an error that the program can
/// report. Call this function at the start of a program.
void IgnoreWriteSignals() noexcept;

}  // namespace hosts::common

#endif  // HOSTS_COMMON_WRITESIGNALS_H_
