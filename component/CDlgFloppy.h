#pragma once
#include "CWizardWindow.h"
#include "make_zar_disks.h"

enum class PageState : LONG { Ready = 0, Making = 1, Made = 2, Failed = 3 };

// The emergency-disk page: a wizard page and the disk maker in one. The disk is made while one command is
// handled; the hooks report progress to the frame and dispatch waiting messages. If one of these asks to go
// back, to leave or to close the component, the attempt stops as after a cancel, and the request is carried
// out when it has ended. Attempts never nest.
class CDlgFloppy final : public CWizardWindow, public MakeZARDisks {
public:
    int Create(ComponentUI* owner) override;
    void Destroy() override;

    // Hooks of the disk maker and the archive library.
    void GET_MESSAGE_WND(HWND& window) override;
    void UPDATE_WINDOW(const char* text, int pause) override;
    void MoveSlider(int absolute, int value) override;
    int GetSliderPos() override { return progressPos_; }
    void SHOW_ERROR(int errorNumber, int kind, const char* text) override;

    PageState State() const { return state_; }

private:
    // Sent by the page to itself: continues from the current state.
    static constexpr WORD proceedCommand = 32868;
    static constexpr int progressEnd = 100;

    enum class Outcome { ended, again };

    void OnSetUp() override;
    void OnActivate() override;
    void OnLayOut(const RECT& client) override;
    bool OnCommand(WORD id) override;
    void OnClose() override;

    void ReadInstallDirectory();
    void ConfigureDiskMaker();
    void ShowText(UINT text);
    LONG TextHeight(LONG width) const;
    void TellFrame(UINT message, LPARAM parameter) const;
    void Press(WORD command) const;

    void Proceed();
    void ShowResult();
    void Restart();

    // CDlgFloppy_attempt.cpp
    void MakeAttempt();
    void BeginAttempt() const;
    void EndAttempt() const;
    void ReturnButtons() const;
    Outcome TryDisk();
    bool DiskIsSound();
    bool GoOnVerifying(int percent);
    Outcome GiveUp();
    bool AskForRetry();
    bool IsAttempting() const { return atWork_ == this; }
    void Stop(WORD command);
    void StopIfNotShown();
    void ForgetStop();
    void Leave(WORD command);
    void PumpMessages();
    void ShowErrorBox(const char* text, const char* caption);

    HWND messageWindow_ = nullptr;
    HWND textControl_ = nullptr;
    LONG usualTextHeight_ = 0;  // pixels, from the template
    bool laidOut_ = false;
    char installDir_[MAX_PATH] = {};
    PageState state_ = PageState::Ready;
    LONG progressStep_ = 3;
    LONG progressPos_ = 0;
    // The page whose MakeAttempt is on the stack. Shared by all components: a second attempt would use the
    // same diskette.
    inline static const CDlgFloppy* atWork_ = nullptr;
    bool stopped_ = false;     // the attempt must end
    WORD pendingCommand_ = 0;  // to be carried out then
    bool closed_ = false;
};
