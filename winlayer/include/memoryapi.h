#pragma once
#include "winnt.h"

// Describes the pages that have the same state as the page at an address. Within a module the allocation base
// is the module's handle. Returns the bytes written: the size of the description, or 0.
SIZE_T WINAPI VirtualQuery(LPCVOID address, PMEMORY_BASIC_INFORMATION information, SIZE_T size);
