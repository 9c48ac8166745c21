// Diskettes in the layer's drive A:, images and block devices.
#include "tools/emergency_disk/diskette.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>

#include "tools/common/reasons.h"
#include "tools/common/staging.h"
#include "tools/emergency_disk/command_line.h"
#include "tools/emergency_disk/problems.h"
#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/host_store.h"
#include "winlayer/diskette/short_name.h"
#include "winlayer/machine.h"

namespace tools::emergency_disk {

namespace fs = std::filesystem;
using host_files::Kind;
using winlayer::DisketteDrive;
using winlayer::SectorStore;
using winlayer::WindowsVersion;

namespace {

constexpr std::size_t imageBytes = std::size_t{winlayer::sectors1440} * winlayer::sectorSize;

// Names who has access by a file's permissions.
std::string whoMay(const Path& file, mode_t asUser, mode_t inGroup) {
    std::string who = "only root";
    struct stat facts {};
    if (stat(file.c_str(), &facts) != 0) return who + " may";
    const bool userMay = (facts.st_mode & asUser) != 0 && facts.st_uid != 0;
    const bool groupMay = (facts.st_mode & inGroup) != 0 && facts.st_gid != 0;
    const passwd* user = userMay ? getpwuid(facts.st_uid) : nullptr;
    const group* members = groupMay ? getgrgid(facts.st_gid) : nullptr;
    if (user != nullptr) who += std::string(" and the user ") + user->pw_name;
    if (members != nullptr) who += std::string(" and members of the group ") + members->gr_name;
    return who + " may";
}

Problem mayNotRead(const Path& file) {
    return {ExitCode::failure,
            "no permission to read " + file.string() + ": " + whoMay(file, S_IRUSR, S_IRGRP)};
}

Problem mayNotWrite(const Path& file) {
    return {ExitCode::failure,
            "no permission to write to " + file.string() + ": " + whoMay(file, S_IWUSR, S_IWGRP)};
}

// Whether the permissions exclude this user in particular, rather than everyone.
bool isKeptFromWriting(const Path& file) {
    constexpr mode_t byAnyone = S_IWUSR | S_IWGRP | S_IWOTH;
    struct stat facts {};
    return stat(file.c_str(), &facts) == 0 && (facts.st_mode & byAnyone) != 0 &&
           faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) != 0 && errno == EACCES;
}

Problem openProblem(const Target& target, DWORD error) {
    const std::string& name = target.path().string();
    switch (error) {
        case ERROR_BAD_DEVICE:
            return {ExitCode::refused, name + " is not a block device"};
        case ERROR_UNRECOGNIZED_MEDIA:
            return {ExitCode::refused,
                    name + (target.isDevice() ? " does not have exactly 2,880 sectors of 512 bytes"
                                              : " is not a 1.44 MB diskette image (1,474,560 bytes)")};
        case ERROR_BUSY:
            return {ExitCode::refused, name + " is in use (mounted?)"};
        case ERROR_NOT_READY:
            return {ExitCode::noDiskette, "there is no diskette in " + name};
        case ERROR_ACCESS_DENIED:
            return mayNotRead(target.path());
        default:
            return {ExitCode::failure, "cannot open " + name + ": " + errorText(error)};
    }
}

// Null when the target does not exist.
std::unique_ptr<SectorStore> openIfThere(const Target& target) {
    const Kind kind = target.isDevice() ? Kind::missing : host_files::kindOf(target.image);
    if (kind == Kind::folder || kind == Kind::other) {
        throw Problem(ExitCode::refused,
                      target.image.string() + " is not an image file (--device names a drive)");
    }
    std::unique_ptr<SectorStore> store;
    const DWORD error = target.isDevice() ? winlayer::openBlockDevice(target.device.string(), store)
                                          : winlayer::openImage(target.image.string(), store);
    if (error != NO_ERROR && error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) {
        throw openProblem(target, error);
    }
    return store;
}

std::unique_ptr<SectorStore> openTarget(const Target& target) {
    auto store = openIfThere(target);
    if (!store) {
        throw Problem(
            ExitCode::noDiskette,
            (target.isDevice() ? "there is no drive " : "there is no image ") + target.path().string());
    }
    return store;
}

// Checks the folder of an image, where the new one is created beside it.
void requireRoomBeside(const Path& image) {
    const Path file = host_files::behindLink(image);
    const Path folder = file.parent().empty() ? Path(".") : file.parent();
    std::string why;
    const Kind kind = host_files::kindOf(folder, &why);
    if (kind != Kind::folder) {
        throw Problem(ExitCode::failure, "it cannot be made in " + folder.string() + ": " +
                                             (kind == Kind::missing ? why : "Not a folder"));
    }
    if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
        if (errno == EACCES) throw mayNotWrite(folder);
        throw Problem(ExitCode::failure, "it cannot be made in " + folder.string() + ": " +
                                             std::generic_category().message(errno));
    }
    const std::uint64_t room = host_files::freeBytes(folder);
    if (room < imageBytes) {
        throw Problem(ExitCode::failure, "no space: it takes " + std::to_string(imageBytes) +
                                             " bytes, and the disk that holds " + folder.string() + " has " +
                                             std::to_string(room) + " left");
    }
}

