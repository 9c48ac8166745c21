#include "tools/common/reasons.h"

#include <typeinfo>

#include "diskio.h"
#include "tools/common/exit_code.h"
#include "tools/common/host_files.h"
#include "tools/common/names.h"

namespace tools {

namespace {

constexpr DWORD english = 0x0409;
constexpr DWORD systemsOwn = 0;
constexpr std::uint64_t oneStep = 8192;
constexpr std::string_view conditionLabel = "Error Condition:  ";

// The system's message in a language, 8-bit; empty when there is none.
std::string systemSentence(DWORD error, DWORD language) {
    char text[512];
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        error, language, text, sizeof text, nullptr);
    return {text, length};
}

}  // namespace

std::string errorText(DWORD error) {
    std::string number = "Windows error " + std::to_string(error);
    std::string sentence = systemSentence(error, english);
    if (sentence.empty()) sentence = systemSentence(error, systemsOwn);
    if (sentence.empty()) return number;
    sentence.erase(sentence.find_last_not_of(".\r\n") + 1);
    return utf8(sentence) + " (" + number + ")";
}

std::string reasonOf(const std::exception& fault) {
    if (const auto* file = dynamic_cast<const UTILS::DiskIoException*>(&fault)) {
        const std::string condition = utf8(file->m_condition.c_str());
        return file->m_error_number == 0 ? condition : errorText(file->m_error_number) + ": " + condition;
    }
    if (typeid(fault) == typeid(std::bad_alloc)) return noMemoryText;
    const std::string report = fault.what();
    const std::size_t condition = report.find(conditionLabel);
    return utf8(condition == std::string::npos ? report : report.substr(condition + conditionLabel.size()));
}

void blameFullDisk(const Path& folder) {
    if (host_files::freeBytes(folder) < oneStep) {
        throw Problem(ExitCode::failure, "the disk that holds " + folder.string() + " is full");
    }
}

}  // namespace tools
