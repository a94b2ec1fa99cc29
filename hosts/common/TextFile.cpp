#include "hosts/common/TextFile.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#include <orncore/filesupport/RegularFile.h>

namespace hosts::common {

std::string ReadTextFile(const std::filesystem::path& file) {
  const auto memory = orncore::filesupport::ReadRegularFile(file);
  const auto bytes = memory->Bytes();
  std::string text(bytes.size(), '\0');
  if (!bytes.empty()) std::memcpy(text.data(), bytes.data(), bytes.size());
  return text;
}

std::string ReasonOf(const orncore::config::ResultError& failure) {
  // The system's own text for it, "Operation not supported", does not say what is wrong.
  if (failure.Result() == -EOPNOTSUPP) return "it is no regular file";
  return std::generic_category().message(-failure.Result());
}

}  // namespace hosts::common
