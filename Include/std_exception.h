#pragma once
#include <windows.h>

#include <exception>
#include <tuple>
#include <utility>

#include "CSyncObject.h"
#include "UtilsString.h"

namespace UTILS {

// A failure with a one-line report: source file, line, class, type code, error number with the system's
// description, and a condition. The report is made once, by the constructor; reading it never changes it, so
// a caught object may be read freely.
//
//   "File:  diskio; Line Number:  7; Exception Name:  class UTILS::std_exception; Type:  2; Error Condition:
//   ..."
class std_exception : public virtual std::exception {
protected:
    // Throws a copy of this object as a std_exception. It stands first: the order of virtual operations is
    // part of an exported class's interface.
    [[noreturn]] virtual void _Doraise() const;

public:
    // A report that names the class alone.
    std_exception();

    // file: the throwing unit's path without extension; a null text counts as empty. errorNumber 0 means
    // none; describeError non-zero adds the system's text for it. Throws std::bad_alloc alone.
    std_exception(const char* condition, const char* file, DWORD type, DWORD line, DWORD errorNumber,
                  int describeError);
    std_exception(const UtilsString& condition, const char* file, DWORD type, DWORD line, DWORD errorNumber,
                  int describeError);
    // Every field as text; an empty error number leaves its segment out.
    std_exception(const UtilsString& condition, const UtilsString& file, const UtilsString& type,
                  const UtilsString& line, const UtilsString& errorNumber);

    std_exception(const std_exception& other);
    const std_exception& operator=(const std_exception& other);
    ~std_exception() override;

    // The report; it lives as long as the object is not assigned to.
    const char* what() const noexcept override;
    operator const char*() const { return what(); }

    // The name of the complete object's class, for example "class UTILS::std_exception".
    virtual const char* derived_class() const;

protected:
    const std_exception& CopyData(const std_exception& other);
    // Makes the report of the constructors that take numbers; for derived classes, whose most derived
    // constructor builds this virtual base without arguments.
    void MakeReport(const UtilsString& condition, const char* file, DWORD type, DWORD line, DWORD errorNumber,
                    int describeError);

private:
    void MakeReport(const UtilsString& condition, const UtilsString& file, const UtilsString& type,
                    const UtilsString& line, const UtilsString& errorNumber, const UtilsString* description);

    UtilsString report_;
};

// The one shape of the exceptions that a library names for itself. A library writes no more than
//
//   class ZAR_CommonException : public UTILS::ReportException<ZAR_CommonException> {
//   public:
//       static constexpr char class_name[] = "class ZAR_CommonException";
//       using ReportException::ReportException;
//   };
//
// Thread rule: an object's lock is held while its members are set, or copied from or into it, so that a copy
// never mixes two failures; to read the members themselves, share the object only when nobody assigns to it.
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

    // No failure: numbers 0, texts empty, the report names the base class alone.
    ReportException() = default;

    // A failure; null texts count as empty. The report never holds the system's description.
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

    // Copies the members, without the report. The two locks are taken one after the other, so that two
    // threads may copy two objects into each other.
    void CopyData(const ReportException& other) {
        Members members = other.Copied();
        const SectionGuard guard(lock_);
        std::tie(m_type, m_error_number, m_line, m_exception_name, m_condition, m_file) = std::move(members);
    }

    // Destroys an exception made with `new`; nothing happens for a null object.
    void Delete() const {
        // The compiler takes it for granted that an object is never null; a volatile copy makes it look.
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
