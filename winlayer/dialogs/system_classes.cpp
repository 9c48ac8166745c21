#include "winlayer/dialogs/system_classes.h"

#include "winlayer/base/gate.h"
#include "winlayer/dialogs/control_button.h"
#include "winlayer/dialogs/control_progress.h"
#include "winlayer/dialogs/control_rich_edit.h"
#include "winlayer/dialogs/control_static.h"
#include "winlayer/include/commctrl.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {
namespace {

constexpr ATOM firstSystemAtom = 0x8000;
constexpr ATOM buttonAtom = 0x0080;
constexpr ATOM staticAtom = 0x0082;
const HBRUSH faceBrush = reinterpret_cast<HBRUSH>(static_cast<ULONG_PTR>(COLOR_3DFACE + 1));

WindowClass systemClass(const char* name, WNDPROC procedure, ATOM atom) {
    WindowClass made;
    made.name = name;
    made.style = CS_GLOBALCLASS;
    made.procedure = procedure;
    made.background = faceBrush;
    made.atom = atom;
    made.ofSystem = true;
    return made;
}

}  // namespace

void addSystemClasses(WindowClasses& classes) {
    WindowClass dialog = systemClass("#32770", DefDlgProcA, static_cast<ATOM>(firstSystemAtom + 2));
    dialog.windowExtra = DLGWINDOWEXTRA;
    classes.add(std::move(dialog));
    // Dialog templates refer to these classes by atom.
    classes.add(systemClass("Button", procedureOf<ButtonControl>, buttonAtom));
    classes.add(systemClass("Static", procedureOf<StaticControl>, staticAtom));
}

void addRichEditClass(WindowClasses& classes) {
    classes.add(systemClass("RICHEDIT", procedureOf<RichEditControl>, 0));
}

void removeRichEditClass(WindowClasses& classes) {
    classes.remove("RICHEDIT");
}

}  // namespace winlayer

void WINAPI InitCommonControls() try {
    winlayer::entered(__func__);
    winlayer::windows().classes.add(
        winlayer::systemClass(PROGRESS_CLASSA, winlayer::procedureOf<winlayer::ProgressControl>, 0));
} catch (const std::bad_alloc&) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
}
