# Defines a function that quotes arguments in desktop entries.

# orn_quote_desktop_argument(VARIABLE ARGUMENT)
# Sets VARIABLE to ARGUMENT in the syntax of the key Exec of a desktop entry.
function(orn_quote_desktop_argument variable argument)
  # Within quotes, these four characters need a backslash.
  string(REGEX REPLACE "([\"`$\\])" "\\\\\\1" quoted "${argument}")
  # The value of each key is a string, in which a backslash needs a backslash.
  string(REPLACE "\\" "\\\\" quoted "${quoted}")
  # A single percent sign would begin a field code.
  string(REPLACE "%" "%%" quoted "${quoted}")
  set(${variable} "\"${quoted}\"" PARENT_SCOPE)
endfunction()
