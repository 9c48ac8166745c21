#include "tools/common/program.h"
#include "tools/emergency_disk/commands.h"

namespace {

// --image or --device; the command asks for the one.
void addTarget(CLI::App& command, tools::emergency_disk::Target& target) {
    CLI::Option* image = tools::named(
        command.add_option("--image", target.image, "A diskette image file of 1,474,560 bytes"), "FILE");
    tools::named(command.add_option("--device", target.device, "A diskette drive, as in /dev/fd0"), "PATH")
        ->excludes(image);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tools;
    namespace disk = tools::emergency_disk;
    Program program("emergency-disk", "Makes and checks bootable emergency diskettes.",
                    "  emergency-disk make --image rescue.img --archive mwdisk1.dat\n"
                    "  emergency-disk check --image rescue.img --archive mwdisk1.dat\n"
                    "  emergency-disk format --image blank.img\n");

    disk::MakeOptions make;
    CLI::App* command =
        program.command("make", "Make the emergency diskette from its archive",
                        "  emergency-disk make --image rescue.img --archive mwdisk1.dat\n"
                        "  emergency-disk make --device /dev/fd0 --archive mwdisk1.dat --yes\n",
                        [&](Session& session) { disk::make(make, session); });
    addTarget(*command, make.target);
    named(command->add_option("--archive", make.archive, "The archive with the diskette's files"), "FILE")
        ->required();
    command->add_option("--label", make.label, "The volume label, up to 11 characters")
        ->capture_default_str();
    command->add_option("--windows", make.windows, "The Windows whose way to the diskette is taken")
        ->capture_default_str()
        ->check(CLI::IsMember({"95", "98", "me", "nt4", "2000", "xp"}));
    command->add_option("--simulate", make.simulate, "A fault of the diskette: " + disk::simulationNames());
    command->add_flag_callback(
        "--no-verify", [&make] { make.verify = false; }, "Do not read the finished diskette back");
    command->add_flag("-y,--yes", make.yes, "Replace what is on the diskette without asking");
    command->add_flag("-n,--dry-run", make.dryRun, "Check everything, change nothing");

    disk::CheckOptions check;
    command = program.command("check", "Say whether a diskette will boot, check by check",
                              "  emergency-disk check --image rescue.img\n"
                              "  emergency-disk check --device /dev/fd0 --archive mwdisk1.dat --json\n",
                              [&](Session& session) { disk::check(check, session); });
    addTarget(*command, check.target);
    named(command->add_option("--archive", check.archive, "Also compare every file with this archive"),
          "FILE");

    disk::FormatOptions format;
    command = program.command("format", "Make a blank 1.44 MB FAT12 diskette image",
                              "  emergency-disk format --image blank.img\n",
                              [&](Session& session) { disk::format(format, session); });
    named(command->add_option("--image", format.image, "The image file to make"), "FILE")->required();
    command->add_flag("-y,--yes", format.yes, "Replace an existing diskette image without asking");

    return program.run(argc, argv);
}
