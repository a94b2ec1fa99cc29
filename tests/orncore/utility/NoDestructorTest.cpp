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

// Made before what it uses, and therefore destroyed after it, if that were destroyed at all.
struct SpeaksAtTheEnd {
  ~SpeaksAtTheEnd() { debug::Log(debug::DebugDatabase::Instance().GetEntry("last words")); }
};

TEST(NoDestructor, HoldsWhatItsArgumentsMake) {
  NoDestructor<Probe> probe(7, "seven");
  EXPECT_EQ(probe->number, 7);
  EXPECT_EQ((*probe).text, "seven");
}

TEST(NoDestructor, NeverDestroysWhatItHolds) {
  Probe::destroyed = 0;
  { const NoDestructor<Probe> probe(1, ""); }
  EXPECT_EQ(Probe::destroyed, 0);
}

TEST(NoDestructor, AlignsWhatItHolds) {
  NoDestructor<Aligned> aligned;
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&*aligned) % alignof(Aligned), 0U);
  EXPECT_EQ(aligned->byte, 'x');
}

TEST(NoDestructorDeathTest, DatabaseAndLogServeStaticDestructors) {
  EXPECT_EXIT(
      {
        static const SpeaksAtTheEnd speaker;
        debug::DebugDatabase::Instance().SetEntry("last words", "still here");
        std::exit(0);
      },
      testing::ExitedWithCode(0), "still here");
}

}  // namespace
}  // namespace orncore::utility
