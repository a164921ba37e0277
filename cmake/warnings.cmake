# vstring_warnings: the warnings that all of the project's own code is compiled with, as errors.
add_library(vstring_warnings INTERFACE)
target_compile_options(vstring_warnings INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Werror)

# A module must resolve all its symbols, but the sanitizers' own are only there in the program.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  set(VSTRING_NO_UNDEFINED "")
else()
  set(VSTRING_NO_UNDEFINED "-Wl,-z,defs")
endif()
