# The warnings that every target of ours is compiled with.
add_library(keldll_warnings INTERFACE)
if(MSVC)
  target_compile_options(keldll_warnings INTERFACE /W4 /utf-8)
  if(KELDLL_WARNINGS_AS_ERRORS)
    target_compile_options(keldll_warnings INTERFACE /WX)
  endif()
else()
  target_compile_options(keldll_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
    -Woverloaded-virtual -Wnull-dereference)
  if(KELDLL_WARNINGS_AS_ERRORS)
    target_compile_options(keldll_warnings INTERFACE -Werror)
  endif()
endif()
