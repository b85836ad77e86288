# Installation: the library file, the public headers, the client library, the program, the
# CMake package (find_package(brindleway CONFIG) gives brindleway::brindleway and
# brindleway::client), the pkg-config files, and the Debian package that cpack makes of them.
include(CMakePackageConfigHelpers)

set(BRINDLEWAY_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/brindleway)
set(BRINDLEWAY_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS brindlewayProj brindleway_client EXPORT brindlewayTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
    NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/brindleway DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/brindleway/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/brindleway COMPONENT development)
if(BRINDLEWAY_TOOLS)
  install(TARGETS brindleway RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()

install(EXPORT brindlewayTargets NAMESPACE brindleway:: DESTINATION ${BRINDLEWAY_CMAKE_DIR}
  COMPONENT development)
configure_package_config_file(cmake/brindlewayConfig.cmake.in
  ${PROJECT_BINARY_DIR}/brindlewayConfig.cmake INSTALL_DESTINATION ${BRINDLEWAY_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/brindlewayConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/brindlewayConfig.cmake
  ${PROJECT_BINARY_DIR}/brindlewayConfigVersion.cmake
  DESTINATION ${BRINDLEWAY_CMAKE_DIR} COMPONENT development)

# The pkg-config files find the prefix from their own place, so that an installation moved
# elsewhere (an unpacked package, another prefix) still gives the right paths.
file(RELATIVE_PATH BRINDLEWAY_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
  ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" BRINDLEWAY_PC_TO_PREFIX "${BRINDLEWAY_PC_TO_PREFIX}")
file(RELATIVE_PATH BRINDLEWAY_PC_LIBDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH BRINDLEWAY_PC_INCLUDEDIR ${CMAKE_INSTALL_PREFIX}
  ${CMAKE_INSTALL_FULL_INCLUDEDIR})
foreach(pc IN ITEMS brindleway brindleway-client)
  configure_file(cmake/${pc}.pc.in ${PROJECT_BINARY_DIR}/${pc}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${pc}.pc DESTINATION ${BRINDLEWAY_PKGCONFIG_DIR}
    COMPONENT development)
endforeach()

# The Debian package: one package with everything above (cpack -G DEB). A project that adds
# this one as a subdirectory keeps its own package settings.
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()
set(CPACK_PACKAGE_NAME brindleway)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "data-access component of an online shop")
set(CPACK_PACKAGE_DESCRIPTION
  "The brindleway component (brindlewayProj.so) opens orders, fills and changes baskets,\n\
places orders for delivery, lists and reads orders, and deletes them, on a SQLite store or a PostgreSQL database.\n\
The package holds the library, its C++ headers, the CMake package and pkg-config files,\n\
the static client library for late-bound calls, and the brindleway program.")
set(CPACK_PACKAGE_CONTACT "brindleway maintainers <maintainers@users.noreply.c-seed-95188c27.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The package's own library satisfies the program's dependency on it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_GENERATOR DEB)
include(CPack)
