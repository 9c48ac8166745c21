#include "UtilsList.h"

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "thrown_message.h"

template class UTILS::ListObject<char>;
template class UTILS::ListObject<unsigned char>;

namespace {

using UTILS::UtilsString;
using UTILS::UtilsStringList;
using Texts = std::vector<std::string>;
constexpr DWORD missing = 0xEFFFFFFF;

UtilsStringList ListOf(const Texts& texts) {
    UtilsStringList list;
    for (const std::string& text : texts) {
        list.AddString(text);
    }
    return list;
}

Texts Read(const UtilsStringList& list) {
    Texts texts;
    for (DWORD i = 0; i < list.size(); ++i) {
        texts.push_back(list.RetrieveUString(i).GetSTLString());
    }
    return texts;
}

// A list that believes it is sorted is not sorted again, so a greater first string stays where it is.
bool BelievesToBeSorted(UtilsStringList list) {
    *list.RetrieveString(0) = "zzzz";
    list.Sort(0);
    return list.RetrieveUString(0) == "zzzz";
}

TEST(UtilsStringList, AppendsTextsNumbersAndLists) {
    UtilsStringList list("one");
    list += "two";
    list.Append(std::string("three"))
        .Append(UtilsString("four"))
        .AddString(std::basic_string<unsigned short>(2, 'w'));
    list.Append(DWORD{4000000000U}).Append(-5).Append(0.1).Append('c');
    list += 2.5;
    EXPECT_EQ(Read(list),
              (Texts{"one", "two", "three", "four", "ww", "4000000000", "-5", "0.1", "c", "2.5"}));
    UtilsStringList twice = ListOf({"x", "y"});
    twice += twice;
    twice.AddString(*twice.RetrieveString(1));
    EXPECT_EQ(Read(twice), (Texts{"x", "y", "x", "y", "y"}));
    twice.Append(UtilsStringList());
    EXPECT_EQ(twice.size(), 5U);
}

TEST(UtilsStringList, ChangesTheStringAtAnIndex) {
    UtilsStringList list = ListOf({"ab", "cd"});
    list.Append(0, "c").Append(0, 7).Insert(0, "-", 1).Replace(1, "xyz", 1);
    EXPECT_EQ(Read(list), (Texts{"a-bc7", "cx"}));
    list[1].Insert("0", 0).Replace("9", 0);
    EXPECT_STREQ(list, "9cx");
    EXPECT_EQ(list.length(), 3U);
    EXPECT_EQ(list.strlen(0), 5U);
    EXPECT_EQ(list.GetCurrentString(), 1U);
    EXPECT_EQ(list.SearchListItem("x"), 2U);
    EXPECT_EQ(list.SearchListItem(0, "-b"), 1U);
    EXPECT_EQ(list.SearchListItem("x", 1), missing);
}

TEST(UtilsStringList, RemovingKeepsACurrentStringThatExists) {
    UtilsStringList list = ListOf({"a", "b", "c", "d"});
    EXPECT_STREQ(list.Retrieve(3), "d");
    list.RemoveString();
    EXPECT_STREQ(list.Retrieve(), "c");
    list.RemoveString(0);
    EXPECT_STREQ(list.Retrieve(), "c");
    list.RemoveString(0).RemoveString();
    EXPECT_EQ(!list, 1);
    EXPECT_THROW(list.RemoveString(), std::out_of_range);
    list.AddString("new");
    EXPECT_STREQ(list.Retrieve(), "new");
    list.AddString("two").SetCurrentString(1).RemoveAllStrings();
    list.AddString("three");
    EXPECT_STREQ(list, "three");
    EXPECT_EQ(!list, 0);
}

TEST(UtilsStringList, AnIndexBeyondTheEndThrowsAndChangesNothing) {
    UtilsStringList list = ListOf({"b", "a"});
    const std::string inList = "; File:  ..\\..\\Include\\UtilsList";
    EXPECT_EQ(thrownMessage<std::out_of_range>([&] { list.Retrieve(2); }),
              "Out Of Range Error - 2:2" + inList);
    EXPECT_THROW(list.RetrieveString(missing), std::out_of_range);
    EXPECT_THROW(list.RemoveString(2), std::out_of_range);
    EXPECT_THROW(list.Append(2, "x"), std::out_of_range);
    EXPECT_THROW(list[-1], std::out_of_range);
    EXPECT_THROW(list.Insert(0, "x", 2), std::out_of_range);
    EXPECT_EQ(list.GetCurrentString(), 0U);
    EXPECT_EQ(Read(list), (Texts{"b", "a"}));
    EXPECT_EQ(thrownMessage<std::out_of_range>([] { UtilsStringList().Retrieve(); }),
              "Out Of Range Error - 0:0" + inList);
}

TEST(UtilsStringList, CopiesCarryStringsAndSettingsAndAreIndependent) {
    UtilsStringList list = ListOf({"b", "a", "c"});
    list.SetCase(0).SetMatchStyle(1).SetSearchDirection(1).SetCurrentString(2);
    UtilsStringList copy(list);
    UtilsStringList assigned("old");
    assigned = list;
    const UtilsStringList& same = assigned;
    assigned = same;
    list.RemoveAllStrings();
    for (const UtilsStringList* each : {&copy, &assigned}) {
        EXPECT_EQ(Read(*each), (Texts{"c", "a", "b"}));
        EXPECT_STREQ(*each, "b");
        EXPECT_EQ(each->GetCase(), 0);
        EXPECT_EQ(each->GetMatchStyle(), 1);
    }
    copy = list;
    EXPECT_EQ(!copy, 1);
    EXPECT_EQ(!UtilsStringList(copy), 1);
}

TEST(UtilsStringList, AssignsOneStringPerElementOfAStandardList) {
    UtilsStringList list = ListOf({"x", "y"});
    list.SetCase(0).SetCurrentString(1);
    char first[] = "p1";
    char second[] = "p2";
    list = std::list<char*>{first, second};
    EXPECT_EQ(Read(list), (Texts{"p1", "p2"}));
    EXPECT_STREQ(list.Retrieve(), "p1");
    EXPECT_EQ(list.RetrieveString(1)->GetCase(), 0);
    list = std::list<const char*>{"q"};
    EXPECT_EQ(Read(list), (Texts{"q"}));
    list = std::list<std::string>{"s1", "", "s3"};
    EXPECT_EQ(Read(list), (Texts{"s1", "", "s3"}));
    list = std::list<UtilsString>{"u1", "u2"};
    EXPECT_EQ(Read(list), (Texts{"u1", "u2"}));
    list = std::list<std::basic_string<unsigned short>>{{'w', '1'}, {'w'}};
    EXPECT_EQ(Read(list), (Texts{"w1", "w"}));
    list = *list.RetrieveString(1);
    EXPECT_EQ(Read(list), (Texts{"w"}));
    list = std::list<std::string>();
    EXPECT_EQ(list.size(), 0U);
}

TEST(UtilsStringList, CaseAndMatchStyleReachEveryString) {
    UtilsStringList list = ListOf({"Program Files", "grammar"});
    list.SetCase(0).SetMatchStyle(1);
    list.AddString("later");
    list.AddString(ListOf({"other"}));
    for (DWORD i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list.RetrieveString(i)->GetCase(), 0) << i;
        EXPECT_EQ(list.RetrieveString(i)->GetMatchStyle(), 1) << i;
    }
    EXPECT_EQ(list.SearchList("GRAM", 0, 0), 0U);
    EXPECT_EQ(list.SearchList("GRAM", 0, 1), 1U);
    EXPECT_EQ(list.SearchList("GRAM", 0, 2), missing);
    EXPECT_EQ(list.Compare("files"), 0);
    EXPECT_EQ(list.SearchList("a Program Files folder"), missing) << "the element must hold the text";
    list.SetCase(1);
    EXPECT_EQ(list.SearchList("GRAM"), missing);
    EXPECT_EQ(list.SearchList("gram"), 0U);
    list.SetMatchStyle(0);
    EXPECT_EQ(list.SearchList("gram"), missing);
    EXPECT_EQ(list.SearchList("grammar"), 1U);
}

