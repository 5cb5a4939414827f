# zorvela_python_test(<name> <file> [<label>...]): a file of Python unit tests as one CTest entry.
#
# Labels: slow (more than a second or two), data (unpacks the real proteins of data/), docs (compares documents with the
# programs), web (needs what `script/web build` makes), browser (and Chromium), deep (calls of the system that fail, figures,
# bounds of memory and time). script/test chooses by them.
find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)
# The system's Python before any other: Debian's packages are for that one.
find_program(ZORVELA_TEST_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(ZORVELA_TEST_PYTHON python3 REQUIRED)

# Sanitizers keep freed memory for a while and shadow the rest.
set(ZORVELA_MEMORY_LIMIT_MIB 512)
if(ZORVELA_SANITIZE)
  set(ZORVELA_MEMORY_LIMIT_MIB 1024)
endif()

set(ZORVELA_PYTHON_TESTS ${CMAKE_CURRENT_LIST_DIR})
set(ZORVELA_TEST_REPORTS ${PROJECT_BINARY_DIR}/test-reports)
file(MAKE_DIRECTORY ${ZORVELA_TEST_REPORTS})

function(zorvela_python_test name file)
  cmake_path(ABSOLUTE_PATH file OUTPUT_VARIABLE path)
  cmake_path(GET path PARENT_PATH folder)
  add_test(NAME ${name} COMMAND ${ZORVELA_TEST_PYTHON} -B -m zorvela_tests ${path} WORKING_DIRECTORY ${folder})
  set(environment
    "PYTHONPATH=${ZORVELA_PYTHON_TESTS}"
    "ZORVELA_SOURCE=${PROJECT_SOURCE_DIR}"
    "ZORVELA_PROGRAM=$<TARGET_FILE:zorvela>"
    "ZORVELA_MEMORY_LIMIT_MIB=${ZORVELA_MEMORY_LIMIT_MIB}"
    "ZORVELA_SANITIZE=${ZORVELA_SANITIZE}"
    "ZORVELA_TEST_REPORT=${ZORVELA_TEST_REPORTS}/${name}.xml")
  if(ZORVELA_KIT)
    list(APPEND environment "ZORVELA_KIT=$<TARGET_FILE:zorvela-kit>")
  endif()
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "${environment}" SKIP_RETURN_CODE 77 TIMEOUT 2400 LABELS "${ARGN}")
endfunction()

# zorvela_unit_test(<name> <target>): all tests of a GoogleTest program as one CTest entry.
function(zorvela_unit_test name target)
  add_test(NAME ${name} COMMAND ${target} --gtest_brief=1)
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "GTEST_OUTPUT=xml:${ZORVELA_TEST_REPORTS}/${name}.xml" TIMEOUT 300 LABELS unit)
endfunction()
