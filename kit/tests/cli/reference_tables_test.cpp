// Where the program looks for its reference tables.
#include "cli/reference_tables.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "zorvela/error.h"

TEST(FindTables, TakesTheFolderGivenFirst) {
  setenv("ZORVELA_DIR", "/elsewhere", 1);
  EXPECT_EQ(zorvela::findTables("/given"), "/given");
  EXPECT_EQ(zorvela::findTables(""), "/elsewhere/tab");
  setenv("ZORVELA_DIR", "", 1);
  EXPECT_EQ(zorvela::findTables(""), "./tab");
  unsetenv("ZORVELA_DIR");
  EXPECT_EQ(zorvela::findTables(""), "./tab");
}

TEST(LoadTables, SaysHowToNameAnotherFolder) {
  try {
    zorvela::loadTables("/no/such/folder");
    FAIL() << "no error";
  } catch (const zorvela::TableError& e) {
    EXPECT_STREQ(
        e.what(),
        "/no/such/folder: there is no such folder; name the folder of the seven reference tables with "
        "--tables or its parent with ZORVELA_DIR");
  }
}
