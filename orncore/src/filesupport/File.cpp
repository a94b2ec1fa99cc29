#include <orncore/filesupport/File.h>

#include <cerrno>
#include <system_error>

#include "orncore/src/filesupport/RegularFile.h"

namespace orncore::filesupport {
namespace {

namespace fs = std::filesystem;

fs::path PathFromUTF8(const string::UTF8String& text) {
  return {std::u8string(text.begin(), text.end())};
}

}  // namespace

File::File(UTF16String path) : path_(std::move(path)) {}

UTF16String File::FullPath() const {
  if (path_.empty()) return {};
  const fs::path path = PathFromUTF8(string::UTF16to8(path_));
  // If the current directory was removed, no absolute path exists. In this case, return the
  // relative path.
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return string::UTF8to16(UTF8FromPath((error ? path : absolute).lexically_normal()));
}

std::optional<fs::path> PathFromText(std::u16string_view text) {
  const string::UTF8String path = string::UTF16to8(text);
  if (string::UTF8to16(path) != text) return std::nullopt;
  return PathFromUTF8(path);
}

std::shared_ptr<const RecycledMemory> ReadRegularFile(const fs::path& path,
                                                      const std::stop_token& stop,
                                                      std::size_t maxBytes) {
  if (path.native().find('\0') != fs::path::string_type::npos) ThrowFileError(EINVAL, path);
  // Check the type before opening, because opening a device or a FIFO can have side effects.
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (error) ThrowFileError(error.default_error_condition().value(), path);
  if (fs::is_directory(status)) ThrowFileError(EISDIR, path);
  if (!fs::is_regular_file(status)) ThrowFileError(EOPNOTSUPP, path);
  return std::make_shared<const RecycledMemory>(RegularFile(path).ReadToEnd(maxBytes, stop));
}

}  // namespace orncore::filesupport
