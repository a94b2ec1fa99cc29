// The application's resources: here they are part of the program.
#ifndef EXAMPLES_HOST_RESOURCES_H_
#define EXAMPLES_HOST_RESOURCES_H_

#include <string>
#include <vector>

#include <ornui/utility/ResourceManager.h>

// Resources from wherever the application keeps them.
class BuiltInResources final : public ornui::utility::ResourceManager {
 public:
  bool LoadResource(const std::u16string& name, const std::u16string& type,
                    std::vector<unsigned char>& bytes) const override;
};

#endif  // EXAMPLES_HOST_RESOURCES_H_
