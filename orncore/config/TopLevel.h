// Handles exceptions at the top level of a thread or callback, and defines result codes for
// exceptions.
//
// A result code is 0 for success or a cancellation. For a failure, it is a negated error number of
// the operating system, such as -ENOENT.
#ifndef ORNCORE_CONFIG_TOPLEVEL_H_
#define ORNCORE_CONFIG_TOPLEVEL_H_

#include <exception>
#include <functional>
#include <stdexcept>
#include <string>

#include <orncore/Export.h>

namespace orncore::config {

/// An exception with a result code and a message.
class ORN_EXPORT ResultError : public std::runtime_error {
 public:
  /// Creates an exception with the code `result` and the message `what`. `result` is a negated
  /// error number, such as -ENOENT. `what` names the failed operation or file. Users can see
  /// this message.
  ResultError(int result, const std::string& what);
  /// Copies the exception, as `throw` requires.
  ResultError(const ResultError&) = default;
  /// Allows assignment, as the exceptions of the standard library do.
  ResultError& operator=(const ResultError&) = default;
  ~ResultError() override;

  /// Returns the result code that was passed to the constructor.
  int Result() const noexcept { return result_; }

 private:
  int result_;
};

/// The exception of an operation that was cancelled before it completed. Its result code is 0.
class ORN_EXPORT FutureCancelled : public std::exception {
 public:
  FutureCancelled() = default;
  /// Copies the exception, as `throw` requires.
  FutureCancelled(const FutureCancelled&) = default;
  /// Allows assignment, as the exceptions of the standard library do.
  FutureCancelled& operator=(const FutureCancelled&) = default;
  ~FutureCancelled() override;

  /// Returns "Future Is Cancelled", a static string.
  const char* what() const noexcept override;
};

/// Calls `function` on the calling thread. Returns true if `function` returns normally. If it
/// throws an exception, writes a line to the log (`debug::Log`) and returns false. If the exception
/// is a `std::exception`, the line contains its message. An empty `function` counts as one that
/// throws.
///
/// Use this function where an exception would otherwise end the process, such as in a thread or a
/// callback. Safe to call from any thread.
ORN_EXPORT bool ExecuteTopLevelFunction(const std::function<void()>& function) noexcept;

/// Returns the result code of `failure`:
///
///   null (no failure)     0
///   `FutureCancelled`     0, because a cancellation is not an error
///   `ResultError`         its result code
///   `std::system_error`   the negated error number
///   `std::bad_alloc`      -ENOMEM
///   all others            -EIO
///
/// The code of a failure other than a cancellation is always negative, even if the number in the
/// exception has the wrong sign. If that number is 0 or cannot be negated, the code is -EIO. Safe
/// to call from any thread.
ORN_EXPORT int ExtractResultFromException(const std::exception_ptr& failure);

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_TOPLEVEL_H_
