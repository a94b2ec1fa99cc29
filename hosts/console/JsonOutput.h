// JSON as the program prints it.
#ifndef HOSTS_CONSOLE_JSONOUTPUT_H_
#define HOSTS_CONSOLE_JSONOUTPUT_H_

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace hosts::console {

/// The value on indented lines, in ASCII: everything else is escaped, so that no text in it acts on
/// a terminal.
std::string ToJsonText(const nlohmann::json& value);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_JSONOUTPUT_H_