TEST(UtilsStringList, EveryChangeClearsTheSortedFlag) {
    using Change = void (*)(UtilsStringList&);
    const std::vector<std::pair<const char*, Change>> changes = {
        {"AddString", [](UtilsStringList& list) { list.AddString("x"); }},
        {"self append", [](UtilsStringList& list) { list += list; }},
        {"Append to one", [](UtilsStringList& list) { list.Append(0, "x"); }},
        {"Insert", [](UtilsStringList& list) { list.Insert("x", 0); }},
        {"Replace", [](UtilsStringList& list) { list.Replace(1, "x", 0); }},
        {"ReplaceAllInList", [](UtilsStringList& list) { list.ReplaceAllInList("a", "c"); }},
        {"ReplaceAllInCurrentString",
         [](UtilsStringList& list) { list.ReplaceAllInCurrentString("a", "c"); }},
        {"SetCase", [](UtilsStringList& list) { list.SetCase(0); }},
        {"SetMatchStyle", [](UtilsStringList& list) { list.SetMatchStyle(2); }},
        {"RemoveString", [](UtilsStringList& list) { list.RemoveString(1); }},
        {"operator=",
         [](UtilsStringList& list) {
             list = std::list<std::string>{"b", "a"};
         }},
    };
    for (const auto& [name, change] : changes) {
        UtilsStringList list = ListOf({"a", "b", "c"});
        list.Sort(0);
        ASSERT_TRUE(BelievesToBeSorted(list)) << name;
        change(list);
        EXPECT_FALSE(BelievesToBeSorted(list)) << name;
    }
    UtilsStringList list = ListOf({"a", "b"});
    list.Sort(2).SetSearchDirection(1).SetCurrentString(1).SearchList("b");
    list.SetSearchDirection(0).AddStringSorted("c");
    EXPECT_TRUE(BelievesToBeSorted(list));
}

