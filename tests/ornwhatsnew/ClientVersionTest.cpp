#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::IsText;

class ClientVersion : public test_support::FakeHostTest {
 protected:
  UTF16String Full(std::string_view version, std::string_view buildNumber) {
    host_.SetClientVersion(version);
    host_.SetBuildNumber(buildNumber);
    return GetFullClientVersionString();
  }
};

TEST_F(ClientVersion, PadsAVersionOfTwoParts) {
  EXPECT_THAT(Full("25.1", "42"), IsText("25.1.0.42"));
}

TEST_F(ClientVersion, DoesNotPadAVersionOfThreeParts) {
  EXPECT_THAT(Full("25.1.3", "42"), IsText("25.1.3.42"));
}

TEST_F(ClientVersion, DoesNotPadAVersionWithoutADot) {
  EXPECT_THAT(Full("25", "42"), IsText("25.42"));
}

TEST_F(ClientVersion, DoesNotPadAVersionOfFourParts) {
  EXPECT_THAT(Full("25.1.2.7", "42"), IsText("25.1.2.7.42"));
}

TEST_F(ClientVersion, EndsWithADotIfTheBuildNumberIsEmpty) {
  EXPECT_THAT(Full("25.1", ""), IsText("25.1.0."));
  EXPECT_THAT(Full("", ""), IsText("."));
}

TEST_F(ClientVersion, CountsDotsInVersionsThatAreNotNumeric) {
  EXPECT_THAT(Full(".", "42"), IsText("..0.42"));
  EXPECT_THAT(Full("..", "42"), IsText("...42"));
  EXPECT_THAT(Full("\xC3\xA9.x", "1.2"), IsText("\xC3\xA9.x.0.1.2"));
}

TEST_F(ClientVersion, QueriesTheHostOnEachCall) {
  EXPECT_THAT(Full("25.1", "42"), IsText("25.1.0.42"));
  EXPECT_THAT(Full("25.2", "43"), IsText("25.2.0.43"));
}

}  // namespace
}  // namespace ornwhatsnew
