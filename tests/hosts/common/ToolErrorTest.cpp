#include "hosts/common/ToolError.h"

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "hosts/common/JsonDocument.h"
#include "hosts/common/StateStore.h"

namespace hosts::common {
namespace {

std::string reported;

void Record(std::string_view message) {
  reported += std::string(message) + "\n";
}

/// Returns the exit status of a program that throws `exception`. Sets `reported` to the program's
/// error message.
template <class Exception>
ExitStatus StatusAfter(const Exception& exception) {
  static const Exception* thrown;
  thrown = &exception;
  reported.clear();
  const auto run = [](int, const char* const*) -> ExitStatus { throw Exception(*thrown); };
  return static_cast<ExitStatus>(RunReportingErrors(0, nullptr, run, &Record));
}

TEST(ExitStatus, NumbersNeverChange) {
  EXPECT_EQ(static_cast<int>(ExitStatus::kDone), 0);
  EXPECT_EQ(static_cast<int>(ExitStatus::kUnexpected), 1);
  EXPECT_EQ(static_cast<int>(ExitStatus::kUsage), 2);
  EXPECT_EQ(static_cast<int>(ExitStatus::kInput), 3);
  EXPECT_EQ(static_cast<int>(ExitStatus::kState), 4);
  EXPECT_EQ(static_cast<int>(ExitStatus::kUnknownKey), 5);
  EXPECT_EQ(static_cast<int>(ExitStatus::kOutput), 6);
  EXPECT_EQ(static_cast<int>(ExitStatus::kCommand), 7);
  EXPECT_EQ(static_cast<int>(ExitStatus::kLintFindings), 1);
  EXPECT_EQ(static_cast<int>(ExitStatus::kLintFailed), 2);
  EXPECT_EQ(static_cast<int>(ExitStatus::kSomethingNew), 10);
  EXPECT_EQ(static_cast<int>(ExitStatus::kSomethingToRate), 11);
  EXPECT_EQ(static_cast<int>(ExitStatus::kNewAndToRate), 12);
}

TEST(RunReportingErrors, ReturnsTheStatusOfTheProgram) {
  const auto run = [](int argc, const char* const*) {
    return argc == 3 ? ExitStatus::kSomethingNew : ExitStatus::kDone;
  };
  EXPECT_EQ(RunReportingErrors(3, nullptr, run, &Record), 10);
}

TEST(RunReportingErrors, EachExceptionHasItsStatus) {
  EXPECT_EQ(StatusAfter(ToolError(ExitStatus::kOutput, "no space")), ExitStatus::kOutput);
  EXPECT_EQ(reported, "no space\n");
  EXPECT_EQ(StatusAfter(StateStoreError("damaged")), ExitStatus::kState);
  EXPECT_EQ(reported, "damaged\n");
  EXPECT_EQ(StatusAfter(JsonError("no object")), ExitStatus::kInput);
  EXPECT_EQ(reported, "no object\n");
  EXPECT_EQ(StatusAfter(std::runtime_error("odd")), ExitStatus::kUnexpected);
  EXPECT_EQ(reported, "unexpected error: odd\n");
  EXPECT_EQ(StatusAfter(0), ExitStatus::kUnexpected);
  EXPECT_EQ(reported, "");
}

TEST(RunReportingErrors, EmptyMessageIsNotReported) {
  EXPECT_EQ(StatusAfter(ToolError(ExitStatus::kOutput, "")), ExitStatus::kOutput);
  EXPECT_EQ(reported, "");
}

TEST(RunReportingErrors, FailureOfTheReportIsUnexpected) {
  const auto run = [](int, const char* const*) -> ExitStatus {
    throw ToolError(ExitStatus::kInput, "no file");
  };
  const auto fail = [](std::string_view) { throw std::bad_alloc(); };
  EXPECT_EQ(RunReportingErrors(0, nullptr, run, fail), static_cast<int>(ExitStatus::kUnexpected));
}

}  // namespace
}  // namespace hosts::common