// A text that holds the other counts as equal, which is no order: halving could pass a match by.
TEST(UtilsStringList, HalvingUnderContainmentStillFindsTheFirstMatch) {
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    const auto text = [&](unsigned longest) {
        std::string made;
        for (unsigned length = 1 + static_cast<unsigned>(random()) % longest; length > 0; --length)
            made += "abcd"[random() % 4];
        return made;
    };
    for (int round = 0; round < 200; ++round) {
        UtilsStringList list;
        for (int i = 0; i < 9; ++i) list.AddString(text(5));
        list.SetMatchStyle(1);
        const std::string wanted = text(3);
        const DWORD start = static_cast<DWORD>(random() % 4);
        const DWORD found = list.SearchList(wanted, 1, start);
        DWORD expected = start;
        while (expected < 9 && list.SearchListItem(expected, wanted) == missing) ++expected;
        EXPECT_EQ(found, expected < 9 ? expected : missing) << "seed " << seed;
    }
    EXPECT_EQ(ListOf({"a"}).SetMatchStyle(1).SearchList("", 1, 0), missing);
}

TEST(UtilsStringList, ComparesTheCurrentStringsUnderItsOwnSettings) {
    UtilsStringList list = ListOf({"abc", "abd"});
    UtilsStringList other = ListOf({"ABC"});
    EXPECT_EQ(list.Compare("abd"), -1);
    EXPECT_EQ(list[1].Compare("abc"), 1);
    EXPECT_TRUE(list == UtilsString("abd"));
    EXPECT_TRUE(list > other);
    EXPECT_TRUE(list != other);
    EXPECT_TRUE("abe" >= list);
    list[0].SetCase(0);
    EXPECT_TRUE(list == other);
    EXPECT_TRUE(list <= other);
    EXPECT_FALSE(other == list) << "the other list is exact";
    const UtilsStringList empty;
    EXPECT_EQ(empty.Compare(list), -1);
    EXPECT_EQ(list.Compare(empty), 1);
    EXPECT_EQ(empty.Compare(UtilsStringList()), 0);
    EXPECT_EQ(empty.Compare(static_cast<const char*>(nullptr)), 0);
}

