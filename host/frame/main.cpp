#include <exception>
#include <iostream>
#include <new>

#include "host/frame/failure.h"
#include "host/frame/loaded_module.h"
#include "host/frame/wizard_program.h"
#include "newwindows/second_run.h"

int main(int argc, char** argv) {
    using namespace host;
    if (const auto code = newwindows::runAgainAsXp()) return *code;
    try {
        const Options options = parseOptions(argc, argv);
        if (options.action == Options::Action::help) {
            std::cout << helpText(platformHelp(), mediumHelp());
            return static_cast<int>(ExitCode::success);
        }
        const std::unique_ptr<Platform> platform = makePlatform(options.platform);
        run(options, *platform, programFolder(), std::cout);
        return static_cast<int>(ExitCode::success);
    } catch (const Failure& failure) {
        std::cerr << "host: " << failure.what() << '\n';
        if (failure.code() == ExitCode::usage) std::cerr << "Try 'host --help'.\n";
        return static_cast<int>(failure.code());
    } catch (const std::bad_alloc&) {
        std::cerr << "host: there is not enough memory\n";
        return static_cast<int>(ExitCode::failure);
    } catch (const std::exception& unexpected) {
        std::cerr << "host: " << unexpected.what() << '\n';
        return static_cast<int>(ExitCode::failure);
    }
}
