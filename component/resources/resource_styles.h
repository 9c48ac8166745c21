/* The styles and codes in the resource script, by their Windows names: for resource compilers that come
   without Windows' headers. */
#pragma once

#define WS_CHILD 0x40000000L
#define WS_VISIBLE 0x10000000L
#define WS_DISABLED 0x08000000L
#define WS_GROUP 0x00020000L
#define WS_TABSTOP 0x00010000L
#define WS_EX_CLIENTEDGE 0x00000200L
#define WS_EX_CONTROLPARENT 0x00010000L
#define DS_3DLOOK 0x0004L
#define DS_NOFAILCREATE 0x0010L
#define DS_SETFONT 0x0040L
#define SS_LEFT 0x0000L
#define BS_PUSHBUTTON 0x0000L
#define BS_AUTORADIOBUTTON 0x0009L
#define BS_MULTILINE 0x2000L
#define ES_MULTILINE 0x0004L

#define LANG_GERMAN 0x07
#define SUBLANG_GERMAN 0x01

#define VOS__WINDOWS32 0x4
#define VFT_DLL 0x2
