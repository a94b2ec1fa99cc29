#include <gtest/gtest.h>

#include "tests/conformance/Base64.h"

namespace conformance {
namespace {

TEST(Base64, DecodesPaddedText) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"", ""},
      {"Zg==", "f"},
      {"Zm8=", "fo"},
      {"Zm9v", "foo"},
      {"Zm9vYg==", "foob"},
      {"AAAA", std::string_view("\0\0\0", 3)},
      {"/+8=", "\xFF\xEF"},
  };
  for (const auto& [text, bytes] : cases) EXPECT_EQ(DecodeBase64(text), bytes) << text;
}

TEST(Base64, RejectsMalformedText) {
  const std::string_view texts[] = {"Z",    "Zg",   "Zg=",   "Zg===",    "=",
                                    "====", "Z===", "Zm9v ", "Zm9\n",    "Zm-v",
                                    "Zm_v", "Zh==", "Zm9=",  "Zg==Zg==", "\xC3\xA9\xC3\xA9"};
  for (const std::string_view text : texts) EXPECT_EQ(DecodeBase64(text), std::nullopt) << text;
}

}  // namespace
}  // namespace conformance
