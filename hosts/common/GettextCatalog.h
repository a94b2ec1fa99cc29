// Reads compiled gettext catalogs, which are files with the extension .mo.
#ifndef HOSTS_COMMON_GETTEXTCATALOG_H_
#define HOSTS_COMMON_GETTEXTCATALOG_H_

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace hosts::common {

/// Thrown if bytes are not a usable catalog. The message contains the reason.
class CatalogError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Returns the translations in a compiled catalog by key. The key of a translation is the context
/// of its entry. Ignores entries without a context. `bytes` can be any bytes. Throws `CatalogError`
/// if they are not a catalog in UTF-8 that Boost.Locale can read. Also throws it if a key has no
/// translation or two different ones.
std::map<std::string, std::string, std::less<>> ParseGettextCatalog(std::string_view bytes);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_GETTEXTCATALOG_H_
