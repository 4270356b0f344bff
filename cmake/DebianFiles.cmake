# Run by CPack on the installed files of each package before it packs them: adds what Debian's policy
# wants of a package (chapter 12: a copyright file, a change log, compressed manual pages).
# Documents are left as they are, since they link to each other.
cmake_minimum_required(VERSION 3.25)
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component VORN LIBRARY DEVELOPMENT)
  string(TOLOWER ${component} folder)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${folder}/usr/share)
  set(name ${CPACK_DEBIAN_${component}_PACKAGE_NAME})
  set(doc ${root}/doc/${name})
  # Those of the library have a folder of their own, since no file can be in two packages.
  if(EXISTS ${root}/doc/vorn AND NOT EXISTS ${doc})
    file(RENAME ${root}/doc/vorn ${doc})
  endif()
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${doc})
  file(WRITE ${doc}/changelog.Debian
       "vorn (${version}) unstable; urgency=medium

  * Packaged by the project's own build; see its CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
  if(EXISTS ${doc}/LICENSE)
    file(REMOVE ${doc}/LICENSE)
    file(CREATE_LINK copyright ${doc}/LICENSE SYMBOLIC)
    file(COPY_FILE ${doc}/CHANGELOG.md ${doc}/changelog)
  endif()
  file(GLOB plain ${doc}/changelog* ${root}/man/man1/*.1)
  execute_process(COMMAND gzip -9nf ${plain} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
