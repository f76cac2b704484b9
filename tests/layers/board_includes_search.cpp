// Must not build: the board knows nothing of the search.
#include "search/search.h"
