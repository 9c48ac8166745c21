#pragma once
// Read by the resource compiler too.
#define PAGE_CHOICE 101
#define PAGE_WORK 102
#define CONTROL_HEADING 1020
#define CONTROL_TEXT 1009
#define CONTROL_FIRST 1011
#define CONTROL_SECOND 1012
