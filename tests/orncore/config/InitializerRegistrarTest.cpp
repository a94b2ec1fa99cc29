#include <orncore/config/InitializerRegistrar.h>

#include <atomic>
#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <orncore/debug/Log.h>

namespace orncore::config {
namespace {

using enum EInitializerContextFlags;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr EInitializerContextFlags kAll = kCore | kApplication | kConsole;

class InitializerRegistrarTest : public testing::Test {
 protected:
  ~InitializerRegistrarTest() override {
    ShutdownContexts(kAll);
    debug::SetLogSink({});
  }

  // Returns a registration. Its initialise function appends "+" and `name` to `events_` and returns
  // `succeeds`. Its shutdown function appends "-" and `name`.
  std::unique_ptr<InitializerRegistrar> Register(const std::string& name,
                                                 EInitializerContextFlags contexts,
                                                 bool succeeds = true) {
    return std::make_unique<InitializerRegistrar>(
        name, contexts,
        [this, name, succeeds] {
          events_.push_back("+" + name);
          return succeeds;
        },
        [this, name] { events_.push_back("-" + name); });
  }

  void RecordLog() {
    debug::SetLogSink([this](std::string_view line) { log_.emplace_back(line); });
  }

  std::vector<std::string> events_;
  std::vector<std::string> log_;
};

TEST_F(InitializerRegistrarTest, RunsNoInitializerBeforeItsContextStarts) {
  const auto registration = Register("a", kConsole);
  EXPECT_TRUE(InitializeContexts(kCore | kApplication));
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(InitializerRegistrarTest, NeverRunsAnInitializerWithoutContext) {
  const auto registration = Register("a", kNone);
  EXPECT_TRUE(InitializeContexts(kAll));
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(InitializerRegistrarTest, InitializesInOrderAndShutsDownInReverse) {
  const auto a = Register("a", kConsole);
  const auto b = Register("b", kConsole);
  const auto c = Register("c", kConsole);
  EXPECT_TRUE(InitializeContexts(kConsole));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a", "+b", "+c", "-c", "-b", "-a"));
}

TEST_F(InitializerRegistrarTest, ShutsDownInReverseOrderOfInitialisation) {
  const auto console = Register("console", kConsole);
  const auto core = Register("core", kCore);
  InitializeContexts(kCore);
  InitializeContexts(kConsole);
  ShutdownContexts(kAll);
  EXPECT_THAT(events_, ElementsAre("+core", "+console", "-console", "-core"));
}

TEST_F(InitializerRegistrarTest, InitializesEachRegistrationOnce) {
  const auto registration = Register("a", kConsole | kCore);
  EXPECT_TRUE(InitializeContexts(kConsole));
  EXPECT_TRUE(InitializeContexts(kConsole));
  EXPECT_TRUE(InitializeContexts(kAll));
  EXPECT_THAT(events_, ElementsAre("+a"));
}

TEST_F(InitializerRegistrarTest, ShutsDownWhenItsLastContextEnds) {
  const auto registration = Register("a", kConsole | kCore);
  InitializeContexts(kAll);
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a"));
  ShutdownContexts(kCore);
  EXPECT_THAT(events_, ElementsAre("+a", "-a"));
  ShutdownContexts(kAll);
  EXPECT_THAT(events_, ElementsAre("+a", "-a"));
}

TEST_F(InitializerRegistrarTest, InitializesAgainAfterAShutdown) {
  const auto registration = Register("a", kConsole);
  InitializeContexts(kConsole);
  ShutdownContexts(kConsole);
  InitializeContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a", "-a", "+a"));
}

TEST_F(InitializerRegistrarTest, InitializesARegistrationForALiveContextImmediately) {
  InitializeContexts(kConsole);
  const auto late = Register("late", kConsole);
  const auto other = Register("other", kCore);
  EXPECT_THAT(events_, ElementsAre("+late"));
}

TEST_F(InitializerRegistrarTest, DoesNotInitializeARegistrationAfterTheShutdown) {
  InitializeContexts(kConsole);
  ShutdownContexts(kConsole);
  const auto late = Register("late", kConsole);
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(InitializerRegistrarTest, ShutsDownALiveRegistrationWhenItIsDestroyed) {
  InitializeContexts(kConsole);
  Register("a", kConsole).reset();
  EXPECT_THAT(events_, ElementsAre("+a", "-a"));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a", "-a"));
}

TEST_F(InitializerRegistrarTest, DoesNotShutDownAnUninitializedRegistration) {
  Register("a", kConsole).reset();
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(InitializerRegistrarTest, LogsAFailureAndContinues) {
  RecordLog();
  const auto bad = Register("bad", kConsole, false);
  const auto good = Register("good", kConsole);
  EXPECT_FALSE(InitializeContexts(kConsole));
  EXPECT_THAT(log_, ElementsAre("initializer \"bad\" failed"));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+bad", "+good", "-good"));
}

TEST_F(InitializerRegistrarTest, RetriesAFailedInitializer) {
  RecordLog();
  const auto bad = Register("bad", kConsole, false);
  const auto good = Register("good", kConsole);
  EXPECT_FALSE(InitializeContexts(kConsole));
  EXPECT_FALSE(InitializeContexts(kConsole));
  EXPECT_THAT(events_, ElementsAre("+bad", "+good", "+bad"));
}

TEST_F(InitializerRegistrarTest, TreatsAnExceptionAsAFailure) {
  RecordLog();
  const InitializerRegistrar bad(
      "bad", kConsole, []() -> bool { throw std::runtime_error("no memory"); },
      [this] { events_.push_back("-bad"); });
  EXPECT_FALSE(InitializeContexts(kConsole));
  EXPECT_THAT(log_, Contains(HasSubstr("no memory")));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(InitializerRegistrarTest, LogsExceptionsOfShutdownFunctions) {
  RecordLog();
  const auto first = Register("first", kConsole);
  {
    const InitializerRegistrar bad("bad", kConsole, nullptr,
                                   [] { throw std::runtime_error("too late"); });
    InitializeContexts(kConsole);
  }
  EXPECT_THAT(log_, Contains(HasSubstr("too late")));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+first", "-first"));
}

TEST_F(InitializerRegistrarTest, TreatsEmptyFunctionsAsSuccessful) {
  const InitializerRegistrar nothing("nothing", kConsole, nullptr, nullptr);
  EXPECT_TRUE(InitializeContexts(kConsole));
  ShutdownContexts(kConsole);
}

TEST_F(InitializerRegistrarTest, AnInitializerMayRegisterAnother) {
  std::unique_ptr<InitializerRegistrar> inner;
  const InitializerRegistrar outer(
      "outer", kConsole,
      [&] {
        events_.push_back("+outer");
        inner = Register("inner", kConsole);
        return true;
      },
      [&] { inner.reset(); });
  EXPECT_TRUE(InitializeContexts(kConsole));
  EXPECT_THAT(events_, ElementsAre("+outer", "+inner"));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+outer", "+inner", "-inner"));
}

TEST_F(InitializerRegistrarTest, ShutsDownAnInitializerThatEndsItsOwnContext) {
  const InitializerRegistrar registration(
      "a", kConsole,
      [this] {
        events_.push_back("+a");
        ShutdownContexts(kConsole);
        return true;
      },
      [this] { events_.push_back("-a"); });
  EXPECT_TRUE(InitializeContexts(kConsole));
  EXPECT_THAT(events_, ElementsAre("+a", "-a"));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a", "-a"));
}

TEST_F(InitializerRegistrarTest, SkipsLaterInitializersWhenTheContextEnds) {
  const InitializerRegistrar first(
      "first", kConsole,
      [] {
        ShutdownContexts(kConsole);
        return true;
      },
      nullptr);
  const auto second = Register("second", kConsole);
  EXPECT_TRUE(InitializeContexts(kConsole));
  EXPECT_THAT(events_, IsEmpty());
}

TEST_F(InitializerRegistrarTest, StaysInitializedWhileAnotherContextIsLive) {
  const InitializerRegistrar registration(
      "a", kConsole | kCore,
      [this] {
        events_.push_back("+a");
        ShutdownContexts(kConsole);
        return true;
      },
      [this] { events_.push_back("-a"); });
  EXPECT_TRUE(InitializeContexts(kConsole | kCore));
  EXPECT_THAT(events_, ElementsAre("+a"));
}

TEST_F(InitializerRegistrarTest, InitializesAgainIfTheShutdownFunctionRestartsTheContext) {
  bool restarts = true;
  const InitializerRegistrar registration(
      "a", kConsole,
      [this] {
        events_.push_back("+a");
        return true;
      },
      [&] {
        events_.push_back("-a");
        if (!std::exchange(restarts, false)) return;
        InitializeContexts(kConsole);
        events_.push_back("-a, restarted");
      });
  InitializeContexts(kConsole);
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a", "-a", "-a, restarted", "+a"));
  ShutdownContexts(kConsole);
  EXPECT_THAT(events_, ElementsAre("+a", "-a", "-a, restarted", "+a", "-a"));
}

TEST_F(InitializerRegistrarTest, DoesNotReenterAnInitializerThatStartsItsOwnContext) {
  const InitializerRegistrar registration(
      "a", kConsole,
      [this] {
        events_.push_back("+a");
        return events_.size() > 2 || InitializeContexts(kConsole);
      },
      nullptr);
  EXPECT_TRUE(InitializeContexts(kConsole));
  EXPECT_THAT(events_, ElementsAre("+a"));
}

TEST_F(InitializerRegistrarTest, ShutsDownIfAnotherThreadEndsTheContextDuringInitialization) {
  std::latch entered(1);
  std::latch ended(1);
  const InitializerRegistrar slow(
      "slow", kConsole,
      [&] {
        events_.push_back("+slow");
        entered.count_down();
        ended.wait();
        return true;
      },
      [this] { events_.push_back("-slow"); });
  std::thread starter([] { InitializeContexts(kConsole); });
  entered.wait();
  ShutdownContexts(kConsole);
  ended.count_down();
  starter.join();
  EXPECT_THAT(events_, ElementsAre("+slow", "-slow"));
}

TEST_F(InitializerRegistrarTest, ReleasesTheFunctionsWhenDestroyed) {
  const auto owned = std::make_shared<int>(1);
  {
    const InitializerRegistrar registration(
        "a", kConsole, [owned] { return true; }, [owned] {});
    InitializeContexts(kConsole);
    EXPECT_EQ(owned.use_count(), 3);
  }
  EXPECT_EQ(owned.use_count(), 1);
}

// The initialise function yields many times. A destructor that did not wait for this function would
// therefore return before the function.
TEST_F(InitializerRegistrarTest, DestructorWaitsForAFunctionOnAnotherThread) {
  std::latch entered(1);
  std::latch isDestroying(1);
  bool finished = false;
  bool isShutDown = false;
  auto registration = std::make_unique<InitializerRegistrar>(
      "slow", kConsole,
      [&] {
        entered.count_down();
        isDestroying.wait();
        for (int i = 0; i < 10'000; ++i) std::this_thread::yield();
        finished = true;
        return true;
      },
      [&] { isShutDown = finished; });
  std::thread starter([] { InitializeContexts(kConsole); });
  entered.wait();
  isDestroying.count_down();
  registration.reset();
  EXPECT_TRUE(finished);
  EXPECT_TRUE(isShutDown);
  starter.join();
}

TEST_F(InitializerRegistrarTest, DoesNotWaitForAnInitializerOnAnotherThread) {
  std::latch entered(1);
  std::latch mayEnd(1);
  int runs = 0;
  const InitializerRegistrar slow(
      "slow", kConsole,
      [&] {
        ++runs;
        entered.count_down();
        mayEnd.wait();
        return true;
      },
      nullptr);
  std::thread starter([] { InitializeContexts(kConsole); });
  entered.wait();
  EXPECT_TRUE(InitializeContexts(kConsole));
  mayEnd.count_down();
  starter.join();
  EXPECT_EQ(runs, 1);
}

TEST_F(InitializerRegistrarTest, InitializesOnceWhenSeveralThreadsStartTheContext) {
  constexpr int kThreads = 4;
  std::atomic<int> initialized = 0;
  std::atomic<int> shutDown = 0;
  const InitializerRegistrar registration(
      "counted", kConsole, [&] { return ++initialized > 0; }, [&] { ++shutDown; });
  std::latch start(kThreads);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&start] {
      start.arrive_and_wait();
      InitializeContexts(kConsole);
    });
  }
  threads.clear();
  EXPECT_EQ(initialized, 1);
  ShutdownContexts(kConsole);
  EXPECT_EQ(shutDown, 1);
}

TEST_F(InitializerRegistrarTest, RunsEachFunctionOnceForRegistrationsOnSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kRegistrations = 200;
  std::atomic<int> initialized = 0;
  std::atomic<int> shutDown = 0;
  InitializeContexts(kConsole);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&] {
      for (int i = 0; i < kRegistrations; ++i) {
        const InitializerRegistrar registration(
            "threaded", kConsole, [&] { return ++initialized > 0; }, [&] { ++shutDown; });
      }
    });
  }
  threads.clear();
  EXPECT_EQ(initialized, kThreads * kRegistrations);
  EXPECT_EQ(shutDown, kThreads * kRegistrations);
}

// Several threads change the same contexts, so the functions of a registration may run several
// times or never. The shutdown function must run once between two initialisations. After the last
// initialisation, it must run before the destructor of the registration returns.
TEST_F(InitializerRegistrarTest, AlternatesTheFunctionsWhileSeveralThreadsChangeContexts) {
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([] {
      for (int i = 0; i < 50; ++i) {
        int live = 0;
        {
          const InitializerRegistrar registration(
              "threaded", kConsole, [&live] { return ++live == 1; }, [&live] { --live; });
          InitializeContexts(kConsole);
          ShutdownContexts(kConsole);
        }
        EXPECT_EQ(live, 0);
      }
    });
  }
}

}  // namespace
}  // namespace orncore::config
