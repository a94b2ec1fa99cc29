// Loads resources from memory, for tests of the code that reads resources.
#ifndef TESTS_SUPPORT_MEMORYRESOURCEMANAGER_H_
#define TESTS_SUPPORT_MEMORYRESOURCEMANAGER_H_

#include <map>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornui/utility/ResourceManager.h>

namespace test_support {

/// Contains resources. Finds a resource only by its exact name and type, including letter case.
class MemoryResourceManager final : public ornui::utility::ResourceManager {
 public:
  /// Adds a resource. If a resource with the same name and type exists, replaces it.
  void Add(orncore::string::UTF16String name, orncore::string::UTF16String type,
           std::vector<unsigned char> bytes) {
    resources_.insert_or_assign({std::move(name), std::move(type)}, std::move(bytes));
  }

  bool LoadResource(const orncore::string::UTF16String& name,
                    const orncore::string::UTF16String& type,
                    std::vector<unsigned char>& bytes) const override {
    const auto resource = resources_.find({name, type});
    const bool isFound = resource != resources_.end();
    bytes = isFound ? resource->second : std::vector<unsigned char>();
    return isFound;
  }

 private:
  std::map<std::pair<orncore::string::UTF16String, orncore::string::UTF16String>,
           std::vector<unsigned char>>
      resources_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_MEMORYRESOURCEMANAGER_H_
