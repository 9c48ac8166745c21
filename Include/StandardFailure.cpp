#include "StandardFailure.h"

#include <stdexcept>

namespace UTILS {

std::string StandardMessage(const char* condition, const FailureDetail& detail, const char* header,
                            int line) {
    std::string message = condition;
    message += " - ";
    message += detail.Text();
    message += "; File:  ";
    message += header;
    message += "; Line:  ";
    message += std::to_string(line);
    return message;
}

void ThrowBadAlloc(const char* condition, const FailureDetail& detail, const char* header, int line) {
    throw AllocationFailure(StandardMessage(condition, detail, header, line));
}

void ThrowInvalidArgument(const FailureDetail& detail, const char* header, int line) {
    throw std::invalid_argument(StandardMessage(condition::invalidArgument, detail, header, line));
}

void ThrowOutOfRange(const FailureDetail& detail, const char* header, int line) {
    throw std::out_of_range(StandardMessage(condition::outOfRange, detail, header, line));
}

void ThrowRangeError(const FailureDetail& detail, const char* header, int line) {
    throw std::range_error(StandardMessage(condition::range, detail, header, line));
}

}  // namespace UTILS
