// Every allocation of whole runs fails, one in each run: whatever comes of it must be a result that a user is
// told of, with nothing left behind.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <set>

#include "FormatDiskLib/disk_maker_machine.h"
#include "component/CDlgFloppy.h"
#include "component/ComponentUI.h"
#include "component/entry_points.h"
#include "component/host_objects.h"
#include "component/qxdlgsup.h"
#include "component/resources/resource.h"
#include "component/wizard_protocol.h"
#include "failing_memory.h"
#include "support/host_directory_machine.h"
#include "support/zar_recorder.h"
#include "tools/emergency_disk/disk_plan.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/inspection.h"
#include "tools/zar/commands.h"
#include "winlayer/machine.h"
#include "zar_archive.h"

namespace {

using winlayer::WindowsVersion;

// A disk would spend minutes on the files of all these runs, most of them in fsync.
[[maybe_unused]] const int filesInMemory =
    access("/dev/shm", W_OK) == 0 ? setenv("TMPDIR", "/dev/shm", 0) : 0;

// The first thousand. Beyond these the same calls lead to an allocation again and again, for each file of an
// archive say; there the first and the last time stand for all.
std::set<std::size_t> allocationsToFail(const std::vector<memory::Calls>& calls) {
    std::map<memory::Calls, std::size_t> last;
    std::set<std::size_t> chosen;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (last.insert_or_assign(calls[i], i).second || i < 1000) chosen.insert(i);
    }
    for (const auto& way : last) chosen.insert(way.second);
    EXPECT_GT(last.size(), 50U) << "the allocations are not told apart";
    return chosen;
}

// A World is what one run needs, fresh for each: run() is what the allocations fail of and lets no exception
// out, fault(failed) says what is wrong afterwards. A run in which nothing fails must be in order too.
template <class World, class... Arguments>
void failEachAllocation(Arguments... arguments) {
    const auto fault = [&](std::size_t allocation) {
        const std::ptrdiff_t held = memory::held();
        std::string found;
        {
            World world(arguments...);
            const std::size_t handles = winlayer::Machine::current().handles.openCount();
            memory::failAfter(allocation);
            world.run();
            const bool failed = memory::stop();
            found = world.fault(failed);
            if (found.empty() && winlayer::Machine::current().handles.openCount() != handles) {
                found = "a handle is left open";
            }
        }
        return found.empty() && memory::held() != held
                   ? std::to_string(memory::held() - held) + " blocks are not given back"
                   : found;
    };
    constexpr auto none = ~std::size_t{0};
    fault(none);  // what is made once for all runs
    ASSERT_EQ(fault(none), "") << "nothing failed";
    const std::set<std::size_t> chosen = allocationsToFail(memory::callsOf([&] { fault(none); }));
    for (const std::size_t allocation : chosen) {
        EXPECT_EQ(fault(allocation), "") << "allocation " << allocation;
    }
}

// What a run throws is its result: the class of a documented failure, or of the heap's.
template <class Run>
std::string thrownBy(Run run) {
    try {
        run();
        return "";
    } catch (const UTILS::std_exception&) {
        return "report";
    } catch (const tools::Problem&) {
        return "report";
    } catch (const std::bad_alloc&) {
        return "memory";
    } catch (...) {
        return "something else";
    }
}

class Family : public testing::TestWithParam<WindowsVersion> {};

INSTANTIATE_TEST_SUITE_P(OutOfMemory, Family, testing::Values(WindowsVersion::Windows98, WindowsVersion::XP),
                         familyName);

const std::vector<test::ZarFile> smallFiles = [] {
    auto files = emergencyFiles();
    for (test::ZarFile& file : files) {
        if (file.name != "QZLOADER.BIN") file.data.resize(40);
    }
    return files;
}();

class Maker : public RecordingDiskMaker {
public:
    void SHOW_ERROR(int errorNumber, int kind, const char* text) override {
        const memory::Unfailing unfailing;
        RecordingDiskMaker::SHOW_ERROR(errorNumber, kind, text);
    }
    void UPDATE_WINDOW(const char* text, int pause) override {
        const memory::Unfailing unfailing;
        RecordingDiskMaker::UPDATE_WINDOW(text, pause);
    }
    void MoveSlider(int absolute, int value) override {
        const memory::Unfailing unfailing;
        RecordingDiskMaker::MoveSlider(absolute, value);
    }
};

