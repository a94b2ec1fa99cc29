// Defines the resource manager of the application.
#ifndef EXAMPLES_HOST_RESOURCES_H_
#define EXAMPLES_HOST_RESOURCES_H_

#include <string>
#include <vector>

#include <ornui/utility/ResourceManager.h>

// Returns resources that are compiled into the program.
class BuiltInResources final : public ornui::utility::ResourceManager {
 public:
  bool LoadResource(const std::u16string& name, const std::u16string& type,
                    std::vector<unsigned char>& bytes) const override;
};

#endif  // EXAMPLES_HOST_RESOURCES_H_
