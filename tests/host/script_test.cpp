#include "host/frame/script.h"

#include <gtest/gtest.h>

#include <functional>

#include "host/frame/failure.h"
#include "host/frame/options.h"

namespace {

using namespace host;

template <class Action>
const Action& only(const std::vector<Step>& steps) {
    EXPECT_EQ(steps.size(), 1u);
    return std::get<Action>(steps.at(0).action);
}

ExitCode codeOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const Failure& failure) {
        return failure.code();
    }
    return ExitCode::success;
}

TEST(Script, ReadsEveryKindOfStep) {
    EXPECT_EQ(only<step::Press>(parseScript("finish")).button, Button::finish);
    EXPECT_EQ(only<step::Press>(parseScript("home")).button, Button::home);
    EXPECT_EQ(only<step::Select>(parseScript("select 1012")).id, 1012);
    EXPECT_EQ(only<step::Medium>(parseScript("medium write-protected")).state, "write-protected");
    EXPECT_EQ(only<step::Resize>(parseScript("resize 640 480")).height, 480);
    const auto answer = only<step::Answer>(parseScript("answer ok normal"));
    EXPECT_EQ(answer.button, IDOK);
    EXPECT_EQ(answer.medium, "normal");
    const auto enter = only<step::Key>(parseScript("key Enter"));
    EXPECT_EQ(enter.message, UINT{WM_KEYDOWN});
    EXPECT_EQ(enter.key, WPARAM{VK_RETURN});
    const auto mnemonic = only<step::Key>(parseScript("key Alt+w"));
    EXPECT_EQ(mnemonic.message, UINT{WM_SYSCHAR});
    EXPECT_EQ(mnemonic.key, WPARAM{'w'});
}

TEST(Script, SkipsBlanksAndEmptySteps) {
    const auto steps = parseScript(" next ;; \n select 7;wait ; ");
    ASSERT_EQ(steps.size(), 3u);
    EXPECT_EQ(steps[0].text, "next");
    EXPECT_EQ(steps[1].text, "select 7");
    EXPECT_TRUE(std::holds_alternative<step::Wait>(steps[2].action));
    EXPECT_TRUE(parseScript(" ; ").empty());
}

TEST(Script, NamesTheStepThatItDoesNotUnderstand) {
    for (const char* step : {"jump", "next 1", "select", "select x", "select -1", "answer maybe", "key F13",
                             "key Alt+ab", "resize 640", "wait 5", "medium", "Next"}) {
        try {
            parseScript(std::string("next;") + step);
            ADD_FAILURE() << step;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), ExitCode::usage);
            EXPECT_NE(std::string(failure.what()).find(std::string("'") + step + "'"), std::string::npos)
                << failure.what();
        }
    }
}

TEST(Options, WhatTheyAskFor) {
    const char* const install[] = {"host", "--install", "product", "--component", "X.dll"};
    const Options installing = parseOptions(5, install);
    EXPECT_EQ(installing.action, Options::Action::install);
    EXPECT_EQ(installing.installFolder, "product");
    EXPECT_EQ(installing.component, "X.dll");
    EXPECT_FALSE(installing.platform.window);

    const char* const script[] = {"host", "--script", "", "--image", "a.img", "--no-pauses"};
    const Options scripted = parseOptions(6, script);
    EXPECT_EQ(scripted.action, Options::Action::run);
    EXPECT_EQ(scripted.script, "");
    EXPECT_EQ(scripted.platform.image, "a.img");
    EXPECT_TRUE(scripted.platform.noPauses);
    EXPECT_FALSE(scripted.platform.window);

    const char* const plain[] = {"host"};
    EXPECT_TRUE(parseOptions(1, plain).platform.window);
}

TEST(Options, RefuseWhatMakesNoSense) {
    const std::vector<std::vector<const char*>> cases = {
        {"host", "--jump"},
        {"host", "next"},
        {"host", "--script"},
        {"host", "--image", ""},
        {"host", "--screenshots", "out"},
        {"host", "--uninstall", "--script", "next"},
        {"host", "--no-drive", "--image", "a.img"},
    };
    for (const auto& words : cases) {
        EXPECT_EQ(codeOf([&] { parseOptions(static_cast<int>(words.size()), words.data()); }),
                  ExitCode::usage)
            << words[1];
    }
}

}  // namespace
