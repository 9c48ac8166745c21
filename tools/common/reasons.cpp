#include "tools/common/reasons.h"

#include "diskio.h"
#include "tools/common/exit_code.h"
#include "tools/common/names.h"
#include "winlayer/machine.h"
#include "winlayer/system_messages.h"

namespace tools {

namespace {

constexpr DWORD english = 0x0409;
constexpr std::uintmax_t oneStep = 8192;
constexpr std::string_view conditionLabel = "Error Condition:  ";

}  // namespace

std::string errorText(DWORD error) {
    std::string number = "Windows error " + std::to_string(error);
    std::string sentence;
    if (winlayer::systemMessage(winlayer::Machine::current(), error, english, sentence) != NO_ERROR) {
        return number;
    }
    sentence.erase(sentence.find_last_not_of(".\r\n") + 1);
    return utf8(sentence) + " (" + number + ")";
}

std::string reasonOf(const std::exception& fault) {
    if (const auto* file = dynamic_cast<const UTILS::DiskIoException*>(&fault)) {
        const std::string condition = utf8(file->m_condition.c_str());
        return file->m_error_number == 0 ? condition : errorText(file->m_error_number) + ": " + condition;
    }
    const std::string report = fault.what();
    const std::size_t condition = report.find(conditionLabel);
    return utf8(condition == std::string::npos ? report : report.substr(condition + conditionLabel.size()));
}

void blameFullDisk(const std::filesystem::path& folder) {
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    if (!error && space.available < oneStep) {
        throw Problem(ExitCode::failure, "the disk that holds " + folder.string() + " is full");
    }
}

}  // namespace tools
