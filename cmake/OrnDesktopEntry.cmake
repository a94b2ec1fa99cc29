# Defines a function that quotes arguments in desktop entries.

# orn_quote_desktop_argument(VARIABLE ARGUMENT)
# Sets VARIABLE to ARGUMENT, quoted for the key `Exec` of a desktop entry.
function(orn_quote_desktop_argument variable argument)
  # Within double quotes, these four characters must be escaped with a backslash.
  string(REGEX REPLACE "([\"`$\\])" "\\\\\\1" quoted "${argument}")
  # In each value of a desktop entry, backslashes must be escaped with another backslash.
  string(REPLACE "\\" "\\\\" quoted "${quoted}")
  # A single percent sign would begin a field code.
  string(REPLACE "%" "%%" quoted "${quoted}")
  set(${variable} "\"${quoted}\"" PARENT_SCOPE)
endfunction()
