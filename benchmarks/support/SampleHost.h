// The host of the benchmarks: its beta features, and a store for the state of a list.
#ifndef BENCHMARKS_SUPPORT_SAMPLEHOST_H_
#define BENCHMARKS_SUPPORT_SAMPLEHOST_H_

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include <ornwhatsnew/FeatureListData.h>

namespace benchmarks {

/// Registers a host with a public feature, switched on, for each of the sample files' epics, for as
/// long as the program runs.
void UseSampleHost();

/// What a host's settings hold: three texts, by key. Outlives the lists that it serves.
class SampleStore {
 public:
  ornwhatsnew::StateGetter Getter() {
    return [this](const std::string& key) { return texts_[key]; };
  }
  ornwhatsnew::StateSetter Setter() {
    return [this](const std::string& key, const std::string& text) { texts_[key] = text; };
  }

  void Clear() { texts_.clear(); }

 private:
  std::map<std::string, std::string> texts_;
};

/// A list of the sample file with so many rows, with its store.
class SampleList {
 public:
  explicit SampleList(std::size_t rows);

  ornwhatsnew::FeatureListData& operator*() { return *list_; }
  ornwhatsnew::FeatureListData* operator->() { return list_.get(); }

  /// The panel with everything in it; all of it counts as seen when the state is read again.
  ornwhatsnew::UTF16String Display(ornwhatsnew::StyleRunMap& runs);

  /// Makes the list that of a user who has never seen it.
  void Forget();

 private:
  SampleStore store_;
  std::unique_ptr<ornwhatsnew::FeatureListData> list_;
};

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_SAMPLEHOST_H_
