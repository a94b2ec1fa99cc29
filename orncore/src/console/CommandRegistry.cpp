#include <orncore/console/CommandRegistry.h>

#include <algorithm>
#include <ios>
#include <utility>

#include "orncore/src/utility/NoDestructor.h"

namespace orncore::console {
namespace {

constexpr char16_t kSpace = u' ';

}  // namespace

void Write(UTF16OutputStream& stream, std::u16string_view text) {
  stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}

CommandRegistry::CommandRegistry() = default;

CommandRegistry::~CommandRegistry() = default;

CommandRegistry& CommandRegistry::Instance() {
  static utility::NoDestructor<CommandRegistry> registry;
  return *registry;
}

bool CommandRegistry::RegisterCommandFunction(UTF16String name, UTF16String help,
                                              CommandFunction function) {
  const bool isRunnable = !name.empty() && name.find(kSpace) == UTF16String::npos && function;
  if (!isRunnable) return false;
  Entry entry{std::move(help), std::make_shared<const CommandFunction>(std::move(function))};
  const std::lock_guard lock(mutex_);
  return commands_.try_emplace(std::move(name), std::move(entry)).second;
}

bool CommandRegistry::UnregisterCommand(std::u16string_view name) {
  // Declare the entry before the lock, so that the entry is destroyed after the lock is released.
  // Destructors of objects that the function owns may use the registry.
  std::map<UTF16String, Entry, std::less<>>::node_type removed;
  const std::lock_guard lock(mutex_);
  const auto command = commands_.find(name);
  if (command == commands_.end()) return false;
  removed = commands_.extract(command);
  return true;
}

std::vector<CommandRegistry::Command> CommandRegistry::ListCommands() const {
  const std::lock_guard lock(mutex_);
  std::vector<Command> list;
  list.reserve(commands_.size());
  for (const auto& [name, entry] : commands_) list.push_back({name, entry.help});
  return list;
}

std::optional<int> CommandRegistry::RunLine(std::u16string_view line,
                                            UTF16OutputStream& stream) const {
  line.remove_prefix(std::min(line.find_first_not_of(kSpace), line.size()));
  const std::size_t nameLength = std::min(line.find(kSpace), line.size());
  const std::u16string_view name = line.substr(0, nameLength);
  std::shared_ptr<const CommandFunction> function;
  {
    const std::lock_guard lock(mutex_);
    const auto command = commands_.find(name);
    if (command == commands_.end()) return std::nullopt;
    function = command->second.function;
  }
  const bool hasArguments = nameLength < line.size();
  return (*function)(UTF16String(line.substr(hasArguments ? nameLength + 1 : nameLength)), stream);
}

}  // namespace orncore::console
