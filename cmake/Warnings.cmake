# Every target of ours links Zorvane::Warnings; third-party headers come in as system headers.
option(ZORVANE_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)

add_library(ZorvaneWarnings INTERFACE)
add_library(Zorvane::Warnings ALIAS ZorvaneWarnings)
target_compile_options(ZorvaneWarnings INTERFACE
  -Wall -Wextra -Wconversion -Wnon-virtual-dtor
  # Before version 13, g++ finds overlapping copies inside std::string (GCC bug 105651).
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
  $<$<BOOL:${ZORVANE_WARNINGS_AS_ERRORS}>:-Werror>)

if(ZORVANE_SANITIZE)
  add_compile_options(-fsanitize=${ZORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ZORVANE_SANITIZE})
endif()
