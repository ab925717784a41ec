# Compile options that every target of the project shares.

if(MCXPRSUTIL_SANITIZE)
  add_compile_options("-fsanitize=${MCXPRSUTIL_SANITIZE}" -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options("-fsanitize=${MCXPRSUTIL_SANITIZE}")
endif()

# Only the libraries are counted: what runs of the tests themselves tells nothing.
function(mcx_count_coverage target)
  if(MCXPRSUTIL_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

function(mcx_compile_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
  if(MCXPRSUTIL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# Only the symbols that the map names leave the library: hidden visibility alone lets some
# instantiations of the standard library through.
function(mcx_version_script target map)
  target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${map}")
  if(NOT MCXPRSUTIL_SANITIZE)
    target_link_options(${target} PRIVATE "LINKER:--no-undefined")
  endif()
endfunction()
