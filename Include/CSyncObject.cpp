#include "CSyncObject.h"

#include "RuntimeClassName.h"
#include "StandardFailure.h"

#pragma GCC diagnostic ignored "-Wignored-qualifiers"  // as in the header

namespace UTILS {

namespace {
constexpr char thisHeader[] = R"(..\..\Include\CSyncObject)";
}

CSyncObject::CSyncObject(const std::string& name) {
    Init(name);
}

CSyncObject::CSyncObject(const CSyncObject& other) {
    Copy(other);
}

CSyncObject::~CSyncObject() = default;

const CSyncObject& CSyncObject::operator=(const CSyncObject& other) {
    return Copy(other);
}

const CSyncObject& CSyncObject::Copy(const CSyncObject& other) {
    if (this != &other) {
        Init(other.name_ ? *other.name_ : std::string());
        depth_ = other.depth_.load();
        attached_ = other.attached_.load();
    }
    return *this;
}

void CSyncObject::Init(const std::string& name) {
    name_ = name.empty() ? nullptr : std::make_unique<const std::string>(name);
}

void CSyncObject::Attach() {
    attached_ = 1;
}

void CSyncObject::UnAttach() {
    attached_ = 0;
}

const int CSyncObject::Lock() {
    depth_.fetch_add(1);
    return 1;
}

const int CSyncObject::UnLock() {
    int depth = depth_.load();
    while (depth > 0) {
        if (depth_.compare_exchange_weak(depth, depth - 1)) {
            return 1;
        }
    }
    return 0;
}

const int CSyncObject::GetState(int index) const {
    const int depth = Depth();
    if (index == -1) {
        return depth > 0 ? 1 : 0;
    }
    if (index < 0 || index > depth) {
        ThrowOutOfRange(FailureDetail(index, depth + 1), thisHeader);
    }
    return index > 0 ? 1 : 0;
}

const int CSyncObject::IsObjectAttached() const {
    return attached_;
}

std::string CSyncObject::GetObjName() const {
    return name_ ? *name_ : std::string();
}

const char* CSyncObject::derived_class() const {
    return RuntimeClassName(typeid(*this));
}

std::string CCriticalSection::GetObjName() const {
    return CSyncObject::GetObjName();
}

// While no thread owns the section, any state on the stack came with a copy, so there is nothing to leave. A
// section that another thread owns is left alone.
int CCriticalSection::DropCopiedState() noexcept {
    const int depth = Depth();
    if (depth > 0 && owner_.load(std::memory_order_relaxed) == nullptr) {
        ChangeDepth(depth, depth - 1);
    }
    return 1;
}

CEvent::CEvent(int initiallySignalled, int manualReset, const std::string& name,
               LPSECURITY_ATTRIBUTES security)
    : CSyncObject(name),
      handle_(CreateEventA(security, manualReset != 0, initiallySignalled != 0,
                           name.empty() ? nullptr : name.c_str())),
      manualReset_(manualReset) {
    if (initiallySignalled != 0) {
        CEvent::Lock();
    }
}

CEvent::CEvent(const CEvent& other)
    : CSyncObject(other),
      handle_(other.HandleForCopy()),
      manualReset_(other.manualReset_),
      signalSeen_(other.signalSeen_.load()) {}

const CEvent& CEvent::operator=(const CEvent& other) {
    if (this != &other) {
        const HANDLE handle = other.HandleForCopy();
        Close();
        handle_ = handle;
        CSyncObject::operator=(other);
        manualReset_ = other.manualReset_;
        signalSeen_ = other.signalSeen_.load();
    }
    return *this;
}

CEvent::~CEvent() {
    Close();
}

HANDLE CEvent::HandleForCopy() const {
    if (CSyncObject::IsObjectAttached() != 0) {
        return handle_;
    }
    HANDLE copy = nullptr;
    if (handle_ != nullptr && DuplicateHandle(GetCurrentProcess(), handle_, GetCurrentProcess(), &copy, 0,
                                              TRUE, DUPLICATE_SAME_ACCESS) == 0) {
        copy = nullptr;
    }
    return copy;
}

void CEvent::Close() noexcept {
    if (handle_ != nullptr && CSyncObject::IsObjectAttached() == 0) {
        CloseHandle(handle_);
    }
}

const int CEvent::Lock() {
    return ChangeDepth(0, 1) ? CEvent::SetEvent() : 0;
}

const int CEvent::UnLock() {
    if (WaitForSingleObject(handle_, 0) != WAIT_OBJECT_0) {
        return 0;
    }
    CSyncObject::UnLock();
    signalSeen_ = 1;
    if (manualReset_ != 0) {
        CEvent::ResetEvent();
    }
    return 1;
}

std::string CEvent::GetObjName() const {
    return CSyncObject::GetObjName();
}

int CEvent::SetEvent() {
    return ::SetEvent(handle_);
}

int CEvent::ResetEvent() {
    return ::ResetEvent(handle_);
}

int CEvent::PulseEvent() {
    signalSeen_ = 1;
    return ::PulseEvent(handle_);
}

}  // namespace UTILS
