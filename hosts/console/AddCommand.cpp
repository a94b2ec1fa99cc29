#include <string>
#include <string_view>
#include <system_error>

#include "hosts/author/DataFileWriter.h"
#include "hosts/author/FileRewrite.h"
#include "hosts/author/InputError.h"
#include "hosts/console/AuthorErrors.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

ExitStatus Run(const AddArguments& arguments) {
  try {
    author::ChangeWholeFile(arguments.data, [&arguments](std::string_view dataFile) {
      return author::AppendChange(dataFile, arguments.fields);
    });
  } catch (const author::InputError& error) {
    throw ToToolError(arguments.data, error);
  } catch (const std::system_error& error) {
    const bool isMissing = error.code() == std::errc::no_such_file_or_directory;
    throw ToolError(isMissing ? ExitStatus::kInput : ExitStatus::kOutput, error.what());
  }
  return ExitStatus::kDone;
}

}  // namespace hosts::console
