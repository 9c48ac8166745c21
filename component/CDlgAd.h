#pragma once
#include "CWizardWindow.h"

// The product information page: the product's text, displayed by the host's rich-text object.
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

    LONG richTextHeight_ = 0;  // client height of the control at set-up, in pixels; kept on resize
};
