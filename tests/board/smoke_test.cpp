#include <gtest/gtest.h>

#include "board/init_tables.h"
#include "board/position.h"

TEST(Smoke, InitialPositionKey) {
  vorlek::InitTables();
  EXPECT_EQ(vorlek::InitialPosition().own, vorlek::INITIAL_OWN);
}
