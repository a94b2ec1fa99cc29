// Where exceptions stop, and the result codes that stand for them outside.
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
  /// `result` is negative, such as -ENOENT; `what` names, for people, what failed and on what.
  ResultError(int result, const std::string& what);
  /// Copied as what the standard library throws is.
  ResultError(const ResultError&) = default;
  /// As above.
  ResultError& operator=(const ResultError&) = default;
  ~ResultError() override;

  /// The code handed to the constructor.
  int Result() const noexcept { return result_; }

 private:
  int result_;
};

/// An asynchronous operation that was cancelled before its end.
class ORN_EXPORT FutureCancelled : public std::exception {
 public:
  FutureCancelled() = default;
  /// Copied as what the standard library throws is.
  FutureCancelled(const FutureCancelled&) = default;
  /// As above.
  FutureCancelled& operator=(const FutureCancelled&) = default;
  ~FutureCancelled() override;

  /// "Future Is Cancelled"
  const char* what() const noexcept override;
};

/// Runs `function` and lets no exception out: one that escapes it, or an empty `function`, is
/// written to the log (orncore::debug::Log). True when it returned normally. Safe from any thread.
ORN_EXPORT bool ExecuteTopLevelFunction(const std::function<void()>& function) noexcept;

/// The result code that `failure` carries: 0 for null (no failure) and for a cancellation
/// (FutureCancelled), the code of a ResultError or std::system_error made negative, -ENOMEM for
/// std::bad_alloc, -EIO for any other exception. Negative for every failure but a cancellation: a
/// code of 0 or of the wrong sign never makes a failure a success.
ORN_EXPORT int ExtractResultFromException(const std::exception_ptr& failure);

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_TOPLEVEL_H_
