# zlib from its sources, for systems whose libraries are not at hand.
enable_language(C)
file(GLOB zlib_sources ${ZORVELA_ZLIB_SOURCE}/*.c)
list(FILTER zlib_sources EXCLUDE REGEX "/gz[a-z]+\\.c$")  # its own reading of files
add_library(zlib STATIC ${zlib_sources})
target_compile_options(zlib PRIVATE -w)
add_library(ZLIB::ZLIB INTERFACE IMPORTED GLOBAL)
target_include_directories(ZLIB::ZLIB INTERFACE ${ZORVELA_ZLIB_SOURCE})
target_link_libraries(ZLIB::ZLIB INTERFACE zlib)
