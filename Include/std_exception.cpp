#include "std_exception.h"

namespace UTILS {

namespace {
constexpr char className[] = "class UTILS::std_exception";
constexpr char nameLabel[] = "Exception Name:  ";
constexpr char separator[] = "; ";
}  // namespace

std_exception::std_exception() {
    report_.Append(nameLabel);
    report_.Append(className);
}

std_exception::std_exception(const char* condition, const char* file, DWORD type, DWORD line,
                             DWORD errorNumber, int describeError) {
    MakeReport(condition, file, type, line, errorNumber, describeError);
}

std_exception::std_exception(const UtilsString& condition, const char* file, DWORD type, DWORD line,
                             DWORD errorNumber, int describeError) {
    MakeReport(condition, file, type, line, errorNumber, describeError);
}

std_exception::std_exception(const UtilsString& condition, const UtilsString& file, const UtilsString& type,
                             const UtilsString& line, const UtilsString& errorNumber) {
    MakeReport(condition, file, type, line, errorNumber, nullptr);
}

std_exception::std_exception(const std_exception& other) : std::exception(other), report_(other.report_) {}

const std_exception& std_exception::operator=(const std_exception& other) {
    return CopyData(other);
}

std_exception::~std_exception() = default;

const std_exception& std_exception::CopyData(const std_exception& other) {
    report_ = other.report_;
    return *this;
}

const char* std_exception::what() const noexcept {
    return report_.c_str();
}

const char* std_exception::derived_class() const {
    return className;
}

void std_exception::_Doraise() const {
    throw std_exception(*this);
}

void std_exception::MakeReport(const UtilsString& condition, const char* file, DWORD type, DWORD line,
                               DWORD errorNumber, int describeError) {
    UtilsString typeText;
    UtilsString lineText;
    UtilsString number;
    UtilsString description;
    typeText.Append(type);
    lineText.Append(line);
    if (errorNumber != 0) {
        number.Append(errorNumber);
        if (describeError != 0) {
            description.SetErrorMsg(errorNumber);
        }
    }
    MakeReport(condition, UtilsString(file), typeText, lineText, number,
               describeError != 0 && errorNumber != 0 ? &description : nullptr);
}

void std_exception::MakeReport(const UtilsString& condition, const UtilsString& file, const UtilsString& type,
                               const UtilsString& line, const UtilsString& errorNumber,
                               const UtilsString* description) {
    const auto segment = [this](const char* label, const UtilsString& text) {
        report_.Append(label);
        report_.Append(text);
        report_.Append(separator);
    };
    report_.Erase();
    segment("File:  ", file);
    segment("Line Number:  ", line);
    segment(nameLabel, className);
    segment("Type:  ", type);
    if (errorNumber.length() != 0) {
        segment("Error Number: ", errorNumber);
    }
    if (description != nullptr) {
        segment("WinError Description: ", *description);
    }
    report_.Append("Error Condition:  ");
    report_.Append(condition);
}

}  // namespace UTILS
