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

// A 3.5-inch diskette drive: a FAT12 volume with its files (8.3 names), and the raw device below it. Both see
// the same bytes, and changes are on the medium when a call returns. Names and labels are in code page 1252,
// on the diskette in code page 850.
//
// Mount it with machine.drives.mount('A', DisketteDrive::make(...), DRIVE_REMOVABLE). Open files keep the
// drive alive. Thread rule: any thread may call every operation; one lock per drive.
class DisketteDrive : public FileSystem, public std::enable_shared_from_this<DisketteDrive> {
    struct Private {};

public:
    // A drive with this medium in it, or an empty one.
    static std::shared_ptr<DisketteDrive> make(std::unique_ptr<SectorStore> medium = nullptr);
    explicit DisketteDrive(Private);
    ~DisketteDrive() override;

    // Inserts a medium. Files open on the previous one then fail with ERROR_FILE_INVALID.
    void insert(std::unique_ptr<SectorStore> medium);
    // Removes the medium and returns it; null when there is none.
    std::unique_ptr<SectorStore> eject();

    DisketteState state() const;
    void setState(const DisketteState& state);

    // The clock for file times; initially the host's.
    void setClock(std::function<std::time_t()> clock);

    // Syncs the medium.
    DWORD flush();
    // The same, and discards the caches, so that later reads show what the medium really holds: only they
    // find a lost write.
    DWORD settle();

    // The media that the drive supports, the largest first, and the current one.
    std::vector<DiskGeometry> supportedGeometries() const;
    DWORD mediumGeometry(DiskGeometry& geometry) const;
    // Whether there is a write-protected medium in the drive.
    bool writeProtected() const;
    // The parameter block of the volume in the drive.
    DWORD layout(Fat12Layout& layout);

    // Complete sectors; ERROR_SECTOR_NOT_FOUND, and nothing transferred, if one lies past the end.
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
    // Opening it for reading or writing requires a ready drive, as on Windows.
    DWORD openDevice(const OpenRequest& request, std::unique_ptr<OpenFile>& device) override;

    // For the files and devices that this drive has opened. A file keeps the volume on which it was opened.
    using VolumeWork = std::function<void(Fat12Volume&)>;
    // Runs the work on the current volume under the drive's lock, mounting it first if necessary; returns the
    // code of a DiskError that it throws.
    DWORD onVolume(const VolumeWork& work);
    // The same if this volume is still in the drive, otherwise ERROR_FILE_INVALID.
    DWORD onVolume(const std::shared_ptr<Fat12Volume>& opened, const VolumeWork& work);
    void underLock(const std::function<void()>& work);

private:
    // Why the drive cannot be used now; 0 if it can.
    DWORD obstacle() const;
    Fat12Volume& mounted();
    void notice(DWORD first, std::size_t count);

    mutable std::mutex mutex_;
    DisketteState state_;
    std::unique_ptr<ConditionedStore> medium_;
    std::shared_ptr<Fat12Volume> volume_;  // null until first used
    std::function<std::time_t()> clock_;
};

}  // namespace winlayer
