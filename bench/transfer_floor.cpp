// The transfers that the archive format asks for and nothing else: 4-byte fields, names, and data in steps of
// 8,094 bytes, unbuffered, straight on the host's calls. What a program takes beyond this is what we add to
// the format.
//
//   transfer_floor create ARCHIVE FOLDER
//   transfer_floor extract ARCHIVE FOLDER
//   transfer_floor last ARCHIVE NAME FOLDER

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t step = 8094;
constexpr unsigned char key = 0x93;

[[noreturn]] void fail(const std::string& what) {
    std::cerr << "transfer_floor: " << what << '\n';
    std::exit(1);
}

int openFile(const std::string& name, int flags) {
    const int file = open(name.c_str(), flags | O_CLOEXEC, 0666);
    if (file < 0) fail("cannot open " + name);
    return file;
}

void put(int file, const void* data, std::size_t size) {
    if (write(file, data, size) != static_cast<ssize_t>(size)) fail("short write");
}

void putField(int file, std::uint32_t value) {
    put(file, &value, sizeof value);
}

bool get(int file, void* data, std::size_t size) {
    return read(file, data, size) == static_cast<ssize_t>(size);
}

std::uint32_t getField(int file) {
    std::uint32_t value = 0;
    if (!get(file, &value, sizeof value)) fail("short read");
    return value;
}

void scramble(unsigned char* data, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) data[i] ^= key;
}

void copyData(int from, int to, std::size_t size) {
    unsigned char buffer[step];
    while (size > 0) {
        const std::size_t count = std::min(step, size);
        if (!get(from, buffer, count)) fail("short read");
        scramble(buffer, count);
        put(to, buffer, count);
        size -= count;
    }
}

void createRecord(int archive, const std::string& name, const std::string& path) {
    const int file = openFile(path, O_RDONLY);
    struct stat facts {};
    fstat(file, &facts);
    std::string stored = name;
    scramble(reinterpret_cast<unsigned char*>(stored.data()), stored.size());
    putField(archive, 0xEFB04FA7);
    putField(archive, 0xEFB036CD);
    putField(archive, static_cast<std::uint32_t>(stored.size()));
    put(archive, stored.data(), stored.size());
    putField(archive, 0xEFB143CD);
    putField(archive, 0xEFB232CD);
    putField(archive, static_cast<std::uint32_t>(facts.st_size));
    putField(archive, 0xEFB323CD);
    putField(archive, 0xEFB000CD);
    putField(archive, 32);
    putField(archive, 0xEFB111CD);
    putField(archive, 0xEFBFDFCD);
    copyData(file, archive, static_cast<std::size_t>(facts.st_size));
    close(file);
    putField(archive, 0xEFBDFDCD);
}

void create(const std::string& archiveName, const std::string& folder) {
    const int archive = openFile(archiveName, O_WRONLY | O_CREAT | O_TRUNC);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            createRecord(archive, entry.path().lexically_relative(folder).string(), entry.path().string());
        }
    }
    close(archive);
}

struct Record {
    std::string name;
    std::uint32_t size = 0;
};

// Reads to the start of the next record's size; false at the end of the archive.
bool nextName(int archive, Record& record) {
    std::uint32_t field = 0;
    do {
        if (!get(archive, &field, sizeof field)) return false;
    } while (field != 0xEFB036CD);
    record.name.resize(getField(archive));
    if (!get(archive, record.name.data(), record.name.size())) fail("short read");
    scramble(reinterpret_cast<unsigned char*>(record.name.data()), record.name.size());
    while (getField(archive) != 0xEFB232CD) {
    }
    record.size = getField(archive);
    return true;
}

void unpack(int archive, const Record& record, const std::string& path) {
    while (getField(archive) != 0xEFBFDFCD) {
    }
    const int file = openFile(path, O_WRONLY | O_CREAT | O_TRUNC);
    copyData(archive, file, record.size);
    close(file);
}

void extract(const std::string& archiveName, const std::string& folder) {
    const int archive = openFile(archiveName, O_RDONLY);
    fs::path made;
    for (Record record; nextName(archive, record);) {
        const fs::path path = fs::path(folder) / record.name;
        if (path.parent_path() != made) {
            made = path.parent_path();
            fs::create_directories(made);
        }
        unpack(archive, record, path.string());
    }
    close(archive);
}

void last(const std::string& archiveName, const std::string& name, const std::string& folder) {
    const int archive = openFile(archiveName, O_RDONLY);
    for (Record record; nextName(archive, record);) {
        if (record.name == name) {
            unpack(archive, record, folder + "/" + name);
            return;
        }
        lseek(archive, static_cast<off_t>(record.size) + 28, SEEK_CUR);
    }
    fail("no such member");
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 3 && words[0] == "create") {
        create(words[1], words[2]);
    } else if (words.size() == 3 && words[0] == "extract") {
        extract(words[1], words[2]);
    } else if (words.size() == 4 && words[0] == "last") {
        last(words[1], words[2], words[3]);
    } else {
        fail("usage: transfer_floor create|extract|last ...");
    }
}
