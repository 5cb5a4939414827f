# Toolchain: builds for another system with the C and C++ compiler of Zig, which contains the system's headers and
# libraries. ZORVELA_TARGET names the system (aarch64-linux-musl), ZORVELA_ZIG the compiler's program.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZORVELA_TARGET ZORVELA_ZIG)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR ${ZORVELA_TARGET})
if(ZORVELA_TARGET MATCHES "macos")
  set(CMAKE_SYSTEM_NAME Darwin)
  # Its linker does not know an option of CMake's check of the binary interface, and no library is renamed.
  set(CMAKE_C_ABI_COMPILED TRUE)
  set(CMAKE_CXX_ABI_COMPILED TRUE)
  set(CMAKE_SIZEOF_VOID_P 8)
  set(CMAKE_INSTALL_NAME_TOOL unused)
else()
  set(CMAKE_SYSTEM_NAME Linux)
endif()

set(CMAKE_C_COMPILER ${ZORVELA_ZIG} cc)
set(CMAKE_CXX_COMPILER ${ZORVELA_ZIG} c++)
set(CMAKE_C_COMPILER_TARGET ${ZORVELA_TARGET})
set(CMAKE_CXX_COMPILER_TARGET ${ZORVELA_TARGET})
foreach(language C CXX)
  # From the first check on: without it, Zig builds its libraries a second time, for debugging.
  set(CMAKE_${language}_FLAGS_INIT -O2)
  set(CMAKE_${language}_ARCHIVE_CREATE "\"${ZORVELA_ZIG}\" ar qcD <TARGET> <OBJECTS>")
  set(CMAKE_${language}_ARCHIVE_FINISH "\"${ZORVELA_ZIG}\" ranlib -D <TARGET>")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT -s)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
