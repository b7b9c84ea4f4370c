// The launcher's start-up choices and the exit routine's key posting, without a kernel: a fake
// stage records the keys it is given.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "LMHostIPC.h"
#include "LMLauncher.h"
#include "LMStageSlot.h"

namespace {

using ae::stagecraft::StageWindowSet;

// Records key posts; optionally holds the first press until released by the test.
class FakeStage : public ae::stagecraft::IStagecraft {
public:
    AEError RegisterExtensionClass(ae::stagecraft::ASExtensionClassDescriptor&) override {
        return AEError_OK;
    }
    AEError CreateAndConfigureStageWindowSet(IStagecraft&, StageWindowSet** windowSet, int,
                                             const char* const*, int32_t) override {
        *windowSet = nullptr;
        return AEError_Generic;
    }
    AEError RunStageWindowSet(StageWindowSet*) override { return AEError_Generic; }
    void DestroyStageWindowSet(StageWindowSet*) override {}
    ae::stagecraft::ASRunEnd GetRunEnd(StageWindowSet*, int32_t*) override {
        return ae::stagecraft::kASRunNotRun;
    }
    void PostKeyPress(uint32_t keyCode) override {
        std::unique_lock<std::mutex> lock(m_Lock);
        m_Keys.emplace_back('+', keyCode);
        m_Cond.notify_all();
        m_Cond.wait(lock, [this] { return !m_Hold; });
    }
    void PostKeyRelease(uint32_t keyCode) override {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Keys.emplace_back('-', keyCode);
    }

    void Hold() { m_Hold = true; }
    void WaitForPress() {
        std::unique_lock<std::mutex> lock(m_Lock);
        m_Cond.wait(lock, [this] { return !m_Keys.empty(); });
    }
    void LetGo() {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Hold = false;
        m_Cond.notify_all();
    }
    std::vector<std::pair<char, uint32_t>> Keys() {
        std::lock_guard<std::mutex> lock(m_Lock);
        return m_Keys;
    }

private:
    std::mutex m_Lock;
    std::condition_variable m_Cond;
    bool m_Hold = false;
    std::vector<std::pair<char, uint32_t>> m_Keys;
};

using Keys = std::vector<std::pair<char, uint32_t>>;

TEST(Launcher, TheUITypeIsTheFirstCharacterOfTheLastArgument) {
    const char* withDigit[] = {"lmlauncher", "--ignored", "3abc"};
    EXPECT_EQ(LMUITypeFromCommandLine(3, withDigit), 3);
    const char* nameOnly[] = {"2launcher"};
    EXPECT_EQ(LMUITypeFromCommandLine(1, nameOnly), 2);
    // Outside the table: no row, never an index past it.
    const char* nine[] = {"lmlauncher", "9"};
    EXPECT_EQ(LMFindUIVariant(LMUITypeFromCommandLine(2, nine)), nullptr);
    const char* empty[] = {"lmlauncher", ""};
    EXPECT_EQ(LMFindUIVariant(LMUITypeFromCommandLine(2, empty)), nullptr);
    const char* letter[] = {"lmlauncher", "x"};
    EXPECT_EQ(LMFindUIVariant(LMUITypeFromCommandLine(2, letter)), nullptr);
    EXPECT_EQ(LMFindUIVariant(-1), nullptr);
    EXPECT_NE(LMFindUIVariant(5), nullptr);
}

TEST(Launcher, FlashvarsFromTheEnvironmentReplaceTheDefaultButNotTheMovie) {
    const LMUIVariant& row = *LMFindUIVariant(3);
    LMRuntimeArguments defaults = LMBuildRuntimeArguments(row, nullptr);
    EXPECT_STREQ(defaults[8], "--flashvars");
    EXPECT_STREQ(defaults[9], row.flashvars);
    EXPECT_STREQ(defaults[10], "/usr/share/lumora/lmcesdk2_ut.swf");
    EXPECT_NE(std::string(row.flashvars).find("/umcredentials.xml"), std::string::npos);

    LMRuntimeArguments given = LMBuildRuntimeArguments(row, "a=1&b= 2");
    EXPECT_STREQ(given[9], "a=1&b= 2");
    EXPECT_STREQ(given[10], defaults[10]);
}

TEST(Launcher, TheExitRoutinePostsThePreExitKeyOnlyWhenFlagged) {
    FakeStage stage;
    LMLauncherStage().Publish(&stage);
    testing::internal::CaptureStdout();
    EXPECT_EQ(exit_lm_stagecraft(), 0);
    g_LMPreExitKey.store(true, std::memory_order_release);
    EXPECT_EQ(exit_lm_stagecraft(), 0);
    g_LMPreExitKey.store(false, std::memory_order_release);
    std::string out = testing::internal::GetCapturedStdout();
    LMLauncherStage().Withdraw();

    EXPECT_EQ(stage.Keys(), (Keys{{'+', 0x400100},
                                  {'-', 0x400100},
                                  {'+', 0x1000009},
                                  {'-', 0x1000009},
                                  {'+', 0x400100},
                                  {'-', 0x400100}}));
    // The sleep between the two keys, announced once, by the flagged call.
    const std::string sleepLine = "[LMEDK_1.5]In Sleep FUNCTION, delay time is :800 ms\n";
    size_t sleep = out.find(sleepLine);
    ASSERT_NE(sleep, std::string::npos) << out;
    EXPECT_GT(sleep, out.find("[LMEDK_1.5]exit_lm_stagecraft leave! \n")) << out;
    EXPECT_EQ(out.find("In Sleep", sleep + sleepLine.size()), std::string::npos) << out;
    EXPECT_NE(out.find("[LMEDK_1.5]exit_lm_stagecraft leave! \n", sleep), std::string::npos);
}

TEST(Launcher, NoKeyIsPostedOnceTheStageIsWithdrawn) {
    FakeStage stage;
    LMLauncherStage().Publish(&stage);
    LMLauncherStage().Withdraw();
    testing::internal::CaptureStdout();
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(lm_stagecraft_uninit_proc(), 0);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_TRUE(stage.Keys().empty());
    EXPECT_NE(out.find("[LMEDK_1.5]lm_stagecraft_uninit_proc: exit_lm_stagecraft FAIL \n"),
              std::string::npos)
        << out;
}

TEST(Launcher, WithdrawingWaitsForAPostInProgress) {
    FakeStage stage;
    stage.Hold();
    LMStageSlot slot;
    slot.Publish(&stage);
    std::thread poster([&] {
        slot.PostWith([](ae::stagecraft::IStagecraft& s) {
            s.PostKeyPress(0x400100);
            s.PostKeyRelease(0x400100);
        });
    });
    stage.WaitForPress();
    auto withdrawn = std::async(std::launch::async, [&] { slot.Withdraw(); });
    EXPECT_EQ(withdrawn.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    stage.LetGo();
    withdrawn.get();
    poster.join();
    // Both halves of the key went through before the stage was withdrawn.
    EXPECT_EQ(stage.Keys(), (Keys{{'+', 0x400100}, {'-', 0x400100}}));
    EXPECT_EQ(slot.Peek(), LMStageSlot::State::Withdrawn);
    EXPECT_FALSE(slot.PostWith([](ae::stagecraft::IStagecraft&) { FAIL(); }));
}

}  // namespace
