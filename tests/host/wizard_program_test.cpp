// The whole program in this process, with the sample component: what a script's transcript says.
#include "host/frame/wizard_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/fake_platform.h"
#include "host/frame/failure.h"
#include "host/frame/property_store.h"
#include "host/suite.h"

namespace {

using namespace host;

class WizardProgram : public testing::Test {
protected:
    WizardProgram() { act(Options::Action::install, suiteFolder() + "QXCSample.dll"); }
    ~WizardProgram() override {
        if (installed()) act(Options::Action::uninstall, "QXSample");
    }

    void act(Options::Action action, const std::string& component) {
        Options options;
        options.action = action;
        options.component = component;
        options.installFolder = "C:\\Mendwell";
        std::ostringstream none;
        run(options, platform, suiteFolder(), none);
    }
    static std::string stored(const std::string& section, const std::string& name) {
        return PropertyStore(suiteFolder() + "QXPM.dll").value(section, name);
    }
    static bool installed() { return !stored("Modules", "QXSample").empty(); }

    // The transcript; a failure's text is its last line.
    std::string transcript(const std::string& script, ExitCode expected = ExitCode::success) {
        Options options;
        options.component = "QXSample";
        options.script = script;
        options.screenshots = screenshots;
        std::ostringstream out;
        ExitCode code = ExitCode::success;
        try {
            run(options, platform, suiteFolder(), out);
        } catch (const Failure& failure) {
            code = failure.code();
            out << "failed: " << failure.what() << '\n';
        }
        EXPECT_EQ(code, expected);
        return out.str();
    }

    FakePlatform platform;
    std::string screenshots;
};

constexpr const char* start =
    "page 1\n"
    "  1020 Wählen Sie eine Übung.\n"
    "  1011 (x) &Erste Übung\n"
    "  1012 ( ) Zwei&te Übung\n"
    "buttons: next cancel help home\n";

TEST_F(WizardProgram, InstallsAndFindsTheComponentByItsListing) {
    EXPECT_EQ(stored("GlobalProperties", "InstallDir"), "C:\\Mendwell");
    EXPECT_NE(stored("CBSTR", "ProductName"), "");
    EXPECT_TRUE(installed());
    EXPECT_EQ(transcript(""), start);
    act(Options::Action::uninstall, "QXSample");
    EXPECT_FALSE(installed());
    EXPECT_NE(transcript("", ExitCode::notInstalled).find("'QXSample' is not installed"), std::string::npos);
}

TEST_F(WizardProgram, WritesDownEverythingAUserSees) {
    EXPECT_EQ(
        transcript("select 1012; next; answer ok write-protected; answer ok; next; wait; finish; cancel"),
        std::string(start) +
            "> select 1012\n"
            "  1011 ( ) &Erste Übung\n"
            "  1012 (x) Zwei&te Übung\n"
            "> next\n"
            "page 2\n"
            "  1009 Bereit.\n"
            "buttons: back next cancel help home\n"
            "> answer ok write-protected\n"
            "> answer ok\n"
            "> next\n"
            "progress: 0..100\n"
            "  1009 Bitte warten...\n"
            "buttons: -back -next -cancel -home\n"
            "status: Prüfung läuft\n"
            "progress: 10\n"
            "message [Übung] Noch einmal?\\nSicher? -> ok\n"
            "status: Prüfung läuft\n"
            "progress: 20\n"
            "message [Übung] Noch einmal?\\nSicher? -> ok\n"
            "status: Prüfung läuft\n"
            "progress: 30\n"
            "message [Übung] Noch einmal?\\nSicher? -> cancel\n"
            "message [Ende] Genug. -> ok\n"
            "status:\n"
            "progress: off\n"
            "  1009 Fertig.\n"
            "buttons: finish cancel help home\n"
            "> wait\n"
            "> finish\n"
            "page 1\n"
            "  1020 Wählen Sie eine Übung.\n"
            "  1011 ( ) &Erste Übung\n"
            "  1012 (x) Zwei&te Übung\n"
            "buttons: next cancel help home\n"
            "> cancel\n"
            "leave\n");
    EXPECT_NE(std::find(platform.done.begin(), platform.done.end(), "medium write-protected"),
              platform.done.end());
}

TEST_F(WizardProgram, TheKeyboardDoesWhatTheMouseDoes) {
    EXPECT_EQ(transcript("key Alt+w; key Alt+z; select 1011; key Down; key Enter; key Escape"),
              std::string(start) +
                  "> key Alt+w\n"
                  "page 2\n"
                  "  1009 Bereit.\n"
                  "buttons: back next cancel help home\n"
                  "> key Alt+z\n"
                  "page 1\n"
                  "  1020 Wählen Sie eine Übung.\n"
                  "  1011 (x) &Erste Übung\n"
                  "  1012 ( ) Zwei&te Übung\n"
                  "buttons: next cancel help home\n"
                  "> select 1011\n"
                  "> key Down\n"
                  "  1011 ( ) &Erste Übung\n"
                  "  1012 (x) Zwei&te Übung\n"
                  "> key Enter\n"
                  "page 2\n"
                  "  1009 Bereit.\n"
                  "buttons: back next cancel help home\n"
                  "> key Escape\n"
                  "leave\n");
}

TEST_F(WizardProgram, ShowsHelpAlsoForATopicWithoutText) {
    const std::string text = transcript("help; next; help");
    EXPECT_NE(text.find("help 802: Mendwell Ostrel stellt Dateien wieder her"), std::string::npos) << text;
    EXPECT_NE(text.find("Sie vorher den Schreibschutz.\\n\\nMendwell online kaufen: öffnet die Website"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("help 1: "), std::string::npos) << text;
}

TEST_F(WizardProgram, StopsAtAStepThatNobodyCouldDo) {
    const struct {
        const char* script;
        const char* reason;
    } cases[] = {
        {"back", "'back': the button is not offered"},
        {"select 4711", "'select 4711': the page has no such control"},
        {"home; next", "'next': the component has been left"},
    };
    for (const auto& each : cases) {
        const std::string text = transcript(each.script, ExitCode::scriptFailed);
        EXPECT_NE(text.find(std::string("failed: ") + each.reason), std::string::npos) << text;
    }
    const std::string nothing = transcript("next; jump", ExitCode::usage);
    EXPECT_EQ(nothing, "failed: the script's step 'jump' is not understood\n") << "nothing was begun";
}

TEST_F(WizardProgram, TakesAPictureAfterEachStep) {
    screenshots = BUILD_DIRECTORY "/host-pictures";
    transcript("help; next");
    std::vector<std::string> names;
    for (const std::string& done : platform.done) {
        if (done.starts_with("picture ")) names.push_back(done.substr(done.find_last_of("/\\") + 1));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"00-start.png", "01-help.png", "02-next.png"}));
}

}  // namespace
