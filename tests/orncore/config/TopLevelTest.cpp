#include <orncore/config/TopLevel.h>

#include <cerrno>
#include <filesystem>
#include <limits>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <orncore/debug/Log.h>

#include "tests/support/Allocations.h"

namespace orncore::config {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TopLevelTest : public testing::Test {
 protected:
  TopLevelTest() {
    debug::SetLogSink([this](std::string_view line) { lines_.emplace_back(line); });
  }
  ~TopLevelTest() override { debug::SetLogSink({}); }

  std::vector<std::string> lines_;
};

TEST_F(TopLevelTest, RunsTheFunctionOnce) {
  int runs = 0;
  EXPECT_TRUE(ExecuteTopLevelFunction([&runs] { ++runs; }));
  EXPECT_EQ(runs, 1);
  EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(TopLevelTest, LogsAnEscapingException) {
  EXPECT_FALSE(ExecuteTopLevelFunction([] { throw std::runtime_error("the disk is gone"); }));
  EXPECT_THAT(lines_, ElementsAre("an exception reached the top level: the disk is gone"));
}

TEST_F(TopLevelTest, LogsAnExceptionOfAnotherType) {
  EXPECT_FALSE(ExecuteTopLevelFunction([] { throw 7; }));
  EXPECT_THAT(lines_, ElementsAre("an exception reached the top level: of an unknown kind"));
}

TEST_F(TopLevelTest, TreatsAnEmptyFunctionAsAFailure) {
  EXPECT_FALSE(ExecuteTopLevelFunction({}));
  EXPECT_EQ(lines_.size(), 1U);
}

TEST_F(TopLevelTest, ToleratesASinkThatThrows) {
  debug::SetLogSink([](std::string_view) { throw std::runtime_error("the sink failed"); });
  EXPECT_FALSE(ExecuteTopLevelFunction([] { throw std::runtime_error("first"); }));
}

TEST_F(TopLevelTest, LogsAnExceptionWithoutAllocating) {
  const std::runtime_error prepared("the disk with all files is gone");
  bool isLogged = false;
  debug::SetLogSink([&](std::string_view line) { isLogged = line == prepared.what(); });
  {
    const test_support::AllocationFailure failure(1, test_support::FailureExtent::kAllFrom,
                                                  test_support::FailureThreads::kThis);
    EXPECT_FALSE(ExecuteTopLevelFunction([&prepared] { throw prepared; }));
    if (!failure.HasHappened()) GTEST_SKIP() << "allocation failures are not available";
  }
  EXPECT_TRUE(isLogged);
}

struct ResultCase {
  std::string name;
  std::exception_ptr failure;
  int result;
};

class ResultTest : public testing::TestWithParam<ResultCase> {};

TEST_P(ResultTest, ReturnsTheResultCode) {
  EXPECT_EQ(ExtractResultFromException(GetParam().failure), GetParam().result);
}

std::exception_ptr SystemError(int code) {
  return std::make_exception_ptr(std::system_error(code, std::generic_category()));
}

INSTANTIATE_TEST_SUITE_P(
    Results, ResultTest,
    testing::Values(
        ResultCase{"NoFailure", nullptr, 0},
        ResultCase{"Cancelled", std::make_exception_ptr(FutureCancelled()), 0},
        ResultCase{"Result", std::make_exception_ptr(ResultError(-ENOENT, "x")), -ENOENT},
        ResultCase{"ResultPositive", std::make_exception_ptr(ResultError(EACCES, "x")), -EACCES},
        ResultCase{"ResultZero", std::make_exception_ptr(ResultError(0, "x")), -EIO},
        ResultCase{"System", SystemError(EACCES), -EACCES},
        ResultCase{"SystemNegative", SystemError(-EACCES), -EACCES},
        ResultCase{"SystemZero", SystemError(0), -EIO},
        ResultCase{"SystemMinimum", SystemError(std::numeric_limits<int>::min()), -EIO},
        ResultCase{"Filesystem",
                   std::make_exception_ptr(std::filesystem::filesystem_error(
                       "x", std::make_error_code(std::errc::not_a_directory))),
                   -ENOTDIR},
        ResultCase{"Memory", std::make_exception_ptr(std::bad_alloc()), -ENOMEM},
        ResultCase{"Other", std::make_exception_ptr(std::logic_error("x")), -EIO},
        ResultCase{"OtherType", std::make_exception_ptr(7), -EIO}),
    [](const auto& test) { return test.param.name; });

TEST(FutureCancelled, HasAFixedMessage) {
  EXPECT_STREQ(FutureCancelled().what(), "Future Is Cancelled");
}

TEST(ResultError, HasACodeAndAMessage) {
  const ResultError error(-EISDIR, "/tmp: Is a directory");
  EXPECT_EQ(error.Result(), -EISDIR);
  EXPECT_STREQ(error.what(), "/tmp: Is a directory");
}

}  // namespace
}  // namespace orncore::config
