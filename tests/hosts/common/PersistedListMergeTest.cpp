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
                    // After the writer's read, another program has added c.
                    MergeCase{"a c", "a", "a b", "a b c"},
                    // The writer has removed b. The store must still contain it.
                    MergeCase{"a b", "a b", "a", "a b"},
                    // After the writer's read, another program has reset the store. The elements
                    // that the writer read are not added again, regardless of their order.
                    MergeCase{"", "a b", "a b c", "c"}, MergeCase{"", "b a", "c b a", "c"},
                    // Lists with duplicate elements and extra spaces are accepted, although the
                    // library does not write them.
                    MergeCase{"b b  a", "", "a  c", "a b c"},
                    MergeCase{"2.0 10.0", "", "1.0", "1.0 10.0 2.0"}));

}  // namespace
}  // namespace hosts::common
