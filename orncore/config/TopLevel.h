// Functions that stop exceptions, and the result codes that represent them.
#ifndef ORNCORE_CONFIG_TOPLEVEL_H_
#define ORNCORE_CONFIG_TOPLEVEL_H_

#include <exception>
#include <functional>
#include <stdexcept>
#include <string>

#include <orncore/Export.h>

namespace orncore::config {

/// A failure with a result code: a negated error number of the operating system.
class ORN_EXPORT ResultError : public std::runtime_error {
 public:
  /// `result` is negative, such as -ENOENT; `what` is a message for people that names what failed.
  ResultError(int result, const std::string& what);
  /// Copyable, as exceptions must be.
  ResultError(const ResultError&) = default;
  /// Assignable, as standard exceptions are.
  ResultError& operator=(const ResultError&) = default;
  ~ResultError() override;

  /// Returns the code that the constructor received.
  int Result() const noexcept { return result_; }

 private:
  int result_;
};

/// Thrown by an operation that was cancelled before it completed.
class ORN_EXPORT FutureCancelled : public std::exception {
 public:
  FutureCancelled() = default;
  /// Copyable, as exceptions must be.
  FutureCancelled(const FutureCancelled&) = default;
  /// Assignable, as standard exceptions are.
  FutureCancelled& operator=(const FutureCancelled&) = default;
  ~FutureCancelled() override;

  /// Returns "Future Is Cancelled".
  const char* what() const noexcept override;
};

/// Calls `function`. Writes an exception that escapes from it, or that `function` is empty, to the
/// log
/// (`debug::Log`). Returns true if `function` returned normally. Safe to call from any thread.
ORN_EXPORT bool ExecuteTopLevelFunction(const std::function<void()>& function) noexcept;

/// Returns the result code of `failure`: 0 for null (no failure) and for `FutureCancelled`, the
/// negated error number of a `ResultError` or `std::system_error`, -ENOMEM for `std::bad_alloc`,
/// -EIO for any other exception. Every failure except a cancellation has a negative code, also if
/// the exception carries 0 or a number of the wrong sign.
ORN_EXPORT int ExtractResultFromException(const std::exception_ptr& failure);

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_TOPLEVEL_H_
