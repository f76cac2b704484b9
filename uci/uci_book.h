// uci/uci_book.h — the opening book of the UCI front end, from the file its BookFile option names.
#pragma once
#include <string>

namespace vorlek::uci {

constexpr char DEFAULT_BOOK_FILE[] = "Aperture.txt";

// Loads the book into the engine's book table. A name without a folder is looked for in the working
// folder, then beside the executable, then where an install puts the shipped book (../share/vorlek from the
// executable's folder). Returns what an interface is told: the file loaded and its positions, or why no
// book could be loaded; the table is then empty and the engine plays without a book.
std::string SearchAndLoadBook(const std::string& name, const std::string& executableFolder);

// Empties the book table: the engine plays without a book.
void ClearBook();

}  // namespace vorlek::uci
