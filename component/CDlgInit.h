#pragma once
#include "CWizardWindow.h"

// The options page: start the product's Windows edition, make the emergency diskette, or buy the full
// version.
class CDlgInit final : public CWizardWindow {
public:
    int Create(ComponentUI* owner) override;
    void Destroy() override;

private:
    void OnSetUp() override;
    void OnActivate() override;
    void OnLayOut(const RECT& client) override;
    bool OnCommand(WORD id) override;

    void ShowHint(UINT text) const;
    bool IsChosen(int option) const;
    void FollowChoice();
    void StartProduct() const;
    void OpenWebPage() const;
    void TellFailure(UINT text) const;
};
