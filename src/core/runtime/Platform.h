#pragma once
// The platform's headers, in the order they must be read.
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
#include <ocidl.h>
