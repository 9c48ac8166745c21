#include "support/random_volume.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/diskette_files.h"
#include "support/diskette_machine.h"

using winlayer::DisketteDrive;
using winlayer::sectorSize;

namespace {

constexpr std::size_t largestWrite = 60'000;
constexpr DWORD guarding = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

std::string parentOf(const std::string& path) {
    const std::size_t separator = path.rfind('\\');
    return separator == std::string::npos ? "" : path.substr(0, separator);
}

unsigned byteAt(std::span<const std::byte> image, std::size_t at) {
    return std::to_integer<unsigned>(image[at]);
}

void addTree(DisketteDrive& drive, const std::string& directory, RandomVolume::Picture& picture) {
    std::vector<winlayer::FileFacts> entries;
    ASSERT_EQ(drive.list(directory, entries), DWORD{NO_ERROR}) << directory;
    for (const winlayer::FileFacts& entry : entries) {
        if (entry.name == "." || entry.name == "..") {
            continue;
        }
        const std::string path = directory.empty() ? entry.name : directory + '\\' + entry.name;
        RandomVolume::Node node;
        node.directory = (entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        node.attributes = entry.attributes & 0x27;
        if (node.directory) {
            addTree(drive, path, picture);
        } else {
            EXPECT_EQ(readWhole(drive, path, node.content), DWORD{NO_ERROR}) << path;
            EXPECT_EQ(node.content.size(), entry.size) << path;
        }
        picture[path] = node;
    }
}

}  // namespace

RandomVolume::Picture pictureOf(DisketteDrive& drive) {
    RandomVolume::Picture picture;
    addTree(drive, "", picture);
    return picture;
}

std::vector<unsigned> tableOf(std::span<const std::byte> image) {
    const std::size_t fatBytes = (byteAt(image, 0x16) | byteAt(image, 0x17) << 8) * std::size_t{sectorSize};
    const std::span first = image.subspan(sectorSize, fatBytes);
    const std::span second = image.subspan(sectorSize + fatBytes, fatBytes);
    EXPECT_TRUE(std::equal(first.begin(), first.end(), second.begin())) << "the FATs differ";
    const std::size_t dataSectors = image.size() / sectorSize - 1 - 2 * fatBytes / sectorSize -
                                    (byteAt(image, 0x11) | byteAt(image, 0x12) << 8) / 16;
    const std::size_t end = dataSectors / byteAt(image, 0x0D) + 2;
    std::vector<unsigned> table;
    for (std::size_t cluster = 2; cluster < end; ++cluster) {
        const std::size_t at = cluster * 3 / 2;
        const unsigned pair = byteAt(first, at) | byteAt(first, at + 1) << 8;
        table.push_back(cluster % 2 == 0 ? pair & 0xFFF : pair >> 4);
    }
    return table;
}

unsigned freeClusters(std::span<const std::byte> image) {
    const std::vector<unsigned> table = tableOf(image);
    return static_cast<unsigned>(std::count(table.begin(), table.end(), 0U));
}

unsigned clustersOf(const RandomVolume::Picture& picture) {
    std::size_t count = 0;
    for (const auto& [path, node] : picture) {
        count += node.directory ? 1 : (node.content.size() + sectorSize - 1) / sectorSize;
    }
    return static_cast<unsigned>(count);
}

RandomVolume::RandomVolume(unsigned seed) : random_(seed) {
    const DWORD sectors = below(5) == 0 ? winlayer::sectors720 : winlayer::sectors1440;
    auto medium = std::make_unique<winlayer::MemoryStore>(sectors);
    medium_ = medium.get();
    std::fill(medium_->bytes().begin(), medium_->bytes().end(), DisketteMachine::leftover);
    EXPECT_EQ(formatDiskette(*medium, seed), DWORD{NO_ERROR});
    drive_ = DisketteDrive::make(std::move(medium));
    drive_->setClock([] { return DisketteMachine::moment; });
}

std::string RandomVolume::randomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(random_()); });
    return bytes;
}

// A path with the letters as they come back: upper case. One in eight exists already.
std::string RandomVolume::newPath() {
    static const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-$#";
    const auto part = [&](unsigned length) {
        std::string text;
        for (unsigned i = 0; i < length; ++i) {
            text += letters[below(static_cast<unsigned>(letters.size()))];
        }
        return text;
    };
    if (!picture_.empty() && below(8) == 0) {
        return std::next(picture_.begin(), below(static_cast<unsigned>(picture_.size())))->first;
    }
    const std::string extension = part(below(4));
    const std::string name = part(2 + below(7)) + (extension.empty() ? "" : '.' + extension);
    // Seldom below a file, or nowhere.
    const std::string directory = below(2) == 0    ? ""
                                  : below(16) != 0 ? pick(true)
                                  : below(2) == 0  ? pick(false)
                                                   : name;
    return directory.empty() ? name : directory + '\\' + name;
}

