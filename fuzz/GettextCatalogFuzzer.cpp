// Fuzzes the reader of compiled gettext catalogs.
//
// The input is a catalog.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <orncore/string/Conversion.h>

#include "fuzz/Property.h"
#include "hosts/common/GettextCatalog.h"

namespace fuzz {
namespace {

void Run(std::string_view bytes) {
  try {
    const auto texts = hosts::common::ParseGettextCatalog(bytes);
    Require(hosts::common::ParseGettextCatalog(bytes) == texts,
            "the result depends only on the catalog");
    for (const auto& [key, text] : texts) {
      Require(bytes.find(key + '\4') != std::string_view::npos,
              "each key is a context in the catalog");
      Require(orncore::string::IsWellFormedUTF8(text), "each text is valid UTF-8");
    }
  } catch (const hosts::common::CatalogError& error) {
    Require(!std::string_view(error.what()).empty(), "an error has a message");
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
