// Tests the start-up registration. Loading the library registers one initializer, and the
// initializer registers one command.
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/console/CommandRegistry.h>
#include <ornwhatsnew/WhatsNewTypes.h>

namespace ornwhatsnew {
namespace {

using orncore::config::EInitializerContextFlags;
using orncore::config::GetRegisteredInitializers;
using orncore::config::InitializeContexts;
using orncore::config::ShutdownContexts;
using orncore::console::CommandRegistry;

std::ptrdiff_t CommandsNamed(const std::u16string& name) {
  return std::ranges::count(CommandRegistry::Instance().ListCommands(), name,
                            &CommandRegistry::Command::name);
}

// The constructor calls a function of the module ornwhatsnew. Without such a call, the linker could
// omit the object files of the module from the test program.
class Registration : public testing::Test {
 protected:
  Registration() { GetFullClientVersionString(); }
  ~Registration() override { ShutdownContexts(EInitializerContextFlags::kConsole); }
};

TEST_F(Registration, RegistersOneInitializer) {
  EXPECT_EQ(std::ranges::count(GetRegisteredInitializers(), "ornwhatsnew.FeatureListData"), 1);
}

TEST_F(Registration, InitializationAddsTheCommandAndShutdownRemovesIt) {
  EXPECT_EQ(CommandsNamed(u"ValidateWhatsNew"), 0);
  EXPECT_TRUE(InitializeContexts(EInitializerContextFlags::kConsole));
  EXPECT_EQ(CommandsNamed(u"ValidateWhatsNew"), 1);
  ShutdownContexts(EInitializerContextFlags::kConsole);
  EXPECT_EQ(CommandsNamed(u"ValidateWhatsNew"), 0);
}

TEST_F(Registration, OnlyTheConsoleContextAddsTheCommand) {
  EXPECT_TRUE(
      InitializeContexts(EInitializerContextFlags::kCore | EInitializerContextFlags::kApplication));
  EXPECT_EQ(CommandsNamed(u"ValidateWhatsNew"), 0);
  ShutdownContexts(EInitializerContextFlags::kCore | EInitializerContextFlags::kApplication);
}

TEST_F(Registration, CanBeInitializedAgainAfterAShutdown) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(InitializeContexts(EInitializerContextFlags::kConsole));
    EXPECT_EQ(CommandsNamed(u"ValidateWhatsNew"), 1) << "round " << round;
    ShutdownContexts(EInitializerContextFlags::kConsole);
  }
}

// Hosts write the help text directly after the command's name, so the help text must not contain
// the name.
TEST_F(Registration, HelpTextDoesNotRepeatTheCommandsName) {
  InitializeContexts(EInitializerContextFlags::kConsole);
  const auto commands = CommandRegistry::Instance().ListCommands();
  const auto command = std::ranges::find(commands, u"ValidateWhatsNew", [](const auto& candidate) {
    return std::u16string_view(candidate.name);
  });
  ASSERT_NE(command, commands.end());
  EXPECT_EQ(command->help,
            u" filepath - Parse a What's New file to validate changes before commiting to version "
            u"control");
}

}  // namespace
}  // namespace ornwhatsnew