struct DiskMaking {
    explicit DiskMaking(WindowsVersion version) : pc(version, smallFiles) { pc.putOldFiles(); }

    void run() {
        thrown = thrownBy([this] {
            Maker maker;
            maker.configure(pc.archiveFolder());
            result = maker.FindFloppyDrive() == 1 ? maker.MakeDisk() : 0;
            const memory::Unfailing unfailing;
            events = maker.events;
        });
    }
    std::string fault(bool failed) {
        if (pc.machine().errorMode != 0) return "the error mode is changed";
        if (!thrown.empty()) return thrown == "memory" && failed ? "" : "thrown: " + thrown;
        if (result == 1) return excused(pc.faultOfDiskette(smallFiles));
        if (!failed) return "no disk";
        return events.size() > 1 ? "" : "a failure that is not told";
    }
    // The boot sector's failure is told and does not end the run.
    std::string excused(const std::string& lacks) const {
        const bool told = std::find(events.begin(), events.end(),
                                    "error 0 100 Fehler beim Schreiben des Bootsektors") != events.end();
        return lacks == "boot sector" && told ? "" : lacks;
    }

    DiskMakerMachine pc;
    std::string thrown;
    int result = 0;
    RecordingDiskMaker::Events events;
};

TEST_P(Family, EndsADisksMakingInAResultThatIsTold) {
    failEachAllocation<DiskMaking>(GetParam());
}

struct Extraction {
    Extraction() { writeFile(folder / "a.zar", test::newArchive(files)); }

    void run() {
        thrown = thrownBy(
            [this] { Extract_ZAR(folder.path().c_str(), "a.zar", (folder / "out").c_str(), nullptr, 1, 0); });
    }
    std::string fault(bool failed) {
        if (!thrown.empty()) return failed ? "" : "thrown: " + thrown;
        for (const test::ZarFile& file : files) {
            if (!exists(folder / "out\\" + file.name)) return file.name + " is missing";
            if (readFile(folder / "out\\" + file.name) != file.data) return file.name + " is not right";
        }
        return "";
    }

    winlayer::ScopedMachine machine;
    TempFolder folder;
    std::vector<test::ZarFile> files{
        {"A.TXT", "first"}, {"SUB\\B.BIN", test::pattern(9000), 7}, {"SUB\\DEEP\\C.TXT", "third"}};
    std::string thrown;
};

TEST(OutOfMemory, EndsAnExtraction) {
    failEachAllocation<Extraction>();
}

struct Archiving {
    Archiving() {
        folder.directory("in");
        folder.directory("in\\SUB");
        for (const test::ZarFile& file : files) writeFile(folder / "in\\" + file.name, file.data);
    }

    void run() {
        thrown = thrownBy([this] { Archive_ZAR((folder / "in").c_str(), (folder / "a.zar").c_str(), 1); });
    }
    std::string fault(bool failed) {
        if (!thrown.empty()) return failed ? "" : "thrown: " + thrown;
        std::string wanted = test::newArchive(files);
        return readFile(folder / "a.zar") == wanted ? "" : "the archive is not right";
    }

    winlayer::ScopedMachine machine;
    TempFolder folder;
    std::vector<test::ZarFile> files{{"A.TXT", "first"}, {"SUB\\B.BIN", test::pattern(9000)}};
    std::string thrown;
};

TEST(OutOfMemory, EndsAnArchiving) {
    failEachAllocation<Archiving>();
}

