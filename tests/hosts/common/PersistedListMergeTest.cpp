#include <string>

#include <gtest/gtest.h>

#include "hosts/common/PersistedListMerge.h"

namespace hosts::common {
namespace {

struct MergeCase {
  std::string kept;
  std::string before;
  std::string written;
  std::string merged;
};

class PersistedListMerge : public testing::TestWithParam<MergeCase> {};

TEST_P(PersistedListMerge, AddsTheNewElementsOfTheWriter) {
  const MergeCase& merge = GetParam();
  EXPECT_EQ(merge.merged, MergePersistedLists(merge.kept, merge.before, merge.written));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PersistedListMerge,
    testing::Values(MergeCase{"", "", "", ""}, MergeCase{"", "", "a", "a"},
                    MergeCase{"a", "a", "a", "a"}, MergeCase{"a", "a", "a b", "a b"},
                    // Another program has stored c since the read.
                    MergeCase{"a c", "a", "a b", "a b c"},
                    // The writer dropped an element. The stored element stays.
                    MergeCase{"a b", "a b", "a", "a b"},
                    // Another program has reset the store. Elements from before the reset are not
                    // added again, in any order.
                    MergeCase{"", "a b", "a b c", "c"}, MergeCase{"", "b a", "c b a", "c"},
                    // The library does not write lists with duplicate elements or extra spaces.
                    MergeCase{"b b  a", "", "a  c", "a b c"},
                    MergeCase{"2.0 10.0", "", "1.0", "1.0 10.0 2.0"}));

}  // namespace
}  // namespace hosts::common
