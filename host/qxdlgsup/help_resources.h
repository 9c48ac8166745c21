#pragma once
// Identifiers of the dialog-support library's resources, also read by the resource compiler.
#define DIALOG_HELP 100
#define CONTROL_HELP_TEXT 101
#define STRING_HELP_CAPTION 1
#define STRING_NO_TOPIC 2
// The text of a help topic is the string with the topic's number.
