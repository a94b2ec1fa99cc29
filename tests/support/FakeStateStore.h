// A host's state store for tests: texts by key, a log of every write, and calls that fail on
// demand.
#ifndef TESTS_SUPPORT_FAKESTATESTORE_H_
#define TESTS_SUPPORT_FAKESTATESTORE_H_

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test_support {

/// What a call throws that was told to fail.
class InjectedFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The store behind the two state callbacks. It must outlive the callbacks that it hands out.
/// One thread at a time.
class FakeStateStore {
 public:
  using Texts = std::map<std::string, std::string, std::less<>>;
  /// Key and value of one setter call.
  using Write = std::pair<std::string, std::string>;

  FakeStateStore() = default;
  FakeStateStore(const FakeStateStore&) = delete;
  FakeStateStore& operator=(const FakeStateStore&) = delete;

  /// The callbacks to hand to a list.
  std::function<std::string(const std::string&)> Getter();
  std::function<void(const std::string&, const std::string&)> Setter();

  /// Stores a text as an earlier run would have left it: not logged, never failing.
  void Put(std::string key, std::string value);
  /// The same for the whole content.
  void Replace(Texts texts) { texts_ = std::move(texts); }
  /// The text under a key, empty when there is none: not counted, never failing.
  std::string Text(std::string_view key) const;
  const Texts& AllTexts() const { return texts_; }

  /// The setter calls that succeeded, in order.
  const std::vector<Write>& Writes() const { return writes_; }
  /// The same, and the log is empty afterwards.
  std::vector<Write> TakeWrites() { return std::exchange(writes_, {}); }

  /// Calls since construction, failed ones included.
  int GetterCalls() const { return getterCalls_; }
  int SetterCalls() const { return setterCalls_; }

  /// The n-th call from now on (1: the next) throws `InjectedFailure`, once; a failed write leaves
  /// neither text nor log entry. 0: none fails.
  void FailGetterCall(int n) { getterFailsIn_ = n; }
  void FailSetterCall(int n) { setterFailsIn_ = n; }

 private:
  std::string Get(const std::string& key);
  void Set(const std::string& key, const std::string& value);

  Texts texts_;
  std::vector<Write> writes_;
  int getterCalls_ = 0;
  int setterCalls_ = 0;
  int getterFailsIn_ = 0;
  int setterFailsIn_ = 0;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_FAKESTATESTORE_H_
