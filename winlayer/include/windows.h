#pragma once
// The Windows API as far as the product calls it, under Windows' own header names. Each header pairs with one
// source of the layer; what is not implemented is not declared.

#include "errhandlingapi.h"
#include "fileapi.h"
#include "handleapi.h"
#include "ioapiset.h"
#include "libloaderapi.h"
#include "minwindef.h"
#include "processthreadsapi.h"
#include "profileapi.h"
#include "securitybaseapi.h"
#include "stringapiset.h"
#include "synchapi.h"
#include "sysinfoapi.h"
#include "winbase.h"
#include "winerror.h"
#include "winnls.h"
#include "winnt.h"
#include "winreg.h"
#include "winuser.h"
