# Installation: the command with its manual page and completions, the library in both forms with the
# headers that its users need, and what finds it again: find_package(vorn) and pkg-config.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vorn)

# The command.
install(TARGETS vorn_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT vorn)
configure_file(man/vorn.1.in ${PROJECT_BINARY_DIR}/man/vorn.1 @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/man/vorn.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT vorn)
install(FILES completions/vorn.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        COMPONENT vorn RENAME vorn)
install(FILES completions/_vorn DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
        COMPONENT vorn)
install(FILES completions/vorn.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT vorn)

# What users read, with the command and with the library, in the folders of the tree, so that links
# from one file to another hold.
foreach(component vorn development)
  install(FILES README.md LICENSE CHANGELOG.md CONTRIBUTING.md cmake/copyright
          DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT ${component})
  install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT ${component}
          FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
endforeach()
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT vorn
        FILES_MATCHING PATTERN "*.smt2")
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
        USE_SOURCE_PERMISSIONS)

# The library. Those who link it statically need all that it is made of, so each form is a set of
# targets of its own.
install(TARGETS vorn_shared EXPORT vornSharedTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS vorn EXPORT vornStaticTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
                                                      COMPONENT development)
foreach(form Shared Static)
  install(EXPORT vorn${form}Targets NAMESPACE vorn:: DESTINATION ${cmake_dir} COMPONENT development)
endforeach()

# Headers: what a solver is built with, which the reference describes, and what those headers include.
# The others are the library's own, and the shared library does not show what they declare.
set(public_headers
    bv/aig.h
    bv/aiger.h
    bv/bit_blaster.h
    bv/clause_sink.h
    bv/cnf.h
    bv/dimacs.h
    bv/sat_solver.h
    bv/simulator.h
    c/encoder.h
    c/kinds.h
    c/operations.h
    c/solver.h
    c/sorts.h
    c/terms.h
    c/text.h
    c/types.h
    c/values.h
    c/vorn.h
    fp/fp_bv_encoder.h
    fp/ieee_bv_encoder.h
    fp/labels.h
    semantics/evaluator.h
    semantics/open_terms.h
    smt2/error.h
    smt2/interpreter.h
    smt2/model_text.h
    solver/congruences.h
    solver/encoding.h
    solver/explanation.h
    solver/solver.h
    terms/bv_number.h
    terms/engine.h
    terms/float_literals.h
    terms/float_text.h
    terms/ieee_arithmetic.h
    terms/ieee_float.h
    terms/operations.h
    terms/qnumber.h
    terms/script_printer.h
    terms/term.h
    terms/term_manager.h
    utils/export.h
    utils/hashtable.h
    utils/logger.h
    utils/memory_pool.h
    utils/termination_test.h)
set(included_headers
    bv/circuits.h
    bv/gates.h
    smt2/dialect.h
    smt2/instances.h
    smt2/lexer.h
    smt2/operators.h
    smt2/parser.h
    smt2/sort_value.h
    smt2/symbol_table.h
    smt2/token_stream.h
    smt2/value.h
    semantics/application.h
    semantics/array_values.h
    utils/termination_poll.h
    utils/trail.h)
foreach(header ${public_headers} ${included_headers})
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES vorn/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorn/${folder}
          COMPONENT development)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/include/vorn/version.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorn COMPONENT development)

# What finds them.
configure_package_config_file(cmake/vornConfig.cmake.in ${PROJECT_BINARY_DIR}/vornConfig.cmake
                              INSTALL_DESTINATION ${cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vornConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/vornConfig.cmake ${PROJECT_BINARY_DIR}/vornConfigVersion.cmake
        cmake/FindGMP.cmake cmake/FindCaDiCaL.cmake
  DESTINATION ${cmake_dir}
  COMPONENT development)
# Relative to the file itself, so that an installation can be moved.
file(RELATIVE_PATH VORN_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
foreach(name vorn vorn-static)
  configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endforeach()

# The reference of the public headers: `doxygen Doxyfile` in the build directory.
list(TRANSFORM public_headers PREPEND ${PROJECT_SOURCE_DIR}/vorn/)
list(APPEND public_headers ${PROJECT_BINARY_DIR}/include/vorn/version.h)
list(JOIN public_headers " " VORN_DOXYGEN_INPUT)
configure_file(docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
