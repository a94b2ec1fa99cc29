#include <orncore/utility/MixHashGuid.h>

#include <bit>
#include <concepts>

namespace orncore::utility {
namespace {

constexpr std::size_t kBlockBytes = 16;

constexpr std::uint64_t kFirstFactor = 0x87c37b91114253d5U;
constexpr std::uint64_t kSecondFactor = 0x4cf5ad432745937fU;

// Sixteen bytes: the first is the lowest of `low`, the ninth the lowest of `high`.
struct Block {
  std::uint64_t low = 0;
  std::uint64_t high = 0;
};

template <std::unsigned_integral Word>
Word LittleEndian(Word word) noexcept {
  if constexpr (std::endian::native == std::endian::little) {
    return word;
  } else {
    Word swapped = 0;
    for (std::size_t i = 0; i < sizeof word; ++i) {
      swapped = swapped << 8 | (word & 0xFF);
      word >>= 8;
    }
    return swapped;
  }
}

template <std::unsigned_integral Word>
std::uint64_t Load(const unsigned char* from) noexcept {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return LittleEndian(word);
}

void Store(std::uint64_t word, std::uint8_t* to) noexcept {
  word = LittleEndian(word);
  std::memcpy(to, &word, sizeof word);
}

// Fewer than sixteen bytes, zeros behind them. Loads overlap, none reaches outside.
Block LoadShort(const unsigned char* from, std::size_t length) noexcept {
  if (length > 8) {
    const std::uint64_t end = Load<std::uint64_t>(from + length - 8);
    return {Load<std::uint64_t>(from), end >> (8 * (16 - length))};
  }
  if (length >= 4) {
    const std::uint64_t end = Load<std::uint32_t>(from + length - 4);
    return {Load<std::uint32_t>(from) | end << (8 * (length - 4)), 0};
  }
  if (length == 0) return {};
  // One to three bytes: the first, the middle and the last, some of which may be the same.
  const std::uint64_t middle = from[length / 2];
  const std::uint64_t last = from[length - 1];
  return {from[0] | middle << (8 * (length / 2)) | last << (8 * (length - 1)), 0};
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

void Murmur3MixerState::Finish(std::array<std::uint8_t, Guid::kByteLength>& result) const noexcept {
  const std::size_t inBlocks = waiting_ - waiting_ % kBlockBytes;
  Sums sums = sums_;
  MixBlocks(buffer_.data(), inBlocks, sums);
  // The zeros behind the last bytes change nothing.
  const Block rest = LoadShort(buffer_.data() + inBlocks, waiting_ - inBlocks);
  const std::uint64_t total = std::uint64_t{mixed_} + waiting_;
  std::uint64_t h1 = sums.h1 ^ MixFirst(rest.low) ^ total;
  std::uint64_t h2 = sums.h2 ^ MixSecond(rest.high) ^ total;
  h1 += h2;
  h2 += h1;
  h1 = Avalanche(h1);
  h2 = Avalanche(h2);
  h1 += h2;
  h2 += h1;
  Store(h1, result.data());
  Store(h2, result.data() + sizeof h1);
}

// `length` is that of whole blocks.
void Murmur3MixerState::MixBlocks(const unsigned char* from, std::size_t length,
                                  Sums& sums) noexcept {
  std::uint64_t h1 = sums.h1;
  std::uint64_t h2 = sums.h2;
  for (const unsigned char* const end = from + length; from != end; from += kBlockBytes) {
    h1 = (std::rotl(h1 ^ MixFirst(Load<std::uint64_t>(from)), 27) + h2) * 5 + 0x52dce729;
    h2 = (std::rotl(h2 ^ MixSecond(Load<std::uint64_t>(from + 8)), 31) + h1) * 5 + 0x38495ab5;
  }
  sums = {h1, h2};
}

// Fills and empties the buffer, mixes what blocks there are where they stand, and leaves the rest
// in the buffer.
void Murmur3MixerState::AddLong(const unsigned char* from, std::size_t length) noexcept {
  static_assert(kBufferBytes % kBlockBytes == 0);
  const std::size_t room = kBufferBytes - waiting_;
  Copy(from, room, buffer_.data() + waiting_);
  MixBlocks(buffer_.data(), kBufferBytes, sums_);
  from += room;
  length -= room;
  waiting_ = length % kBlockBytes;
  const std::size_t inBlocks = length - waiting_;
  MixBlocks(from, inBlocks, sums_);
  Copy(from + inBlocks, waiting_, buffer_.data());
  mixed_ += kBufferBytes + inBlocks;
}

}  // namespace orncore::utility