TEST(UtilsStringList, ReplacesUnderTheGivenCase) {
    UtilsStringList list = ListOf({"banana", "BANANA", "cherry"});
    EXPECT_EQ(list.ReplaceAllInCurrentString("AN", "x", 1), 0);
    EXPECT_EQ(list.ReplaceAllInCurrentString("a", "xy", 1), 1);
    EXPECT_EQ(Read(list), (Texts{"bxynxynxy", "BANANA", "cherry"}));
    EXPECT_EQ(list.ReplaceAllInList("B", "", 0), 1);
    EXPECT_EQ(Read(list), (Texts{"xynxynxy", "ANANA", "cherry"}));
    EXPECT_EQ(list.ReplaceAllInList("b", "", 0), 0);
    EXPECT_EQ(list.RetrieveString(1)->GetCase(), 1);
    EXPECT_THROW(list.ReplaceAllInList("n", "m", 2), std::invalid_argument);
    EXPECT_EQ(Read(list), (Texts{"xynxynxy", "ANANA", "cherry"}));
}

TEST(UtilsStringList, SplitsATextIntoItsFields) {
    UtilsStringList list = ListOf({"old", "older"});
    list.SetCurrentString(1).SplitData("a,b,,c", ",", 0, 0, 0);
    EXPECT_EQ(Read(list), (Texts{"a", "b", "", "c"}));
    EXPECT_STREQ(list, "a");
    list.SplitData("HKLM\\Software\\", "\\", 1, 1, 1);
    EXPECT_EQ(Read(list), (Texts{"HKLM", "Software", ""}));
    list.SplitData(*list.RetrieveString(1), "oft");
    EXPECT_EQ(Read(list), (Texts{"S", "ware"}));
    list.SplitData("whole", ";");
    EXPECT_EQ(Read(list), (Texts{"whole"}));
    list.SplitData("", ";");
    EXPECT_EQ(Read(list), Texts());
    list.SetCase(0).SplitData("1X2x3", "x");
    EXPECT_EQ(Read(list), (Texts{"1", "2", "3"}));
}

TEST(UtilsStringList, SortingMovesValuesWithoutCopyingThem) {
    UtilsStringList list;
    std::vector<std::pair<const UtilsString*, std::string>> before;
    for (int i = 0; i < 1500; ++i) {
        list.AddString((i * 7919) % 1500);
        before.emplace_back(list.RetrieveString(list.size() - 1),
                            list.RetrieveString(list.size() - 1)->c_str());
    }
    list.Sort(0);
    for (const auto& [address, text] : before) {
        EXPECT_EQ(*address, text);
        EXPECT_EQ(list.RetrieveString(list.SearchList(text, 1)), address);
    }
}

TEST(UtilsStringList, ThreadsMayAppendToOneList) {
    UtilsStringList list;
    const auto append = [&](const char* text) {
        for (int i = 0; i < 2000; ++i) list.AddString(text);
    };
    std::thread other(append, "x");
    append("y");
    other.join();
    EXPECT_EQ(list.size(), 4000U);
    DWORD others = 0;
    for (DWORD i = 0; i < list.size(); ++i) others += *list.RetrieveString(i) == "x" ? 1 : 0;
    EXPECT_EQ(others, 2000U);
}

TEST(ListObject, InsertsAtAPositionInEitherDirection) {
    UTILS::ListObject<UtilsString> list;
    list.Insert("b", 0);
    list.Insert("d", 1);
    list.Insert("a", 0);
    list.Insert("c", 2);
    EXPECT_THROW(list.Insert("x", 5), std::out_of_range);
    list.SetSearchDirection(1);
    list.Insert("e", 0);
    list.Insert("0", 5);
    list.Insert("cc", 2);
    list.SetSearchDirection(0);
    std::string all;
    for (DWORD i = 0; i < list.Size(); ++i) all += list.Retrieve(i).c_str();
    EXPECT_EQ(all, "0abcccde");
}

TEST(ListObject, SortsCharactersSignedAndBytesUnsigned) {
    UTILS::ListObject<char> characters;
    UTILS::ListObject<unsigned char> bytes;
    for (const unsigned char value : std::basic_string<unsigned char>{0x62, 0xE9, 0x41, 0x61}) {
        characters.Append(static_cast<char>(value));
        bytes.Append(value);
    }
    characters.Sort(1);
    bytes.Sort(1);
    EXPECT_EQ(characters.Retrieve(0), '\xE9');
    EXPECT_EQ(bytes.Retrieve(3), 0xE9);
    EXPECT_EQ(characters.SearchList('a', 1, 0), 2U);
    characters.SetCase(0);
    EXPECT_EQ(characters.SearchList('a', 0, 0), 1U);
}

}  // namespace
