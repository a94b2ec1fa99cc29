#include "hosts/common/TextFile.h"

#include <cerrno>
#include <system_error>

#include "hosts/common/ToolError.h"

namespace hosts::common {

std::string ReadTextFile(const std::filesystem::path& file, std::size_t maxBytes) {
  const auto memory = orncore::filesupport::ReadRegularFile(file, {}, maxBytes);
  const auto bytes = memory->Bytes();
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string ReadInputFile(const std::filesystem::path& file, std::size_t maxBytes) {
  try {
    return ReadTextFile(file, maxBytes);
  } catch (const orncore::config::ResultError& error) {
    // The system's message "File too large" does not contain the limit.
    const std::string message = error.Result() == -EFBIG
                                    ? "cannot open '" + file.native() + "': larger than " +
                                          std::to_string(maxBytes >> 20) + " MiB"
                                    : OpenErrorMessage(file, error);
    throw ToolError(ExitStatus::kInput, message);
  }
}

std::string_view WithoutByteOrderMark(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text;
}

std::string OpenErrorMessage(const std::filesystem::path& file,
                             const orncore::config::ResultError& error) {
  // The system's message for EOPNOTSUPP is "Operation not supported", which does not explain the
  // problem.
  const std::string reason = error.Result() == -EOPNOTSUPP
                                 ? "not a regular file"
                                 : std::generic_category().message(-error.Result());
  return "cannot open '" + file.native() + "': " + reason;
}

}  // namespace hosts::common
