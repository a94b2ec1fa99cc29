#include <orncore/string/SafeLink.h>

#include <string>

#include <gtest/gtest.h>

#include <orncore/string/Conversion.h>

namespace orncore::string {
namespace {

TEST(SafeLink, IsAnHttpsUrlWithAHost) {
  for (const char* link :
       {"https://help.tarsa.example/a-b_c.d~e?f=g&h=%20#i;j", "https://x", "https://x:8443/",
        "https://[::1]/", "https://x/@name", "https://x?to=a@b", "https://x#@", "https://127.0.0.1",
        "https://[2001:DB8::127.0.0.1]:443/", "https://a_b.example:/", "https://x#[a]:b"}) {
    EXPECT_TRUE(IsSafeLink(link)) << link;
  }
  for (const char* link :
       {"", "https://", "http://x", "HTTPS://x", "file:///etc/passwd", " https://x", "https:///x",
        "https://?x", "https://#x", "https://:80/"}) {
    EXPECT_FALSE(IsSafeLink(link)) << link;
  }
}

TEST(SafeLink, HasAHostThatConsistsOfValidCharacters) {
  for (const char* link :
       {"https://[evil", "https://a]b", "https://a:b", "https://a:b:c", "https://a:1:2",
        "https://%zz", "https://%65vil.example", "https://a%2Fb", "https://a!b", "https://a~b",
        "https://[]", "https://[]:80", "https://[", "https://]", "https://[::1", "https://[::1]x",
        "https://[::1]:x", "https://[a-b]", "https://[::1%25eth0]"}) {
    EXPECT_FALSE(IsSafeLink(link)) << link;
  }
}

TEST(SafeLink, HasNoUserInformation) {
  for (const char* link : {"https://a.example@b.example", "https://a.example:80@b.example/",
                           "https://@b.example/", "https://a.example%2F@b.example/"}) {
    EXPECT_FALSE(IsSafeLink(link)) << link;
  }
}

TEST(SafeLink, HasOnlyCharactersThatAreValidInAUrl) {
  for (int value = 0; value < 256; ++value) {
    const std::string link = std::string("https://x/a") + static_cast<char>(value);
    const bool isAlphanumeric = (value >= '0' && value <= '9') || (value >= 'A' && value <= 'Z') ||
                                (value >= 'a' && value <= 'z');
    const bool isMark =
        value != 0 &&
        std::string("-._~:/?#[]@!$&'()*+,;=%").find(static_cast<char>(value)) != std::string::npos;
    EXPECT_EQ(isAlphanumeric || isMark, IsSafeLink(link)) << value;
  }
}

TEST(SafeLink, HasAtMost2000Bytes) {
  EXPECT_TRUE(IsSafeLink("https://" + std::string(1992, 'x')));
  EXPECT_FALSE(IsSafeLink("https://" + std::string(1993, 'x')));
  EXPECT_TRUE(IsSafeLink(u"https://" + std::u16string(1992, u'x')));
  EXPECT_FALSE(IsSafeLink(u"https://" + std::u16string(1993, u'x')));
}

TEST(SafeLink, IsTheSameInUTF8AndUTF16) {
  for (const char* link : {"https://x", "https://x y", "https://a@b", "https://\u00E9", ""}) {
    EXPECT_EQ(IsSafeLink(link), IsSafeLink(UTF8to16(link))) << link;
  }
  // The low byte of U+0178 is 0x78, which is "x" in ASCII. A check of only the low byte would
  // accept this link.
  EXPECT_FALSE(IsSafeLink(u"https://\u0178"));
}

}  // namespace
}  // namespace orncore::string
