#pragma once
#include <windows.h>

#include <array>
#include <memory>

#include "CWizardWindow.h"

// One user interface of the component in a host's frame: owns its pages, which are made on first use and
// kept. The host holds it as an opaque handle.
class ComponentUI {
public:
    static constexpr int productPage = 0;
    static constexpr int optionsPage = 1;
    static constexpr int floppyPage = 2;
    static constexpr int pageCount = 3;
    using PageMaker = CWizardWindow* (*)();
    using PageMakers = std::array<PageMaker, pageCount>;

    // Keeps the handles and loads RICHED32.DLL, the home of the rich-edit control; shows nothing yet.
    ComponentUI(HINSTANCE module, HWND frame, const PageMakers& makers);
    ComponentUI(const ComponentUI&) = delete;
    ComponentUI& operator=(const ComponentUI&) = delete;

    // Shows a page, made first if need be. Result: 0; -1 for an index that is none; the system's error code
    // of a page whose window cannot be made: it is not shown, and made anew when it is asked for again.
    int ShowPage(int index, DWORD arg);

    // Ends the pages, RICHED32.DLL and the object. While a page is at work further up the stack the windows
    // go at once, the objects when that work has returned.
    void Close();

    HINSTANCE ModuleInstance() const { return moduleInstance_; }
    HWND FrameWindow() const { return frameWindow_; }
    int CurrentPage() const { return currentPage_; }
    // Null for a page that has not been made.
    CWizardWindow* Page(int index) const { return pages_[static_cast<std::size_t>(index)].get(); }

    // Keeps the object and its pages for the time of a page's work.
    class InUse {
    public:
        explicit InUse(ComponentUI& ui) : ui_(ui) { ++ui_.uses_; }
        ~InUse();
        InUse(const InUse&) = delete;
        InUse& operator=(const InUse&) = delete;

    private:
        ComponentUI& ui_;
    };

private:
    struct DestroyPage {
        void operator()(CWizardWindow* page) const { page->Destroy(); }
    };

    ~ComponentUI();

    HINSTANCE moduleInstance_;
    HMODULE richEditLibrary_;
    HWND frameWindow_;
    LONG currentPage_ = -1;
    std::array<std::unique_ptr<CWizardWindow, DestroyPage>, pageCount> pages_;
    const PageMakers& makers_;
    int uses_ = 0;
    bool closing_ = false;
};
