#include "pokermath/version.h"

const char* pokermath::Version() { return POKERMATH_VERSION_STRING; }
