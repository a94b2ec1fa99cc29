#include "hosts/author/TextEncoding.h"

#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unicode/uclean.h>

#include "hosts/author/InputError.h"

namespace hosts::author {
namespace {

using std::string_view_literals::operator""sv;

// Memory functions that the test installs in ICU. If `hasICUMemory` is false, they fail to allocate
// memory. They call `std::malloc` and `std::free`, as ICU does by default, so they can free memory
// that ICU allocated earlier.
bool hasICUMemory = true;

void* Allocate(const void*, std::size_t size) {
  return hasICUMemory ? std::malloc(size) : nullptr;
}

void* Reallocate(const void*, void* memory, std::size_t size) {
  return hasICUMemory ? std::realloc(memory, size) : nullptr;
}

void Free(const void*, void* memory) {
  std::free(memory);
}

TEST(TextEncoding, DetectsTheEncoding) {
  const struct {
    std::string_view bytes;
    std::string_view encoding;
    std::string_view text;
  } cases[] = {
      {"", "UTF-8", ""},
      {"plain", "UTF-8", "plain"},
      {"M\xC3\xBC", "UTF-8", "Mü"},
      {"\xEF\xBB\xBFM\xC3\xBC", "UTF-8", "Mü"},
      {"M\xFC\x80\x94", "Windows-1252", "Mü€”"},
      {"\xFF\xFEM\0\xFC\0"sv, "UTF-16LE", "Mü"},
      {"\xFE\xFF\0M\0\xFC"sv, "UTF-16BE", "Mü"},
      {"\xFF\xFE\0\0M\0\0\0"sv, "UTF-32LE", "M"},
      {"\0\0\xFE\xFF\0\0\0M"sv, "UTF-32BE", "M"},
      {"\xFF\xFE"sv, "UTF-16LE", ""},
  };
  for (const auto& testCase : cases) {
    const DecodedText decoded = DecodeText(testCase.bytes, std::nullopt);
    EXPECT_EQ(testCase.encoding, decoded.encoding) << testCase.text;
    EXPECT_EQ(testCase.text, decoded.text);
  }
}

TEST(TextEncoding, SaysWhyItSelectedTheEncoding) {
  EXPECT_EQ("because of --encoding", DecodeText("", "UTF-8").reason);
  EXPECT_EQ("because of its byte order mark", DecodeText("\xFF\xFE", std::nullopt).reason);
  EXPECT_EQ("because all of its bytes are valid UTF-8", DecodeText("M", std::nullopt).reason);
  EXPECT_EQ("because it is not valid UTF-8; use --encoding to select another encoding",
            DecodeText("M\xFC", std::nullopt).reason);
}

TEST(TextEncoding, UsesTheNamedEncoding) {
  EXPECT_EQ("Mü", DecodeText("M\xFC", "ISO-8859-1").text);
  EXPECT_EQ("MÃ¼", DecodeText("M\xC3\xBC", "windows-1252").text);
  EXPECT_EQ("ü", DecodeText("\x81", "IBM850").text);
  // The decoded text does not contain the byte order mark, even if the caller names the encoding.
  EXPECT_EQ("M", DecodeText("\xFF\xFEM\0"sv, "UTF-16LE").text);
  EXPECT_EQ("M", DecodeText("\xFE\xFF\0M"sv, "UTF-16").text);
}

TEST(TextEncoding, KeepsTextOverSeveralBuffers) {
  std::string expected;
  for (int i = 0; i < 5000; ++i) expected += "ü€\U0001F600";
  EXPECT_EQ(expected, DecodeText("\xEF\xBB\xBF" + expected, std::nullopt).text);
}

TEST(TextEncoding, ReportsTheLineOfInvalidBytes) {
  const struct {
    std::string_view bytes;
    std::string_view encoding;
    std::size_t line;
    std::string_view part;
  } cases[] = {
      {"a\nb\r\nc\rd\xFF", "UTF-8", 4, "the bytes FF are not valid UTF-8"},
      {"\xC3", "UTF-8", 1, "C3"},
      {"\x3D\xD8M\0"sv, "UTF-16LE", 1, "UTF-16LE"},
      {"\0"sv, "UTF-16LE", 1, "UTF-16LE"},
      {"a\0\n\0"sv, "UTF-8", 1, "NUL"},
      {"\na\0"sv, "UTF-8", 2, "UTF-16LE"},
  };
  for (const auto& testCase : cases) {
    try {
      DecodeText(testCase.bytes, std::string(testCase.encoding));
      ADD_FAILURE() << testCase.encoding;
    } catch (const InputError& error) {
      EXPECT_EQ(testCase.line, error.Line());
      EXPECT_NE(std::string::npos, std::string_view(error.what()).find(testCase.part))
          << error.what();
    }
  }
}

TEST(TextEncoding, RejectsAnUnknownEncoding) {
  EXPECT_THROW(DecodeText("a", "no-such-encoding"), OptionError);
  EXPECT_THROW(DecodeText("a", ""), OptionError);
}

TEST(TextEncoding, ReportsAFailedAllocationOfICU) {
  UErrorCode error = U_ZERO_ERROR;
  u_setMemoryFunctions(nullptr, &Allocate, &Reallocate, &Free, &error);
  ASSERT_EQ(error, U_ZERO_ERROR);
  hasICUMemory = false;
  EXPECT_THROW(DecodeText("M\0"sv, "UTF-16LE"), std::bad_alloc);
  hasICUMemory = true;
  EXPECT_EQ("M", DecodeText("M\0"sv, "UTF-16LE").text);
}

}  // namespace
}  // namespace hosts::author
