#include "CSyncObject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

using UTILS::CCriticalSection;
using UTILS::CEvent;
using UTILS::CSyncObject;

#pragma GCC diagnostic ignored "-Wignored-qualifiers"  // what programs of the suite write

class Named : public CSyncObject {
public:
    explicit Named(const std::string& name) : CSyncObject(name) {}
    Named(const Named&) = default;
    Named& operator=(const Named& other) {
        CSyncObject::operator=(other);
        return *this;
    }
    const int Lock() override { return CSyncObject::Lock(); }
};

template <class Work>
void onAnotherThread(Work work) {
    std::thread(work).join();
}

TEST(SyncObject, StacksStatesAboveAZeroThatStays) {
    Named object("gate");
    EXPECT_EQ(object.UnLock(), 0);
    EXPECT_EQ(object.GetState(-1), 0);
    EXPECT_EQ(object.Lock(), 1);
    EXPECT_EQ(object.Lock(), 1);
    EXPECT_EQ(object.GetState(0), 0);
    EXPECT_EQ(object.GetState(1), 1);
    EXPECT_EQ(object.GetState(2), 1);
    EXPECT_EQ(object.GetState(-1), 1);
    EXPECT_THROW(object.GetState(3), std::out_of_range);
    EXPECT_THROW(object.GetState(-2), std::out_of_range);
    EXPECT_EQ(object.UnLock(), 1);
    EXPECT_EQ(object.UnLock(), 1);
    EXPECT_EQ(object.UnLock(), 0);
}

TEST(SyncObject, CopiesNameStatesAndAttachment) {
    Named object("gate");
    object.Lock();
    object.Attach();
    Named copy(object);
    object.UnLock();
    EXPECT_EQ(copy.GetObjName(), "gate");
    EXPECT_EQ(copy.GetState(1), 1);
    EXPECT_EQ(copy.IsObjectAttached(), 1);
    Named assigned("other");
    assigned = copy;
    assigned.UnAttach();
    EXPECT_EQ(assigned.GetObjName(), "gate");
    EXPECT_EQ(assigned.GetState(-1), 1);
    EXPECT_EQ(assigned.IsObjectAttached(), 0);
    EXPECT_EQ(copy.IsObjectAttached(), 1);
}

TEST(SyncObject, NamesItsRunTimeClass) {
    const CCriticalSection section;
    const CSyncObject& base = section;
    EXPECT_STREQ(base.derived_class(), "class UTILS::CCriticalSection");
    EXPECT_STREQ(CEvent().derived_class(), "class UTILS::CEvent");
}

TEST(CriticalSection, UnLockWithoutLockIsHarmless) {
    CCriticalSection section;
    EXPECT_EQ(section.UnLock(), 1);
    EXPECT_EQ(section.GetState(-1), 0);
    EXPECT_EQ(section.Lock(), 1);
    EXPECT_EQ(section.UnLock(), 1);
    onAnotherThread([&] { EXPECT_EQ(section.Lock() + section.UnLock(), 2); });
}

TEST(CriticalSection, IsFreeAfterAsManyUnLocksOfItsThreadAsLocks) {
    CCriticalSection section;
    section.Lock();
    section.Lock();
    EXPECT_EQ(section.GetState(2), 1);
    section.UnLock();
    onAnotherThread([&] { EXPECT_EQ(section.UnLock(), 1) << "and releases nothing"; });
    EXPECT_EQ(section.GetState(-1), 1);
    std::atomic<bool> entered = false;
    std::thread other([&] {
        section.Lock();
        entered = true;
        section.UnLock();
    });
    Sleep(20);
    EXPECT_FALSE(entered);
    section.UnLock();
    other.join();
    EXPECT_TRUE(entered);
    EXPECT_EQ(section.GetState(-1), 0);
    EXPECT_THROW(section.GetState(1), std::out_of_range);
}

