#pragma once
#include <windows.h>

#include <exception>
#include <tuple>
#include <utility>

#include "CSyncObject.h"
#include "UtilsString.h"

namespace UTILS {

// A failure with a one-line report: source file, line, class, type code, error number with the system's
// description, and a condition. The constructor makes the report once; reading it never changes it.
//
//   "File:  diskio; Line Number:  7; Exception Name:  class UTILS::std_exception; Type:  2; Error Condition:
//   ..."
class std_exception : public virtual std::exception {
protected:
    // Throws a copy of this object as a std_exception. Declared first: the order of virtual functions is part
    // of an exported class's interface.
    [[noreturn]] virtual void _Doraise() const;

public:
    // A report that names only the class.
    std_exception();

    // file: the throwing unit's path without extension; a null text counts as empty. errorNumber 0 means
    // none; describeError non-zero adds the system's text for it. Throws only std::bad_alloc.
    std_exception(const char* condition, const char* file, DWORD type, DWORD line, DWORD errorNumber,
                  int describeError);
    std_exception(const UtilsString& condition, const char* file, DWORD type, DWORD line, DWORD errorNumber,
                  int describeError);
    // Every field as text; an empty error number omits its segment.
    std_exception(const UtilsString& condition, const UtilsString& file, const UtilsString& type,
                  const UtilsString& line, const UtilsString& errorNumber);

    std_exception(const std_exception& other);
    const std_exception& operator=(const std_exception& other);
    ~std_exception() override;

    // The report; valid until the object is assigned to or destroyed.
    const char* what() const noexcept override;
    operator const char*() const { return what(); }

    // The name of the complete object's class, for example "class UTILS::std_exception".
    virtual const char* derived_class() const;

protected:
    const std_exception& CopyData(const std_exception& other);
    // Makes the report like the constructors that take numbers; for derived classes, because the most derived
    // constructor constructs this virtual base without arguments.
    void MakeReport(const UtilsString& condition, const char* file, DWORD type, DWORD line, DWORD errorNumber,
                    int describeError);

private:
    void MakeReport(const UtilsString& condition, const UtilsString& file, const UtilsString& type,
                    const UtilsString& line, const UtilsString& errorNumber, const UtilsString* description);

    UtilsString report_;
};

// Base of the libraries' own exception classes. A library only writes
//
//   class ZAR_CommonException : public UTILS::ReportException<ZAR_CommonException> {
//   public:
//       static constexpr char class_name[] = "class ZAR_CommonException";
//       using ReportException::ReportException;
//   };
//
// Thread rule: an object's lock is held while its members are set or copied, so that a copy never mixes two
// failures; read the members directly only while no thread assigns to the object.
template <class Exception>
class ReportException : public virtual std_exception {
    mutable CCriticalSection lock_;

public:
    DWORD m_type = 0;          // type code of the failure
    DWORD m_error_number = 0;  // Windows error code, a library's own number, or 0 for none
    DWORD m_line = 0;          // source line of the throwing statement
    UtilsString m_exception_name = Exception::class_name;
    UtilsString m_condition;
    UtilsString m_file;  // source path of the throwing statement, without extension

    // No failure: numbers 0, condition and file empty; the report names only the base class.
    ReportException() = default;

    // A failure; null texts count as empty. The report never includes the system's description.
    ReportException(DWORD type, DWORD errorNumber, DWORD line, const char* file, const char* condition)
        : ReportException(type, errorNumber, line, file, UtilsString(condition)) {}
    ReportException(DWORD type, DWORD errorNumber, DWORD line, const char* file,
                    const UtilsString& condition) {
        {
            const SectionGuard guard(lock_);
            m_type = type;
            m_error_number = errorNumber;
            m_line = line;
            m_condition = condition;
            m_file = file;
        }
        MakeReport(condition, file, type, line, errorNumber, 0);
    }

    ReportException(const ReportException& other) : std::exception(other), std_exception(other) {
        CopyData(other);
    }
    const ReportException& operator=(const ReportException& other) {
        if (this != &other) {
            CopyData(other);
            const SectionGuard guard(lock_);
            std_exception::operator=(other);
        }
        return *this;
    }
    ~ReportException() override = default;

    // Copies the members, not the report. Takes the two locks one after the other, so that two threads may
    // copy two objects into each other.
    void CopyData(const ReportException& other) {
        Members members = other.Copied();
        const SectionGuard guard(lock_);
        std::tie(m_type, m_error_number, m_line, m_exception_name, m_condition, m_file) = std::move(members);
    }

    // Deletes an exception created with `new`; does nothing for a null object.
    void Delete() const {
        // The compiler assumes that an object is never null; a volatile copy makes it check.
        const ReportException* const volatile self = this;
        const ReportException* const object = self;
        if (object != nullptr) {
            delete object;
        }
    }
    void Free() const { Delete(); }

    const char* derived_class() const override { return Exception::class_name; }

private:
    using Members = std::tuple<DWORD, DWORD, DWORD, UtilsString, UtilsString, UtilsString>;

    Members Copied() const {
        const SectionGuard guard(lock_);
        return {m_type, m_error_number, m_line, m_exception_name, m_condition, m_file};
    }
};

}  // namespace UTILS
