#include "fuzz/OutputCapture.h"

#include <cerrno>
#include <cstdint>
#include <system_error>

#include <sys/mman.h>
#include <unistd.h>

#include "tests/support/Sanitizers.h"

#if defined(TESTS_HAS_ADDRESS_SANITIZER)
#include <sanitizer/common_interface_defs.h>
#endif

namespace fuzz {
namespace {

int Checked(int result) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), "cannot capture output");
  return result;
}

void SendReportsTo([[maybe_unused]] int descriptor) {
#if defined(TESTS_HAS_ADDRESS_SANITIZER)
  // The sanitizers' function expects the file descriptor as a pointer.
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
    : originalOutput_(Checked(::dup(STDOUT_FILENO))),
      originalErrors_(Checked(::dup(STDERR_FILENO))),
      capturedOutput_(Checked(::memfd_create("output", 0))),
      capturedErrors_(Checked(::memfd_create("errors", 0))) {
  SendReportsTo(originalErrors_);
  Checked(::dup2(capturedOutput_, STDOUT_FILENO));
  Checked(::dup2(capturedErrors_, STDERR_FILENO));
}

OutputCapture::~OutputCapture() {
  Stop();
}

void OutputCapture::Stop() {
  if (!isCapturing_) return;
  isCapturing_ = false;
  Checked(::dup2(originalOutput_, STDOUT_FILENO));
  Checked(::dup2(originalErrors_, STDERR_FILENO));
  SendReportsTo(STDERR_FILENO);
  output_ = ReadAll(capturedOutput_);
  errors_ = ReadAll(capturedErrors_);
  for (const int descriptor :
       {originalOutput_, originalErrors_, capturedOutput_, capturedErrors_}) {
    ::close(descriptor);
  }
}

}  // namespace fuzz
