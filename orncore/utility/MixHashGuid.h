// Identifiers made by hashing content.
//
// The hash is MurmurHash3 by Austin Appleby (x64, 128 bits, seed 0; the published algorithm is in
// the public domain), in streaming form: the result depends on the bytes fed, in order, and not on
// how they were cut into pieces. It guards against chance, not against an adversary. Identifiers
// are persisted, so the result is the same on every machine, whatever its byte order, and never
// changes.
//
// What is hashed is mostly a handful of texts of 0 to 40 bytes, so feeding a short piece must cost
// little: it is laid behind the others in a buffer, inline, by a few overlapping loads and stores
// instead of a copy of unknown length. The blocks are mixed only when the buffer is full or the
// result is asked for, in one go and long after they were written.
#ifndef ORNCORE_UTILITY_MIXHASHGUID_H_
#define ORNCORE_UTILITY_MIXHASHGUID_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include <orncore/Export.h>
#include <orncore/utility/Guid.h>

namespace orncore::utility {

/// The state of one hash between pieces. A value without allocation: a copy goes on from the same
/// place. One thread at a time.
class ORN_EXPORT Murmur3MixerState {
 public:
  /// Adds `length` bytes. `bytes` may be null when `length` is 0.
  void Update(const void* bytes, std::size_t length) noexcept {
    const auto* from = static_cast<const unsigned char*>(bytes);
    if (length > kBufferBytes - waiting_) {
      AddLong(from, length);
    } else {
      Copy(from, length, buffer_.data() + waiting_);
      waiting_ += length;
    }
  }

  /// Writes the sixteen bytes of the hash of everything added so far: h1, then h2, each least
  /// significant byte first. The state is as before: more can be added.
  void Finish(std::array<std::uint8_t, Guid::kByteLength>& result) const noexcept;

 private:
  static constexpr std::size_t kBufferBytes = 256;  // whole blocks; most identities fit

  // What the blocks mixed so far have come to.
  struct Sums {
    std::uint64_t h1 = 0;
    std::uint64_t h2 = 0;
  };

  // Copies `length` bytes, at least `kCount` and at most twice that, as two pieces of fixed size
  // that overlap in the middle.
  template <std::size_t kCount>
  static void CopyBothEnds(const unsigned char* from, std::size_t length,
                           unsigned char* to) noexcept {
    std::array<unsigned char, kCount> front;
    std::array<unsigned char, kCount> back;
    std::memcpy(front.data(), from, kCount);
    std::memcpy(back.data(), from + length - kCount, kCount);
    std::memcpy(to, front.data(), kCount);
    std::memcpy(to + length - kCount, back.data(), kCount);
  }

  static void Copy(const unsigned char* from, std::size_t length, unsigned char* to) noexcept {
    if (length >= 16) {
      const std::size_t last = length - 16;
      for (std::size_t i = 0; i < last; i += 16) std::memcpy(to + i, from + i, 16);
      std::memcpy(to + last, from + last, 16);
    } else if (length >= 8) {
      CopyBothEnds<8>(from, length, to);
    } else if (length >= 4) {
      CopyBothEnds<4>(from, length, to);
    } else if (length > 0) {
      to[0] = from[0];
      to[length / 2] = from[length / 2];
      to[length - 1] = from[length - 1];
    }
  }

  static void MixBlocks(const unsigned char* from, std::size_t length, Sums& sums) noexcept;

  // Adds more than the buffer has room for.
  void AddLong(const unsigned char* from, std::size_t length) noexcept;

  Sums sums_;
  std::size_t mixed_ = 0;    // the bytes that `sums_` stands for
  std::size_t waiting_ = 0;  // the bytes of the buffer in use
  // Left as it is at the start: clearing it would cost more than hashing a short text.
  std::array<unsigned char, kBufferBytes> buffer_;
};
static_assert(std::is_trivially_copyable_v<Murmur3MixerState>);

/// Makes a `Guid` from bytes fed in order. A text is fed as its bytes only, without length or
/// separator. One thread at a time; a copy goes on from the same place.
///
///     GuidMixer mixer;
///     mixer.Mix("FeatureChangeList");
///     mixer.Mix(description);
///     Guid identity = mixer.Result();
template <class State>
class MixHashGuidT {
 public:
  /// Adds `length` bytes to `state`. `bytes` may be null when `length` is 0.
  static void UpdateHashState(State& state, const void* bytes, std::size_t length) noexcept {
    state.Update(bytes, length);
  }

  /// Replaces `result` by the hash of everything added to `state`, which is as before.
  static void GetHashResult(const State& state, Guid& result) noexcept {
    std::array<std::uint8_t, Guid::kByteLength> bytes;
    state.Finish(bytes);
    result = Guid(bytes);
  }

  /// Adds the bytes of a text; an empty one adds nothing.
  void Mix(std::string_view text) noexcept { UpdateHashState(state_, text.data(), text.size()); }

  /// Adds the sixteen bytes of an identifier.
  void Mix(const Guid& guid) noexcept {
    UpdateHashState(state_, guid.GuidToBytes().data(), Guid::kByteLength);
  }

  /// The hash of everything added so far; more can be added.
  [[nodiscard]] Guid Result() const noexcept {
    Guid result;
    GetHashResult(state_, result);
    return result;
  }

 private:
  State state_;
};

/// The mixer that makes identities.
using GuidMixer = MixHashGuidT<Murmur3MixerState>;

}  // namespace orncore::utility

#endif  // ORNCORE_UTILITY_MIXHASHGUID_H_
