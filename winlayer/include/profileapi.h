#pragma once
#include "winnt.h"

BOOL WINAPI QueryPerformanceCounter(LARGE_INTEGER* count);
BOOL WINAPI QueryPerformanceFrequency(LARGE_INTEGER* frequency);
