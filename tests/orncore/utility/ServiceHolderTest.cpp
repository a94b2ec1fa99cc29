#include "orncore/src/utility/ServiceHolder.h"

#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <orncore/debug/Log.h>

namespace orncore::utility {
namespace {

// The constructors of static objects may use a holder, because constant initialization precedes
// them.
constinit ServiceHolder<int> numberHolder;
constinit FunctionHolder<int()> functionHolder;

TEST(ServiceHolder, ReturnsTheServiceThatWasSetLast) {
  EXPECT_EQ(numberHolder.Get(), nullptr);
  numberHolder.Set(std::make_shared<int>(1));
  numberHolder.Set(std::make_shared<int>(2));
  EXPECT_EQ(*numberHolder.Get(), 2);
  numberHolder.Set(nullptr);
  EXPECT_EQ(numberHolder.Get(), nullptr);
}

TEST(ServiceHolder, KeepsAReplacedServiceWhileItIsUsed) {
  numberHolder.Set(std::make_shared<int>(1));
  const std::shared_ptr<int> used = numberHolder.Get();
  numberHolder.Set(nullptr);
  EXPECT_EQ(used.use_count(), 1);
  EXPECT_EQ(*used, 1);
}

TEST(ServiceHolder, AServiceMayUseTheHolderInItsDestructor) {
  bool isReplaced = false;
  const auto destroy = [&isReplaced](const int* number) {
    isReplaced = numberHolder.Get() == nullptr;
    delete number;
  };
  numberHolder.Set(std::shared_ptr<int>(new int(1), destroy));
  numberHolder.Set(nullptr);
  EXPECT_TRUE(isReplaced);
}

struct LogsServiceWhenDestroyed {
  ~LogsServiceWhenDestroyed() { debug::Log(*holder->Get()); }
  ServiceHolder<std::string>* holder = nullptr;
};

TEST(ServiceHolderDeathTest, StaticDestructorsMayUseTheService) {
  EXPECT_EXIT(
      {
        // The holder is constructed after `logger`, so a destructor of the holder would run before
        // the destructor of `logger`.
        static LogsServiceWhenDestroyed logger;
        static ServiceHolder<std::string> holder;
        logger.holder = &holder;
        holder.Set(std::make_shared<std::string>("a long text that is still available"));
        std::exit(0);
      },
      testing::ExitedWithCode(0), "a long text that is still available");
}

TEST(FunctionHolder, AnEmptyFunctionRemovesTheFunction) {
  functionHolder.Set([] { return 7; });
  EXPECT_EQ((*functionHolder.Get())(), 7);
  functionHolder.Set({});
  EXPECT_EQ(functionHolder.Get(), nullptr);
}

}  // namespace
}  // namespace orncore::utility
