// Captures what the process writes to its standard output and standard error.
#ifndef FUZZ_OUTPUTCAPTURE_H_
#define FUZZ_OUTPUTCAPTURE_H_

#include <string>

namespace fuzz {

/// Captures from construction until `Stop` or destruction. Reports of sanitizers still go to the
/// real standard error. Only one object may exist.
class OutputCapture {
 public:
  OutputCapture();
  ~OutputCapture();
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  /// Restores both streams.
  void Stop();

  /// Returns the captured output. REQUIRES: stopped.
  const std::string& Output() const { return output_; }
  const std::string& Errors() const { return errors_; }

 private:
  int realOutput_;
  int realErrors_;
  int caughtOutput_;
  int caughtErrors_;
  bool isCatching_ = true;
  std::string output_;
  std::string errors_;
};

}  // namespace fuzz

#endif  // FUZZ_OUTPUTCAPTURE_H_
