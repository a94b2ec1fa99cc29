// Reads persisted identities, adds 10 % new identities, and writes the result. The baseline only
// converts the digits of the identities to bytes and back.
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/support/Rows.h"
#include "ornwhatsnew/src/rules/IdentitySet.h"

namespace benchmarks {
namespace {

using ornwhatsnew::Guid;
using ornwhatsnew::IdentitySet;

IdentitySet RandomIdentities(std::size_t count, std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  std::vector<Guid> guids;
  for (std::size_t i = 0; i < count; ++i) {
    std::array<std::uint8_t, Guid::kByteLength> bytes{};
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(engine());
    guids.emplace_back(bytes);
  }
  return ornwhatsnew::MakeIdentitySet(std::move(guids));
}

void State(benchmark::State& state) {
  const std::string text = ornwhatsnew::FormatIdentities(RandomIdentities(Rows(state), 1));
  const IdentitySet shown = RandomIdentities(Rows(state) / 10, 2);
  for (auto _ : state) {
    const IdentitySet seen = ornwhatsnew::ParseIdentities(text);
    benchmark::DoNotOptimize(ornwhatsnew::FormatIdentities(ornwhatsnew::UnionOf(seen, shown)));
  }
  SetRows(state, Rows(state));
}
BENCHMARK(State)->RangeMultiplier(10)->Range(1'000, 1'000'000);

using Bytes = std::array<std::uint8_t, Guid::kByteLength>;

constexpr std::string_view kDigits = "0123456789abcdef";

constexpr std::array<std::uint8_t, 256> kValues = [] {
  std::array<std::uint8_t, 256> values{};
  for (std::uint8_t i = 0; i < 16; ++i) values[static_cast<std::uint8_t>(kDigits[i])] = i;
  return values;
}();

// The number of hexadecimal digits in each group of an identity's text form. Hyphens separate the
// groups.
constexpr std::array<std::size_t, 5> kGroups = {8, 4, 4, 4, 12};

Bytes ReadByHand(const char* from) {
  const auto value = [](char digit) { return kValues[static_cast<std::uint8_t>(digit)]; };
  Bytes bytes;
  std::uint8_t* to = bytes.data();
  for (const std::size_t digits : kGroups) {
    for (const char* const end = from + digits; from != end; from += 2) {
      *to++ = static_cast<std::uint8_t>(value(from[0]) << 4 | value(from[1]));
    }
    ++from;
  }
  return bytes;
}

void WriteByHand(const Bytes& bytes, char* to) {
  const std::uint8_t* from = bytes.data();
  for (const std::size_t digits : kGroups) {
    for (char* const end = to + digits; to != end; to += 2) {
      to[0] = kDigits[*from >> 4];
      to[1] = kDigits[*from++ & 0x0F];
    }
    *to++ = '-';
  }
  to[-1] = ' ';
}

void HandState(benchmark::State& state) {
  constexpr std::size_t kWidth = Guid::kTextLength + 1;
  const std::string text = ornwhatsnew::FormatIdentities(RandomIdentities(Rows(state), 1));
  const std::size_t written = Rows(state) + Rows(state) / 10;
  for (auto _ : state) {
    std::vector<Bytes> identities;
    identities.reserve(Rows(state));
    for (std::size_t at = 0; at < text.size(); at += kWidth) {
      identities.push_back(ReadByHand(text.data() + at));
    }
    std::string out(written * kWidth, ' ');
    for (std::size_t i = 0; i < written; ++i) {
      WriteByHand(identities[i % identities.size()], out.data() + i * kWidth);
    }
    benchmark::DoNotOptimize(out.data());
  }
  SetRows(state, Rows(state));
}
BENCHMARK(HandState)->Name("Baseline.State")->RangeMultiplier(10)->Range(1'000, 1'000'000);

}  // namespace
}  // namespace benchmarks