// A command of the programs, in a folder of the host.
struct Command {
    void run() {
        std::optional<tools::Console> console;
        {
            const memory::Unfailing unfailing;
            console.emplace("test", true);
            inputs = files();
        }
        tools::Session session{*console, true, result};
        thrown = thrownBy([&] { command(session); });
    }
    std::vector<std::filesystem::path> files() const {
        std::vector<std::filesystem::path> found;
        for (const auto& file : std::filesystem::recursive_directory_iterator(folder.path()))
            found.push_back(file);
        return found;
    }
    void write(const test::ZarFile& file) const {
        const auto path = folder / file.name;
        create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << file.data;
    }
    std::string read(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // What has its name already is right, and nothing else is left.
    template <class IsRight>
    std::string faultOfFailure(bool failed, IsRight isRight) const {
        if (!failed || thrown == "something else") return "thrown: " + thrown;
        for (const auto& file : files()) {
            const bool before = std::find(inputs.begin(), inputs.end(), file) != inputs.end();
            if (!before && (is_directory(file) || !isRight(file.filename().string())))
                return "left behind: " + file.string();
        }
        return "";
    }

    HostDirectory folder;
    std::function<void(tools::Session&)> command;
    tools::JsonWriter result;
    winlayer::ScopedMachine machine;
    std::vector<std::filesystem::path> inputs;
    std::string thrown;
};

const std::vector<test::ZarFile> packed{{"A.TXT", "first"}, {"B.BIN", test::pattern(9000)}};

struct ZarCreate : Command {
    ZarCreate() {
        for (const test::ZarFile& file : packed) write({"in/" + file.name, file.data});
        options.archive = (folder / "a.zar").string();
        options.folder = (folder / "in").string();
        command = [this](tools::Session& session) { tools::zar::create(options, session); };
    }
    std::string fault(bool failed) {
        const auto isRight = [&](const std::string& name) { return read(name) == test::newArchive(packed); };
        if (!thrown.empty()) return faultOfFailure(failed, isRight);
        return isRight("a.zar") ? "" : "the archive is not right";
    }

    tools::zar::CreateOptions options;
};

struct ZarExtract : Command {
    ZarExtract() {
        write({"a.zar", test::newArchive(packed)});
        std::filesystem::create_directory(folder / "out");
        options.archive = (folder / "a.zar").string();
        options.folder = (folder / "out").string();
        command = [this](tools::Session& session) { tools::zar::extract(options, session); };
    }
    std::string fault(bool failed) {
        const auto isRight = [&](const std::string& name) {
            return std::any_of(packed.begin(), packed.end(), [&](const test::ZarFile& file) {
                return file.name == name && read("out/" + name) == file.data;
            });
        };
        if (!thrown.empty()) return faultOfFailure(failed, isRight);
        return isRight(packed[0].name) && isRight(packed[1].name) ? "" : "a file is not right";
    }

    tools::zar::ExtractOptions options;
};

struct DiskProgram : Command {
    DiskProgram() {
        write({"a.dat", test::newArchive(smallFiles)});
        options.archive = (folder / "a.dat").string();
        options.target.image = (folder / "a.img").string();
        command = [this](tools::Session& session) { tools::emergency_disk::make(options, session); };
    }
    std::string fault(bool failed) {
        const auto isRight = [&](const std::string& name) {
            namespace disk = tools::emergency_disk;
            const disk::DiskPlan plan = disk::readPlan((folder / "a.dat").string());
            const std::string label = "QUARVEL";
            const auto diskette = disk::openForReading({(folder / name).string(), {}});
            return disk::inspect(*diskette, {&plan, &label}).passed();
        };
        if (!thrown.empty()) return faultOfFailure(failed, isRight);
        return isRight("a.img") ? "" : "the diskette is not right";
    }

