#include <UtilsString.h>
#include <zar_archive.h>
#include <zar_extract.h>

#include <exception>
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

}  // namespace

int main() {
    UtilsString text = "C:\\temp";
    text.ReplaceAll("\\", "/");
    std::cout << text.GetString() << '\n';
    try {
        roundTrip();
        Extract_ZAR().Extract(nullptr, here("consumer.txt"), here("unpacked"), nullptr, 1, 0);
    } catch (const UTILS::std_exception& fault) {
        // The report ends with what went wrong, behind the type code.
        const std::string report = fault.what();
        std::cout << "no archive: " << report.substr(report.find("Type:")) << '\n';
    }
    return std::cout.flush() ? 0 : 1;
}
