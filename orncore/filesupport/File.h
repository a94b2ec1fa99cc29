// A file by its name.
#ifndef ORNCORE_FILESUPPORT_FILE_H_
#define ORNCORE_FILESUPPORT_FILE_H_

#include <filesystem>
#include <optional>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::filesupport {

using string::UTF16String;

/// Names a file, which need not exist; nothing is opened.
///
/// Threads: one thread at a time, as for a string.
class ORN_EXPORT File {
 public:
  /// `path` is taken as it stands, as one path: no trimming, no quoting, no wildcards.
  explicit File(UTF16String path);

  /// The path handed to the constructor.
  const UTF16String& Path() const noexcept { return path_; }

  /// The path made absolute (from the current directory of the moment) and lexically normal: no
  /// ".", no "..", no doubled separators; links are not followed. Empty for an empty path. An
  /// unpaired surrogate reads as U+FFFD.
  UTF16String FullPath() const;

 private:
  UTF16String path_;
};

/// The path that `text` spells, in UTF-8. Nothing for a text with an unpaired surrogate, which can
/// be no file's name: a stand-in for it would name another file.
ORN_EXPORT std::optional<std::filesystem::path> PathFromText(std::u16string_view text);

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_FILE_H_
