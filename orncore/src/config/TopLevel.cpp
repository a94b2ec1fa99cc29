#include <orncore/config/TopLevel.h>

#include <cerrno>
#include <limits>
#include <new>
#include <system_error>

#include <orncore/debug/Log.h>

namespace orncore::config {
namespace {

int NegatedCode(int code) {
  const bool isInvalid = code == 0 || code == std::numeric_limits<int>::min();
  if (isInvalid) return -EIO;
  return code > 0 ? -code : code;
}

void LogException(const char* what) noexcept {
  try {
    debug::Log(std::string("an exception reached the top level: ") + what);
  } catch (const std::bad_alloc&) {
    debug::Log(what);
  }
}

}  // namespace

ResultError::ResultError(int result, const std::string& what)
    : std::runtime_error(what), result_(result) {}

ResultError::~ResultError() = default;

FutureCancelled::~FutureCancelled() = default;

const char* FutureCancelled::what() const noexcept {
  return "Future Is Cancelled";
}

bool ExecuteTopLevelFunction(const std::function<void()>& function) noexcept {
  try {
    function();
    return true;
  } catch (const std::exception& exception) {
    LogException(exception.what());
  } catch (...) {
    LogException("of an unknown kind");
  }
  return false;
}

int ExtractResultFromException(const std::exception_ptr& failure) {
  if (!failure) return 0;
  try {
    std::rethrow_exception(failure);
  } catch (const ResultError& error) {
    return NegatedCode(error.Result());
  } catch (const FutureCancelled&) {
    return 0;
  } catch (const std::system_error& error) {
    return NegatedCode(error.code().value());
  } catch (const std::bad_alloc&) {
    return -ENOMEM;
  } catch (...) {
    return -EIO;
  }
}

}  // namespace orncore::config
