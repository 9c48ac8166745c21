#pragma once
#include <windows.h>

// Messages between the pages and the host's wizard frame, besides the calls of qxdlgsup.h.

// Button masks, and the commands that the frame sends to its current page when a button is pressed.
namespace wizard {

inline constexpr DWORD cancelButton = 0x002;
inline constexpr DWORD backButton = 0x008;
inline constexpr DWORD nextButton = 0x010;
inline constexpr DWORD finishButton = 0x080;
inline constexpr DWORD helpButton = 0x200;

// The sets of buttons used in more than one step.
inline constexpr DWORD buttonsAtRest = cancelButton | backButton | nextButton | helpButton;
inline constexpr DWORD buttonsWhileMaking = cancelButton | backButton | nextButton;
inline constexpr DWORD buttonsWhenDone = cancelButton | finishButton | helpButton;

inline constexpr WORD cancelCommand = 33769;
inline constexpr WORD backCommand = 33771;
inline constexpr WORD nextCommand = 33772;
inline constexpr WORD finishCommand = 33775;
inline constexpr WORD helpCommand = 33777;

// Private messages. To the frame unless stated otherwise; parameters not mentioned are 0.
inline constexpr UINT leaveMessage = 0x806C;        // posted: leave the component
inline constexpr UINT currentPageMessage = 0x806D;  // wParam: ShowPage's argument; lParam: the page's window
inline constexpr UINT beforeShowMessage = 0x80F5;   // to the page itself, for its subclass procedure
inline constexpr UINT progressRangeMessage = 0x841A;  // lParam: low word start, high word end; 0: no display
inline constexpr UINT progressPositionMessage = 0x841B;  // lParam: position
inline constexpr UINT statusTextMessage = 0x841C;        // lParam: const char*
inline constexpr UINT headingFontMessage = 0x842C;       // result: a font for the page's heading, or 0

// The help topic of every page.
inline constexpr DWORD helpTopic = 802;

}  // namespace wizard