// Gives an image file its full size on the host's disk in advance, so that a full disk is not mistaken for a
// bad sector.
void reserve(const Path& file, const Path& target) {
    const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
    int error = opened < 0 ? errno : 0;
    if (opened >= 0) {
        error = posix_fallocate(opened, 0, off_t{imageBytes});
        close(opened);
    }
    if (error != 0) {
        throw Problem(ExitCode::failure,
                      "cannot write " + target.string() + ": " + std::generic_category().message(error));
    }
}

void copySectors(SectorStore& from, SectorStore& to) {
    std::vector<std::byte> sectors(imageBytes);
    DWORD error = from.read(0, sectors);
    if (error == NO_ERROR) error = to.write(0, sectors);
    if (error != NO_ERROR) throw Problem(ExitCode::failure, "cannot copy the image: " + errorText(error));
}

DWORD freshSerial() {
    return static_cast<DWORD>(std::chrono::system_clock::now().time_since_epoch().count());
}

std::unique_ptr<SectorStore> blankDiskette() {
    auto medium = std::make_unique<winlayer::MemoryStore>();
    winlayer::formatDiskette(*medium, freshSerial());
    return medium;
}

// Fills a staged image.
std::unique_ptr<SectorStore> makeImage(const StagedFile& file, SectorStore& contents) {
    reserve(file.path(), file.target());
    auto image = openTarget({file.path(), {}});
    copySectors(contents, *image);
    return image;
}

