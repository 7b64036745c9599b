#pragma once
// The window routines moved below the classes, to shared/Windows.h; this name stays for
// the code that still includes it.
#include "shared/Windows.h"
