# Debian packages, one for each component: libquor2d1, libquor2d-dev and, where it is built, quor2d.
#
# The libraries go where Debian looks for them only when the prefix is /usr at the time of configuration; scripts/package
# sees to that. What EXCLUDE_FROM_ALL marks is for packages and no part of an ordinary installation.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quor2d)
set(CPACK_PACKAGE_VENDOR "Quor2D")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own; this one would stand before it
set(CPACK_PACKAGE_CONTACT "Quor2D maintainers <maintainers@quor2d.invalid>")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/CompressManPages.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# quor2d_package(<component> <package> <section> <summary> <description>)
macro(quor2d_package component package section summary description)
    string(TOUPPER ${component} COMPONENT)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${COMPONENT}_DESCRIPTION "${summary}\n${description}")
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
            COMPONENT ${component} EXCLUDE_FROM_ALL)
    install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
            COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz)

unset(CPACK_COMPONENTS_ALL)
quor2d_package(runtime libquor2d${PROJECT_VERSION_MAJOR} libs "Delaunay triangulation and meshing in two dimensions"
               "A library for Delaunay triangulation with constraints, zones and refinement,\n\
whose decisions are exact for every finite double.")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n") # once for all packages of an installation
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)

quor2d_package(development libquor2d-dev libdevel "Delaunay triangulation and meshing, development files"
               "Headers, archive, CMake package, pkg-config file, documentation and examples.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libquor2d${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), libgmp-dev")
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libquor2d-dev COMPONENT development EXCLUDE_FROM_ALL)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libquor2d-dev COMPONENT development
        EXCLUDE_FROM_ALL FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.cpp" PATTERN "*.h" PATTERN "*.txt"
        PATTERN "*.geojson" PATTERN "*.csv"
        PATTERN CMakeLists.txt EXCLUDE)

if(TARGET quor2d_command)
    quor2d_package(tool quor2d math "Delaunay triangulation and meshing, command line tool"
                   "Makes meshes of points, lines and polygons, checks them, and converts between\n\
formats.")
    set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "libquor2d${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})")
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}) # the library is not installed yet
endif()
include(CPack)
