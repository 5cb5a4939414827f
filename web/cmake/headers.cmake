# The libraries of headers that the module is compiled with. They stand in /usr/include among the headers of
# the host, which are not those of the browser's C library, so they get a folder of their own.
set(WEB_HEADERS ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${WEB_HEADERS})
foreach(library gemmi nlohmann)
  if(NOT IS_DIRECTORY /usr/include/${library})
    message(FATAL_ERROR "/usr/include/${library} is missing; script/web installs it")
  endif()
  file(CREATE_LINK /usr/include/${library} ${WEB_HEADERS}/${library} SYMBOLIC)
endforeach()

add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${WEB_HEADERS})
set(GEMMI_INCLUDE_DIR ${WEB_HEADERS})
