# find_package(zorvela) gives zorvela::kit: shift files to proteins, predictions and reports.
include(CMakeFindDependencyMacro)
find_dependency(ZLIB)
include(${CMAKE_CURRENT_LIST_DIR}/zorvelaTargets.cmake)
