#pragma once
#include "minwindef.h"

struct HICON__;
struct HMENU__;
struct HRGN__;
using HICON = HICON__*;
using HCURSOR = HICON;
using HMENU = HMENU__*;
using HRGN = HRGN__*;

struct POINT {
    LONG x;
    LONG y;
};
using LPPOINT = POINT*;
using LPSIZE = SIZE*;
using LPCRECT = const RECT*;
