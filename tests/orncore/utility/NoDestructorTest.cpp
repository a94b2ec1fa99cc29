#include "orncore/src/utility/NoDestructor.h"

#include <cstdint>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>

namespace orncore::utility {
namespace {

struct Probe {
  Probe(int first, std::string second) : number(first), text(std::move(second)) {}
  ~Probe() { ++destroyed; }
  static inline int destroyed = 0;
  int number;
  std::string text;
};

struct alignas(64) Aligned {
  char byte = 'x';
};

// Uses the debug database and the log in its destructor. Static objects are destroyed in the
// reverse order of their construction, and the database and the log can be constructed later than
// this object. Therefore the database and the log must never be destroyed.
struct LogsWhenDestroyed {
  ~LogsWhenDestroyed() { debug::Log(debug::DebugDatabase::Instance().GetEntry("last entry")); }
};

TEST(NoDestructor, PassesItsArgumentsToTheConstructor) {
  NoDestructor<Probe> probe(7, "seven");
  EXPECT_EQ(probe->number, 7);
  EXPECT_EQ((*probe).text, "seven");
}

TEST(NoDestructor, NeverDestroysItsObject) {
  Probe::destroyed = 0;
  { const NoDestructor<Probe> probe(1, ""); }
  EXPECT_EQ(Probe::destroyed, 0);
}

TEST(NoDestructor, AlignsItsObject) {
  NoDestructor<Aligned> aligned;
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&*aligned) % alignof(Aligned), 0U);
  EXPECT_EQ(aligned->byte, 'x');
}

TEST(NoDestructorDeathTest, StaticDestructorsMayUseTheDatabaseAndTheLog) {
  EXPECT_EXIT(
      {
        static const LogsWhenDestroyed logger;
        debug::DebugDatabase::Instance().SetEntry("last entry", "still available");
        std::exit(0);
      },
      testing::ExitedWithCode(0), "still available");
}

}  // namespace
}  // namespace orncore::utility
