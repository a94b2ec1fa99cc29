#include "hosts/common/Sha256.h"

#include <string>

#include <gtest/gtest.h>

namespace hosts::common {
namespace {

// The hashes of "abc" and of the string with 56 letters are published examples of SHA-256.
TEST(Sha256, EqualsKnownHashes) {
  EXPECT_EQ(Sha256InBase64(""), "47DEQpj8HBSa+/TImW+5JCeuQeRkm5NMpJWZG3hSuFU=");
  EXPECT_EQ(Sha256InBase64("abc"), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
  EXPECT_EQ(Sha256InBase64("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "JI1qYdIGOLjlwCaTDD5gOaM85Flk/yFn9uzt1BnbBsE=");
  EXPECT_EQ(Sha256InBase64(std::string(55, '\xFF')),
            "qtrtAKPF+7gHKufxmEuoGZ++UnLeQn0R6vMVg68321E=");
  EXPECT_EQ(Sha256InBase64(std::string(64, '\0')), "9aX9QtFqIDAnmO9u0wmXm0MAPSMg2fDo6pgxqSdZ+0s=");
  EXPECT_EQ(Sha256InBase64(std::string(1000, 'a')), "Qe3s5C1j6Nm/UVqbppMuHCDLyfWl0TRkWttdsblzfqM=");
}

}  // namespace
}  // namespace hosts::common
