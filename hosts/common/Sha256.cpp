#include "hosts/common/Sha256.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace hosts::common {
namespace {

// The names and the constants are those of the standard FIPS 180-4.
constexpr std::size_t kBlockBytes = 64;
constexpr std::size_t kLengthBytes = 8;

constexpr std::array<std::uint32_t, 64> kRoundConstants = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

using Hash = std::array<std::uint32_t, 8>;
constexpr Hash kInitialHash = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                               0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

std::uint32_t ByteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

std::array<std::uint32_t, 64> MessageSchedule(std::string_view block) {
  std::array<std::uint32_t, 64> w{};
  for (std::size_t t = 0; t < 16; ++t) {
    w[t] = ByteAt(block, 4 * t) << 24U | ByteAt(block, 4 * t + 1) << 16U |
           ByteAt(block, 4 * t + 2) << 8U | ByteAt(block, 4 * t + 3);
  }
  for (std::size_t t = 16; t < w.size(); ++t) {
    const std::uint32_t x = w[t - 15];
    const std::uint32_t y = w[t - 2];
    w[t] = w[t - 16] + w[t - 7] + (std::rotr(x, 7) ^ std::rotr(x, 18) ^ x >> 3U) +
           (std::rotr(y, 17) ^ std::rotr(y, 19) ^ y >> 10U);
  }
  return w;
}

void AddBlock(std::string_view block, Hash& hash) {
  const std::array<std::uint32_t, 64> w = MessageSchedule(block);
  auto [a, b, c, d, e, f, g, h] = hash;
  for (std::size_t t = 0; t < w.size(); ++t) {
    const std::uint32_t t1 = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                             ((e & f) ^ (~e & g)) + kRoundConstants[t] + w[t];
    const std::uint32_t t2 =
        (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + t1;
    d = c;
    c = b;
    b = a;
    a = t1 + t2;
  }
  const Hash added = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < hash.size(); ++i) hash[i] += added[i];
}

/// Appends the bytes of `number`, the most significant one first.
template <class Number>
void AppendBytes(Number number, std::string& bytes) {
  for (std::size_t i = sizeof number; i > 0; --i) {
    bytes += static_cast<char>(number >> 8 * (i - 1) & 0xFFU);
  }
}

/// Returns `bytes`, which are the 32 bytes of a hash, in Base64.
std::string Base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::uint32_t last = i + 2 < bytes.size() ? ByteAt(bytes, i + 2) : 0;
    const std::uint32_t group = ByteAt(bytes, i) << 16U | ByteAt(bytes, i + 1) << 8U | last;
    for (const unsigned shift : {18U, 12U, 6U, 0U}) text += kDigits[group >> shift & 0x3FU];
  }
  // The last group has only two bytes.
  text.back() = '=';
  return text;
}

}  // namespace

std::string Sha256InBase64(std::string_view bytes) {
  std::string padded(bytes);
  padded += '\x80';
  while (padded.size() % kBlockBytes != kBlockBytes - kLengthBytes) padded += '\0';
  AppendBytes(std::uint64_t{bytes.size()} * 8, padded);
  Hash hash = kInitialHash;
  for (std::size_t i = 0; i < padded.size(); i += kBlockBytes) {
    AddBlock(std::string_view(padded).substr(i, kBlockBytes), hash);
  }
  std::string result;
  for (const std::uint32_t word : hash) AppendBytes(word, result);
  return Base64(result);
}

}  // namespace hosts::common
