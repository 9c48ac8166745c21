#pragma once
#include <windows.h>

#include <functional>

#include "UtilsMap.h"
#include "UtilsString.h"
#include "boot_sector.h"
#include "format_disk.h"
#include "zar_extract.h"

// Makes the emergency diskette: finds the drive, empties the diskette, labels it, writes its boot sector and
// extracts the files of the list from the disk archive. FormatDisk's hooks receive every status line,
// progress step and error; a derived class can override them together with the extractor's hooks of the same
// names. Thread rule: one thread at a time; any thread may call SendCancelCommand.
//
//   maker.SetArchiveDirectory("C:\\Programme\\Mendwell");
//   maker.SetArchiveName("mwdisk1.dat");
//   maker.SetVolumeLabel("QUARVEL");
//   for (const BootFile& file : bootFiles) maker.AddDiskFile(file.name, static_cast<int>(file.attributes));
//   const bool made = maker.FindFloppyDrive() == 1 && maker.MakeDisk() == 1;
class MakeZARDisks : public FormatDisk, public virtual Extract_ZAR {
public:
    // Opens nothing; draws the serial number of its diskettes.
    MakeZARDisks();
    MakeZARDisks(const MakeZARDisks&) = delete;
    MakeZARDisks& operator=(const MakeZARDisks&) = delete;

    // The progress position of a user interface; here 0.
    virtual int GetSliderPos();

    // Clears the names, the drive root and the file list; sets the progress end to 100.
    void Reset();

    void SetArchiveDirectory(const UTILS::UtilsString& directory) { archiveDirectory_ = directory; }
    void SetArchiveName(const UTILS::UtilsString& name) { archiveName_ = name; }
    void SetVolumeLabel(const UTILS::UtilsString& label) { volumeLabel_ = label; }
    // The position that the progress display is set to when the disk is finished.
    void SetProgressEnd(int position) { progressEnd_ = position; }
    // Appends a file, by its name in the archive, and the Windows attributes that it gets on the diskette.
    void AddDiskFile(const UTILS::UtilsString& name, int attributes);
    void ClearDiskFiles();

    // The root of the drive that FindFloppyDrive found ("A:\"), empty before.
    const UTILS::UtilsString& GetDriveRoot() const { return driveRoot_; }

    // Finds a drive for 1.44 MB diskettes. Result: 1, or 0 after a failure, which has been reported through
    // SHOW_ERROR. Throws only what the hooks throw while reporting.
    int FindFloppyDrive();

    // Makes the disk in the drive found. Result: 1; 0 if the file list is empty, the diskette cannot be
    // emptied, or a file cannot be extracted (including a cancel); files already written stay. A label or
    // attribute that cannot be set does not end the run unless memory is short, nor does a boot sector that
    // cannot be written, which is reported through SHOW_ERROR. Once the list is counted, failures are
    // reported, not thrown; exceptions of hooks outside the steps propagate.
    int MakeDisk();

    // Reads the disk back, from the medium as far as Windows allows, and compares it with the archive as
    // DiskVerification does. goOn is called repeatedly with the percentage done; false stops. Result: 1 if
    // the disk boots and matches the archive; 0 if not, if no drive was found, if the disk or the archive
    // cannot be read, or if stopped. Throws std::bad_alloc and what goOn throws.
    int VerifyDisk(const std::function<bool(int percent)>& goOn);

    // Deletes all files and directories below a directory, regardless of attributes; reports nothing. Deletes
    // a link to a directory, not its target.
    // Result: 1, even if nothing is found there; 0 at the first failure, where it stops, for an empty name,
    // and if memory is short.
    int EraseTree(const char* directory);

private:
    void ShowStatus(const char* text);
    void Progress(int absolute, int value);
    int GiveUp();
    void ShowNoDrive();
    bool PrepareDiskette();
    bool WriteDiskFile(DWORD index);
    void ExtractDiskFile(DWORD index);
    void ShowLostFile(DWORD index);

    boot_sector::Image bootSector_;
    int progressEnd_ = 100;
    UTILS::UtilsString volumeLabel_;
    UTILS::UtilsString archiveDirectory_;
    UTILS::UtilsString archiveName_;
    UTILS::UtilsString driveRoot_;
    UTILS::UtilsStringMap files_;
};
