// Provides a state store for tests. It stores strings by key, logs the successful setter calls, and
// can fail on demand.
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

/// The exception that a callback or service throws if a test makes the call fail.
class InjectedFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A state store in memory. It must outlive the callbacks that it returns. Not thread-safe.
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

  /// Stores `value` under `key`, as if an earlier run of the host had written it. Does not log the
  /// write and ignores `FailSetterCall`.
  void Put(std::string key, std::string value);
  /// Replaces all stored strings. Does not log a write and ignores `FailSetterCall`.
  void Replace(Texts texts) { texts_ = std::move(texts); }
  /// Returns the string that is stored under `key`, or an empty string if there is none. Does not
  /// count as a getter call and ignores `FailGetterCall`.
  std::string Text(std::string_view key) const;
  const Texts& AllTexts() const { return texts_; }

  /// Returns the log, which contains the successful setter calls since the last `TakeWrites`, in
  /// order.
  const std::vector<Write>& Writes() const { return writes_; }
  /// Returns the log and clears it.
  std::vector<Write> TakeWrites() { return std::exchange(writes_, {}); }

  /// Return the number of getter calls and of setter calls so far, including failed calls.
  int GetterCalls() const { return getterCalls_; }
  int SetterCalls() const { return setterCalls_; }

  /// Make the n-th of the following getter or setter calls throw `InjectedFailure`. The calls after
  /// it succeed. If `n` is 0, no call fails. A failed setter call changes neither the stored
  /// strings nor the log.
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
