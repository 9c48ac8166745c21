#pragma once
#include <windows.h>

// The host suite's dialog-support library "qxdlgsup.dll": drives the wizard frame that a page lives in. Every
// call passes the page's own dialog window first. Texts are 8-bit. All of it on the frame's thread.

// Button masks: Cancel 0x002, Back 0x008, Next 0x010, Finish 0x080, Help 0x200.
extern "C" {
// Called first in the page's WM_INITDIALOG: the host then sees the page's messages before the page does.
void WINAPI QXSubclassDialog(HWND page);
// The buttons that the frame offers while this page is current.
void WINAPI QXSetWizButtons(HWND page, DWORD mask);
void WINAPI QXEnableWizButtons(HWND page, DWORD enable, DWORD disable);
void WINAPI QXEnableHomeButton(HWND page, BOOL enable);
// Styles and results are those of MessageBoxA.
int WINAPI QXMessageBox(HWND page, const char* text, const char* caption, UINT style);
void WINAPI QXHelp(HWND page, DWORD topic);
}
