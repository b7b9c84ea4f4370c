// LMThread: runs one function with one argument on a new detached POSIX thread.
//
// Each object runs at most one thread in its life. The state the thread touches is shared between
// the object and the thread, so the object may be released while its function still runs.
#ifndef LM_THREAD_H
#define LM_THREAD_H

#include <memory>

class LMThread {
public:
    typedef void (*ThreadFunction)(void* arg);

    // The factory: objects are always made here and ended with Release().
    static LMThread* Create();

    // Starts `fn(arg)` on a detached thread; true when the thread was created. The name is for
    // the reader of the calling code only.
    virtual bool Run(const char* name, void (*fn)(void*), void* arg);
    virtual ~LMThread();

    // True from a successful Run until the function has returned.
    bool IsRunning() const;
    // Returns once the function has returned (at once when no thread was started).
    void Wait();
    // Ends the object; a running thread goes on by itself.
    void Release();

    // Sleeps for `milliseconds`, resuming after signals until the whole time has passed.
    static void Sleep(unsigned milliseconds);

    struct Impl;

protected:
    LMThread();

private:
    LMThread(const LMThread&) = delete;
    LMThread& operator=(const LMThread&) = delete;

    std::shared_ptr<Impl> m_Impl;
};

#endif  // LM_THREAD_H
