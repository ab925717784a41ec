# Install rules: headers, library, CMake package.
include(CMakePackageConfigHelpers)

set(mcx_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/mcxprsutil")

install(TARGETS mcxprsutil EXPORT mcxprsutilTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
    NAMELINK_COMPONENT development)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/mcmem" "${PROJECT_SOURCE_DIR}/include/mcxprsutil"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development FILES_MATCHING PATTERN "*.h")
install(FILES "${PROJECT_BINARY_DIR}/include/mcxprsutil/Version.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mcxprsutil" COMPONENT development)
install(EXPORT mcxprsutilTargets NAMESPACE mcxprsutil::
  DESTINATION "${mcx_package_dir}" COMPONENT development)

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/mcxprsutilConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/mcxprsutilConfig.cmake"
  INSTALL_DESTINATION "${mcx_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/mcxprsutilConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/mcxprsutilConfig.cmake"
    "${PROJECT_BINARY_DIR}/mcxprsutilConfigVersion.cmake"
  DESTINATION "${mcx_package_dir}" COMPONENT development)

include(McxPkgConfig)
mcx_install_pkg_config("${PROJECT_SOURCE_DIR}/cmake/mcxprsutil.pc.in" mcxprsutil)
