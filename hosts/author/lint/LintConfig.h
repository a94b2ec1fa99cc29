// Reads `.ornwhatsnew-lint.json`, which changes the severities of findings.
//
//   {"severity": {"unreviewed-left": "error", "feature-without-change": "off"}}
#ifndef HOSTS_AUTHOR_LINT_LINTCONFIG_H_
#define HOSTS_AUTHOR_LINT_LINTCONFIG_H_

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/author/lint/Lint.h"

namespace hosts::author {

/// The name of the configuration file.
inline constexpr std::string_view kLintConfigName = ".ornwhatsnew-lint.json";

/// Returns the configuration file in the folder of `dataFile`, or in the nearest folder above it.
/// Returns `std::nullopt` if there is none, or if a folder cannot be searched.
std::optional<std::filesystem::path> FindLintConfig(const std::filesystem::path& dataFile);

/// Returns the severities in the configuration file that `FindLintConfig` returns for `dataFile`.
/// Returns an empty map if there is no such file. Throws `common::JsonError` if the file cannot be
/// read, is not valid, or contains an unknown code or severity.
SeverityOverrides ConfiguredSeverities(const std::filesystem::path& dataFile);

/// Parses a configuration. Throws `common::JsonError` if it is not valid, or if it contains an
/// unknown code or severity. The error message begins with `sourceName`.
SeverityOverrides ParseLintConfig(std::string_view json, std::string_view sourceName);

/// Returns the error message for `name`, which is not a code. Suggests the most similar code. If no
/// code is similar, the message refers to `--list-codes`.
std::string UnknownCodeMessage(std::string_view name);

/// Adds the severity of a command-line argument such as "unreviewed-left=error" to `overrides`.
/// Returns an error message, which is empty on success.
std::string AddSeverity(std::string_view argument, SeverityOverrides& overrides);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTCONFIG_H_
