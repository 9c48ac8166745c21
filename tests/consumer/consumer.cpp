#include <UtilsString.h>
#include <zar_archive.h>
#include <zar_extract.h>

#include <fstream>
#include <iostream>
#include <iterator>

// Packs a file into an archive in the current folder and unpacks it again, with classes that the libraries
// export.

namespace {

using UTILS::CUtilsPath;
using UTILS::UtilsString;

// Counts what is unpacked, where a program with a window would move its progress bar.
class Unpacker : public Extract_ZAR {
public:
    void MoveSlider(int, int) override { ++files_; }
    int files() const { return files_; }

private:
    int files_ = 0;
};

struct Stop {};

// A program's own exception on its way through the library.
class Stopper : public Extract_ZAR {
public:
    void MoveSlider(int, int) override { throw Stop(); }
};

std::string contents(const char* name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The whole path of a file in the current folder.
UtilsString here(const char* name) {
    return CUtilsPath(name).UGetPath();
}

void roundTrip() {
    std::ofstream("consumer.txt", std::ios::binary) << "one line\n";
    std::ofstream("consumer.list", std::ios::binary) << "consumer.txt\r\n";
    Archive_ZAR(here("consumer.list"), here("consumer.zar"), 1);

    Unpacker unpacker;
    unpacker.Extract(nullptr, here("consumer.zar"), here("unpacked"), nullptr, 1, 0);
    std::cout << unpacker.files() << " file unpacked: " << contents("unpacked/consumer.txt");
}

void exceptionsThatLeaveTheLibrary() {
    try {
        Stopper().Extract(nullptr, here("consumer.zar"), here("unpacked"), nullptr, 1, 0);
    } catch (const Stop&) {
        std::cout << "stopped by the program\n";
    }
    try {
        Extract_ZAR().Extract(nullptr, here("consumer.txt"), here("unpacked"), nullptr, 1, 0);
    } catch (const UTILS::std_exception& fault) {
        // The report ends with what went wrong, behind the type code.
        const std::string report = fault.what();
        std::cout << "no archive: " << report.substr(report.find("Type:")) << '\n';
    }
}

}  // namespace

// With the argument "inside" for a module whose exceptions cannot leave it.
int main(int count, char** arguments) {
    UtilsString text = "C:\\temp";
    text.ReplaceAll("\\", "/");
    std::cout << text.GetString() << '\n';
    roundTrip();  // whose end of the archive is an exception that the library catches
    if (count == 1 || std::string(arguments[1]) != "inside") exceptionsThatLeaveTheLibrary();
    return std::cout.flush() ? 0 : 1;
}
