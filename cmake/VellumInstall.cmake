# Install rules and the CMake package (find_package(Vellum) giving Vellum::Core,
# Vellum::XMLUtils and Vellum::XMLBuilder), for an installed copy and for the build tree, plus a pkg-config file.
include(CMakePackageConfigHelpers)

set(VELLUM_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/Vellum"
    CACHE STRING "Where the CMake package files are installed, relative to the prefix")

# Installed libraries find each other beside themselves, whatever the consumer's run path.
set_target_properties(Vellum_Core Vellum_XMLUtils Vellum_XMLBuilder PROPERTIES
    INSTALL_RPATH "$ORIGIN")

install(TARGETS Vellum_Core Vellum_XMLUtils Vellum_XMLBuilder
    EXPORT VellumTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/Vellum
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
install(FILES ${PROJECT_BINARY_DIR}/include/Vellum/Core/Export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Vellum/Core)
install(FILES ${PROJECT_BINARY_DIR}/include/Vellum/XMLUtils/Export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Vellum/XMLUtils)
install(FILES ${PROJECT_BINARY_DIR}/include/Vellum/XMLBuilder/Export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Vellum/XMLBuilder)

install(EXPORT VellumTargets
    NAMESPACE Vellum::
    FILE VellumTargets.cmake
    DESTINATION ${VELLUM_INSTALL_CMAKEDIR})

# The installed package.
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VellumConfig.cmake.in
    ${PROJECT_BINARY_DIR}/package/VellumConfig.cmake
    INSTALL_DESTINATION ${VELLUM_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VellumConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/VellumConfig.cmake
    ${PROJECT_BINARY_DIR}/VellumConfigVersion.cmake
    DESTINATION ${VELLUM_INSTALL_CMAKEDIR})

# The build tree as a package: -DVellum_DIR=<build dir> uses the library where it was built.
export(EXPORT VellumTargets
    NAMESPACE Vellum::
    FILE ${PROJECT_BINARY_DIR}/VellumTargets.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VellumConfig.cmake.in
    ${PROJECT_BINARY_DIR}/VellumConfig.cmake
    INSTALL_DESTINATION ${PROJECT_BINARY_DIR}
    INSTALL_PREFIX ${PROJECT_BINARY_DIR})

# pkg-config. With a relative library directory the file locates the prefix from its own
# place, so it stays right when the install prefix is chosen at install time; absolute
# directories are written as they are.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(VELLUM_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
    set(VELLUM_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
else()
    file(RELATIVE_PATH vellum_pc_up "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
    string(REGEX REPLACE "/$" "" vellum_pc_up "${vellum_pc_up}")
    set(VELLUM_PC_PREFIX "\${pcfiledir}/${vellum_pc_up}")
    set(VELLUM_PC_LIBDIR "\${exec_prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(VELLUM_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
else()
    set(VELLUM_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/vellum.pc.in ${PROJECT_BINARY_DIR}/vellum.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vellum.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
