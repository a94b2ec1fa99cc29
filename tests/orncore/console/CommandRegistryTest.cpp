#include <orncore/console/CommandRegistry.h>

#include <atomic>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orncore::console {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using Output = std::basic_ostringstream<char16_t>;

class CommandRegistryTest : public testing::Test {
 protected:
  // Returns a command function that appends its argument text to `arguments_` and returns 7.
  CommandRegistry::CommandFunction Recording() {
    return [this](const UTF16String& arguments, UTF16OutputStream&) {
      arguments_.push_back(arguments);
      return 7;
    };
  }

  std::vector<UTF16String> Names() const {
    std::vector<UTF16String> names;
    for (const auto& command : registry_.ListCommands()) names.push_back(command.name);
    return names;
  }

  CommandRegistry registry_;
  Output output_;
  std::vector<UTF16String> arguments_;
};

TEST_F(CommandRegistryTest, ListsCommandsByName) {
  EXPECT_THAT(registry_.ListCommands(), IsEmpty());
  EXPECT_TRUE(registry_.RegisterCommandFunction(u"b", u" help of b", Recording()));
  EXPECT_TRUE(registry_.RegisterCommandFunction(u"a", u"", Recording()));
  EXPECT_TRUE(registry_.RegisterCommandFunction(u"B", u"", Recording()));
  EXPECT_THAT(Names(), ElementsAre(u"B", u"a", u"b"));
  EXPECT_EQ(registry_.ListCommands()[2].help, u" help of b");
}

TEST_F(CommandRegistryTest, KeepsTheFirstCommandOfAName) {
  EXPECT_TRUE(registry_.RegisterCommandFunction(u"a", u"first", Recording()));
  EXPECT_FALSE(registry_.RegisterCommandFunction(
      u"a", u"second", [](const UTF16String&, UTF16OutputStream&) { return 1; }));
  EXPECT_EQ(registry_.ListCommands()[0].help, u"first");
  EXPECT_THAT(registry_.RunLine(u"a", output_), Optional(7));
}

TEST_F(CommandRegistryTest, RefusesInvalidCommands) {
  EXPECT_FALSE(registry_.RegisterCommandFunction(u"", u"", Recording()));
  EXPECT_FALSE(registry_.RegisterCommandFunction(u"a b", u"", Recording()));
  EXPECT_FALSE(registry_.RegisterCommandFunction(u"a", u"", {}));
  EXPECT_THAT(registry_.ListCommands(), IsEmpty());
}

TEST_F(CommandRegistryTest, UnregisterRemovesTheCommand) {
  registry_.RegisterCommandFunction(u"a", u"", Recording());
  EXPECT_TRUE(registry_.UnregisterCommand(u"a"));
  EXPECT_FALSE(registry_.UnregisterCommand(u"a"));
  EXPECT_EQ(registry_.RunLine(u"a", output_), std::nullopt);
  EXPECT_TRUE(registry_.RegisterCommandFunction(u"a", u"", Recording()));
}

struct LineCase {
  std::u16string_view line;
  std::u16string_view arguments;
};

class LineTest : public CommandRegistryTest, public testing::WithParamInterface<LineCase> {};

TEST_P(LineTest, PassesTheArgumentTextToTheCommand) {
  registry_.RegisterCommandFunction(u"run", u"", Recording());
  EXPECT_THAT(registry_.RunLine(GetParam().line, output_), Optional(7));
  EXPECT_THAT(arguments_, ElementsAre(UTF16String(GetParam().arguments)));
}

INSTANTIATE_TEST_SUITE_P(Lines, LineTest,
                         testing::Values(LineCase{u"run", u""}, LineCase{u"run ", u""},
                                         LineCase{u"run  ", u" "}, LineCase{u"run a", u"a"},
                                         LineCase{u"run  a  b ", u" a  b "},
                                         LineCase{u"run \"a b\" 'c'\t\\", u"\"a b\" 'c'\t\\"},
                                         LineCase{u"  run a", u"a"},
                                         LineCase{u"run \u00FC\U0001F600", u"\u00FC\U0001F600"},
                                         LineCase{u"run a\nb", u"a\nb"},
                                         LineCase{{u"run a\0b", 7}, {u"a\0b", 3}}));

TEST_F(CommandRegistryTest, FindsNoCommandForOtherLines) {
  registry_.RegisterCommandFunction(u"run", u"", Recording());
  for (const std::u16string_view line : {u"", u" ", u"ru", u"runs", u"Run", u"run\ta", u"\trun"}) {
    EXPECT_EQ(registry_.RunLine(line, output_), std::nullopt);
  }
  EXPECT_THAT(arguments_, IsEmpty());
  EXPECT_EQ(output_.str(), u"");
}

