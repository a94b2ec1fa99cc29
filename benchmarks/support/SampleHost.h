// Implements the host of the benchmarks, with beta features and a store for the state of a list.
#ifndef BENCHMARKS_SUPPORT_SAMPLEHOST_H_
#define BENCHMARKS_SUPPORT_SAMPLEHOST_H_

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include <ornwhatsnew/FeatureListData.h>

namespace benchmarks {

/// Registers a feature service with an enabled public feature for each epic key of the sample
/// files.
void UseSampleHost();

/// Stores the three persisted strings by key. Must outlive the lists that use it.
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

/// Contains a list that is loaded from `SampleFile(rows)`, and the state store of the list. The
/// constructor calls `UseSampleHost`.
class SampleList {
 public:
  explicit SampleList(std::size_t rows);

  ornwhatsnew::FeatureListData& operator*() { return *list_; }
  ornwhatsnew::FeatureListData* operator->() { return list_.get(); }

  /// Formats the panel without display options and returns its text. The shown items and changes
  /// count as seen after the next call to `RefreshInternalSeenState`.
  ornwhatsnew::UTF16String Display(ornwhatsnew::StyleRunMap& runs);

  /// Resets the state to that of a user who has never opened the panel.
  void ResetState();

 private:
  SampleStore store_;
  std::unique_ptr<ornwhatsnew::FeatureListData> list_;
};

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_SAMPLEHOST_H_
