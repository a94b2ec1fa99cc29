#include "benchmarks/support/SampleHost.h"

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/string/Conversion.h>

#include "benchmarks/support/SampleFile.h"

namespace benchmarks {
namespace {

namespace feature = ornappsupport::feature;

std::shared_ptr<const feature::FeatureService> MakeFeatures() {
  auto features = std::make_shared<feature::FixedFeatureService>();
  for (std::size_t epic = kFirstEpic; epic < kFirstEpic + kEpicCount; ++epic) {
    const std::string number = std::to_string(epic);
    const auto text = [&number](const char* before) {
      return orncore::string::UTF8to16(before + number);
    };
    features->Add("sample.feature" + number,
                  {"EPIC-" + number, text("Feature "), text("What it is good for: "),
                   feature::VisibilityInAllClientApps::kPublic},
                  /*enabled=*/true, /*availableForUser=*/true);
  }
  return features;
}

}  // namespace

void UseSampleHost() {
  feature::SetFeatureService(MakeFeatures());
}

SampleList::SampleList(std::size_t rows) {
  UseSampleHost();
  list_ = std::make_unique<ornwhatsnew::FeatureListData>(SampleFile(rows), store_.Getter(),
                                                         store_.Setter());
}

ornwhatsnew::UTF16String SampleList::Display(ornwhatsnew::StyleRunMap& runs) {
  return list_->GetFormattedTextForDisplay({}, {}, runs, nullptr);
}

void SampleList::ResetState() {
  store_.Clear();
  list_->RefreshInternalSeenState();
}

}  // namespace benchmarks
