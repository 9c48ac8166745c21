#include "ComponentUI.h"

ComponentUI::ComponentUI(HINSTANCE module, HWND frame, const PageMakers& makers)
    : moduleInstance_(module),
      richEditLibrary_(::LoadLibraryA("RICHED32.DLL")),
      frameWindow_(frame),
      makers_(makers) {}

ComponentUI::~ComponentUI() {
    uses_ = 1;  // the pages' last messages must not delete the object a second time
    for (auto& page : pages_) {
        page.reset();
    }
    if (richEditLibrary_ != nullptr) {
        ::FreeLibrary(richEditLibrary_);
    }
}

int ComponentUI::ShowPage(int index, DWORD arg) {
    if (index < 0 || index >= pageCount || closing_) {
        return -1;
    }
    const InUse inUse(*this);
    if (currentPage_ == optionsPage || currentPage_ == floppyPage) {
        Page(currentPage_)->Show(FALSE, 0);
    }
    auto& page = pages_[static_cast<std::size_t>(index)];
    if (page == nullptr) {
        page.reset(makers_[static_cast<std::size_t>(index)]());
        if (const int error = page->Create(this)) {
            page.reset();
            return error;
        }
    }
    if (closing_) {
        return -1;  // the host closed the component while the page was created
    }
    page->Show(TRUE, arg);
    currentPage_ = index;
    return 0;
}

void ComponentUI::Close() {
    if (uses_ == 0) {
        delete this;
        return;
    }
    closing_ = true;
    for (const auto& page : pages_) {
        if (page != nullptr) {
            page->CloseWindow();
        }
    }
}

ComponentUI::InUse::~InUse() {
    if (--ui_.uses_ == 0 && ui_.closing_) {
        delete &ui_;
    }
}