// The names that --simulate accepts.
std::string simulationNames() {
    std::string names;
    for (const std::string_view name : winlayer::stateNames()) {
        names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return names;
}

// Why --simulate rejects a name; empty when it is valid.
std::string unknownSimulation(const std::string& name) {
    winlayer::DisketteState ignored;
    if (winlayer::parseState(name, ignored)) return {};
    return "'" + name + "' is none of " + simulationNames();
}

winlayer::DisketteState simulated(const std::string& name) {
    winlayer::DisketteState state;
    winlayer::parseState(name, state);
    return state;
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

// An image is built beside its target, starting with the contents of the old or a blank one, and moved there
// by commit(); a device is written directly.
class LayerDiskette : public Diskette {
public:
    // A missing drive is a problem; a missing image will be created.
    LayerDiskette(const Target& target, const winlayer::DisketteState& state) : target_(target) {
        auto medium = target.isDevice() ? openTarget(target) : openIfThere(target);
        exists_ = medium != nullptr;
        drive_->insert(exists_ ? std::move(medium) : blankDiskette());
        drive_->setState(state);
    }

    const std::shared_ptr<DisketteDrive>& drive() const { return drive_; }
    DisketteView& view() override { return view_; }
    std::string root() const override { return "A:\\"; }
    bool exists() const override { return exists_; }

    void requireWritable() override {
        if (drive_->supportedGeometries().front().sectors() != winlayer::sectors1440) {
            throw Problem(ExitCode::unsuitableDrive, "the drive takes 720 KB diskettes, none of 1.44 MB");
        }
        winlayer::DiskGeometry geometry;
        if (const DWORD error = drive_->mediumGeometry(geometry)) throw transferProblem(error);
        if (geometry.sectors() != winlayer::sectors1440) {
            throw Problem(ExitCode::refused, "this is a 720 KB diskette, none of 1.44 MB");
        }
        if (!drive_->state().writeProtected && isKeptFromWriting(target_.path())) {
            throw mayNotWrite(target_.path());
        }
        if (drive_->writeProtected()) throw transferProblem(ERROR_WRITE_PROTECT);
        if (!target_.isDevice()) requireRoomBeside(target_.image);
    }

    void prepare() override {
        if (target_.isDevice()) return;
        staged_ = std::make_unique<StagedFile>(target_.image);
        const auto contents = drive_->eject();
        drive_->insert(makeImage(*staged_, *contents));
        if (exists_) keepPermissions();
    }

    Problem diagnose() override {
        std::array<std::byte, winlayer::sectorSize> sector{};
        for (DWORD number = 0; number < winlayer::sectors1440; ++number) {
            DWORD error = drive_->readSectors(number, sector);
            if (error == 0) error = drive_->writeSectors(number, sector);
            if (error != 0) return transferProblem(error, number);
        }
        return {ExitCode::failure,
                "the diskette could not be made, although each of its sectors can be read and written now"};
    }

    void commit() override {
        drive_->setState({});
        if (const DWORD error = drive_->settle()) {
            throw Problem(codeOf(error, ExitCode::failure),
                          about(target_, "the diskette could not be finished: " + errorText(error)));
        }
        drive_->eject();
        if (staged_) staged_->commit();
    }

private:
    void keepPermissions() const {
        std::error_code ignored;
        fs::permissions(staged_->path().string(), fs::status(target_.image.string(), ignored).permissions(),
                        ignored);
    }

    Target target_;
    bool exists_ = false;
    std::unique_ptr<StagedFile> staged_;
    std::shared_ptr<DisketteDrive> drive_ = DisketteDrive::make();
    DriveView view_{drive_};
};

class LayerWorkplace : public Workplace {
public:
    explicit LayerWorkplace(const std::string& windows) : machine_(windowsVersion(windows)) {
        machine_->drives.mountFolder('Z', "/");
    }

    std::unique_ptr<Diskette> insert(const MakeOptions& options) override {
        auto diskette = std::make_unique<LayerDiskette>(options.target, simulated(options.simulate));
        machine_->drives.mount('A', diskette->drive(), DRIVE_REMOVABLE);
        return diskette;
    }

private:
    winlayer::ScopedMachine machine_;
};

// Asks before an image is overwritten. A file that is not a diskette image is never replaced.
void confirmReplacing(const FormatOptions& options, Console& console) {
    const Target target{options.image, {}};
    const auto image = openIfThere(target);
    if (!image) return;
    if (image->writeProtected()) {
        throw isKeptFromWriting(options.image)
            ? mayNotWrite(options.image)
            : Problem(ExitCode::writeProtected, about(target, "the diskette is write-protected"));
    }
    if (options.yes) return;
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
    makeImage(staged, *blankDiskette());
    cancellation.check();
    staged.commit();
    session.member("image", options.image.string());
    if (!session.json) session.console.result(options.image.string() + ": a blank 1.44 MB diskette");
}

}  // namespace

std::string storedLabel(const std::string& label) {
    winlayer::RawName stored;
    if (label.size() > stored.size() || !winlayer::parseLabel(label, stored)) return {};
    const std::string text = winlayer::labelText(stored);
    return text.size() == label.size() ? text : "";  // trailing blanks would be lost
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
    command.add_option("--simulate", options.simulate, "A fault of the diskette: " + simulationNames())
        ->check(CLI::Validator(unknownSimulation, ""));
}

void addFormat(Program& program, FormatOptions& options) {
    CLI::App* command = program.command("format", "Make a blank 1.44 MB FAT12 diskette image",
                                        "  emergency-disk format --image blank.img\n",
                                        [&](Session& session) { format(options, session); });
    named(command->add_option("--image", options.image, "The image file to make"), "FILE")->required();
    command->add_flag("-y,--yes", options.yes, "Replace an existing diskette image without asking");
}

}  // namespace tools::emergency_disk
