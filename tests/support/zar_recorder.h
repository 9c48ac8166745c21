#pragma once
#include <cstdlib>
#include <string>
#include <vector>

#include "zar_archive.h"
#include "zar_extract.h"

namespace test {

// An extractor or archiver that notes the calls of its hooks.
template <class Worker>
class Recording : public Worker {
public:
    using Worker::Worker;

    void MoveSlider(int absolute, int value) override {
        calls.push_back("slider " + std::to_string(absolute) + " " + std::to_string(value));
    }
    void UPDATE_WINDOW(const char* text, int flag) override {
        calls.push_back(std::string(text) + " / " + std::to_string(flag));
        if (--cancelAtStatus == 0) this->SendCancelCommand();
    }
    void GET_MESSAGE_WND(HWND& window) override {
        calls.push_back(window == nullptr ? "window" : "window given before");
    }

    std::vector<std::string> calls;
    int cancelAtStatus = 0;  // which status line sends a cancel; 0 = none
};

using Extractor = Recording<Extract_ZAR>;
using Archiver = Recording<Archive_ZAR>;

// How an operation ended.
struct Outcome {
    std::string kind = "done";  // or the exception's class
    DWORD type = 0;
    DWORD error = 0;

    bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << outcome.kind << " type " << outcome.type << " error " << outcome.error;
}

inline const Outcome success{};
inline const Outcome extractionError{"report", 170, 0};
inline const Outcome archiveError{"report", 171, 0};
inline const Outcome cancelledExtraction{"ZAR_CommonException", 170, 1000};
inline const Outcome cancelledArchiving{"ZAR_CommonException", 171, 1000};

// The number that follows `label` in a report; 0 when there is none.
inline DWORD numberAfter(const std::string& report, const std::string& label) {
    const std::size_t place = report.find(label);
    if (place == std::string::npos) return 0;
    return static_cast<DWORD>(std::strtoul(report.c_str() + place + label.size(), nullptr, 10));
}

template <class Operation>
Outcome outcomeOf(Operation operation) {
    try {
        operation();
        return success;
    } catch (const ZAR_CommonException& thrown) {
        return {"ZAR_CommonException", thrown.m_type, thrown.m_error_number};
    } catch (const UTILS::DiskIoException& thrown) {
        return {"DiskIoException", thrown.m_type, thrown.m_error_number};
    } catch (const UTILS::std_exception& thrown) {
        const std::string report = thrown.what();
        return {"report", numberAfter(report, "Type:  "), numberAfter(report, "Error Number: ")};
    }
}

// The same without the error number, which is the system's own.
template <class Operation>
Outcome outcomeWithoutError(Operation operation) {
    Outcome outcome = outcomeOf(operation);
    outcome.error = 0;
    return outcome;
}

}  // namespace test
