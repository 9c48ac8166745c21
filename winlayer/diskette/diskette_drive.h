#pragma once
#include <ctime>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "winlayer/diskette/diskette_state.h"
#include "winlayer/diskette/fat12_layout.h"
#include "winlayer/diskette/sector_store.h"
#include "winlayer/file_system/file_system.h"

namespace winlayer {

class Fat12Volume;

// A 3.5-inch diskette drive: a FAT12 volume with its files (8.3 names), and the raw device below it. Files
// and device see the same bytes; what a call has changed is on the medium when the call returns. Names and
// labels are in code page 1252 and lie on the diskette in code page 850.
//
// Mount it with machine.drives.mount('A', DisketteDrive::make(...), DRIVE_REMOVABLE). Open files keep the
// drive alive. Every operation may be called from any thread; one lock per drive.
class DisketteDrive : public FileSystem, public std::enable_shared_from_this<DisketteDrive> {
    struct Private {};

public:
    // A drive with the medium in it, or an empty one.
    static std::shared_ptr<DisketteDrive> make(std::unique_ptr<SectorStore> medium = nullptr);
    explicit DisketteDrive(Private);
    ~DisketteDrive() override;

    // Puts a medium in. Files that are open on the one before fail with ERROR_FILE_INVALID from then on.
    void insert(std::unique_ptr<SectorStore> medium);
    // Takes the medium out and gives it to the caller; null when there is none.
    std::unique_ptr<SectorStore> eject();

    DisketteState state() const;
    void setState(const DisketteState& state);

    // Where the times of files come from; the host's clock at first.
    void setClock(std::function<std::time_t()> clock);

    // Brings everything onto the medium.
    DWORD flush();
    // The same, and forgets what is known of the medium, so that whatever is read afterwards is what it
    // really holds. A write that the medium lost shows only then.
    DWORD settle();

    // The media that the drive takes, the largest first, and the one in it.
    std::vector<DiskGeometry> supportedGeometries() const;
    DWORD mediumGeometry(DiskGeometry& geometry) const;
    // Whether there is a medium in the drive that cannot be written.
    bool writeProtected() const;
    // The parameter block of the volume in the drive.
    DWORD layout(Fat12Layout& layout);

    // Whole sectors of the medium; ERROR_SECTOR_NOT_FOUND, and nothing moved, when one lies past the end.
    DWORD readSectors(DWORD first, std::span<std::byte> buffer);
    DWORD writeSectors(DWORD first, std::span<const std::byte> data);

    DWORD open(const std::string& path, const OpenRequest& request, std::unique_ptr<OpenFile>& file,
               bool& existed) override;
    DWORD facts(const std::string& path, FileFacts& facts) override;
    DWORD list(const std::string& directory, std::vector<FileFacts>& entries) override;
    DWORD setAttributes(const std::string& path, DWORD attributes) override;
    DWORD removeFile(const std::string& path) override;
    DWORD createDirectory(const std::string& path) override;
    DWORD removeDirectory(const std::string& path) override;
    DWORD volume(VolumeFacts& facts) override;
    DWORD setLabel(const std::string& label) override;
    // Like the system, for reading or writing only when the drive is ready.
    DWORD openDevice(const OpenRequest& request, std::unique_ptr<OpenFile>& device) override;

    // What the files and devices that this drive has opened call. A file keeps the volume on which it was
    // opened.
    using VolumeWork = std::function<void(Fat12Volume&)>;
    // Does the work on the volume in the drive under the drive's lock, mounting it before when necessary; the
    // DiskError that it throws is the result.
    DWORD onVolume(const VolumeWork& work);
    // The same, if the volume is still the one in the drive; ERROR_FILE_INVALID if not.
    DWORD onVolume(const std::shared_ptr<Fat12Volume>& opened, const VolumeWork& work);
    void underLock(const std::function<void()>& work);

private:
    // Why the drive cannot be used now; 0 when it can.
    DWORD obstacle() const;
    Fat12Volume& mounted();
    void notice(DWORD first, std::size_t count);

    mutable std::mutex mutex_;
    DisketteState state_;
    std::unique_ptr<ConditionedStore> medium_;
    std::shared_ptr<Fat12Volume> volume_;  // null until the first use
    std::function<std::time_t()> clock_;
};

}  // namespace winlayer
