# Writes OUTPUT, a C++ file with the texts of the tables in the list TABLES.
set(entries "")
foreach(path IN LISTS TABLES)
  cmake_path(GET path FILENAME name)
  file(READ ${path} text)
  string(APPEND entries "      {\"${name}\", R\"table(${text})table\"},\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"embedded_tables.h\"

namespace zorvela {

std::map<std::string, std::string> embeddedTables() {
  return {
${entries}  };
}

}  // namespace zorvela
")
