# Writes OUTPUT: the licences of what is compiled into the module besides its own sources, as Debian's packages
# of it say them. The C and C++ libraries of the browser come with emscripten.
file(WRITE ${OUTPUT} "zorvela.wasm holds parts of these libraries.\n")
foreach(package gemmi-dev nlohmann-json3-dev emscripten)
  file(READ /usr/share/doc/${package}/copyright text)
  file(APPEND ${OUTPUT} "\n\n======== ${package}\n\n${text}")
endforeach()
