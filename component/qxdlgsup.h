#pragma once
#include <windows.h>

// The host suite's dialog-support library "qxdlgsup.dll": controls the wizard frame around a page. Every call
// takes the page's own dialog window first. Texts are 8-bit. All calls are made on the frame's thread.

// Button masks: Cancel 0x002, Back 0x008, Next 0x010, Finish 0x080, Help 0x200.
extern "C" {
// Call first in the page's WM_INITDIALOG: the host then sees the page's messages before the page does.
void WINAPI QXSubclassDialog(HWND page);
// Sets the buttons that the frame offers while this page is current.
void WINAPI QXSetWizButtons(HWND page, DWORD mask);
void WINAPI QXEnableWizButtons(HWND page, DWORD enable, DWORD disable);
void WINAPI QXEnableHomeButton(HWND page, BOOL enable);
// Styles and results as for MessageBoxA.
int WINAPI QXMessageBox(HWND page, const char* text, const char* caption, UINT style);
void WINAPI QXHelp(HWND page, DWORD topic);
}
