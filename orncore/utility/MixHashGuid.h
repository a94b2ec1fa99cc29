// Computes identifiers by hashing content.
//
// The hash is MurmurHash3 by Austin Appleby (x64, 128 bits, seed 0). The published algorithm is in
// the public domain.
//
// The result depends on the bytes and their order, but not on how they are split between calls.
// Accidental collisions are improbable, but the hash does not resist deliberate ones. Identifiers
// are persisted, so the result is the same on every machine and in every version of the library.
#ifndef ORNCORE_UTILITY_MIXHASHGUID_H_
#define ORNCORE_UTILITY_MIXHASHGUID_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/utility/Guid.h>

namespace orncore::utility {

/// The state of a hash computation. A copy continues from the same state. The methods allocate no
/// memory and never throw.
///
/// Threads: use one object from one thread at a time.
class ORN_EXPORT Murmur3MixerState {
 public:
  /// Adds `length` bytes from `bytes`, which may be null if `length` is 0.
  void Update(const void* bytes, std::size_t length) noexcept {
    if (length > buffer_.size() - buffered_) return UpdateLong(bytes, length);
    Copy(static_cast<const unsigned char*>(bytes), length, buffer_.data() + buffered_);
    buffered_ += length;
  }

  /// Sets `result` to the hash of all bytes added so far. `result` contains the two 64-bit halves
  /// h1 and h2 of the algorithm in this order. Each half begins with its least significant byte.
  ///
  /// The state does not change, so more bytes can be added afterwards.
  void Finish(std::array<std::uint8_t, Guid::kByteLength>& result) const noexcept;

 private:
  struct Sums {
    std::uint64_t h1 = 0;
    std::uint64_t h2 = 0;
  };

  // Copies `length` bytes as two parts of kCount bytes, which can overlap. `length` must be at
  // least kCount and at most twice kCount.
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

  // Copies `length` bytes. Most hashed strings are short. For a short string, a call to memcpy
  // takes longer than the copy itself. With such calls, `IsAnythingNew` would be slower
  // (docs/performance.md).
  static void Copy(const unsigned char* from, std::size_t length, unsigned char* to) noexcept {
    if (length > 32) {
      std::memcpy(to, from, length);
    } else if (length >= 16) {
      CopyBothEnds<16>(from, length, to);
    } else if (length >= 8) {
      CopyBothEnds<8>(from, length, to);
    } else if (length >= 4) {
      CopyBothEnds<4>(from, length, to);
    } else if (length >= 2) {
      CopyBothEnds<2>(from, length, to);
    } else if (length == 1) {
      *to = *from;
    }
  }

  static void MixBlocks(const unsigned char* from, std::size_t length, Sums& sums) noexcept;

  // Adds `length` bytes that do not fit into the free part of the buffer.
  void UpdateLong(const void* bytes, std::size_t length) noexcept;

  Sums sums_;
  std::uint64_t mixed_ = 0;   // number of bytes already mixed into sums_
  std::size_t buffered_ = 0;  // number of bytes in buffer_
  // The size is a multiple of the block size. For most identities, all hashed bytes fit into the
  // buffer, so `Finish` mixes their blocks in one loop. The buffer is not initialised, because that
  // would take longer than hashing a short string.
  std::array<unsigned char, 256> buffer_;
};

/// Computes a `Guid` from bytes, strings and other identifiers. `State` is the class that computes
/// the hash, such as `Murmur3MixerState`. A copy of an object continues from the same state.
///
///     GuidMixer mixer;
///     mixer.Mix("FeatureChangeList");
///     mixer.Mix(description);
///     Guid identity = mixer.Result();
///
/// Threads: use one object from one thread at a time.
template <class State>
class MixHashGuidT {
 public:
  /// Adds `length` bytes from `bytes` to `state`. `bytes` may be null if `length` is 0.
  static void UpdateHashState(State& state, const void* bytes, std::size_t length) noexcept {
    state.Update(bytes, length);
  }

  /// Sets `result` to the hash of all bytes added to `state` so far. Does not change `state`.
  static void GetHashResult(const State& state, Guid& result) noexcept {
    std::array<std::uint8_t, Guid::kByteLength> bytes;
    state.Finish(bytes);
    result = Guid(bytes);
  }

  /// Adds the bytes of `text`. Adds neither a length nor a separator: "a" and "bc" have the same
  /// result as "ab" and "c".
  void Mix(std::string_view text) noexcept { UpdateHashState(state_, text.data(), text.size()); }

  /// Adds the sixteen bytes of `guid`, in the order of its text form.
  void Mix(const Guid& guid) noexcept {
    UpdateHashState(state_, guid.GuidToBytes().data(), Guid::kByteLength);
  }

  /// Returns the hash of all bytes added so far. More bytes can be added afterwards.
  [[nodiscard]] Guid Result() const noexcept {
    Guid result;
    GetHashResult(state_, result);
    return result;
  }

 private:
  State state_;
};

}  // namespace orncore::utility

#endif  // ORNCORE_UTILITY_MIXHASHGUID_H_
