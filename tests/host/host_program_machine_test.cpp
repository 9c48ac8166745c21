// The program `host` as its user starts it: what one run leaves to the next, and how it ends.
#include <filesystem>

#include "host/host_run.h"

namespace {

class HostProgram : public HostRun {
protected:
    void install() const {
        const Ended ended = run("--install . --component " BUILD_DIRECTORY "/host/QXCSample.dll");
        ASSERT_EQ(ended.code, 0) << ended.text;
    }
};

TEST_F(HostProgram, ALaterRunFindsWhatAnEarlierOneInstalled) {
    EXPECT_EQ(run("--component QXSample --script ''").code, 4);
    install();
    const Ended found = run("--component QXSample --script 'next; back; cancel'");
    EXPECT_EQ(found.code, 0) << found.text;
    EXPECT_NE(found.text.find("> cancel\nleave\n"), std::string::npos) << found.text;
    EXPECT_EQ(run("--component QXSample --uninstall").code, 0);
    EXPECT_EQ(run("--component QXSample --script ''").code, 4);
}

TEST_F(HostProgram, TakesAPathAsTheHostDoes) {
    std::filesystem::create_directory_symlink(BUILD_DIRECTORY "/host/qxpm", hostFolder() + "/link");
    const Ended ended = run("--install . --component '" + hostFolder() + "/link/../QXCSample.dll'");
    EXPECT_EQ(ended.code, 0) << ended.text;
}

TEST_F(HostProgram, WarnsOfAWindowsOnWhichNoDriveIsFound) {
    install();
    const std::string warning = "message [Kelvaro Velmorcenter] Diese Windows-Version ist";
    const Ended later = run("--windows later --component QXSample --script ''");
    EXPECT_EQ(later.code, 0) << later.text;
    EXPECT_EQ(later.text.find(warning), 0U) << later.text;
    EXPECT_NE(later.text.find("Kompatibilitätsmodus für Windows XP"), std::string::npos) << later.text;
    for (const char* windows : {"98", "nt4", "xp"}) {
        const Ended known = run(std::string("--windows ") + windows + " --component QXSample --script ''");
        EXPECT_EQ(known.text.find("Windows-Version"), std::string::npos) << windows << known.text;
    }
}

TEST_F(HostProgram, EndsWithACodeForEachReason) {
    install();
    const struct {
        const char* arguments;
        int code;
        const char* reason;
    } cases[] = {
        {"--help", 0, "lost-write=N"},
        {"--jump", 2, "there is no option '--jump'"},
        {"--windows 7 --script ''", 2, "there is no Windows '7'"},
        {"--component QXSample --script 'medium wet'", 2, "a diskette is never 'wet'"},
        {"--component QXSample --script 'finish'", 3, "'finish': the button is not offered"},
        {"--component Other --script ''", 4, "installed: QXSample"},
        {"--component QXSample --image missing.img --script ''", 1, "missing.img"},
        {"--install . --component /none/QXCSample.dll", 4, "cannot load"},
        {"--install 'product.'", 2, "no Windows path leads to 'product.'"},
        {"--component QXSample --script '' --screenshots /dev/null", 1, "host: cannot write /dev/null"},
    };
    for (const auto& each : cases) {
        const Ended ended = run(each.arguments);
        EXPECT_EQ(ended.code, each.code) << each.arguments << '\n' << ended.text;
        EXPECT_NE(ended.text.find(each.reason), std::string::npos) << ended.text;
    }
}

}  // namespace
