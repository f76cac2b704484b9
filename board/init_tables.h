// board/init_tables.h — builds the attack tables, keys and square values. Runs once per process.
#pragma once

namespace vorlek {

void InitTables();

}  // namespace vorlek
