#include <orncore/config/Localizer.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orncore/string/Conversion.h>

#include "tests/support/Allocations.h"
#include "tests/support/Threads.h"

namespace orncore::config {
namespace {

class LocalizerTest : public testing::Test {
 protected:
  ~LocalizerTest() override { localizer_.SetDictionary(nullptr); }

  Localizer& localizer_ = Localizer::Get();
};

struct MarkupCase {
  std::u16string_view text;
  std::u16string_view expanded;
};

class MarkupTest : public testing::TestWithParam<MarkupCase> {};

TEST_P(MarkupTest, ExpandsMarkup) {
  EXPECT_EQ(Localizer::Get().ZString("key=" + string::UTF16to8(GetParam().text)),
            GetParam().expanded);
}

INSTANTIATE_TEST_SUITE_P(EveryMarkup, MarkupTest,
                         testing::Values(MarkupCase{u"", u""}, MarkupCase{u"plain", u"plain"},
                                         MarkupCase{u"a#{endl}b", u"a\nb"},
                                         MarkupCase{u"a#{tab}b", u"a\tb"},
                                         MarkupCase{u"a#{mdash}b", u"a\u2014b"},
                                         MarkupCase{u"a#{ndash}b", u"a\u2013b"},
                                         MarkupCase{u"^B", u"\u2022"}, MarkupCase{u"^{", u"\u2018"},
                                         MarkupCase{u"^}", u"\u2019"}, MarkupCase{u"^[", u"\u201C"},
                                         MarkupCase{u"^]", u"\u201D"}, MarkupCase{u"^^", u"^"},
                                         MarkupCase{u"#{endl}#{endl}", u"\n\n"},
                                         MarkupCase{u"it^}s ^[so^]", u"it\u2019s \u201Cso\u201D"}));

INSTANTIATE_TEST_SUITE_P(TextEndsAtAComment, MarkupTest,
                         testing::Values(MarkupCase{u"shown#{comment}not #{endl}", u"shown"},
                                         MarkupCase{u"#{comment}", u""},
                                         MarkupCase{u"a#{endl}#{comment}b#{comment}c", u"a\n"},
                                         MarkupCase{u"^^#{comment}x", u"^"},
                                         MarkupCase{u"^#{comment}x", u"^"}));

INSTANTIATE_TEST_SUITE_P(
    OtherTextIsKept, MarkupTest,
    testing::Values(MarkupCase{u"#{foo}", u"#{foo}"}, MarkupCase{u"^x", u"^x"},
                    MarkupCase{u"^#{endl}", u"^\n"}, MarkupCase{u"^", u"^"}, MarkupCase{u"#", u"#"},
                    MarkupCase{u"#{", u"#{"}, MarkupCase{u"#{endl", u"#{endl"},
                    MarkupCase{u"#{Endl}", u"#{Endl}"}, MarkupCase{u"#{ endl}", u"#{ endl}"},
                    MarkupCase{u"##{endl}", u"#\n"}, MarkupCase{u"#{#{tab}}", u"#{\t}"},
                    MarkupCase{u"^b", u"^b"}, MarkupCase{u"^^B", u"^B"},
                    MarkupCase{u"^^^B", u"^\u2022"}, MarkupCase{u"#{comment", u"#{comment"},
                    MarkupCase{u"@0 \U0001F600 ^B", u"@0 \U0001F600 \u2022"},
                    MarkupCase{{u"a\0^B", 4}, {u"a\0\u2022", 3}}));

struct KeyCase {
  std::string_view keyText;
  std::u16string_view shown;
};

class KeyTest : public LocalizerTest, public testing::WithParamInterface<KeyCase> {
 protected:
  KeyTest() {
    localizer_.SetDictionary(std::make_shared<MapDictionary>(
        MapDictionary::Texts{{"$$$/known", "aus dem W\xC3\xB6rterbuch^B"},
                             {"$$$/empty", ""},
                             {"$$$/key with = sign", "never found"},
                             {"$$$/ill", "\xFF"},
                             {"", "for the empty key"},
                             {"plain", "a plain key"}}));
  }
};

TEST_P(KeyTest, LooksUpTheKey) {
  EXPECT_EQ(localizer_.ZString(GetParam().keyText), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, KeyTest,
    testing::Values(KeyCase{"$$$/known=default", u"aus dem W\u00F6rterbuch\u2022"},
                    KeyCase{"$$$/known", u"aus dem W\u00F6rterbuch\u2022"},
                    KeyCase{"$$$/known=", u"aus dem W\u00F6rterbuch\u2022"},
                    KeyCase{"$$$/Known=default", u"default"},
                    KeyCase{"$$$/known =default", u"default"}, KeyCase{"$$$/empty=default", u""},
                    KeyCase{"$$$/empty", u""}, KeyCase{"$$$/new=a#{endl}b", u"a\nb"},
                    KeyCase{"$$$/new=a=b=c", u"a=b=c"}, KeyCase{"$$$/new=", u""},
                    KeyCase{"$$$/key with = sign=default", u" sign=default"},
                    KeyCase{"$$$/new#{endl}^B", u"$$$/new#{endl}^B"}, KeyCase{"no key", u"no key"},
                    KeyCase{"=x", u"for the empty key"}, KeyCase{"", u"for the empty key"},
                    KeyCase{"plain=x", u"a plain key"},
                    KeyCase{"$$$/new=@0 \xC3\xBC", u"@0 \u00FC"}, KeyCase{"$$$/ill=x", u"\uFFFD"},
                    KeyCase{"$$$/new=\xC3(", u"\uFFFD("}));

TEST_F(LocalizerTest, ReturnsTheDefaultTextWithoutADictionary) {
  EXPECT_EQ(localizer_.ZString("$$$/key=text"), u"text");
  EXPECT_EQ(localizer_.ZString(""), u"");
}

TEST_F(LocalizerTest, NullRemovesTheDictionary) {
  localizer_.SetDictionary(std::make_shared<MapDictionary>(MapDictionary::Texts{{"k", "found"}}));
  EXPECT_EQ(localizer_.ZString("k=default"), u"found");
  localizer_.SetDictionary(nullptr);
  EXPECT_EQ(localizer_.ZString("k=default"), u"default");
}

TEST_F(LocalizerTest, PassesTheKeyToTheDictionaryUnchanged) {
  class Recorder final : public DictionarySource {
   public:
    std::optional<UTF8String> Find(std::string_view key) const override {
      keys.emplace_back(key);
      return std::nullopt;
    }
    mutable std::vector<std::string> keys;
  };
  const auto recorder = std::make_shared<Recorder>();
  localizer_.SetDictionary(recorder);
  localizer_.ZString("$$$/A^B#{endl} =x=y");
  EXPECT_EQ(recorder->keys, std::vector<std::string>{"$$$/A^B#{endl} "});
}

struct ArgumentCase {
  std::string_view keyText;
  std::vector<UTF16String> arguments;
  std::u16string_view shown;
};

class ArgumentTest : public testing::TestWithParam<ArgumentCase> {};

TEST_P(ArgumentTest, ReplacesArguments) {
  EXPECT_EQ(Localizer::Get().ZString(GetParam().keyText, GetParam().arguments), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, ArgumentTest,
    testing::Values(ArgumentCase{"k=v@0", {u"25.1"}, u"v25.1"},
                    ArgumentCase{"k=@1-@0", {u"a", u"b"}, u"b-a"},
                    ArgumentCase{"k=@0@0@0", {u"ab"}, u"ababab"},
                    ArgumentCase{"k=@0 @1", {u"@1", u"@0"}, u"@1 @0"},
                    ArgumentCase{"k=@0", {u"#{endl}^B"}, u"#{endl}^B"},
                    ArgumentCase{"k=@0#{endl}@1", {u"a", u"b"}, u"a\nb"},
                    ArgumentCase{"k=@0 @1", {u"a"}, u"a @1"}, ArgumentCase{"k=@0", {}, u"@0"},
                    ArgumentCase{"k=none", {u"a"}, u"none"}, ArgumentCase{"k=@@0@", {u"a"}, u"@a@"},
                    ArgumentCase{"k=@9@8@7@6@5@4@3@2@1@0",
                                 {u"a", u"b", u"c", u"d", u"e", u"f", u"g", u"h", u"i", u"j"},
                                 u"jihgfedcba"},
                    ArgumentCase{"k=@0", {u""}, u""}, ArgumentCase{"@0", {u"a"}, u"a"},
                    ArgumentCase{"k=@^0", {u"a"}, u"@^0"},
                    ArgumentCase{
                        "k=@9@10",
                        {u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"ten"},
                        u"910"}));

// The panel localises several strings for each change, so `ZString` may allocate memory only for
// its result.
TEST_F(LocalizerTest, AllocatesOnlyTheResult) {
  const std::string keyText = "$$$/path/to/a/key=" + std::string(100, 'x') + "^B and #{mdash}";
  UTF16String shown;
  EXPECT_LE(test_support::CountAllocations([&] { shown = localizer_.ZString(keyText); }), 1U);
  EXPECT_EQ(shown, UTF16String(100, u'x') + u"\u2022 and \u2014");
}

TEST_F(LocalizerTest, HasOneInstancePerProcess) {
  EXPECT_EQ(&Localizer::Get(), &Localizer::Get());
}

TEST_F(LocalizerTest, ADictionaryMayReplaceItselfDuringAQuery) {
  class SelfReplacing final : public DictionarySource,
                              public std::enable_shared_from_this<SelfReplacing> {
   public:
    std::optional<UTF8String> Find(std::string_view key) const override {
      const auto self = weak_from_this();
      Localizer::Get().SetDictionary(nullptr);
      EXPECT_FALSE(self.expired());
      return UTF8String(key) + " in the old dictionary";
    }
  };
  localizer_.SetDictionary(std::make_shared<SelfReplacing>());
  EXPECT_EQ(localizer_.ZString("$key=default"), u"$key in the old dictionary");
  EXPECT_EQ(localizer_.ZString("$key=default"), u"default");
}

TEST_F(LocalizerTest, SeveralThreadsMayQueryDuringAReplacement) {
  constexpr int kCalls = 2'000;
  const auto set = [this] {
    localizer_.SetDictionary(std::make_shared<MapDictionary>(MapDictionary::Texts{{"k", "found"}}));
  };
  set();
  test_support::ThreadCounter foundTexts;
  test_support::RunOnThreads(
      [&] {
        for (int call = 0; call < kCalls; ++call) {
          foundTexts.Add(localizer_.ZString("k=default") == u"found" ? 1 : 0);
        }
      },
      set);
  EXPECT_EQ(foundTexts.Value(), test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace orncore::config
