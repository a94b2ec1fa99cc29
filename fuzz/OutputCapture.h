// Catches what the process writes to its standard output and standard error.
#ifndef FUZZ_OUTPUTCAPTURE_H_
#define FUZZ_OUTPUTCAPTURE_H_

#include <string>

namespace fuzz {

/// Catches from its construction on, until it is told to stop or goes. A sanitizer's report still
/// goes to the real standard error. Only one at a time.
class OutputCapture {
 public:
  OutputCapture();
  ~OutputCapture();
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  /// Writes go where they went before.
  void Stop();

  /// All that was written since the construction. REQUIRES: stopped.
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
