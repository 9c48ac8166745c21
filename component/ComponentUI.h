#pragma once
#include <windows.h>

#include <array>
#include <memory>

#include "CWizardWindow.h"

// One user interface of the component in a host's frame: owns its pages, which are created on first use and
// kept. An opaque handle for the host.
class ComponentUI {
public:
    static constexpr int productPage = 0;
    static constexpr int optionsPage = 1;
    static constexpr int floppyPage = 2;
    static constexpr int pageCount = 3;
    using PageMaker = CWizardWindow* (*)();
    using PageMakers = std::array<PageMaker, pageCount>;

    // Keeps the handles and loads RICHED32.DLL, which implements the rich-edit control; shows nothing yet.
    ComponentUI(HINSTANCE module, HWND frame, const PageMakers& makers);
    ComponentUI(const ComponentUI&) = delete;
    ComponentUI& operator=(const ComponentUI&) = delete;

    // Shows a page, creating it if needed. Result: 0; -1 for an invalid index; the system's error code when
    // the page's window cannot be created: the page is not shown, and created again on the next request.
    int ShowPage(int index, DWORD arg);

    // Deletes the pages and this object and frees RICHED32.DLL. While a page works further up the stack, the
    // windows are destroyed at once, the objects when that work has returned.
    void Close();

    HINSTANCE ModuleInstance() const { return moduleInstance_; }
    HWND FrameWindow() const { return frameWindow_; }
    int CurrentPage() const { return currentPage_; }
    // Null for a page that has not been created.
    CWizardWindow* Page(int index) const { return pages_[static_cast<std::size_t>(index)].get(); }

    // Keeps the object and its pages alive while a page works.
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
