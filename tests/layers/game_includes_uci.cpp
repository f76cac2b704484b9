// Must not build: the xboard loop and the book know nothing of the UCI front end.
#include "uci/uci_go.h"
