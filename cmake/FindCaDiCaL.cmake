# Finds the SAT solver CaDiCaL, which its packages ship as a static library without CMake files.
# Defines the imported target CaDiCaL::CaDiCaL.
find_path(CaDiCaL_INCLUDE_DIR cadical.hpp)
find_library(CaDiCaL_LIBRARY cadical)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CaDiCaL REQUIRED_VARS CaDiCaL_LIBRARY CaDiCaL_INCLUDE_DIR)
mark_as_advanced(CaDiCaL_INCLUDE_DIR CaDiCaL_LIBRARY)
if(CaDiCaL_FOUND AND NOT TARGET CaDiCaL::CaDiCaL)
  add_library(CaDiCaL::CaDiCaL UNKNOWN IMPORTED)
  set_target_properties(
    CaDiCaL::CaDiCaL PROPERTIES IMPORTED_LOCATION "${CaDiCaL_LIBRARY}"
                                INTERFACE_INCLUDE_DIRECTORIES "${CaDiCaL_INCLUDE_DIR}")
endif()
