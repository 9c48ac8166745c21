// The host with the wizard component in it: from the first page to a diskette, through good and bad days.
#include "host/host_run.h"

namespace {

class WizardRun : public HostRun {
protected:
    WizardRun() {
        ok("tools/zar create '" + hostFolder() + "/mwdisk1.dat' " BUILD_DIRECTORY "/samples/disk");
        ok("tools/emergency-disk format --image " + image());
        EXPECT_EQ(run("--install '" + hostFolder() + "'").code, 0);
    }
    static void ok(const std::string& command) {
        const Ended ended = runProgram(command);
        EXPECT_EQ(ended.code, 0) << command << '\n' << ended.text;
    }
    std::string image() const { return "'" + hostFolder() + "/a.img'"; }
    Ended script(const std::string& steps, const std::string& options) const {
        return run("--no-pauses --script 'next; select 1012; next; " + steps + "' " + options);
    }
    Ended withImage(const std::string& steps, const std::string& options = "") const {
        return script(steps, "--image " + image() + " " + options);
    }
    void expectGoodDiskette() const {
        const Ended check = runProgram("tools/emergency-disk check --image " + image() + " --archive '" +
                                       hostFolder() + "/mwdisk1.dat'");
        EXPECT_EQ(check.code, 0) << check.text;
    }
    static long count(const std::string& text, const std::string& what) {
        long found = 0;
        for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
        return found;
    }
};

constexpr const char* made = "1009 Die Mendwell Ostrel-Notfalldiskette wurde erstellt.";
constexpr const char* stopped = "1009 Die Erstellung der Notfalldiskette wurde \\ngestoppt.";
constexpr const char* prompt =
    "message [Kelvaro Velmorcenter] Vergewissern Sie sich, dass in Laufwerk A: eine ";

TEST_F(WizardRun, MakesADisketteOnBothWindowsFamilies) {
    for (const char* windows : {"98", "xp"}) {
        ok("tools/emergency-disk format --yes --image " + image());
        const Ended ended = withImage("next; wait; finish; cancel", std::string("--windows ") + windows);
        EXPECT_EQ(ended.code, 0) << ended.text;
        EXPECT_EQ(count(ended.text, made), 1) << windows << ended.text;
        EXPECT_EQ(count(ended.text, "status: Die Datei "), 14) << ended.text;
        EXPECT_EQ(count(ended.text, "message "), 0) << ended.text;
        EXPECT_TRUE(ended.text.ends_with("> cancel\nleave\n")) << ended.text;
        expectGoodDiskette();
    }
}

TEST_F(WizardRun, TheKeyboardAloneMakesADiskette) {
    const Ended ended =
        run("--no-pauses --image " + image() +
            " --script 'key Enter; key Down; key Enter; key Enter; key Enter; key Up; key Escape'");
    EXPECT_EQ(ended.code, 0) << ended.text;
    EXPECT_EQ(count(ended.text, made), 1) << ended.text;
    EXPECT_EQ(count(ended.text, "1011 (x)"), 2) << "chosen again after the disk" << ended.text;
    EXPECT_TRUE(ended.text.ends_with("> key Escape\nleave\n")) << ended.text;
    expectGoodDiskette();
}

TEST_F(WizardRun, TriesAgainUntilTheProtectionIsGone) {
    const Ended ended = withImage("medium write-protected; answer ok; answer ok normal; next");
    EXPECT_EQ(ended.code, 0) << ended.text;
    EXPECT_EQ(count(ended.text, prompt), 2) << ended.text;
    EXPECT_EQ(count(ended.text, made), 1) << ended.text;
    expectGoodDiskette();
}

TEST_F(WizardRun, StopsWhenTheUserHasEnoughAndCanStartOver) {
    const Ended ended =
        withImage("medium write-protected; answer cancel; next; finish; medium normal; next; next");
    EXPECT_EQ(ended.code, 0) << ended.text;
    EXPECT_EQ(count(ended.text, prompt), 1) << ended.text;
    EXPECT_EQ(count(ended.text, stopped), 1) << ended.text;
    EXPECT_LT(ended.text.find(stopped), ended.text.find(made)) << ended.text;
    expectGoodDiskette();
}

TEST_F(WizardRun, MakesASecondDisketteAfterTheFirst) {
    const Ended ended = withImage("next; finish; next; next");
    EXPECT_EQ(ended.code, 0) << ended.text;
    EXPECT_EQ(count(ended.text, made), 2) << ended.text;
    expectGoodDiskette();
}

TEST_F(WizardRun, SaysWhatItNeedsWhenThereIsNoDrive) {
    const Ended ended = script("next; finish; home", "--no-drive");
    EXPECT_EQ(ended.code, 0) << ended.text;
    EXPECT_EQ(count(ended.text, "message "), 1) << ended.text;
    EXPECT_EQ(count(ended.text, "message [Systemfehler] Kein geeignetes Diskettenlaufwerk gefunden."), 1)
        << ended.text;
    EXPECT_TRUE(ended.text.ends_with("> home\nleave\n")) << ended.text;
}

TEST_F(WizardRun, EndsTheAttemptWhenTheDriveIsEmpty) {
    const Ended ended = script("next; finish; home", "");
    EXPECT_EQ(ended.code, 0) << ended.text;
    EXPECT_GE(count(ended.text, "message [Fehler]"), 1) << ended.text;
    EXPECT_EQ(count(ended.text, prompt), 0) << "no disk was begun, so there is none to try again";
    EXPECT_EQ(count(ended.text, made), 0) << ended.text;
    EXPECT_TRUE(ended.text.ends_with("> home\nleave\n")) << ended.text;
}

}  // namespace
