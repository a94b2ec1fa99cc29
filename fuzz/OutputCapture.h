// Captures the standard output and the standard error of the process.
#ifndef FUZZ_OUTPUTCAPTURE_H_
#define FUZZ_OUTPUTCAPTURE_H_

#include <string>

namespace fuzz {

/// Captures standard output and standard error from construction until `Stop` or destruction.
/// AddressSanitizer still writes its reports to the original standard error. Only one object may
/// exist at a time. The constructor and `Stop` throw std::system_error if a stream cannot be
/// redirected or read. In the destructor, such an error terminates the process.
class OutputCapture {
 public:
  OutputCapture();
  ~OutputCapture();
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  /// Restores both streams and reads the captured bytes. Later calls do nothing.
  void Stop();

  /// Return the bytes that the process wrote to standard output and to standard error.
  /// REQUIRES: `Stop` was called.
  const std::string& Output() const { return output_; }
  const std::string& Errors() const { return errors_; }

 private:
  int originalOutput_;
  int originalErrors_;
  int capturedOutput_;
  int capturedErrors_;
  bool isCapturing_ = true;
  std::string output_;
  std::string errors_;
};

}  // namespace fuzz

#endif  // FUZZ_OUTPUTCAPTURE_H_
