#include "hosts/common/WriteSignals.h"

#include <csignal>

namespace hosts::common {

void IgnoreWriteSignals() noexcept {
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

}  // namespace hosts::common
