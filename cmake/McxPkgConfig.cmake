# Installs NAME.pc, made from the template, so that it stays right when the prefix is moved.
function(mcx_install_pkg_config template name)
  cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY "/prefix" OUTPUT_VARIABLE libdir)
  cmake_path(RELATIVE_PATH libdir BASE_DIRECTORY "/prefix" OUTPUT_VARIABLE libdir)
  set(MCX_PC_DIR "${libdir}/pkgconfig")
  set(prefix "/prefix")
  cmake_path(RELATIVE_PATH prefix BASE_DIRECTORY "/prefix/${MCX_PC_DIR}"
    OUTPUT_VARIABLE MCX_PC_PREFIX)
  configure_file("${template}" "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc" @ONLY)
  install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc" DESTINATION "${MCX_PC_DIR}"
    COMPONENT development)
endfunction()
