# Finds the GNU multiple-precision arithmetic library and defines GMP::gmp; GMP_LIBRARIES and GMP_INCLUDE_DIRS are for
# other packages, such as CGAL, that look for GMP and meet this module.
find_path(GMP_INCLUDE_DIR gmp.h)
find_library(GMP_LIBRARY gmp)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GMP REQUIRED_VARS GMP_LIBRARY GMP_INCLUDE_DIR)
mark_as_advanced(GMP_INCLUDE_DIR GMP_LIBRARY)
if(GMP_FOUND AND NOT TARGET GMP::gmp)
    add_library(GMP::gmp UNKNOWN IMPORTED)
    set_target_properties(GMP::gmp PROPERTIES IMPORTED_LOCATION ${GMP_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES
                                                                            ${GMP_INCLUDE_DIR})
endif()
if(GMP_FOUND)
    set(GMP_LIBRARIES ${GMP_LIBRARY})
    set(GMP_INCLUDE_DIRS ${GMP_INCLUDE_DIR})
endif()
