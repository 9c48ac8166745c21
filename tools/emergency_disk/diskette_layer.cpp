// Diskettes behind the layer's drive A:, images and block devices.
#include "tools/emergency_disk/diskette.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>

#include "tools/common/reasons.h"
#include "tools/common/staging.h"
#include "tools/emergency_disk/command_line.h"
#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/host_store.h"
#include "winlayer/machine.h"

namespace tools::emergency_disk {

namespace fs = std::filesystem;
using winlayer::DisketteDrive;
using winlayer::SectorStore;
using winlayer::WindowsVersion;

namespace {

Problem deviceProblem(const Path& device, DWORD error) {
    const std::string& name = device.string();
    switch (error) {
        case ERROR_BAD_DEVICE:
            return {ExitCode::refused, name + " is not a block device"};
        case ERROR_UNRECOGNIZED_MEDIA:
            return {ExitCode::refused, name + " does not have exactly 2,880 sectors of 512 bytes"};
        case ERROR_BUSY:
            return {ExitCode::refused, name + " is in use (mounted?)"};
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return {ExitCode::noDiskette, "there is no drive " + name};
        case ERROR_NOT_READY:
            return {ExitCode::noDiskette, "there is no diskette in " + name};
        default:
            return {ExitCode::failure, "cannot open " + name + ": " + errorText(error)};
    }
}

std::unique_ptr<SectorStore> openTarget(const Target& target) {
    std::unique_ptr<SectorStore> store;
    if (target.isDevice()) {
        if (const DWORD error = winlayer::openBlockDevice(target.device.string(), store))
            throw deviceProblem(target.device, error);
        return store;
    }
    std::error_code ignored;
    const fs::file_status status = fs::status(target.image.string(), ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Problem(ExitCode::refused,
                      target.image.string() + " is not an image file (--device names a drive)");
    }
    const DWORD error = winlayer::openImage(target.image.string(), store);
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        throw Problem(ExitCode::noDiskette, "there is no image " + target.image.string());
    }
    if (error == ERROR_UNRECOGNIZED_MEDIA) {
        throw Problem(ExitCode::refused,
                      target.image.string() + " is not a 1.44 MB diskette image (1,474,560 bytes)");
    }
    if (error != 0) {
        throw Problem(ExitCode::failure, "cannot open " + target.image.string() + ": " + errorText(error));
    }
    return store;
}

// Gives an image file its size and its room on the host's disk, so that a full disk is not taken for a bad
// sector.
void reserve(const Path& file, const Path& target) {
    const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
    int error = opened < 0 ? errno : 0;
    if (opened >= 0) {
        error = posix_fallocate(opened, 0, off_t{winlayer::sectors1440} * off_t{winlayer::sectorSize});
        close(opened);
    }
    if (error != 0) {
        throw Problem(ExitCode::failure,
                      "cannot write " + target.string() + ": " + std::generic_category().message(error));
    }
}

// The copy has the image's permissions too: an image that nobody may write is a protected diskette.
void copyImage(const Path& image, const Path& copy) {
    std::error_code error;
    fs::copy_file(image.string(), copy.string(), fs::copy_options::overwrite_existing, error);
    if (error) throw Problem(ExitCode::failure, "cannot copy " + image.string() + ": " + error.message());
}

DWORD freshSerial() {
    return static_cast<DWORD>(std::chrono::system_clock::now().time_since_epoch().count());
}

void makeBlankImage(const StagedFile& file) {
    reserve(file.path(), file.target());
    if (const DWORD error = winlayer::formatDiskette(*openTarget({file.path(), {}}), freshSerial())) {
        throw Problem(ExitCode::failure, "cannot write " + file.target().string() + ": " + errorText(error));
    }
}

// The names that --simulate takes.
std::string simulationNames() {
    std::string names;
    for (const std::string_view name : winlayer::stateNames()) {
        names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return names;
}

// Sets what --simulate asks for.
void setState(DisketteDrive& drive, const std::string& name) {
    if (name.empty()) return;
    winlayer::DisketteState state;
    if (!winlayer::parseState(name, state)) {
        throw Problem(ExitCode::usage,
                      "--simulate does not know '" + name + "'; it knows " + simulationNames());
    }
    drive.setState(state);
}

bool isBadSector(DWORD error) {
    return error != 0 && error != ERROR_WRITE_PROTECT && error != ERROR_NOT_READY;
}

WindowsVersion windowsVersion(const std::string& name) {
    if (name == "95") return WindowsVersion::Windows95;
    if (name == "98") return WindowsVersion::Windows98;
    if (name == "me") return WindowsVersion::WindowsMe;
    if (name == "nt4") return WindowsVersion::NT4;
    if (name == "2000") return WindowsVersion::Windows2000;
    return WindowsVersion::XP;
}

class DriveView : public DisketteView {
public:
    explicit DriveView(std::shared_ptr<DisketteDrive> drive) : drive_(std::move(drive)) {}

    DWORD settle() override { return drive_->settle(); }
    DWORD readSectors(DWORD first, std::span<std::byte> buffer) override {
        return drive_->readSectors(first, buffer);
    }
    DWORD fats(Fats& fats) override {
        winlayer::Fat12Layout layout;
        const DWORD error = drive_->layout(layout);
        fats = {layout.reservedSectors, layout.fats, layout.sectorsPerFat};
        return error;
    }
    DWORD label(std::string& label) override {
        winlayer::VolumeFacts facts;
        const DWORD error = drive_->volume(facts);
        label = facts.label;
        return error;
    }
    DWORD file(const std::string& name, File& file) override {
        winlayer::FileFacts facts;
        const DWORD error = drive_->facts(name, facts);
        file = {facts.attributes, facts.size};
        return error;
    }
    DWORD readFile(const std::string& name, std::vector<unsigned char>& contents) override {
        std::unique_ptr<winlayer::OpenFile> opened;
        bool existed = false;
        const winlayer::OpenRequest request{GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0};
        if (const DWORD error = drive_->open(name, request, opened, existed)) return error;
        const winlayer::Transfer transfer = opened->read(0, std::as_writable_bytes(std::span(contents)));
        contents.resize(transfer.count);
        return transfer.error;
    }

private:
    std::shared_ptr<DisketteDrive> drive_;
};

// An image is built beside its place (from a copy of the old one, or blank) and put there by commit(); a
// device is worked on itself.
class LayerDiskette : public Diskette {
public:
    LayerDiskette(const Target& target, const std::string& state)
        : staged_(stagedFor(target)), drive_(DisketteDrive::make(storeFor(target))), view_(drive_) {
        setState(*drive_, state);
    }

    const std::shared_ptr<DisketteDrive>& drive() const { return drive_; }
    DisketteView& view() override { return view_; }
    std::string root() const override { return "A:\\"; }

    Problem diagnose() override {
        std::array<std::byte, winlayer::sectorSize> sector{};
        for (DWORD number = 0; number < winlayer::sectors1440; ++number) {
            DWORD error = drive_->readSectors(number, sector);
            if (error == 0) error = drive_->writeSectors(number, sector);
            if (error == ERROR_WRITE_PROTECT)
                return {ExitCode::writeProtected, "the diskette is write-protected"};
            if (error == ERROR_NOT_READY) return {ExitCode::noDiskette, "there is no diskette in the drive"};
            if (isBadSector(error)) {
                return {ExitCode::mediumError,
                        "sector " + std::to_string(number) + " of the diskette is bad: " + errorText(error)};
            }
        }
        return {ExitCode::failure, "the diskette could not be made"};
    }

    void commit() override {
        drive_->setState({});
        if (const DWORD error = drive_->settle()) {
            throw Problem(ExitCode::mediumError, "the diskette could not be finished: " + errorText(error));
        }
        drive_->eject();
        if (staged_) staged_->commit();
    }

private:
    static std::unique_ptr<StagedFile> stagedFor(const Target& target) {
        if (target.isDevice()) return nullptr;
        auto staged = std::make_unique<StagedFile>(target.image);
        if (fs::exists(target.image.string())) {
            copyImage(target.image, staged->path());
        } else {
            makeBlankImage(*staged);
        }
        return staged;
    }
    std::unique_ptr<SectorStore> storeFor(const Target& target) const {
        return openTarget(staged_ ? Target{staged_->path(), {}} : target);
    }

    std::unique_ptr<StagedFile> staged_;
    std::shared_ptr<DisketteDrive> drive_;
    DriveView view_;
};

class LayerWorkplace : public Workplace {
public:
    explicit LayerWorkplace(const std::string& windows) : machine_(windowsVersion(windows)) {
        machine_->drives.mountFolder('Z', "/");
    }

    std::unique_ptr<Diskette> insert(const MakeOptions& options) override {
        auto diskette = std::make_unique<LayerDiskette>(options.target, options.simulate);
        machine_->drives.mount('A', diskette->drive(), DRIVE_REMOVABLE);
        return diskette;
    }

private:
    winlayer::ScopedMachine machine_;
};

// Asks before an image is written over. What is no diskette image at all is never replaced.
void confirmReplacing(const FormatOptions& options, Console& console) {
    const TargetFacts facts = examine({options.image, {}});
    if (!facts.exists || options.yes) return;
    if (!console.confirm("Erase everything on the diskette image " + options.image.string() + "?")) {
        throw Problem(ExitCode::refused, options.image.string() +
                                             ": not confirmed; nothing was changed (--yes replaces without "
                                             "asking)");
    }
}

void format(const FormatOptions& options, Session& session) {
    confirmReplacing(options, session.console);
    const Cancellation cancellation;
    StagedFile staged(options.image);
    makeBlankImage(staged);
    cancellation.check();
    staged.commit();
    session.result["image"] = options.image.string();
    if (!session.json) session.console.result(options.image.string() + ": a blank 1.44 MB diskette");
}

}  // namespace

TargetFacts examine(const Target& target) {
    TargetFacts facts;
    std::error_code ignored;
    if (!target.isDevice() && !fs::exists(target.image.string(), ignored)) return facts;
    facts.exists = true;
    const auto drive = DisketteDrive::make(openTarget(target));
    winlayer::VolumeFacts volume;
    winlayer::DiskGeometry geometry;
    facts.isDiskette = drive->mediumGeometry(geometry) == 0 && geometry.sectors() == winlayer::sectors1440 &&
                       drive->volume(volume) == 0;
    facts.label = volume.label;
    return facts;
}

std::unique_ptr<DisketteView> openForReading(const Target& target) {
    return std::make_unique<DriveView>(DisketteDrive::make(openTarget(target)));
}

std::unique_ptr<Workplace> workplaceFor(const MakeOptions& options) {
    return std::make_unique<LayerWorkplace>(options.windows);
}

const HelpTexts& helpTexts() {
    static constexpr HelpTexts texts{
        "  emergency-disk make --image rescue.img --archive mwdisk1.dat\n"
        "  emergency-disk check --image rescue.img --archive mwdisk1.dat\n"
        "  emergency-disk format --image blank.img\n",
        "  emergency-disk make --image rescue.img --archive mwdisk1.dat\n"
        "  emergency-disk make --device /dev/fd0 --archive mwdisk1.dat --yes\n",
        "  emergency-disk check --image rescue.img\n"
        "  emergency-disk check --device /dev/fd0 --archive mwdisk1.dat --json\n",
        "name the diskette with --image or --device"};
    return texts;
}

void addTarget(CLI::App& command, Target& target) {
    CLI::Option* image = named(
        command.add_option("--image", target.image, "A diskette image file of 1,474,560 bytes"), "FILE");
    named(command.add_option("--device", target.device, "A diskette drive, as in /dev/fd0"), "PATH")
        ->excludes(image);
}

void addLayerOptions(CLI::App& command, MakeOptions& options) {
    command.add_option("--windows", options.windows, "The Windows whose way to the diskette is taken")
        ->capture_default_str()
        ->check(CLI::IsMember({"95", "98", "me", "nt4", "2000", "xp"}));
    command.add_option("--simulate", options.simulate, "A fault of the diskette: " + simulationNames());
}

void addFormat(Program& program, FormatOptions& options) {
    CLI::App* command = program.command("format", "Make a blank 1.44 MB FAT12 diskette image",
                                        "  emergency-disk format --image blank.img\n",
                                        [&](Session& session) { format(options, session); });
    named(command->add_option("--image", options.image, "The image file to make"), "FILE")->required();
    command->add_flag("-y,--yes", options.yes, "Replace an existing diskette image without asking");
}

}  // namespace tools::emergency_disk
