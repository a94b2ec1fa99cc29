# Fails unless the page PAGE quotes the whole file CODE as a block of C++.
file(READ ${CODE} code)
file(READ ${PAGE} page)
string(FIND "${page}" "```cpp\n${code}```\n" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${PAGE} does not quote ${CODE} unchanged: copy the file into its block")
endif()
