#pragma once
#include <set>
#include <string>

#include "support/diskette_files.h"
#include "winlayer/diskette/diskette_drive.h"

// Everything that a program does with a diskette, done to one that may hold anything: walks it, reads it,
// writes to it and erases it. Gives the error codes that were seen; the work is bounded whatever the diskette
// says.
class DisketteExercise {
public:
    explicit DisketteExercise(winlayer::DisketteDrive& drive) : drive_(drive) {}

    std::set<DWORD> run() {
        winlayer::VolumeFacts volume;
        note(drive_.volume(volume));
        walk("");
        note(writeWhole(drive_, "NEW.TXT", std::string(3000, 'n')));
        note(drive_.createDirectory("NEWDIR"));
        note(writeWhole(drive_, "NEWDIR\\NEW.TXT", "n"));
        note(drive_.setLabel("LABEL"));
        erase("");
        note(drive_.setLabel(""));
        note(drive_.settle());
        return seen_;
    }

private:
    DWORD note(DWORD error) {
        seen_.insert(error);
        return error;
    }
    bool spend() { return budget_ > 0 && --budget_ > 0; }

    std::vector<winlayer::FileFacts> list(const std::string& directory) {
        std::vector<winlayer::FileFacts> entries;
        note(drive_.list(directory, entries));
        return entries;
    }

    void walk(const std::string& directory) {
        for (const winlayer::FileFacts& entry : list(directory)) {
            const std::string path = directory.empty() ? entry.name : directory + '\\' + entry.name;
            if (entry.name == "." || entry.name == ".." || !spend()) {
                continue;
            }
            if ((entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
                walk(path);
            } else {
                touch(path);
            }
        }
    }

    void touch(const std::string& path) {
        std::string content(5000, '\0');
        const TestFile file = openFile(drive_, path, OPEN_EXISTING);
        if (note(file.error) != NO_ERROR) {
            return;
        }
        std::uint64_t size = 0;
        note(file->size(size));
        note(file->read(size / 2, std::as_writable_bytes(std::span(content))).error);
        note(file->write(size, bytesOf(content)).error);
        note(file->resize(size / 3));
    }

    // As the disk maker erases: the first failure ends it.
    bool erase(const std::string& directory) {
        for (const winlayer::FileFacts& entry : list(directory)) {
            const std::string path = directory.empty() ? entry.name : directory + '\\' + entry.name;
            if (entry.name == "." || entry.name == "..") {
                continue;
            }
            const bool isDirectory = (entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            const bool erased =
                spend() && (isDirectory ? erase(path) && note(drive_.removeDirectory(path)) == NO_ERROR
                                        : note(drive_.setAttributes(path, 0)) == NO_ERROR &&
                                              note(drive_.removeFile(path)) == NO_ERROR);
            if (!erased) {
                return false;
            }
        }
        return true;
    }

    winlayer::DisketteDrive& drive_;
    std::set<DWORD> seen_;
    int budget_ = 400;  // entries
};
