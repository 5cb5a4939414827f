# The libraries of headers for builds for another system. They stand in /usr/include among the headers of the host,
# which are not those of the other system's C library, so they get a folder of their own.
set(KIT_HEADERS ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${KIT_HEADERS})
foreach(library CLI gemmi nlohmann)
  if(NOT IS_DIRECTORY /usr/include/${library})
    message(FATAL_ERROR "/usr/include/${library} is missing; script/packages says what to install")
  endif()
  file(CREATE_LINK /usr/include/${library} ${KIT_HEADERS}/${library} SYMBOLIC)
endforeach()

foreach(library CLI11::CLI11 nlohmann_json::nlohmann_json)
  add_library(${library} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${library} SYSTEM INTERFACE ${KIT_HEADERS})
endforeach()
set(GEMMI_INCLUDE_DIR ${KIT_HEADERS})
