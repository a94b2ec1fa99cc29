#include <orncore/utility/MixHashGuid.h>

#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <murmurhash.h>

#include "tests/support/Allocations.h"
#include "tests/support/RandomSource.h"

namespace orncore::utility {
namespace {

using test_support::kSeed;

// Returns the hash of `bytes`, computed by an independent implementation in one call.
Guid ReferenceHash(std::string_view bytes) {
  std::array<std::uint64_t, 2> words{};
  lmmh_x64_128(bytes.data(), static_cast<unsigned>(bytes.size()), 0, words.data());
  std::array<std::uint8_t, Guid::kByteLength> result{};
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = static_cast<std::uint8_t>(words[i / 8] >> (8 * (i % 8)));
  }
  return Guid(result);
}

Guid Hash(std::string_view bytes) {
  GuidMixer mixer;
  mixer.Mix(bytes);
  return mixer.Result();
}

std::string RandomBytes(std::mt19937& random, std::size_t length) {
  std::string bytes(length, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

// Calls `Mix` with a copy of `bytes` in a buffer of exactly the same size. A sanitizer therefore
// detects every access past the end of the bytes.
void MixExact(GuidMixer& mixer, std::string_view bytes) {
  const auto exact = std::make_unique<char[]>(bytes.size());
  bytes.copy(exact.get(), bytes.size());
  mixer.Mix(std::string_view(exact.get(), bytes.size()));
}

TEST(MixHashGuid, MatchesKnownHashes) {
  const struct {
    std::string_view bytes;
    std::string_view guid;
  } cases[] = {
      {"", "00000000-0000-0000-0000-000000000000"},
      {"a", "897859f6-6555-5585-5a89-0e51483ab5e6"},
      {"hello", "029bbd41-b3a7-d8cb-191d-ae486a901e5b"},
      {"The quick brown fox jumps over the lazy dog", "6c1b07bc-7bbc-4be3-4793-9ac4a93c437a"},
      {"FeatureChangeList", "38f2e02d-6114-bd02-08f4-00fbcaf073d5"},
      {std::string_view("\0", 1), "b55cff6e-e5ab-1046-8335-f878aa2d6251"},
      {"\x80", "8a019563-679a-6161-2108-509cf29bd404"},
      {"\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8", "3c56c285-3271-c2b6-e330-d8a19f1e4e34"},
      {"0123456789abcdef", "a7d14acf-946d-e04b-da08-a7635c5bc387"},
      {"\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8D\x8E\x8F",
       "33d947e3-f4aa-2864-3a4b-7443c0d64d3d"},
      {"\U0001F389 na\u00EFve \u2014 \u65E5\u672C\u8A9E", "4ba2b048-c26c-fb4a-ba85-9e740322d879"},
  };
  for (const auto& [bytes, guid] : cases) {
    EXPECT_EQ(Hash(bytes).AsUTF8String(), guid) << testing::PrintToString(bytes);
  }
}

TEST(MixHashGuid, HashesEmptyInputToNil) {
  EXPECT_EQ(GuidMixer().Result(), Guid());
  EXPECT_EQ(Hash(""), Guid());
  GuidMixer mixer;
  Murmur3MixerState state;
  GuidMixer::UpdateHashState(state, nullptr, 0);
  Guid result(std::string_view("ffffffff-ffff-ffff-ffff-ffffffffffff"));
  GuidMixer::GetHashResult(state, result);
  EXPECT_EQ(result, Guid());
}

// The longest input is more than twice as long as the internal buffer of `Murmur3MixerState`.
TEST(MixHashGuid, AgreesWithAnIndependentImplementationAtEveryLength) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (std::size_t length = 0; length <= 600; ++length) {
    const std::string bytes = RandomBytes(random, length);
    GuidMixer mixer;
    MixExact(mixer, bytes);
    EXPECT_EQ(mixer.Result(), ReferenceHash(bytes)) << length;
  }
}

TEST(MixHashGuid, GivesTheSameHashForInputInTwoParts) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (std::size_t length = 0; length <= 300; ++length) {
    const std::string bytes = RandomBytes(random, length);
    const Guid expected = ReferenceHash(bytes);
    for (std::size_t split = 0; split <= length; ++split) {
      GuidMixer mixer;
      MixExact(mixer, std::string_view(bytes).substr(0, split));
      MixExact(mixer, std::string_view(bytes).substr(split));
      EXPECT_EQ(mixer.Result(), expected) << length << " bytes, split at " << split;
    }
  }
}

TEST(MixHashGuid, GivesTheSameHashForInputInAnyParts) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (int round = 0; round < 3000; ++round) {
    const std::string bytes = RandomBytes(random, random() % 1001);
    const std::size_t longest = 1 + random() % (round % 3 == 0 ? 600 : 50);
    GuidMixer mixer;
    std::string_view rest = bytes;
    while (!rest.empty()) {
      const std::string_view part = rest.substr(0, random() % (longest + 1));
      MixExact(mixer, part);
      rest.remove_prefix(part.size());
    }
    ASSERT_EQ(mixer.Result(), ReferenceHash(bytes)) << round;
  }
}

TEST(MixHashGuid, AcceptsSingleBytes) {
  const std::string bytes = "One byte after the other, \xF0\x9F\x8E\x89, over several blocks.";
  GuidMixer mixer;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    mixer.Mix(std::string_view(bytes).substr(i, 1));
    EXPECT_EQ(mixer.Result(), ReferenceHash(std::string_view(bytes).substr(0, i + 1))) << i;
  }
}

TEST(MixHashGuid, MixesTheBytesOfAGuid) {
  const Guid guid(std::string_view("01234567-89ab-cdef-fedc-ba9876543210"));
  const auto& bytes = guid.GuidToBytes();
  GuidMixer mixer;
  mixer.Mix("tag");
  mixer.Mix(guid);
  EXPECT_EQ(mixer.Result(), ReferenceHash("tag" + std::string(bytes.begin(), bytes.end())));
}

TEST(MixHashGuid, CanContinueAfterAResultAndInACopy) {
  GuidMixer mixer;
  mixer.Mix("one");
  EXPECT_EQ(mixer.Result(), ReferenceHash("one"));
  GuidMixer copy = mixer;
  mixer.Mix("two");
  copy.Mix("three");
  EXPECT_EQ(mixer.Result(), ReferenceHash("onetwo"));
  EXPECT_EQ(copy.Result(), ReferenceHash("onethree"));
}

TEST(MixHashGuid, UpdatesAStateOfTheCaller) {
  Murmur3MixerState state;
  GuidMixer::UpdateHashState(state, "FeatureChangeList", 17);
  GuidMixer::UpdateHashState(state, "text\0more", 9);
  Guid result;
  GuidMixer::GetHashResult(state, result);
  EXPECT_EQ(result, ReferenceHash(std::string_view("FeatureChangeListtext\0more", 26)));
}

TEST(MixHashGuid, AllocatesNothing) {
  const std::string text(40, 'x');
  EXPECT_EQ(test_support::CountAllocations([&text] {
              GuidMixer mixer;
              for (int i = 0; i < 10; ++i) mixer.Mix(text);
              static_cast<void>(mixer.Result());
            }),
            0U);
}

}  // namespace
}  // namespace orncore::utility
