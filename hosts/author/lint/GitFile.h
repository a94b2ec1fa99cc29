// Reads an earlier version of a file from its git repository.
#ifndef HOSTS_AUTHOR_LINT_GITFILE_H_
#define HOSTS_AUTHOR_LINT_GITFILE_H_

#include <filesystem>
#include <string>

namespace hosts::author {

/// Returns the content of `file` in the commit `revision`. Runs git without a shell, in the folder
/// of the file. Throws `std::runtime_error` if `revision` is empty or begins with '-', if git
/// cannot be run, if the commit or the file in it does not exist, or if the content has more than
/// `maxBytes` bytes. The message contains git's own error message.
std::string ReadGitFile(const std::string& revision, const std::filesystem::path& file,
                        std::size_t maxBytes);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_GITFILE_H_
