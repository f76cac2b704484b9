// Must not build: the search knows nothing of the game and its protocols.
#include "game/book.h"
