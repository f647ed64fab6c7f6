# Installs the libraries, their headers (folders kept) and a CMake package.
include(CMakePackageConfigHelpers)

install(TARGETS GZHost GZ EXPORT GZTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(folder host resource link persistent scriptedit)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/GZ/${folder}
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT GZTargets NAMESPACE GZ:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/GZ)
# The scripting layer is the package's optional component GZPython (its header uses the
# standard library alone; CPython stays a private dependency of the shared library).
if(TARGET GZPython)
  install(TARGETS GZPython EXPORT GZPythonTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/python/HostPython.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/GZ/python)
  install(EXPORT GZPythonTargets NAMESPACE GZ:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/GZ)
endif()
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/GZConfig.cmake.in
  ${PROJECT_BINARY_DIR}/GZConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/GZ)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/GZConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/GZConfig.cmake ${PROJECT_BINARY_DIR}/GZConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/GZ)
