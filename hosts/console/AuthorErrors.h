// Formats messages about problems in the files of authors.
#ifndef HOSTS_CONSOLE_AUTHORERRORS_H_
#define HOSTS_CONSOLE_AUTHORERRORS_H_

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "hosts/author/InputError.h"
#include "hosts/common/ToolError.h"

namespace hosts::console {

/// Returns a message about a line of a file: "FILE:LINE: MESSAGE". If `line` is 0, returns
/// "FILE: MESSAGE".
inline std::string MessageAt(const std::filesystem::path& file, std::size_t line,
                             std::string_view message) {
  return file.native() + ":" + (line == 0 ? "" : std::to_string(line) + ":") + " " +
         std::string(message);
}

/// Converts `error`, which is about `file`, to a `ToolError` with the status `kInput`. The message
/// is the result of `MessageAt`.
inline common::ToolError ToToolError(const std::filesystem::path& file,
                                     const author::InputError& error) {
  return {common::ExitStatus::kInput, MessageAt(file, error.Line(), error.what())};
}

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_AUTHORERRORS_H_
