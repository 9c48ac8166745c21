#pragma once
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "std_exception.h"

namespace test {

// What a failing operation reported, as plain values to compare in one go.
struct Report {
    DWORD type = 0;
    DWORD error = 0;
    std::string condition;
    std::string file;

    bool operator==(const Report&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Report& report) {
    return out << "type " << report.type << ", error " << report.error << ", \"" << report.condition
               << "\" in " << report.file;
}

template <class Exception>
Report reportOf(const Exception& thrown) {
    return {thrown.m_type, thrown.m_error_number, thrown.m_condition.c_str(), thrown.m_file.c_str()};
}

// Runs the operation and gives the report of the exception that it throws; a failure of the test when it
// throws none or another.
template <class Exception, class Operation>
Report thrownBy(Operation operation) {
    try {
        operation();
    } catch (const Exception& thrown) {
        return reportOf(thrown);
    } catch (const std::exception& other) {
        ADD_FAILURE() << "another exception: " << other.what();
        return {};
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

}  // namespace test
