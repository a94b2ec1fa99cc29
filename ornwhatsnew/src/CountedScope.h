// Marks that the items of a list are being walked. The walk asks the host (its feature table, its
// dictionary), and a host that changed the list from in there would pull it from under the walk.
#ifndef ORNWHATSNEW_SRC_WALKSCOPE_H_
#define ORNWHATSNEW_SRC_WALKSCOPE_H_

namespace ornwhatsnew {

/// Counts one walk for as long as it lives.
class WalkScope {
 public:
  explicit WalkScope(int& walks) : walks_(walks) { ++walks_; }
  ~WalkScope() { --walks_; }
  WalkScope(const WalkScope&) = delete;
  WalkScope& operator=(const WalkScope&) = delete;

 private:
  int& walks_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_WALKSCOPE_H_
