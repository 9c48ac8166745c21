#pragma once
// Identifiers of the frame program's resources, also read by the resource compiler. The identifiers of the
// buttons are in host/protocol.h.
#define DIALOG_FRAME 100
#define CONTROL_PAGE_AREA 1100
#define CONTROL_STATUS 1101
#define CONTROL_PROGRESS 1102
#define CONTROL_SEPARATOR 1103
#define BUTTON_CANCEL 33769
#define BUTTON_BACK 33771
#define BUTTON_NEXT 33772
#define BUTTON_FINISH 33775
#define BUTTON_HELP 33777
#define BUTTON_HOME 33780
#define STRING_NOT_INSTALLED 1
#define STRING_CANNOT_LOAD 2
#define STRING_UNKNOWN_WINDOWS 3
