# Debian packages: `cpack -G DEB` makes three, as Debian divides a library. The command is linked with
# the static library and needs neither of the others.
set(CPACK_PACKAGE_VENDOR "The Vorn developers")
set(CPACK_PACKAGE_CONTACT "The Vorn developers <vorn@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "floating-point layer of an SMT solver")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL vorn library development)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)

set(runtime libvorn${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_DEBIAN_VORN_PACKAGE_NAME vorn)
set(CPACK_DEBIAN_VORN_PACKAGE_SECTION math)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${runtime})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/triggers")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvorn-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The dev package has nothing that dpkg-shlibdeps could look at; what follows are the headers of the
# libraries that the headers or the static library ask for.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${runtime} (= ${PROJECT_VERSION}-1), libgmp-dev, libcadical-dev, libfmt-dev")

set(CPACK_COMPONENT_VORN_DESCRIPTION
    "The command vorn decides SMT-LIB scripts over floating-point numbers and
bit-vectors, by exact circuits for IEEE 754 arithmetic and a SAT solver.")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
    "Vorn turns terms of the theory of IEEE 754 floating point into bit-vector
terms. This package has the shared library.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Vorn turns terms of the theory of IEEE 754 floating point into bit-vector
terms. This package has the headers, the static library, and what CMake and
pkg-config need to find them.")
include(CPack)
