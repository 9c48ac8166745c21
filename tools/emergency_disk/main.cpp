#include "newwindows/second_run.h"
#include "tools/common/program.h"
#include "tools/emergency_disk/command_line.h"
#include "tools/emergency_disk/commands.h"

static int run(int argc, char** argv) {
    using namespace tools;
    namespace disk = tools::emergency_disk;
    if (const auto code = newwindows::runAgainAsXp()) return *code;
    const disk::HelpTexts& texts = disk::helpTexts();
    Program program("emergency-disk", "Makes and checks bootable emergency diskettes.", texts.program);

    disk::MakeOptions make;
    CLI::App* command = program.command("make", "Make the emergency diskette from its archive", texts.make,
                                        [&](Session& session) { disk::make(make, session); });
    disk::addTarget(*command, make.target);
    named(command->add_option("--archive", make.archive, "The archive with the diskette's files"), "FILE")
        ->required();
    command->add_option("--label", make.label, "The volume label, up to 11 characters")
        ->capture_default_str();
    disk::addLayerOptions(*command, make);
    command->add_flag_callback(
        "--no-verify", [&make] { make.verify = false; }, "Do not read the finished diskette back");
    command->add_flag("-y,--yes", make.yes, "Replace what is on the diskette without asking");
    command->add_flag("-n,--dry-run", make.dryRun, "Check everything, change nothing");

    disk::CheckOptions check;
    command = program.command("check", "Say whether a diskette will boot, check by check", texts.check,
                              [&](Session& session) { disk::check(check, session); });
    disk::addTarget(*command, check.target);
    named(command->add_option("--archive", check.archive, "Also compare every file with this archive"),
          "FILE");

    disk::FormatOptions format;
    disk::addFormat(program, format);

    return program.run(argc, argv);
}

int main(int argc, char** argv) {
    return tools::runToTheEnd("emergency-disk", run, argc, argv);
}
