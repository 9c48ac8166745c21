#include "host/frame/wizard_program.h"

#include "host/frame/component.h"
#include "host/frame/frame_resources.h"
#include "host/frame/module_listing.h"
#include "host/frame/property_store.h"
#include "host/frame/script_driver.h"
#include "host/frame/text.h"
#include "host/frame/windows_version.h"

namespace host {

namespace {

constexpr const char* usualLibrary = "QXCMendwell.dll";
constexpr const char* usualListing = "Mendwell";
constexpr const char* productName = "Kelvaro Velmorcenter";

using InstallHandlers = void WINAPI(const QXHandlers*);
using MessageBoxOfSuite = int WINAPI(HWND, const char*, const char*, UINT);

// Replaces message boxes and help by handlers during its lifetime.
class ScriptedBoxes {
public:
    ScriptedBoxes(const LoadedModule& support, const QXHandlers& handlers)
        : install_(support.require<InstallHandlers>("QXInstallHandlers")) {
        install_(&handlers);
    }
    ~ScriptedBoxes() { install_(nullptr); }
    ScriptedBoxes(const ScriptedBoxes&) = delete;
    ScriptedBoxes& operator=(const ScriptedBoxes&) = delete;

private:
    InstallHandlers* install_;
};

// The component in the frame, destroyed before the frame.
class Visit {
public:
    Visit(Component& component, HWND frame) : component_(component) { component_.create(frame); }
    ~Visit() { component_.destroy(); }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

private:
    Component& component_;
};

std::string listedLibrary(const PropertyStore& store, const std::string& name) {
    const auto listing = parseListing(store.value("Modules", name));
    if (listing) return listing->library;
    std::string known;
    for (const std::string& each : store.names("Modules")) known += (known.empty() ? "" : ", ") + utf8(each);
    throw Failure(ExitCode::notInstalled, "'" + name + "' is not installed (host --install DIR does it)" +
                                              (known.empty() ? "" : "; installed: " + known));
}

void install(const Options& options, const Platform& platform, const std::string& suite,
             PropertyStore& store) {
    const std::string library =
        options.component.empty() ? suite + usualLibrary : platform.windowsPath(options.component);
    store.setValue("GlobalProperties", "InstallDir", platform.windowsPath(options.installFolder));
    store.setValue("CBSTR", "ProductName", productName);
    Component(library).registerSelf();
}

std::string listingName(const Options& options) {
    return options.component.empty() ? usualListing : options.component;
}

// Called before a component can ask for a diskette.
void warnOfUnknownWindows(const LoadedModule& support, HWND frame) {
    const std::string warning = warningOfUnknownWindows();
    if (warning.empty()) return;
    support.require<MessageBoxOfSuite>("QXMessageBox")(frame, warning.c_str(), windowText(frame).c_str(),
                                                       MB_OK | MB_ICONWARNING);
}

void showToUser(Component& component, const LoadedModule& support) {
    FrameEvents unheard;
    WizardFrame frame(GetModuleHandleA(nullptr), unheard);
    warnOfUnknownWindows(support, frame.window());
    const Visit visit(component, frame.window());
    frame.show();
    MSG message;
    while (!frame.left() && GetMessageA(&message, nullptr, 0, 0) > 0) frame.dispatch(message);
}

void runScript(const Options& options, Component& component, Platform& platform, const LoadedModule& support,
               std::ostream& out) {
    const std::vector<Step> steps = parseScript(*options.script);
    Transcript transcript(out);
    Answers answers(transcript, platform);
    WizardFrame frame(GetModuleHandleA(nullptr), transcript);
    const ScriptedBoxes boxes(support, answers.handlers());
    warnOfUnknownWindows(support, frame.window());
    transcript.watch(frame);
    const Visit visit(component, frame.window());
    frame.show();
    ScriptDriver(frame, platform, transcript, answers, options.screenshots).run(steps);
}

}  // namespace

void run(const Options& options, Platform& platform, const std::string& suite, std::ostream& out) {
    // Loaded first, because a component asks for it by name alone, wherever the component is installed.
    const LoadedModule support(suite + "qxdlgsup.dll", ExitCode::failure);
    PropertyStore store(suite + "QXPM.dll");
    switch (options.action) {
        case Options::Action::help:
            break;
        case Options::Action::install:
            install(options, platform, suite, store);
            break;
        case Options::Action::uninstall:
            Component(listedLibrary(store, listingName(options))).unregisterSelf();
            break;
        case Options::Action::run: {
            Component component(listedLibrary(store, listingName(options)));
            if (options.script) {
                runScript(options, component, platform, support, out);
            } else {
                showToUser(component, support);
            }
            break;
        }
    }
    platform.save();
}

}  // namespace host