    tools::emergency_disk::MakeOptions options;
};

TEST(OutOfMemory, EndsZarCreate) {
    failEachAllocation<ZarCreate>();
}

TEST(OutOfMemory, EndsZarExtract) {
    failEachAllocation<ZarExtract>();
}

TEST(OutOfMemory, EndsEmergencyDisk) {
    failEachAllocation<DiskProgram>();
}

// The host's module with a property store that knows where the product is.
class Store final : public IHostPropertyStore {
public:
    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return ++references; }
    ULONG WINAPI Release() override { return --references; }
    HRESULT WINAPI Open(const char*, int) override { return S_OK; }
    HRESULT WINAPI EnumerateValue(DWORD, char*, DWORD*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetValue(const char*, char* buffer, DWORD* size) override {
        std::strncpy(buffer, directory, *size);
        return S_OK;
    }
    HRESULT WINAPI SetValue(const char*, const char*) override { return E_NOTIMPL; }
    HRESULT WINAPI DeleteValue(const char*) override { return E_NOTIMPL; }

    ULONG references = 0;
    char directory[MAX_PATH] = {};
} store;

HRESULT WINAPI createObject(const GUID* classId, const GUID*, void** object) {
    if (std::memcmp(classId, &CLSID_HostPropertyStore, sizeof *classId) != 0) return E_NOINTERFACE;
    store.AddRef();
    *object = &store;
    return S_OK;
}

HRESULT WINAPI getEventHandle(HANDLE* event) {
    *event = nullptr;
    return S_OK;
}

template <class Function>
FARPROC procedure(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

int boxes = 0;

struct WizardRun {
    WizardRun() {
        winlayer::Machine& machine = pc.machine();
        machine.clock.stop();
        const HMODULE host = machine.modules.addSystemModule("qxpm.dll", {}, {});
        machine.modules.addFunction(host, "DllCreateObject", procedure(&createObject));
        machine.modules.addFunction(host, "DllGetEventHandle", procedure(&getEventHandle));
        std::strcpy(store.directory, pc.archiveFolder().c_str());
        WNDCLASSA frameClass{};
        frameClass.lpfnWndProc = DefWindowProcA;
        frameClass.lpszClassName = "Frame";
        RegisterClassA(&frameClass);
        frame = CreateWindowExA(0, "Frame", "", WS_POPUP | WS_VISIBLE, 0, 0, 500, 300, nullptr, nullptr,
                                nullptr, nullptr);
        boxes = 0;
    }

    void run() {
        thrown = thrownBy([this] {
            AttachLibrary(GetModuleHandleA(nullptr));
            ui = reinterpret_cast<ComponentUI*>(CreateComponentUI(frame, 0));
            if (ui != nullptr) pageThrough();
            DestroyComponentUI(ui, 0);
            DetachLibrary(false);
        });
    }
    void pageThrough() {
        press(ComponentUI::productPage, wizard::nextCommand);
        if (const CWizardWindow* options = ui->Page(ComponentUI::optionsPage)) {
            CheckDlgButton(options->Window(), IDC_START_PRODUCT, BST_UNCHECKED);
            CheckDlgButton(options->Window(), IDC_MAKE_DISK, BST_CHECKED);
        }
        press(ComponentUI::optionsPage, wizard::nextCommand);
        press(ComponentUI::floppyPage, wizard::nextCommand);
        if (const auto* floppy = static_cast<CDlgFloppy*>(ui->Page(ComponentUI::floppyPage))) {
            GetDlgItemTextA(floppy->Window(), IDC_RUNNING_TEXT, text, sizeof text);
            stuck = floppy->State() == PageState::Making;
        }
        press(ComponentUI::floppyPage, wizard::finishCommand);
        press(ComponentUI::optionsPage, wizard::backCommand);
    }
    void press(int page, WORD command) {
        const CWizardWindow* from = ui->CurrentPage() == page ? ui->Page(page) : nullptr;
        if (from == nullptr) return;
        SetWindowPos(from->Window(), nullptr, 0, 0, 100, 75, SWP_NOZORDER);
        UpdateWindow(from->Window());
        SendMessageA(from->Window(), WM_COMMAND, command, 0);
    }

    std::string fault(bool failed) {
        winlayer::Machine& machine = pc.machine();
        if (!thrown.empty()) return "thrown: " + thrown;
        if (store.references != 0) return "an object of the host is left";
        if (machine.windows.count() != 1) return "windows are left";
        if (machine.windows.contextCount() + machine.graphics.count() != 0) return "contexts are left";
        if (stuck) return "the page can do nothing more";
        if (GetModuleHandleA("RICHED32.DLL") != nullptr) return "the rich-edit module is left";
        const bool made = std::string(text).find("wurde erstellt") != std::string::npos;
        if (made) {
            const std::string lacks = pc.faultOfDiskette(smallFiles);
            return lacks == "boot sector" && boxes != 0 ? "" : lacks;
        }
        return failed ? "" : std::string("no disk: ") + text;
    }

    DiskMakerMachine pc{WindowsVersion::XP, smallFiles};  // DiskMaking has the ways of both families
    HWND frame = nullptr;
    ComponentUI* ui = nullptr;
    std::string thrown;
    char text[512] = {};
    bool stuck = false;
};

TEST(OutOfMemory, LetsTheWizardEnd) {
    failEachAllocation<WizardRun>();
}

}  // namespace

// The host's dialog support.
void WINAPI QXSubclassDialog(HWND) {}
void WINAPI QXSetWizButtons(HWND, DWORD) {}
void WINAPI QXEnableWizButtons(HWND, DWORD, DWORD) {}
void WINAPI QXEnableHomeButton(HWND, BOOL) {}
int WINAPI QXMessageBox(HWND, const char*, const char*, UINT) {
    ++boxes;
    return IDCANCEL;
}
void WINAPI QXHelp(HWND, DWORD) {}
