#include "LMThread.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

long ElapsedMs(Clock::time_point since) {
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since).count());
}

void SlowIncrement(void* arg) {
    LMThread::Sleep(100);
    static_cast<std::atomic<int>*>(arg)->fetch_add(1);
}

TEST(LMThreadRun, WaitReturnsOnlyAfterTheFunctionHasRun) {
    std::atomic<int> counter{0};
    LMThread* t = LMThread::Create();
    ASSERT_TRUE(t->Run("slow", SlowIncrement, &counter));
    // Running is visible at once, before the new thread has been scheduled.
    EXPECT_TRUE(t->IsRunning());
    t->Wait();
    EXPECT_EQ(counter.load(), 1);
    EXPECT_FALSE(t->IsRunning());
    t->Wait();  // a finished thread: returns at once
    t->Release();
}

TEST(LMThreadRun, WaitOnAnObjectThatNeverRanReturnsAtOnce) {
    LMThread* t = LMThread::Create();
    EXPECT_FALSE(t->IsRunning());
    Clock::time_point start = Clock::now();
    t->Wait();
    EXPECT_LT(ElapsedMs(start), 50);
    t->Release();
}

TEST(LMThreadRun, ReleaseWhileRunningLeavesTheThreadToFinish) {
    std::atomic<int> counter{0};
    LMThread* t = LMThread::Create();
    ASSERT_TRUE(t->Run("detached", SlowIncrement, &counter));
    t->Release();  // the thread still writes its running flag when it ends: must stay valid
    while (counter.load() == 0) {
        LMThread::Sleep(5);
    }
    LMThread::Sleep(20);
    EXPECT_EQ(counter.load(), 1);
}

TEST(LMThreadDeathTest, ASecondRunOnOneObjectAborts) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // another thread is alive when it forks
    std::atomic<int> counter{0};
    LMThread* t = LMThread::Create();
    ASSERT_TRUE(t->Run("first", SlowIncrement, &counter));
    EXPECT_DEATH(
        t->Run("second", SlowIncrement, &counter),
        "LMThread.cpp:[0-9]+: virtual bool LMThread::Run\\(const char\\*, "
        "void \\(\\*\\)\\(void\\*\\), void\\*\\): Assertion `m_Impl->m_Thread == 0' failed");
    t->Wait();
    t->Release();
}

void OnAlarm(int) {}

TEST(LMThreadSleep, ResumesAfterASignalUntilTheWholeTimeHasPassed) {
    struct sigaction action = {};
    action.sa_handler = OnAlarm;  // no SA_RESTART: nanosleep returns EINTR
    struct sigaction previous;
    sigaction(SIGUSR1, &action, &previous);

    pthread_t sleeper = pthread_self();
    std::atomic<bool> done{false};
    LMThread* poker = LMThread::Create();
    struct Ctx {
        pthread_t target;
        std::atomic<bool>* done;
    } ctx{sleeper, &done};
    poker->Run(
        "poke",
        [](void* arg) {
            Ctx* c = static_cast<Ctx*>(arg);
            for (int i = 0; i < 5 && !c->done->load(); ++i) {
                LMThread::Sleep(40);
                pthread_kill(c->target, SIGUSR1);
            }
        },
        &ctx);

    Clock::time_point start = Clock::now();
    LMThread::Sleep(300);
    long elapsed = ElapsedMs(start);
    done.store(true);
    poker->Wait();
    poker->Release();
    sigaction(SIGUSR1, &previous, nullptr);
    EXPECT_GE(elapsed, 295);
    EXPECT_LT(elapsed, 2000);
}

}  // namespace
