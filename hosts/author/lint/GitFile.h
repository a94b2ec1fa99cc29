// Reads an earlier version of a file from its git repository.
#ifndef HOSTS_AUTHOR_LINT_GITFILE_H_
#define HOSTS_AUTHOR_LINT_GITFILE_H_

#include <filesystem>
#include <string>

namespace hosts::author {

/// Returns the content of `file` in the commit `revision`. Runs git without a shell, in the folder
/// of the file. Throws `std::runtime_error` in these cases:
///
/// - `revision` is empty or begins with '-'.
/// - git cannot be run.
/// - git fails, for example because the commit does not exist or does not contain the file. The
///   message of the exception contains the first line of git's message.
/// - The content has more than `maxBytes` bytes. The message states `maxBytes` in MiB.
std::string ReadGitFile(const std::string& revision, const std::filesystem::path& file,
                        std::size_t maxBytes);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_GITFILE_H_
