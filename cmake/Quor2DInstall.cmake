# Headers in include/quor2d, both libraries, find_package(Quor2D) and quor2d.pc.
#
# Three components: "runtime" is what programs need to run, "development" what it takes to build them, and "tool" is the
# command; its folder need not name it.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Quor2D)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

# Installed programs find the library from where they lie, so that an installed tree can be moved.
file(RELATIVE_PATH libdir_from_bindir ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(CMAKE_INSTALL_RPATH $ORIGIN/${libdir_from_bindir})

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quor2d FILES_MATCHING PATTERN "*.h")
install(TARGETS quor2d EXPORT Quor2DTargets LIBRARY COMPONENT runtime NAMELINK_COMPONENT development)
install(EXPORT Quor2DTargets NAMESPACE Quor2D:: DESTINATION ${package_dir})

# A set of its own: only the archive makes its users link GMP themselves.
install(TARGETS quor2d_static EXPORT Quor2DStaticTargets)
install(EXPORT Quor2DStaticTargets NAMESPACE Quor2D:: DESTINATION ${package_dir})

configure_package_config_file(cmake/Quor2DConfig.cmake.in ${PROJECT_BINARY_DIR}/Quor2DConfig.cmake
                              INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Quor2DConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Quor2DConfig.cmake ${PROJECT_BINARY_DIR}/Quor2DConfigVersion.cmake
              cmake/FindGMP.cmake DESTINATION ${package_dir})

# The file finds its prefix from where it lies, so that an installed tree can be moved.
set(pc_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pc_prefix ${pc_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
file(RELATIVE_PATH pc_libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH pc_includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/quor2d.pc.in ${PROJECT_BINARY_DIR}/quor2d.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quor2d.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME tool)
