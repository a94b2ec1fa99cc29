#include <orncore/utility/MixHashGuid.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace orncore::utility {
namespace {

constexpr std::size_t kBlockBytes = 16;

constexpr std::uint64_t kFirstFactor = 0x87c37b91114253d5U;
constexpr std::uint64_t kSecondFactor = 0x4cf5ad432745937fU;

// Converts between the byte order of the machine and little-endian, because persisted identifiers
// must not depend on the machine.
constexpr std::uint64_t LittleEndian(std::uint64_t word) noexcept {
  if constexpr (std::endian::native == std::endian::big) {
    auto bytes = std::bit_cast<std::array<unsigned char, sizeof word>>(word);
    std::ranges::reverse(bytes);
    return std::bit_cast<std::uint64_t>(bytes);
  }
  return word;
}

std::uint64_t Load(const unsigned char* from) noexcept {
  std::uint64_t word;
  std::memcpy(&word, from, sizeof word);
  return LittleEndian(word);
}

void Store(std::uint64_t word, std::uint8_t* to) noexcept {
  word = LittleEndian(word);
  std::memcpy(to, &word, sizeof word);
}

std::uint64_t MixFirst(std::uint64_t word) noexcept {
  return std::rotl(word * kFirstFactor, 31) * kSecondFactor;
}

std::uint64_t MixSecond(std::uint64_t word) noexcept {
  return std::rotl(word * kSecondFactor, 33) * kFirstFactor;
}

std::uint64_t Avalanche(std::uint64_t word) noexcept {
  word ^= word >> 33;
  word *= 0xff51afd7ed558ccdU;
  word ^= word >> 33;
  word *= 0xc4ceb9fe1a85ec53U;
  return word ^ word >> 33;
}

}  // namespace

// `length` must be a multiple of kBlockBytes.
void Murmur3MixerState::MixBlocks(const unsigned char* from, std::size_t length,
                                  Sums& sums) noexcept {
  auto [h1, h2] = sums;
  for (const unsigned char* const end = from + length; from != end; from += kBlockBytes) {
    h1 = (std::rotl(h1 ^ MixFirst(Load(from)), 27) + h2) * 5 + 0x52dce729;
    h2 = (std::rotl(h2 ^ MixSecond(Load(from + 8)), 31) + h1) * 5 + 0x38495ab5;
  }
  sums = {h1, h2};
}

void Murmur3MixerState::UpdateLong(const void* bytes, std::size_t length) noexcept {
  const auto* from = static_cast<const unsigned char*>(bytes);
  while (length > 0) {
    const std::size_t count = std::min(length, buffer_.size() - buffered_);
    std::memcpy(buffer_.data() + buffered_, from, count);
    buffered_ += count;
    from += count;
    length -= count;
    if (buffered_ < buffer_.size()) break;
    MixBlocks(buffer_.data(), buffer_.size(), sums_);
    mixed_ += std::exchange(buffered_, 0);
  }
}

void Murmur3MixerState::Finish(std::array<std::uint8_t, Guid::kByteLength>& result) const noexcept {
  const std::size_t restBytes = buffered_ % kBlockBytes;
  Sums sums = sums_;
  MixBlocks(buffer_.data(), buffered_ - restBytes, sums);
  // Pad the last block with zeros, as the algorithm does. If a half of the block
  // contains no input bytes, its mixed value is zero and does not change the hash.
  std::array<unsigned char, kBlockBytes> rest{};
  Copy(buffer_.data() + buffered_ - restBytes, restBytes, rest.data());
  const std::uint64_t total = mixed_ + buffered_;
  std::uint64_t h1 = sums.h1 ^ MixFirst(Load(rest.data())) ^ total;
  std::uint64_t h2 = sums.h2 ^ MixSecond(Load(rest.data() + 8)) ^ total;
  h1 += h2;
  h2 += h1;
  h1 = Avalanche(h1);
  h2 = Avalanche(h2);
  h1 += h2;
  h2 += h1;
  Store(h1, result.data());
  Store(h2, result.data() + sizeof h1);
}

}  // namespace orncore::utility
