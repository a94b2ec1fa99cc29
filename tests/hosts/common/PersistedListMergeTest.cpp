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

TEST_P(PersistedListMerge, AddsWhatTheWriterHasLearnt) {
  const MergeCase& merge = GetParam();
  EXPECT_EQ(merge.merged, MergePersistedLists(merge.kept, merge.before, merge.written));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PersistedListMerge,
    testing::Values(MergeCase{"", "", "", ""}, MergeCase{"", "", "a", "a"},
                    MergeCase{"a", "a", "a", "a"}, MergeCase{"a", "a", "a b", "a b"},
                    // Another program has written c in the meantime.
                    MergeCase{"a c", "a", "a b", "a b c"},
                    // The writer lost a piece: what is kept stays.
                    MergeCase{"a b", "a b", "a", "a b"},
                    // Another program has reset the store: what was known before stays forgotten.
                    MergeCase{"", "a b", "a b c", "c"},
                    // Text that nobody of ours wrote: doubled pieces and blanks.
                    MergeCase{"b b  a", "", "a  c", "a b c"},
                    MergeCase{"2.0 10.0", "", "1.0", "1.0 10.0 2.0"}));

}  // namespace
}  // namespace hosts::common
