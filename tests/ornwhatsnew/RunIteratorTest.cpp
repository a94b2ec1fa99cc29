#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <boost/tokenizer.hpp>

#include "ornwhatsnew/src/datafile/RunIterator.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TextAtPageEnd.h"

namespace ornwhatsnew {
namespace {

using test_support::RandomSource;
using Separator = boost::escaped_list_separator<char>;

constexpr std::uint64_t kSeed = 20251120;

const char* EndOf(std::string_view text) {
  return text.data() + text.size();
}

template <char kOne, char kOther>
std::vector<std::string> Runs(std::string_view text) {
  std::vector<std::string> runs;
  auto [run, end] = RunsOf<kOne, kOther>(text, EndOf(text));
  for (; run != end; ++run) runs.emplace_back((*run).first, (*run).last);
  return runs;
}

// Cuts by runs, and keeps what the library keeps.
template <class Iterator>
std::vector<std::string> CutRuns(std::pair<Iterator, Iterator> runs, const char* separator,
                                 const std::string& quote) {
  const boost::tokenizer<Separator, Iterator, SpanToken> tokens(
      runs.first, runs.second, Separator(std::string(), separator, quote));
  std::vector<std::string> pieces;
  for (const SpanToken& token : tokens) {
    std::string piece(token.Extent());
    if (!token.IsContiguous()) std::erase(piece, '"');
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

std::vector<std::string> CutBytes(const std::string& text, const char* separator,
                                  const std::string& quote) {
  const boost::tokenizer<Separator> tokens(text, Separator(std::string(), separator, quote));
  return {tokens.begin(), tokens.end()};
}

std::vector<std::string> CutFieldRuns(const std::string& row) {
  return CutRuns(RunsOf<',', '"'>(row, EndOf(row)), ",", "\"");
}

std::vector<std::string> CutRowRuns(const std::string& text) {
  return CutRuns(RunsOf<'\n'>(text, EndOf(text)), "\n", "");
}

TEST(RunIterator, StopsAtEachSpecialByteAndGathersTheOthers) {
  EXPECT_EQ((Runs<',', '"'>("ab,,\"c\"d")),
            (std::vector<std::string>{"ab", ",", ",", "\"", "c", "\"", "d"}));
  EXPECT_EQ((Runs<'\n', '\n'>("a\n\nb")), (std::vector<std::string>{"a", "\n", "\n", "b"}));
}

TEST(RunIterator, EmptyTextHasNoRun) {
  EXPECT_TRUE((Runs<',', '"'>("").empty()));
}

TEST(RunIterator, IncrementsInBothForms) {
  const std::string text = "a,b";
  auto [run, end] = RunsOf<','>(text, EndOf(text));
  EXPECT_EQ(*run++, 'a');
  EXPECT_EQ(*run, ',');
  EXPECT_EQ(*++run, 'b');
  EXPECT_TRUE(++run == end);
}

TEST(RunIterator, FindEitherStopsAtTheEndOfItsRangeAndNotOfTheReadableMemory) {
  const std::string text = "0123456789012345678901234,";
  for (std::size_t end = 0; end <= text.size(); ++end) {
    const char* const last = text.data() + end;
    const char* const found = FindEither<',', '"'>(text.data(), last, EndOf(text));
    EXPECT_EQ(found - text.data(), static_cast<std::ptrdiff_t>(std::min(end, text.size() - 1)));
  }
}

TEST(RunIterator, FindEitherFindsEachByteAtEachPlace) {
  for (const char special : {',', '"'}) {
    for (std::size_t length = 0; length < 50; ++length) {
      for (std::size_t place = 0; place < length; ++place) {
        std::string text(length, 'x');
        text[place] = special;
        const char* const found = FindEither<',', '"'>(text.data(), EndOf(text), EndOf(text));
        ASSERT_EQ(found - text.data(), static_cast<std::ptrdiff_t>(place)) << length;
      }
    }
  }
}

TEST(RunIterator, FindEitherReadsNothingBehindTheReadableMemory) {
  test_support::TextAtPageEnd memory;
  for (std::size_t length = 0; length < 50; ++length) {
    const std::string_view text = memory.Put(std::string(length, 'x'));
    EXPECT_EQ((FindEither<',', '"'>(text.data(), EndOf(text), EndOf(text))), EndOf(text));
    EXPECT_EQ((FindEither<'\n', '\n'>(text.data(), EndOf(text), EndOf(text))), EndOf(text));
  }
}

TEST(RunIterator, FieldsAreThoseOfPlainTokenizing) {
  for (const std::string row : {"", ",", ",,", "a", "a,b", "\"\"", "\"a,b\",c", "a\"b\"c",
                                "\"a\"\"b\"", "\"open,to the end", "\"", ",\"", "\",", "a\\,b",
                                "\\\"a,b\\\"", " a , b ", "\"a\"x\"b,c\"", "\r,\r"}) {
    EXPECT_EQ(CutFieldRuns(row), CutBytes(row, ",", "\"")) << row;
  }
}

TEST(RunIterator, RowsAreThoseOfPlainTokenizing) {
  for (const std::string text : {"", "\n", "\n\n", "a", "a\n", "a\nb", "\"a\nb\"", "a\r\nb\r\n"}) {
    EXPECT_EQ(CutRowRuns(text), CutBytes(text, "\n", "")) << text;
  }
}

TEST(RunIterator, RandomTextsAreCutLikePlainTokenizing) {
  RandomSource random(kSeed);
  for (int i = 0; i < 10000; ++i) {
    const std::string text = random.HostileText(24);
    ASSERT_EQ(CutFieldRuns(text), CutBytes(text, ",", "\"")) << "round " << i;
    ASSERT_EQ(CutRowRuns(text), CutBytes(text, "\n", "")) << "round " << i;
  }
}

// All texts of up to six of the bytes that matter.
TEST(RunIterator, ShortTextsAreAllCutLikePlainTokenizing) {
  constexpr char kBytes[] = {',', '"', '\\', '\n', 'x'};
  constexpr std::size_t kTexts = 5 * 5 * 5 * 5 * 5 * 5;
  for (std::size_t length = 0; length <= 6; ++length) {
    for (std::size_t number = 0; number < kTexts; ++number) {
      std::string text;
      for (std::size_t rest = number; text.size() < length; rest /= 5) text += kBytes[rest % 5];
      ASSERT_EQ(CutFieldRuns(text), CutBytes(text, ",", "\"")) << text;
      ASSERT_EQ(CutRowRuns(text), CutBytes(text, "\n", "")) << text;
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
