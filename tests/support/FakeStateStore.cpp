#include "tests/support/FakeStateStore.h"

namespace test_support {

namespace {

void CountDown(int& failsIn, const char* callback, const std::string& key) {
  if (failsIn == 0) return;
  if (--failsIn == 0)
    throw InjectedFailure(std::string("the test made the ") + callback + " fail for the key '" +
                          key + "'");
}

}  // namespace

std::function<std::string(const std::string&)> FakeStateStore::Getter() {
  return [this](const std::string& key) { return Get(key); };
}

std::function<void(const std::string&, const std::string&)> FakeStateStore::Setter() {
  return [this](const std::string& key, const std::string& value) { Set(key, value); };
}

void FakeStateStore::Put(std::string key, std::string value) {
  texts_.insert_or_assign(std::move(key), std::move(value));
}

std::string FakeStateStore::Text(std::string_view key) const {
  const auto found = texts_.find(key);
  return found == texts_.end() ? std::string() : found->second;
}

std::string FakeStateStore::Get(const std::string& key) {
  ++getterCalls_;
  CountDown(getterFailsIn_, "getter", key);
  return Text(key);
}

void FakeStateStore::Set(const std::string& key, const std::string& value) {
  ++setterCalls_;
  CountDown(setterFailsIn_, "setter", key);
  writes_.emplace_back(key, value);
  texts_.insert_or_assign(key, value);
}

}  // namespace test_support
