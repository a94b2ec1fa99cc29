// A host's state store for tests: texts by key, a log of all writes, and calls that fail on demand.
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

/// Thrown by a call that is set to fail.
class InjectedFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The store of the two state callbacks. It must outlive them. Not thread-safe.
class FakeStateStore {
 public:
  using Texts = std::map<std::string, std::string, std::less<>>;
  /// Key and value of one setter call.
  using Write = std::pair<std::string, std::string>;

  FakeStateStore() = default;
  FakeStateStore(const FakeStateStore&) = delete;
  FakeStateStore& operator=(const FakeStateStore&) = delete;

  /// Return the callbacks for a list.
  std::function<std::string(const std::string&)> Getter();
  std::function<void(const std::string&, const std::string&)> Setter();

  /// Stores a text like an earlier run: not logged, never fails.
  void Put(std::string key, std::string value);
  /// Replaces all texts: not logged, never fails.
  void Replace(Texts texts) { texts_ = std::move(texts); }
  /// Returns the text of a key, or an empty string: not counted, never fails.
  std::string Text(std::string_view key) const;
  const Texts& AllTexts() const { return texts_; }

  /// The setter calls that succeeded, in order.
  const std::vector<Write>& Writes() const { return writes_; }
  /// Returns the log and clears it.
  std::vector<Write> TakeWrites() { return std::exchange(writes_, {}); }

  /// Calls since construction, including failed ones.
  int GetterCalls() const { return getterCalls_; }
  int SetterCalls() const { return setterCalls_; }

  /// Lets the n-th call from now on (1: the next one) throw `InjectedFailure`, once; 0 lets none
  /// fail. A failed write changes neither the texts nor the log.
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
