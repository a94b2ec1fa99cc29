# Fails unless the Markdown file PAGE contains the complete file CODE as a C++ code block.
file(READ ${CODE} code)
file(READ ${PAGE} page)
string(FIND "${page}" "```cpp\n${code}```\n" position)
if(position EQUAL -1)
  message(FATAL_ERROR "'${PAGE}' does not contain '${CODE}' unchanged: copy the file into the code block")
endif()
