#include "hosts/panel/HostTranslator.h"

#include <string_view>

namespace hosts::panel {

HostTranslator::~HostTranslator() = default;

QString HostTranslator::translate(const char* context, const char* sourceText,
                                  const char* /*disambiguation*/, int /*n*/) const {
  if (context == nullptr || context != std::string_view("ornwhatsnew")) return {};
  const auto found = dictionary_.find(std::string_view(sourceText));
  return found == dictionary_.end() ? QString() : QString::fromStdString(found->second);
}

}  // namespace hosts::panel
