#pragma once
#include "CWizardWindow.h"

// The product information page: the product's text, as the host's rich-text object shows it.
class CDlgAd final : public CWizardWindow {
public:
    int Create(ComponentUI* owner) override;
    void Destroy() override;

private:
    void OnSetUp() override;
    void OnActivate() override;
    void OnLayOut(const RECT& client) override;
    bool OnCommand(WORD id) override;

    void ShowProductText() const;

    LONG richTextHeight_ = 0;  // pixels of the control's client area at set-up; kept when the page is resized
};
