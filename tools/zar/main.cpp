#include <string>
#include <vector>

#include "tools/common/program.h"
#include "tools/common/this_system.h"
#include "tools/zar/commands.h"

static int run(int argc, char** argv) {
    using namespace tools;
    // Its output is staged and flushed to the medium before it gets its final name.
    workAlone();
    Program program("zar", "Packs files into ZAR archives, lists, checks and unpacks them.",
                    "  zar create disk.dat files/\n"
                    "  zar list disk.dat\n"
                    "  zar extract disk.dat -C unpacked\n");

    zar::CreateOptions create;
    CLI::App* command = program.command("create", "Write an archive from a folder or from a list of files",
                                        "  zar create disk.dat files/\n"
                                        "  zar create disk.dat --list files.txt\n",
                                        [&](Session& session) { zar::create(create, session); });
    named(command->add_option("ARCHIVE", create.archive,
                              "The archive to write; an older one is replaced when this is whole"),
          "")
        ->required();
    CLI::Option* folder = named(
        command->add_option("DIRECTORY", create.folder, "The folder whose files are packed, subfolders too"),
        "");
    named(command->add_option("-l,--list", create.list, "A text file that names one file a line"), "FILE")
        ->excludes(folder);

    zar::ListOptions listing;
    command = program.command("list", "Show name, size and attributes of every file",
                              "  zar list disk.dat --json\n",
                              [&](Session& session) { zar::list(listing, session); });
    named(command->add_option("ARCHIVE", listing.archive, "The archive to read"), "")->required();

    zar::ExtractOptions extract;
    command = program.command("extract", "Unpack all files, or those that are named",
                              "  zar extract disk.dat -C unpacked\n"
                              "  zar extract disk.dat CONFIG.SYS -C unpacked\n",
                              [&](Session& session) { zar::extract(extract, session); });
    named(command->add_option("ARCHIVE", extract.archive, "The archive to read"), "")->required();
    command->add_option("NAME", extract.names, "Files to unpack, as 'zar list' shows them");
    named(command->add_option("-C,--directory", extract.folder, "Where to; made when it is missing"), "DIR")
        ->required();
    command->add_flag("--strip-first", extract.stripFirst, "Drop the first element of every stored name");

    zar::TestOptions test;
    command = program.command("test", "Walk every record and name the first fault", "  zar test disk.dat\n",
                              [&](Session& session) { zar::test(test, session); });
    named(command->add_option("ARCHIVE", test.archive, "The archive to check"), "")->required();

    return program.run(argc, argv);
}

int main(int argc, char** argv) {
    return tools::runToTheEnd("zar", run, argc, argv);
}