TEST_F(CommandRegistryTest, PassesTheStreamToTheCommand) {
  registry_.RegisterCommandFunction(u"say", u"",
                                    [](const UTF16String& arguments, UTF16OutputStream& stream) {
                                      Write(stream, arguments);
                                      Write(stream, u"\n");
                                      stream.flush();
                                      return 0;
                                    });
  EXPECT_THAT(registry_.RunLine(u"say \u00FC \U0001F600", output_), Optional(0));
  EXPECT_EQ(output_.str(), u"\u00FC \U0001F600\n");
}

TEST_F(CommandRegistryTest, WritesTextUnchanged) {
  Write(output_, u"");
  Write(output_, {u"a\0b", 3});
  EXPECT_EQ(output_.str(), UTF16String(u"a\0b", 3));
  EXPECT_TRUE(output_.good());
}

TEST_F(CommandRegistryTest, ACommandMayUnregisterItself) {
  const std::string owned = "a string that the command owns";
  registry_.RegisterCommandFunction(u"once", u"",
                                    [this, owned](const UTF16String&, UTF16OutputStream&) {
                                      EXPECT_TRUE(registry_.UnregisterCommand(u"once"));
                                      return static_cast<int>(owned.size());
                                    });
  EXPECT_THAT(registry_.RunLine(u"once", output_), Optional(static_cast<int>(owned.size())));
  EXPECT_EQ(registry_.RunLine(u"once", output_), std::nullopt);
}

TEST_F(CommandRegistryTest, ACommandMayRegisterAndRunOthers) {
  registry_.RegisterCommandFunction(u"outer", u"",
                                    [this](const UTF16String&, UTF16OutputStream& stream) {
                                      registry_.RegisterCommandFunction(u"inner", u"", Recording());
                                      return registry_.RunLine(u"inner x", stream).value_or(-1);
                                    });
  EXPECT_THAT(registry_.RunLine(u"outer", output_), Optional(7));
  EXPECT_THAT(arguments_, ElementsAre(u"x"));
}

TEST_F(CommandRegistryTest, PropagatesExceptionsOfCommands) {
  registry_.RegisterCommandFunction(u"bad", u"", [](const UTF16String&, UTF16OutputStream&) -> int {
    throw std::runtime_error("bad");
  });
  EXPECT_THROW(registry_.RunLine(u"bad", output_), std::runtime_error);
  EXPECT_THAT(Names(), ElementsAre(u"bad"));
}

TEST_F(CommandRegistryTest, DestroysAFunctionWithoutHoldingTheLock) {
  class CallsRegistryWhenDestroyed {
   public:
    explicit CallsRegistryWhenDestroyed(CommandRegistry& registry) : registry_(registry) {}
    ~CallsRegistryWhenDestroyed() { registry_.UnregisterCommand(u"nobody"); }

   private:
    CommandRegistry& registry_;
  };
  const auto commandThatOwns = [](std::shared_ptr<CallsRegistryWhenDestroyed> object) {
    return [object](const UTF16String&, UTF16OutputStream&) { return 0; };
  };
  registry_.RegisterCommandFunction(
      u"a", u"", commandThatOwns(std::make_shared<CallsRegistryWhenDestroyed>(registry_)));
  EXPECT_TRUE(registry_.UnregisterCommand(u"a"));
}

TEST_F(CommandRegistryTest, KeepsEveryCommandOfSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kCommands = 200;
  std::atomic<int> registered = 0;
  std::atomic<int> results = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        Output output;
        for (int i = 0; i < kCommands; ++i) {
          const UTF16String name = {static_cast<char16_t>(u'a' + thread),
                                    static_cast<char16_t>(0x100 + i)};
          registered += registry_.RegisterCommandFunction(
              name, u"", [](const UTF16String&, UTF16OutputStream&) { return 1; });
          results += registry_.RunLine(name, output).value_or(0);
          EXPECT_FALSE(registry_.ListCommands().empty());
          if (i % 2 == 0) registered -= registry_.UnregisterCommand(name);
        }
      });
    }
  }
  EXPECT_EQ(results, kThreads * kCommands);
  EXPECT_EQ(registered, kThreads * kCommands / 2);
  EXPECT_THAT(registry_.ListCommands(), testing::SizeIs(kThreads * kCommands / 2));
}

TEST(CommandRegistry, HasOneInstancePerProcess) {
  EXPECT_EQ(&CommandRegistry::Instance(), &CommandRegistry::Instance());
}

}  // namespace
}  // namespace orncore::console
