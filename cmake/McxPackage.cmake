# Debian packages by CPack: the library, and what a developer needs to build against it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME mcxprsutil)
set(MCXPRSUTIL_MAINTAINER "mcxprsutil maintainers <mcxprsutil@localhost>" CACHE STRING
  "Who answers for the packages: the address in their Maintainer field")
set(CPACK_PACKAGE_CONTACT "${MCXPRSUTIL_MAINTAINER}")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libmcxprsutil${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmcxprsutil-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libmcxprsutil${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), libxerces-c-dev, libicu-dev")
# Both libraries are in the build folder, where dpkg-shlibdeps must find them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  "${PROJECT_BINARY_DIR}" "${PROJECT_BINARY_DIR}/platform")
include(CPack)
