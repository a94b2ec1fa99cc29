#include "fuzz/OutputCapture.h"

#include <cerrno>
#include <cstdint>
#include <system_error>

#include <sys/mman.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define FUZZ_HAS_REPORT_FD 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FUZZ_HAS_REPORT_FD 1
#endif
#endif

#if defined(FUZZ_HAS_REPORT_FD)
#include <sanitizer/common_interface_defs.h>
#endif

namespace fuzz {
namespace {

int Checked(int result) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), "capturing output");
  return result;
}

void SendReportsTo([[maybe_unused]] int descriptor) {
#if defined(FUZZ_HAS_REPORT_FD)
  // The interface of the sanitizers takes the descriptor as a pointer.
  __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor)));
#endif
}

std::string ReadAll(int descriptor) {
  const auto size = Checked(static_cast<int>(::lseek(descriptor, 0, SEEK_END)));
  std::string bytes(static_cast<std::size_t>(size), '\0');
  Checked(static_cast<int>(::pread(descriptor, bytes.data(), bytes.size(), 0)));
  return bytes;
}

}  // namespace

OutputCapture::OutputCapture()
    : realOutput_(Checked(::dup(STDOUT_FILENO))),
      realErrors_(Checked(::dup(STDERR_FILENO))),
      caughtOutput_(Checked(::memfd_create("output", 0))),
      caughtErrors_(Checked(::memfd_create("errors", 0))) {
  SendReportsTo(realErrors_);
  Checked(::dup2(caughtOutput_, STDOUT_FILENO));
  Checked(::dup2(caughtErrors_, STDERR_FILENO));
}

OutputCapture::~OutputCapture() {
  Stop();
}

void OutputCapture::Stop() {
  if (!isCatching_) return;
  isCatching_ = false;
  Checked(::dup2(realOutput_, STDOUT_FILENO));
  Checked(::dup2(realErrors_, STDERR_FILENO));
  SendReportsTo(STDERR_FILENO);
  output_ = ReadAll(caughtOutput_);
  errors_ = ReadAll(caughtErrors_);
  for (const int descriptor : {realOutput_, realErrors_, caughtOutput_, caughtErrors_}) {
    ::close(descriptor);
  }
}

}  // namespace fuzz
