#include "LMThread.h"

#include <openssl/crypto.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <ctime>
#include <mutex>

#include "LMAssert.h"

struct LMThread::Impl {
    // 1 while the function runs. Set before the thread is created, so a Wait right after Run
    // cannot slip through before the new thread has been scheduled.
    std::atomic<int32_t> m_Running{0};
    pthread_t m_Thread = 0;
    ThreadFunction m_Function = nullptr;
    void* m_Arg = nullptr;
    std::mutex m_Lock;
    std::condition_variable m_Done;
};

namespace {

struct Start {
    std::shared_ptr<LMThread::Impl> impl;
};

void* Trampoline(void* arg) {
    // The thread holds its own reference: releasing the object does not free what it writes.
    std::shared_ptr<LMThread::Impl> impl = std::move(static_cast<Start*>(arg)->impl);
    delete static_cast<Start*>(arg);
    impl->m_Function(impl->m_Arg);
    // The thread's own OpenSSL state (its random generators, made by its first TLS handshake)
    // goes now, before anyone learns the function has ended: the thread is detached, and a
    // process that ends right after Wait would otherwise lose it half-released.
    OPENSSL_thread_stop();
    {
        std::lock_guard<std::mutex> lock(impl->m_Lock);
        impl->m_Running.store(0, std::memory_order_release);
    }
    impl->m_Done.notify_all();
    return nullptr;
}

}  // namespace

LMThread* LMThread::Create() {
    return new LMThread();
}

LMThread::LMThread() : m_Impl(std::make_shared<Impl>()) {}

LMThread::~LMThread() = default;

bool LMThread::Run(const char* /*name*/, void (*fn)(void*), void* arg) {
    LM_ASSERT(m_Impl->m_Thread == 0);
    LM_ASSERT(fn != 0);
    m_Impl->m_Function = fn;
    m_Impl->m_Arg = arg;
    m_Impl->m_Running.store(1, std::memory_order_release);

    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setdetachstate(&attr, PTHREAD_CREATE_DETACHED);
    Start* start = new Start{m_Impl};
    int rc = pthread_create(&m_Impl->m_Thread, &attr, Trampoline, start);
    pthread_attr_destroy(&attr);
    if (rc != 0) {
        delete start;
        m_Impl->m_Thread = 0;
        m_Impl->m_Running.store(0, std::memory_order_release);
        return false;
    }
    return true;
}

bool LMThread::IsRunning() const {
    return m_Impl->m_Running.load(std::memory_order_acquire) != 0;
}

void LMThread::Wait() {
    std::unique_lock<std::mutex> lock(m_Impl->m_Lock);
    m_Impl->m_Done.wait(lock, [this] { return !IsRunning(); });
}

void LMThread::Release() {
    m_Impl->m_Thread = 0;
    delete this;
}

void LMThread::Sleep(unsigned milliseconds) {
    struct timespec request;
    request.tv_sec = milliseconds / 1000;
    request.tv_nsec = static_cast<long>(milliseconds % 1000) * 1000000L;
    struct timespec remaining;
    while (nanosleep(&request, &remaining) != 0) {
        if (errno != EINTR) {
            break;
        }
        request = remaining;
    }
}
