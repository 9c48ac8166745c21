#pragma once
#include <concepts>
#include <memory>
#include <new>
#include <string>
#include <utility>

// The messages of container and allocator failures, thrown as the standard library's exception classes:
// condition " - " detail "; File:  " header "; Line:  " line.

namespace UTILS {

// The detail of a failure: a number, the name of an operation, or an index with the count it must be below.
class FailureDetail {
public:
    FailureDetail(const char* operation) : text_(operation) {}
    template <std::integral Number>
    FailureDetail(Number number) : text_(std::to_string(number)) {}
    template <std::integral Index, std::integral Count>
    FailureDetail(Index index, Count count) : text_(std::to_string(index) + ":" + std::to_string(count)) {}

    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

// A bad_alloc with a message; copies share the text, so copying never throws.
class AllocationFailure : public std::bad_alloc {
public:
    explicit AllocationFailure(std::string message)
        : message_(std::make_shared<const std::string>(std::move(message))) {}
    const char* what() const noexcept override { return message_->c_str(); }

private:
    std::shared_ptr<const std::string> message_;
};

// The condition texts, which callers and logs rely on.
namespace condition {
inline constexpr char invalidArgument[] = "Inavlid Argument Passed";
inline constexpr char incorrectParameter[] = "Command Line Parameter Is Incorrect";
inline constexpr char incorrectCall[] = "The Function Call Is Incorrect Or Cannot Be Called As Such";
inline constexpr char outOfRange[] = "Out Of Range Error";
inline constexpr char range[] = "Range Error";
}  // namespace condition

// The header paths that messages name.
namespace header {
inline constexpr char allocator[] = R"(..\..\Include\UtilsAllocator)";
inline constexpr char base[] = R"(..\..\Include\UtilsBase)";
inline constexpr char vector[] = R"(..\..\Include\UtilsVector)";
inline constexpr char string[] = R"(..\..\Include\UtilsString)";
inline constexpr char list[] = R"(..\..\Include\UtilsList)";
inline constexpr char map[] = R"(..\..\Include\UtilsMap)";
inline constexpr char ioMap[] = R"(..\..\Include\IOMap)";
}  // namespace header

// The message of a failure: one of the conditions above, its detail, the header path and the line.
std::string StandardMessage(const char* condition, const FailureDetail& detail, const char* header, int line);

// Each throws the class it names with such a message; the line defaults to the caller's.
[[noreturn]] void ThrowBadAlloc(const char* condition, const FailureDetail& detail, const char* header,
                                int line = __builtin_LINE());
[[noreturn]] void ThrowInvalidArgument(const FailureDetail& detail, const char* header,
                                       int line = __builtin_LINE());
[[noreturn]] void ThrowOutOfRange(const FailureDetail& detail, const char* header,
                                  int line = __builtin_LINE());
[[noreturn]] void ThrowRangeError(const FailureDetail& detail, const char* header,
                                  int line = __builtin_LINE());

}  // namespace UTILS
