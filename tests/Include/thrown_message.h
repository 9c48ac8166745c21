#pragma once
#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>
#include <string>

// The message of the standard exception that the operation throws, without the line number at its end.
template <class Exception, class Operation>
std::string thrownMessage(Operation operation) {
    try {
        operation();
    } catch (const Exception& thrown) {
        const std::string text = thrown.what();
        const auto line = text.rfind("; Line:  ");
        EXPECT_NE(line, std::string::npos) << text;
        EXPECT_GT(std::atoi(text.c_str() + line + 9), 0) << text;
        return text.substr(0, line);
    } catch (const std::exception& other) {
        return std::string("another exception: ") + other.what();
    }
    return "nothing thrown";
}
