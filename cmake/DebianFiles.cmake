# Run by CPack on the installed files of each package before it packs them: adds what Debian's policy
# wants of a package (chapter 12: a copyright file, a change log, compressed manual pages).
cmake_minimum_required(VERSION 3.25)
set(copyright
    "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: vorn
Comment: The command and the shared library contain CaDiCaL 1.5, which is under
 the same licence: Copyright (c) 2016-2021 Armin Biere, Copyright (c) 2020-2021
 Mathias Fleury, Copyright (c) 2020-2021 Nils Froleyks.

Files: *
Copyright: 2026 The Vorn developers
License: Expat
")
file(STRINGS "${CPACK_RESOURCE_FILE_LICENSE}" lines)
list(SUBLIST lines 4 -1 lines)
foreach(line IN LISTS lines)
  if(line STREQUAL "")
    set(line ".")
  endif()
  string(APPEND copyright " ${line}\n")
endforeach()

set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component VORN LIBRARY DEVELOPMENT)
  string(TOLOWER ${component} folder)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${folder}/usr/share)
  set(name ${CPACK_DEBIAN_${component}_PACKAGE_NAME})
  set(doc ${root}/doc/${name})
  file(WRITE ${doc}/copyright "${copyright}")
  file(WRITE ${doc}/changelog.Debian
       "vorn (${version}) unstable; urgency=medium

  * Packaged by the project's own build; see its CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
  file(REMOVE ${doc}/LICENSE)
  if(EXISTS ${doc}/CHANGELOG.md)
    file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
  endif()
  file(GLOB plain ${doc}/changelog* ${root}/man/man1/*.1)
  execute_process(COMMAND gzip -9nf ${plain} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
