// Decodes text files, and detects their encoding.
#ifndef HOSTS_AUTHOR_TEXTENCODING_H_
#define HOSTS_AUTHOR_TEXTENCODING_H_

#include <optional>
#include <string>
#include <string_view>

namespace hosts::author {

/// The text of a file in UTF-8, and the encoding of the file.
struct DecodedText {
  std::string text;      ///< well-formed UTF-8, without the byte order mark of the file
  std::string encoding;  ///< the name of the encoding, for example "UTF-8"
  std::string reason;    ///< why this encoding was used, for messages
};

/// Decodes the bytes of a file. If `encoding` is given, the function uses it. Otherwise, a byte
/// order mark determines the encoding. A file without a byte order mark is UTF-8 if all of its
/// bytes are valid UTF-8, and Windows-1252 if not. Throws `OptionError` if ICU does not know
/// `encoding`. Throws `InputError` if the bytes are not valid in the selected encoding, or if the
/// text contains NUL.
DecodedText DecodeText(std::string_view bytes, const std::optional<std::string>& encoding);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_TEXTENCODING_H_