// An existing file or directory; empty when there is none.
std::string RandomVolume::pick(bool directory) {
    std::vector<std::string> paths;
    for (const auto& [path, node] : picture_) {
        if (node.directory == directory) {
            paths.push_back(path);
        }
    }
    return paths.empty() ? "" : paths[below(static_cast<unsigned>(paths.size()))];
}

bool RandomVolume::hasPlace(const std::string& path) const {
    const auto parent = picture_.find(parentOf(path));
    return parentOf(path).empty() || (parent != picture_.end() && parent->second.directory);
}

bool RandomVolume::wasFull(DWORD error, const std::string& path) const {
    if (error == ERROR_CANNOT_MAKE) {
        const auto inRoot = std::count_if(picture_.begin(), picture_.end(), [](const auto& entry) {
            return entry.first.find('\\') == std::string::npos;
        });
        return parentOf(path).empty() && inRoot + (label_.empty() ? 0 : 1) >= byteAt(image(), 0x11);
    }
    // A write fills the disk to the last cluster; a new directory may need two, for itself and in its parent.
    return error == ERROR_DISK_FULL && freeClusters(image()) <= 1;
}

// What opening something that is there says.
DWORD RandomVolume::refusal(const Node& node, DWORD disposition, DWORD attributes) const {
    const DWORD guards = node.attributes & guarding;
    if (disposition == CREATE_NEW) {
        return ERROR_FILE_EXISTS;
    }
    const bool refused = node.directory || (node.attributes & FILE_ATTRIBUTE_READONLY) != 0 ||
                         (disposition == CREATE_ALWAYS && (guards & ~attributes) != 0);
    return refused ? ERROR_ACCESS_DENIED : DWORD{NO_ERROR};
}

void RandomVolume::openFile() {
    const std::string old = below(4) == 0 ? pick(false) : "";
    const std::string path = old.empty() ? newPath() : old;
    const auto known = picture_.find(path);
    const bool there = known != picture_.end();
    const DWORD disposition = below(2) == 0 ? CREATE_ALWAYS : CREATE_NEW + below(5);
    const DWORD attributes = below(4) == 0 ? static_cast<DWORD>(random_()) & guarding : 0;
    const TestFile file = ::openFile(*drive_, path, disposition, GENERIC_WRITE, 0, attributes);
    if (there) {
        ASSERT_EQ(file.error, refusal(known->second, disposition, attributes)) << path << ' ' << disposition;
    } else if (!hasPlace(path)) {
        ASSERT_EQ(file.error, ERROR_PATH_NOT_FOUND) << path;
    } else if (disposition == OPEN_EXISTING || disposition == TRUNCATE_EXISTING) {
        ASSERT_EQ(file.error, ERROR_FILE_NOT_FOUND) << path;
    } else if (file.error != NO_ERROR) {
        ASSERT_TRUE(wasFull(file.error, path)) << path << ": error " << file.error;
    }
    if (file.error == NO_ERROR) {
        ASSERT_EQ(file.existed, there) << path;
        Node& node = picture_[path];
        if (disposition == TRUNCATE_EXISTING) {
            node = {false, "", node.attributes | FILE_ATTRIBUTE_ARCHIVE};
        } else if (!there || disposition == CREATE_ALWAYS) {
            node = {false, "", attributes | FILE_ATTRIBUTE_ARCHIVE};
        }
    }
}

