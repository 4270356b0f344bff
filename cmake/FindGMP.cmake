# Finds GMP with its C++ interface. Defines the imported targets GMP::GMP and GMP::GMPXX.
find_path(GMP_INCLUDE_DIR gmpxx.h)
find_library(GMP_LIBRARY gmp)
find_library(GMPXX_LIBRARY gmpxx)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GMP REQUIRED_VARS GMP_LIBRARY GMPXX_LIBRARY GMP_INCLUDE_DIR)
mark_as_advanced(GMP_INCLUDE_DIR GMP_LIBRARY GMPXX_LIBRARY)
if(GMP_FOUND AND NOT TARGET GMP::GMP)
  add_library(GMP::GMP UNKNOWN IMPORTED)
  set_target_properties(GMP::GMP PROPERTIES IMPORTED_LOCATION "${GMP_LIBRARY}"
                                            INTERFACE_INCLUDE_DIRECTORIES "${GMP_INCLUDE_DIR}")
  add_library(GMP::GMPXX UNKNOWN IMPORTED)
  set_target_properties(GMP::GMPXX PROPERTIES IMPORTED_LOCATION "${GMPXX_LIBRARY}"
                                              INTERFACE_LINK_LIBRARIES GMP::GMP)
endif()
