#pragma once
#include "minwindef.h"

struct HICON__;
struct HMENU__;
using HICON = HICON__*;
using HCURSOR = HICON;
using HMENU = HMENU__*;

struct POINT {
    LONG x;
    LONG y;
};
using LPPOINT = POINT*;
