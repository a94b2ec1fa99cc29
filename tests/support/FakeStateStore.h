// A state store for tests. It stores strings by key, logs all writes, and can fail on demand.
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

/// Thrown by a call that a test has set to fail.
class InjectedFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The state store of a list. It must outlive the callbacks that it returns. Not thread-safe.
class FakeStateStore {
 public:
  using Texts = std::map<std::string, std::string, std::less<>>;
  /// The key and the value of one setter call.
  using Write = std::pair<std::string, std::string>;

  FakeStateStore() = default;
  FakeStateStore(const FakeStateStore&) = delete;
  FakeStateStore& operator=(const FakeStateStore&) = delete;

  /// Return callbacks that read and write this store.
  std::function<std::string(const std::string&)> Getter();
  std::function<void(const std::string&, const std::string&)> Setter();

  /// Stores a string, as if an earlier run of the host had written it. Not logged; never fails.
  void Put(std::string key, std::string value);
  /// Replaces all strings. Not logged; never fails.
  void Replace(Texts texts) { texts_ = std::move(texts); }
  /// Returns the text of a key, or an empty string if there is none. Not counted; never fails.
  std::string Text(std::string_view key) const;
  const Texts& AllTexts() const { return texts_; }

  /// Returns the log: the setter calls that succeeded, in order.
  const std::vector<Write>& Writes() const { return writes_; }
  /// Returns the log and clears it.
  std::vector<Write> TakeWrites() { return std::exchange(writes_, {}); }

  /// Return the number of calls since the construction, including failed calls.
  int GetterCalls() const { return getterCalls_; }
  int SetterCalls() const { return setterCalls_; }

  /// Make the n-th later call throw `InjectedFailure`, once. 1 is the next call; 0 lets no call
  /// fail. A failed setter call changes neither the strings nor the log.
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
