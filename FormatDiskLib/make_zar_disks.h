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
// progress step and error; the extractor's own hooks of the same names can be overridden by the same bodies.
// Thread rule: one thread; SendCancelCommand may come from any.
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

    // A user interface's progress position; here 0.
    virtual int GetSliderPos();

    // Empties the names, the drive root and the file list; progress end 100.
    void Reset();

    void SetArchiveDirectory(const UTILS::UtilsString& directory) { archiveDirectory_ = directory; }
    void SetArchiveName(const UTILS::UtilsString& name) { archiveName_ = name; }
    void SetVolumeLabel(const UTILS::UtilsString& label) { volumeLabel_ = label; }
    // The position that the progress display is set to when the disk is finished.
    void SetProgressEnd(int position) { progressEnd_ = position; }
    // Appends a file, by its name in the archive, and the Windows attributes that it gets on the diskette.
    void AddDiskFile(const UTILS::UtilsString& name, int attributes);
    void ClearDiskFiles();

    // The root of the drive that FindFloppyDrive has found ("A:\"), empty before.
    const UTILS::UtilsString& GetDriveRoot() const { return driveRoot_; }

    // Looks for a drive for 1.44 MB diskettes. Result: 1, or 0 after a failure, which has been reported
    // through SHOW_ERROR. Throws nothing but what the hooks throw while they report.
    int FindFloppyDrive();

    // Makes the disk in the drive that was found. Result: 1; 0 when the file list is empty, the diskette
    // cannot be emptied, or a file cannot be extracted (a cancel included): files written until then stay. A
    // label, an attribute or a boot sector that cannot be written does not end the run, unless it is for want
    // of memory; the last is reported through SHOW_ERROR. Failures after the list was counted are told, not
    // thrown; what the hooks throw outside the steps passes through.
    int MakeDisk();

    // Reads the disk in the drive that was found back, from the medium as far as Windows lets programs, and
    // compares it with the archive, as DiskVerification does. goOn is called again and again with the per
    // cent done; false ends it. Result: 1 when the disk starts and holds what the archive holds; 0 when it
    // does not, when the disk or the archive cannot be read, and when it was ended. Throws std::bad_alloc,
    // and what goOn throws.
    int VerifyDisk(const std::function<bool(int percent)>& goOn);

    // Deletes all files and directories below a directory, whatever their attributes; reports nothing. Of a
    // link to a directory only the link goes.
    // Result: 1, also when nothing can be found there; 0 at the first failure, where it stops, for an empty
    // name, and when there is no memory to look.
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
