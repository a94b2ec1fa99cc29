#include "hosts/common/Sha256.h"

#include <array>
#include <new>

#include <openssl/evp.h>
#include <openssl/sha.h>

namespace hosts::common {

std::string Sha256InBase64(std::string_view bytes) {
  std::array<unsigned char, SHA256_DIGEST_LENGTH> hash{};
  const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
  // `SHA256` fails only if memory is insufficient.
  if (SHA256(data, bytes.size(), hash.data()) == nullptr) throw std::bad_alloc();
  // Base64 uses four characters for three bytes. `EVP_EncodeBlock` also writes a NUL.
  std::array<unsigned char, (SHA256_DIGEST_LENGTH + 2) / 3 * 4 + 1> text{};
  const int length = EVP_EncodeBlock(text.data(), hash.data(), static_cast<int>(hash.size()));
  return {text.begin(), text.begin() + length};
}

}  // namespace hosts::common