void RandomVolume::writeInto() {
    const std::string path = pick(false);
    if (path.empty() || (picture_[path].attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return;
    }
    Node& node = picture_[path];
    const std::size_t size = node.content.size();
    const std::size_t offset = below(3) == 0 ? below(static_cast<unsigned>(size) + 3000) : size;
    const std::string data = randomBytes(1 + below(below(2) == 0 ? 1500 : largestWrite));
    const TestFile file = ::openFile(*drive_, path, OPEN_EXISTING);
    ASSERT_EQ(file.error, DWORD{NO_ERROR}) << path;
    const winlayer::Transfer written = file->write(offset, bytesOf(data));
    ASSERT_EQ(written.error, written.count == data.size() ? DWORD{NO_ERROR} : ERROR_DISK_FULL) << path;
    if (written.error != NO_ERROR && written.count > 0) {
        ASSERT_EQ(freeClusters(image()), 0U);
    }
    if (written.count > 0) {
        node.content.resize(std::max(size, offset + written.count));
        node.content.replace(offset, written.count, data, 0, written.count);
        node.attributes |= FILE_ATTRIBUTE_ARCHIVE;
    }
}

void RandomVolume::resize() {
    const std::string path = pick(false);
    if (path.empty() || (picture_[path].attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return;
    }
    Node& node = picture_[path];
    const std::size_t size = below(4) == 0 ? 0 : below(static_cast<unsigned>(node.content.size()) + 2000);
    const TestFile file = ::openFile(*drive_, path, OPEN_EXISTING);
    ASSERT_EQ(file.error, DWORD{NO_ERROR}) << path;
    const DWORD error = file->resize(size);
    if (error == ERROR_DISK_FULL) {
        ASSERT_LE(freeClusters(image()), 2000 / sectorSize + 1);
        return;
    }
    ASSERT_EQ(error, DWORD{NO_ERROR}) << path;
    node.content.resize(size);
    node.attributes |= FILE_ATTRIBUTE_ARCHIVE;
}

void RandomVolume::setAttributes() {
    const std::string path = pick(below(8) == 0);
    if (!path.empty()) {
        const DWORD attributes = random_() & 0x27;
        ASSERT_EQ(drive_->setAttributes(path, attributes), DWORD{NO_ERROR}) << path;
        picture_[path].attributes = attributes;
    }
}

void RandomVolume::removeFile() {
    const std::string path = pick(below(8) == 0);
    if (!path.empty()) {
        const bool refused =
            picture_[path].directory || (picture_[path].attributes & FILE_ATTRIBUTE_READONLY) != 0;
        ASSERT_EQ(drive_->removeFile(path), refused ? ERROR_ACCESS_DENIED : DWORD{NO_ERROR}) << path;
        if (!refused) {
            picture_.erase(path);
        }
    }
}

void RandomVolume::makeDirectory() {
    const std::string path = newPath();
    const DWORD error = drive_->createDirectory(path);
    if (picture_.count(path) != 0) {
        ASSERT_EQ(error, ERROR_ALREADY_EXISTS) << path;
    } else if (!hasPlace(path)) {
        ASSERT_EQ(error, ERROR_PATH_NOT_FOUND) << path;
    } else if (error != NO_ERROR) {
        ASSERT_TRUE(wasFull(error, path)) << path << ": error " << error;
    } else {
        picture_[path] = {true, "", 0};
    }
}

void RandomVolume::removeDirectory() {
    const std::string path = pick(below(8) != 0);
    if (path.empty()) {
        return;
    }
    const auto inside = picture_.lower_bound(path + '\\');
    const bool empty = inside == picture_.end() || inside->first.rfind(path + '\\', 0) != 0;
    const bool readOnly = (picture_[path].attributes & FILE_ATTRIBUTE_READONLY) != 0;
    const DWORD expected = !picture_[path].directory ? ERROR_DIRECTORY
                           : readOnly                ? ERROR_ACCESS_DENIED
                           : empty                   ? DWORD{NO_ERROR}
                                                     : ERROR_DIR_NOT_EMPTY;
    ASSERT_EQ(drive_->removeDirectory(path), expected) << path;
    if (expected == NO_ERROR) {
        picture_.erase(path);
    }
}

void RandomVolume::setLabel() {
    const std::string label = below(3) == 0 ? "" : "VOL " + std::to_string(below(100'000));
    const DWORD error = drive_->setLabel(label);
    if (error == NO_ERROR) {
        label_ = label;
    } else {
        ASSERT_TRUE(wasFull(error, "")) << "error " << error;
    }
}

void RandomVolume::work(unsigned operations) {
    using Operation = void (RandomVolume::*)();
    static constexpr Operation kinds[] = {
        &RandomVolume::openFile,      &RandomVolume::openFile,        &RandomVolume::writeInto,
        &RandomVolume::writeInto,     &RandomVolume::writeInto,       &RandomVolume::resize,
        &RandomVolume::setAttributes, &RandomVolume::removeFile,      &RandomVolume::makeDirectory,
        &RandomVolume::makeDirectory, &RandomVolume::removeDirectory, &RandomVolume::setLabel};
    for (unsigned i = 0; i < operations && !testing::Test::HasFatalFailure(); ++i) {
        (this->*kinds[below(std::size(kinds))])();
    }
}