TEST(CriticalSection, ExcludesWhileOthersUnLockAtRandom) {
    CCriticalSection section;
    long count = 0;
    constexpr long rounds = 20000;
    const auto work = [&] {
        for (long i = 0; i < rounds; ++i) {
            section.Lock();
            section.Lock();
            ++count;
            section.UnLock();
            section.UnLock();
            section.UnLock();
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(count, 2 * rounds);
    EXPECT_EQ(section.GetState(-1), 0);
}

TEST(CriticalSection, CopyCarriesStatesButNotTheSection) {
    CCriticalSection section;
    section.Lock();
    CCriticalSection copy(section);
    EXPECT_EQ(copy.GetState(-1), 1);
    onAnotherThread([&] { EXPECT_EQ(copy.Lock() + copy.UnLock(), 2); });
    EXPECT_EQ(copy.UnLock(), 1);
    EXPECT_EQ(copy.GetState(-1), 0);
    EXPECT_EQ(section.GetState(-1), 1);
    section.UnLock();
}

TEST(Event, AutoResetEventGivesOneSignal) {
    CEvent event(0, 0, "", nullptr);
    EXPECT_EQ(event.UnLock(), 0);
    EXPECT_EQ(event.IsSignalSeen(), 0);
    EXPECT_NE(event.Lock(), 0);
    EXPECT_EQ(event.GetState(-1), 1);
    EXPECT_EQ(event.Lock(), 0) << "already recorded";
    EXPECT_EQ(event.UnLock(), 1);
    EXPECT_EQ(event.IsSignalSeen(), 1);
    EXPECT_EQ(event.GetState(-1), 0);
    EXPECT_EQ(event.UnLock(), 0);
    onAnotherThread([&] { event.SetEvent(); });
    EXPECT_EQ(event.UnLock(), 1);
    EXPECT_EQ(event.UnLock(), 0);
}

TEST(Event, RefusedLockSignalsNothing) {
    CEvent event(0, 0, "", nullptr);
    event.Lock();
    event.ResetEvent();
    EXPECT_EQ(event.Lock(), 0);
    EXPECT_EQ(event.UnLock(), 0);
    EXPECT_EQ(event.GetState(-1), 1) << "an unseen signal leaves the record";
}

TEST(Event, ManualResetEventIsResetByUnLock) {
    CEvent event(0, 1, "", nullptr);
    event.SetEvent();
    EXPECT_EQ(WaitForSingleObject(event.GetHandle(), 0), WAIT_OBJECT_0);
    EXPECT_EQ(event.UnLock(), 1);
    EXPECT_EQ(event.UnLock(), 0);
}

TEST(Event, InitiallySignalledEventIsRecordedAsLocked) {
    CEvent event(1, 1, "", nullptr);
    EXPECT_EQ(event.GetState(-1), 1);
    EXPECT_EQ(event.UnLock(), 1);
    EXPECT_EQ(event.GetState(-1), 0);
}

TEST(Event, PulseMarksTheSignalAsSeenAndLeavesNoneBehind) {
    CEvent event(0, 0, "", nullptr);
    EXPECT_NE(event.PulseEvent(), 0);
    EXPECT_EQ(event.IsSignalSeen(), 1);
    EXPECT_EQ(event.UnLock(), 0);
    event.ClearSignalSeen();
    EXPECT_EQ(event.IsSignalSeen(), 0);
}

TEST(Event, NamedEventIsSharedByName) {
    CEvent first(0, 0, "strings-test-event", nullptr);
    CEvent second(0, 0, "strings-test-event", nullptr);
    EXPECT_EQ(first.GetObjName(), "strings-test-event");
    first.SetEvent();
    EXPECT_EQ(second.UnLock(), 1);
}

TEST(Event, AttachedEventLeavesItsHandleOpen) {
    HANDLE borrowed = nullptr;
    HANDLE owned = nullptr;
    {
        CEvent event(0, 0, "", nullptr);
        event.Attach();
        borrowed = event.GetHandle();
        const CEvent other(0, 0, "", nullptr);
        owned = other.GetHandle();
    }
    EXPECT_EQ(SetEvent(owned), 0);
    EXPECT_NE(SetEvent(borrowed), 0);
    EXPECT_NE(CloseHandle(borrowed), 0);
}

TEST(Event, CopyHasItsOwnHandleToTheSameEvent) {
    CEvent copy(0, 0, "", nullptr);
    {
        CEvent event(0, 0, "", nullptr);
        event.Lock();
        copy = event;
        EXPECT_NE(copy.GetHandle(), event.GetHandle());
    }
    EXPECT_EQ(copy.GetState(-1), 1);
    EXPECT_EQ(copy.UnLock(), 1) << "the signal outlived the other handle";
    copy = *&copy;
    EXPECT_NE(copy.SetEvent(), 0);
}

}  // namespace
