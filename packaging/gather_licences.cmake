# Writes OUTPUT: the licences of what is linked into PROGRAMS besides their own sources, as Debian's PACKAGES of it say
# them, and those in TEXTS.
list(TRANSFORM PACKAGES REPLACE "(.+)" "/usr/share/doc/\\1/copyright" OUTPUT_VARIABLE files)
file(WRITE ${OUTPUT} "${PROGRAMS} has parts of these libraries.\n")
foreach(file IN LISTS files TEXTS)
  cmake_path(GET file PARENT_PATH folder)
  cmake_path(GET folder FILENAME name)
  file(READ ${file} text)
  file(APPEND ${OUTPUT} "\n\n======== ${name}\n\n${text}")
endforeach()
