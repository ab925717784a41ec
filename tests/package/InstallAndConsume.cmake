# Installs the build into an empty prefix, then builds and runs a project that finds both packages
# there, and builds the library once more against the installed common library.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " text)
    message(FATAL_ERROR "${text}\n${output}")
  endif()
endfunction()

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
set(LIB_DIR "${prefix}/${INSTALL_LIBDIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
if(COVERAGE)
  set(flags "${flags} --coverage")
endif()
set(configure "${CMAKE_COMMAND}" -G "${GENERATOR}" "-DCMAKE_CXX_COMPILER=${COMPILER}"
  "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_PREFIX_PATH=${prefix}")

run(${configure} -S "${SOURCE_DIR}/tests/package/consumer" -B "${WORK_DIR}/consumer")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/consumer")
run("${WORK_DIR}/consumer/consumer" "${SOURCE_DIR}/examples/data/iris/setosa.pmml")

# The same program, built without CMake. It finds the libraries where they were installed.
execute_process(COMMAND "${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${LIB_DIR}/pkgconfig"
    pkg-config --cflags --libs mcxprsutil
  RESULT_VARIABLE result OUTPUT_VARIABLE pkg_flags OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "pkg-config does not find mcxprsutil")
endif()
separate_arguments(pkg_flags UNIX_COMMAND "${flags} ${pkg_flags}")
run("${COMPILER}" -std=c++17 "${SOURCE_DIR}/tests/package/consumer/main.cpp" -o
  "${WORK_DIR}/by_pkg_config" ${pkg_flags} "-Wl,-rpath,${LIB_DIR}")
run("${WORK_DIR}/by_pkg_config" "${SOURCE_DIR}/examples/data/iris/setosa.pmml")

if(NOT SANITIZE AND NOT COVERAGE)
  run(${configure} -S "${SOURCE_DIR}" -B "${WORK_DIR}/external" -DMCXPRSUTIL_PLATFORM=external
    -DMCXPRSUTIL_BUILD_TESTS=OFF -DMCXPRSUTIL_BUILD_EXAMPLES=OFF -DCMAKE_BUILD_TYPE=Debug)
  run("${CMAKE_COMMAND}" --build "${WORK_DIR}/external")
endif()
