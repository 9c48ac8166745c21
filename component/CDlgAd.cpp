#include "CDlgAd.h"

#include "ComponentUI.h"
#include "HostBroker.h"
#include "host_objects.h"
#include "page_layout.h"
#include "qxdlgsup.h"
#include "resources/resource.h"
#include "wizard_protocol.h"

namespace {

constexpr DWORD buttons = wizard::cancelButton | wizard::nextButton | wizard::helpButton;
constexpr DWORD objectContext = 5;  // in this process or in a local server
constexpr int richTextFormat = 2;

}  // namespace

int CDlgAd::Create(ComponentUI* owner) {
    return CreatePage(owner, IDD_PRODUCT);
}

void CDlgAd::Destroy() {
    CloseWindow();
    delete this;
}

void CDlgAd::OnSetUp() {
    ShowProductText();
    OnActivate();
    RECT client{};
    ::GetClientRect(Control(IDC_RICH_TEXT), &client);
    richTextHeight_ = client.bottom;
}

// Once attached, the object belongs to the control.
void CDlgAd::ShowProductText() const {
    void* object = nullptr;
    if (FAILED(hostBroker.CreateThroughManager(CLSID_HostRichText, nullptr, objectContext, CLSID_HostRichText,
                                               &object)) ||
        object == nullptr) {
        return;
    }
    const auto richText = static_cast<IHostRichText*>(object);
    richText->AttachRichEdit(Control(IDC_RICH_TEXT), Module());
    const HRSRC resource = ::FindResourceA(Module(), MAKEINTRESOURCEA(IDR_PRODUCT_TEXT), "RTF");
    const HGLOBAL loaded = resource == nullptr ? nullptr : ::LoadResource(Module(), resource);
    const void* text = loaded == nullptr ? nullptr : ::LockResource(loaded);
    if (text != nullptr) {
        DWORD result = 0;
        richText->StreamRichText(richTextFormat, static_cast<const char*>(text), &result);
    }
}

void CDlgAd::OnActivate() {
    OfferButtons(buttons);
}

void CDlgAd::OnLayOut(const RECT& client) {
    const LONG width = client.right - client.left;
    const LONG height = client.bottom - client.top;
    const LONG pictureWidth = width / 5;
    const LONG pictureHeight = height / 5;
    page_layout::Move(Window(), IDC_PICTURE, client.left + (width - pictureWidth) / 2, client.top,
                      pictureWidth, pictureHeight, false);
    const LONG textWidth = width * 4 / 5;
    page_layout::Move(Window(), IDC_RICH_TEXT, client.left + (width - textWidth) / 2,
                      client.top + pictureHeight * 12 / 10, textWidth, richTextHeight_, false);
}

bool CDlgAd::OnCommand(WORD id) {
    switch (id) {
        case wizard::nextCommand:
            SwitchTo(ComponentUI::optionsPage);
            ActivatePage(ComponentUI::optionsPage);
            return true;
        case wizard::backCommand:
        case wizard::cancelCommand:
            LeaveComponent();
            return true;
        case wizard::helpCommand:
            QXHelp(Window(), wizard::helpTopic);
            return true;
        default:
            return false;
    }
}
