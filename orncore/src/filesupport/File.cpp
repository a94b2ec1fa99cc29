#include <orncore/filesupport/File.h>

#include <system_error>
#include <utility>

#include <orncore/string/Conversion.h>

namespace orncore::filesupport {

File::File(UTF16String path) : path_(std::move(path)) {}

UTF16String File::FullPath() const {
  if (path_.empty()) return {};
  const std::filesystem::path path(string::UTF16to8(path_));
  // The current directory may have been removed; the path as it stands is the best answer then.
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return string::UTF8to16((error ? path : absolute).lexically_normal().native());
}

std::optional<std::filesystem::path> PathFromText(std::u16string_view text) {
  string::UTF8String path = string::UTF16to8(text);
  if (string::UTF8to16(path) != text) return std::nullopt;
  return std::filesystem::path(std::move(path));
}

}  // namespace orncore::filesupport
