// Every test runs with the engine's tables built, as the engine builds them before anything else.
#include <gtest/gtest.h>

#include "board/init_tables.h"

namespace {

struct Tables : ::testing::Environment {
  void SetUp() override { vorlek::InitTables(); }
};
::testing::Environment* const tables = ::testing::AddGlobalTestEnvironment(new Tables);

}  // namespace
