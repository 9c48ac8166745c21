#pragma once
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "winlayer/diskette/diskette_drive.h"

// A diskette that random file operations are done on, beside a simple picture of what must then be on it.
// Equal seeds give equal diskettes.
class RandomVolume {
public:
    struct Node {
        bool directory = false;
        std::string content;
        DWORD attributes = 0;
        bool operator==(const Node&) const = default;
    };
    using Picture = std::map<std::string, Node>;

    explicit RandomVolume(unsigned seed);

    // Does so many operations, each of whose results is checked (a wrong one fails the test).
    void work(unsigned operations);
    const Picture& picture() const { return picture_; }
    const std::string& label() const { return label_; }
    std::span<const std::byte> image() const { return medium_->bytes(); }
    winlayer::DisketteDrive& drive() { return *drive_; }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }
    std::string randomBytes(std::size_t count);
    std::string newPath();
    std::string pick(bool directory);
    DWORD refusal(const Node& node, DWORD disposition, DWORD attributes) const;
    void openFile();
    void writeInto();
    void resize();
    void setAttributes();
    void removeFile();
    void makeDirectory();
    void removeDirectory();
    void setLabel();
    // Whether the directory that it names is there.
    bool hasPlace(const std::string& path) const;
    // Whether a refusal for want of room was right.
    bool wasFull(DWORD error, const std::string& path) const;

    std::mt19937 random_;
    winlayer::MemoryStore* medium_;
    std::shared_ptr<winlayer::DisketteDrive> drive_;
    Picture picture_;
    std::string label_;
};

// What is on a diskette according to the drive: every file with its content and attributes.
RandomVolume::Picture pictureOf(winlayer::DisketteDrive& drive);

// The table according to the image alone, both of whose FATs must be equal: an entry for each cluster, from 2
// on.
std::vector<unsigned> tableOf(std::span<const std::byte> image);
unsigned freeClusters(std::span<const std::byte> image);
// Clusters that a 1.44 MB diskette's files and directories (of up to fourteen entries) take.
unsigned clustersOf(const RandomVolume::Picture& picture);
