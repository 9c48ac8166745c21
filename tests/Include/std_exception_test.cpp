#include "std_exception.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace test {

class SampleException : public UTILS::ReportException<SampleException> {
public:
    static constexpr char class_name[] = "class test::SampleException";
    using ReportException::ReportException;
};

}  // namespace test

namespace {

using test::SampleException;
using UTILS::std_exception;
using UTILS::UtilsString;

TEST(Report, NamesEveryFieldInOrder) {
    EXPECT_STREQ(std_exception().what(), "Exception Name:  class UTILS::std_exception");
    EXPECT_STREQ(std_exception("X", "f", 5, 7, 0, 1).what(),
                 "File:  f; Line Number:  7; Exception Name:  class UTILS::std_exception; Type:  5; "
                 "Error Condition:  X");
    EXPECT_STREQ(std_exception(UtilsString("X"), "f", 4294967295u, 4294967295u, 4294967295u, 0).what(),
                 "File:  f; Line Number:  4294967295; Exception Name:  class UTILS::std_exception; "
                 "Type:  4294967295; Error Number: 4294967295; Error Condition:  X");
    EXPECT_STREQ(std_exception("", nullptr, 0, 0, 0, 0).what(),
                 "File:  ; Line Number:  0; Exception Name:  class UTILS::std_exception; Type:  0; "
                 "Error Condition:  ");
}

TEST(Report, DescribesTheErrorOnlyWhenAsked) {
    UtilsString description;
    ASSERT_GT(description.SetErrorMsg(2), 0u);
    const std::string expected =
        "File:  f; Line Number:  7; Exception Name:  class UTILS::std_exception; Type:  5; Error Number: 2; "
        "WinError Description: " +
        description.GetSTLString() + "; Error Condition:  X";
    EXPECT_EQ(std_exception("X", "f", 5, 7, 2, 1).what(), expected);
    EXPECT_EQ(std_exception(UtilsString("X"), "f", 5, 7, 2, 9).what(), expected);
    EXPECT_EQ(std::string(std_exception("X", "f", 5, 7, 2, 0).what()).find("WinError"), std::string::npos);
}

TEST(Report, TakesEveryFieldAsText) {
    EXPECT_STREQ(std_exception("X", "f", "t", "l", "n").what(),
                 "File:  f; Line Number:  l; Exception Name:  class UTILS::std_exception; Type:  t; "
                 "Error Number: n; Error Condition:  X");
    EXPECT_STREQ(std_exception("X", "f", "t", "l", "").what(),
                 "File:  f; Line Number:  l; Exception Name:  class UTILS::std_exception; Type:  t; "
                 "Error Condition:  X");
}

TEST(Report, IsCopied) {
    const std_exception original("X", "f", 5, 7, 0, 0);
    std_exception assigned;
    assigned = original;
    assigned = *&assigned;
    const std_exception copy(original);
    EXPECT_STREQ(assigned.what(), original.what());
    EXPECT_STREQ(copy, original.what());
    EXPECT_STREQ(copy.derived_class(), "class UTILS::std_exception");
}

SampleException cancelled() {
    return SampleException(170, 1000, 546, R"(zarlib\zarlibsource\zar_extract)",
                           "The Cancel Command Has Been Processed");
}

const char cancelledReport[] = R"(File:  zarlib\zarlibsource\zar_extract; Line Number:  546; )"
                               "Exception Name:  class UTILS::std_exception; Type:  170; Error Number: 1000; "
                               "Error Condition:  The Cancel Command Has Been Processed";

void expectCancelled(const SampleException& thrown) {
    EXPECT_EQ(thrown.m_type, 170u);
    EXPECT_EQ(thrown.m_error_number, 1000u);
    EXPECT_EQ(thrown.m_line, 546u);
    EXPECT_STREQ(thrown.m_exception_name.c_str(), "class test::SampleException");
    EXPECT_STREQ(thrown.m_condition.c_str(), "The Cancel Command Has Been Processed");
    EXPECT_STREQ(thrown.m_file.c_str(), R"(zarlib\zarlibsource\zar_extract)");
    EXPECT_STREQ(thrown.what(), cancelledReport);
    EXPECT_STREQ(thrown.derived_class(), "class test::SampleException");
}

TEST(DerivedException, CarriesItsFieldsThroughEveryCopy) {
    expectCancelled(cancelled());
    const SampleException original = cancelled();
    expectCancelled(SampleException(original));
    SampleException assigned;
    assigned = original;
    assigned = *&assigned;
    expectCancelled(assigned);
    expectCancelled(SampleException(170, 1000, 546, original.m_file.c_str(), original.m_condition));
}

TEST(DerivedException, CopyDataLeavesTheReport) {
    SampleException copy;
    copy.CopyData(cancelled());
    EXPECT_EQ(copy.m_error_number, 1000u);
    EXPECT_STREQ(copy.what(), "Exception Name:  class UTILS::std_exception");
}

// One thread assigns two failures in turn while others copy: no copy may mix the two.
TEST(DerivedException, CopiesWhileItIsAssigned) {
    const SampleException failures[] = {{1, 1, 1, "first", "a condition longer than what fits inside"},
                                        {2, 2, 2, "second", "another"}};
    SampleException shared = failures[0];
    const auto assign = [&] {
        for (int i = 0; i < 2000; ++i) {
            shared.CopyData(failures[i % 2]);
        }
    };
    const auto copy = [&] {
        for (int i = 0; i < 2000; ++i) {
            SampleException copied;
            copied.CopyData(shared);
            const SampleException& whole = failures[copied.m_type - 1];
            ASSERT_EQ(copied.m_line, copied.m_type);
            ASSERT_TRUE(copied.m_file == whole.m_file && copied.m_condition == whole.m_condition);
        }
    };
    std::thread first(assign), second(copy), third(copy);
    first.join();
    second.join();
    third.join();
}

TEST(DerivedException, EmptyOneNamesItself) {
    const SampleException empty;
    EXPECT_EQ(empty.m_type + empty.m_error_number + empty.m_line, 0u);
    EXPECT_EQ(empty.m_condition.length() + empty.m_file.length(), 0u);
    EXPECT_STREQ(empty.m_exception_name.c_str(), "class test::SampleException");
    EXPECT_STREQ(SampleException(1, 2, 3, nullptr, static_cast<const char*>(nullptr)).m_file.c_str(), "");
}

TEST(DerivedException, IsCaughtByEachOfItsBases) {
    EXPECT_THROW(throw cancelled(), std_exception);
    try {
        throw cancelled();
    } catch (const std::exception& thrown) {
        EXPECT_STREQ(thrown.what(), cancelledReport);
    }
}

TEST(DerivedException, RaisesACopyAsItsBase) {
    class Raising : public SampleException {
    public:
        Raising() : std_exception("X", "f", 5, 7, 0, 0) {}
        void raise() const { _Doraise(); }
    };
    try {
        Raising().raise();
        FAIL() << "nothing was thrown";
    } catch (const SampleException&) {
        FAIL() << "the derived part was thrown too";
    } catch (const std_exception& thrown) {
        EXPECT_STREQ(thrown.what(), std_exception("X", "f", 5, 7, 0, 0).what());
        EXPECT_STREQ(thrown.derived_class(), "class UTILS::std_exception");
    }
}

TEST(DerivedException, DestroysItselfOnTheHeap) {
    // The leak checker of the sanitizer build is the judge here.
    (new SampleException(cancelled()))->Delete();
    const SampleException* const constant = new SampleException();
    constant->Free();
}

}  // namespace
