# Writes OUTPUT: the licences of the libraries that are linked into PROGRAMS, from Debian's PACKAGES and from TEXTS.
list(TRANSFORM PACKAGES REPLACE "(.+)" "/usr/share/doc/\\1/copyright" OUTPUT_VARIABLE files)
file(WRITE ${OUTPUT} "${PROGRAMS} has parts of these libraries.\n")
foreach(file IN LISTS files TEXTS)
  cmake_path(GET file PARENT_PATH folder)
  cmake_path(GET folder FILENAME name)
  file(READ ${file} text)
  file(APPEND ${OUTPUT} "\n\n======== ${name}\n\n${text}")
endforeach()
