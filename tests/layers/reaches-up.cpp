// A file of a lower layer that includes a header of a higher one: the check must refuse it.
#include "core/runtime/Variant.h"
#include "desktop/EnumChid.h"
