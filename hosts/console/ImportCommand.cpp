#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "hosts/author/FileRewrite.h"
#include "hosts/author/InputError.h"
#include "hosts/author/SpreadsheetImport.h"
#include "hosts/author/SpreadsheetReader.h"
#include "hosts/author/TextEncoding.h"
#include "hosts/common/MessageText.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/TextFile.h"
#include "hosts/console/AuthorErrors.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

std::string SeparatorName(char separator) {
  switch (separator) {
    case ',':
      return "commas";
    case ';':
      return "semicolons";
    case '\t':
      return "tabs";
    default:
      return std::string("'") + separator + "'";
  }
}

void ReportRemarks(const std::filesystem::path& file, const std::vector<author::Remark>& remarks) {
  for (const author::Remark& remark : remarks) {
    ReportError(MessageAt(file, remark.line, remark.message));
  }
}

/// Converts the table, and returns the content of the data file. Reports the encoding, each cell in
/// which characters were replaced, and the errors. Throws `ToolError` if the table has an error.
std::string Import(const ImportArguments& arguments) {
  const author::DecodedText decoded = author::DecodeText(
      common::ReadInputFile(arguments.table, kMaximumAuthorFile), arguments.encoding);
  ReportError(MessageAt(arguments.table, 0, "read as " + decoded.encoding + ", " + decoded.reason));
  const author::Spreadsheet table = author::ReadSpreadsheet(decoded.text);
  author::ImportResult result = author::ImportSpreadsheet(table);
  ReportRemarks(arguments.table, result.changes);
  ReportRemarks(arguments.table, result.errors);
  if (result.errors.empty()) return std::move(result.dataFile);
  const std::size_t unlisted = result.errorCount - result.errors.size();
  throw ToolError(
      ExitStatus::kInput,
      MessageAt(arguments.table, 0,
                "found " + common::Counted(result.errorCount, "error") +
                    " in the table, whose columns are separated by " +
                    SeparatorName(table.separator) + "; " +
                    (unlisted == 0 ? "" : std::to_string(unlisted) + " of them are not listed; ") +
                    "nothing was written"));
}

}  // namespace

ExitStatus Run(const ImportArguments& arguments) {
  try {
    const bool isPrinted = arguments.output == kStandardOutput;
    if (!isPrinted) RequireUsableOutput(arguments.output, {&arguments.table, 1});
    const std::string dataFile = Import(arguments);
    if (isPrinted) {
      common::WriteOutput(dataFile);
    } else {
      author::WriteWholeFile(arguments.output, dataFile);
    }
  } catch (const author::InputError& error) {
    throw ToToolError(arguments.table, error);
  } catch (const std::system_error& error) {
    throw ToolError(ExitStatus::kOutput, error.what());
  }
  return ExitStatus::kDone;
}

}  // namespace hosts::console
