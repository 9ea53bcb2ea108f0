# Installation: headers, the libraries, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(
    TARGETS ${QSTDLIB_LIBRARIES}
    EXPORT qstdlibTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

set(QSTDLIB_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qstdlib)
install(EXPORT qstdlibTargets NAMESPACE qstdlib:: DESTINATION ${QSTDLIB_CMAKE_DIR})
configure_package_config_file(cmake/qstdlibConfig.cmake.in ${PROJECT_BINARY_DIR}/qstdlibConfig.cmake
                              INSTALL_DESTINATION ${QSTDLIB_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qstdlibConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qstdlibConfig.cmake ${PROJECT_BINARY_DIR}/qstdlibConfigVersion.cmake
        DESTINATION ${QSTDLIB_CMAKE_DIR})

# The prefix is found from where the file lies, so that an installed tree may be moved.
file(RELATIVE_PATH QSTDLIB_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/qstdlib.pc.in ${PROJECT_BINARY_DIR}/qstdlib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qstdlib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
