#include "LMHostIPC.h"

#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstring>
#include <mutex>
#include <thread>

#include "LMLauncher.h"
#include "LMStageSlot.h"
#include "networkipc/network_ipc.h"

namespace {

constexpr uint32_t kPreExitKeyCode = 0x1000009;
constexpr uint32_t kQuitKeyCode = 0x400100;
constexpr int kPreExitSleep = 800;

// Written by the listener, read by the launcher and the stop routine; it only ever becomes set.
std::atomic<bool> g_IPCEnded{false};
// Set once FINALIZE went out: the host then knows that the program is quitting.
std::atomic<bool> g_FinalizeSent{false};

// The listener: started at most once, by the main thread, which alone joins it.
pthread_t g_Listener;
bool g_ListenerStarted = false;

// The stage lock of lm_stagecraft_lock/unlock.
std::mutex g_StageMutex;
std::condition_variable g_StageCond;

int SendToHost(int32_t id) {
    network_ipc_msg_t msg;
    std::memset(&msg, 0, sizeof(msg));
    msg.id = id;
    return network_stub_send_ipc_msg(&msg);
}

void* ListenerMain(void*) {
    LMLauncherPrint("[LMEDK_1.5]Calling -------> %s, %d\n", "_lm_stagecraft_ipc_listen_thread_main",
                    g_IPCEnded.load(std::memory_order_acquire) ? 1 : 0);
    network_ipc_msg_t msg;
    std::memset(&msg, 0, sizeof(msg));
    while (!g_IPCEnded.load(std::memory_order_acquire)) {
        LMLauncherPrint("[LMEDK_1.5]IPC enter \n");
        int ret = network_stub_recv_ipc_msg(&msg);
        if (ret != 0) {
            LMLauncherPrint(
                "[LMEDK_1.5]listener thread main, lm_app_recv_ipc_msg() failed! ERR =%d ,Release "
                "flash resource \n",
                ret);
            g_IPCEnded.store(true, std::memory_order_release);
            lm_stagecraft_uninit_proc();
            break;
        }
        LMLauncherPrint("[LMEDK_1.5]IPC get %d \n", static_cast<int>(msg.id));
        switch (msg.id) {
            case NETWORK_MSG_STUB_INIT:
                LMLauncherPrint("[LMEDK_1.5]NETWORK_MSG_STUB_INIT !\n");
                break;
            case NETWORK_MSG_STUB_UNINIT:
                LMLauncherPrint("[LMEDK_1.5]NETWORK_MSG_STUB_UNINIT !\n");
                g_IPCEnded.store(true, std::memory_order_release);
                lm_stagecraft_uninit_proc();
                break;
            case NETWORK_MSG_STUB_FINALIZE_DONE:
                LMLauncherPrint(
                    "[LMEDK_1.5]listener thread main,lm_app_recv_ipc_msg() "
                    "NETWORK_MSG_STUB_FINALIZE_DONE!\n");
                g_IPCEnded.store(true, std::memory_order_release);
                uninit_network_msg_queue();
                break;
            case NETWORK_MSG_STUB_FINALIZE_NETWORK_ERROR:
                LMLauncherPrint(
                    "[LMEDK_1.5]listener thread main,lm_app_recv_ipc_msg() "
                    "NETWORK_MSG_STUB_FINALIZE_NETWORK_ERROR!\n");
                break;
            default:  // 2, our own 4 and 5 echoed back, unknown ids
                break;
        }
    }
    LMLauncherPrint("[LMEDK_1.5]ipc listener thread main has exit!\n");
    return reinterpret_cast<void*>(1);
}

}  // namespace

int lm_stagecraft_ipc_init() {
    LMLauncherPrint("[LMEDK_1.5]lm_stagecraft_ipc_init enter \n");
    if (init_network_msg_queue() != 0) {
        LMLauncherPrint("[LMEDK_1.5]lm_stagecraft_ipc_init Error \n");
        return -1;
    }
    return 0;
}

int start_lm_stagecraft_ipc_listen_thread() {
    LMLauncherPrint("[LMEDK_1.5]start_lm_stagecraft_ipc_listen_thread enter \n");
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGQUIT);
    int ret = pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    if (ret != 0) {
        LMLauncherPrint("[LMEDK_1.5]start_lm_app_ipc_listen_thread: sig block error! \n");
        return ret;
    }
    ret = pthread_create(&g_Listener, nullptr, ListenerMain, nullptr);
    if (ret != 0) {
        LMLauncherPrint("[LMEDK_1.5]ERR: create  IPC thread failed, i4_ret [%ld],at L%d\r\n",
                        static_cast<long>(ret), 217);
        return ret;
    }
    g_ListenerStarted = true;
    LMLauncherPrint("[LMEDK_1.5]start_lm_app_ipc_listen_thread create ok! \n");
    return 0;
}

int stop_lm_app_ipc_listen_thread() {
    LMLauncherPrint("[LMEDK_1.5]stop_lm_app_ipc_listen_thread Enter! \n");
    if (g_IPCEnded.load(std::memory_order_acquire)) {
        LMLauncherPrint("[LMEDK_1.5]ipc thread already exit, now do nothing! \n");
        return 0;
    }
    LMLauncherPrint("[LMEDK_1.5]STOP: send FINALIZE msg to BDP \n");
    int ret = SendToHost(NETWORK_MSG_STUB_FINALIZE);
    if (ret != 0) {
        LMLauncherPrint("[LMEDK_1.5]send NETWORK_MSG_STUB_FINALIZE failed! ERR =%d \n", ret);
        return -1;
    }
    g_FinalizeSent.store(true, std::memory_order_release);
    return 0;
}

bool LMHostFinalizeSent() {
    return g_FinalizeSent.load(std::memory_order_acquire);
}

// The stage instance may never come: when the window set could not be created, the launcher's
// own finalize procedure lands here with nothing published. Waiting for it would keep the
// program (and the host) waiting forever, so the wait also ends when the launcher has withdrawn
// the slot for good: no key is posted and the caller goes on to tell the host.
int exit_lm_stagecraft() {
    LMLauncherPrint("[LMEDK_1.5]exit_lm_stagecraft enter! \n");
    LMStageSlot& slot = LMLauncherStage();
    for (;;) {
        LMStageSlot::State state = slot.Peek();
        if (state == LMStageSlot::State::Published)
            break;
        if (state == LMStageSlot::State::Withdrawn) {
            LMLauncherPrint(
                "[LMEDK_1.5]exit_lm_stagecraft: no stagecraft instance any more, no key to post "
                "\n");
            return -1;
        }
        LMLauncherPrint("[LMEDK_1.5]exit_lm_stagecraft: wait stagecraft instance to be created \n");
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    bool posted = slot.PostWith([](ae::stagecraft::IStagecraft& stage) {
        if (g_LMPreExitKey.load(std::memory_order_acquire)) {
            stage.PostKeyPress(kPreExitKeyCode);
            stage.PostKeyRelease(kPreExitKeyCode);
            LMSleep(kPreExitSleep);
        }
        stage.PostKeyPress(kQuitKeyCode);
        stage.PostKeyRelease(kQuitKeyCode);
    });
    if (!posted) {  // withdrawn between the test above and the post
        LMLauncherPrint(
            "[LMEDK_1.5]exit_lm_stagecraft: no stagecraft instance any more, no key to post \n");
        return -1;
    }
    LMLauncherPrint("[LMEDK_1.5]exit_lm_stagecraft leave! \n");
    return 0;
}

int lm_stagecraft_uninit_proc() {
    LMLauncherPrint("[LMEDK_1.5]Call----> lm_stagecraft_uninit_proc \n");
    if (exit_lm_stagecraft() != 0)
        LMLauncherPrint("[LMEDK_1.5]lm_stagecraft_uninit_proc: exit_lm_stagecraft FAIL \n");
    return 0;
}

int lm_stagecraft_finalize_proc() {
    LMLauncherPrint("[LMEDK_1.5]Call----> lm_stagecraft_finalize_proc \n");
    exit_lm_stagecraft();
    stop_lm_app_ipc_listen_thread();
    return 0;
}

int lm_stagecraft_exit_by_bdp_release() {
    LMLauncherPrint("[LMEDK_1.5]Call----> lm_stagecraft_exit_by_bdp_release \n");
    if (SendToHost(NETWORK_MSG_STUB_UNINIT_RET) != 0) {
        LMLauncherPrint("[LMEDK_1.5]IPC:,NETWORK_MSG_STUB_UNINIT_RET failed! ERR = \n");
        return -1;
    }
    uninit_network_msg_queue();
    return 0;
}

void lm_stagecraft_lock() {
    LMLauncherPrint("[LMEDK_1.5] lm_stagecraft_lock enter ! \n");
    g_StageMutex.lock();
    g_StageMutex.unlock();
    LMLauncherPrint("[LMEDK_1.5] lm_stagecraft_lock leave ! \n");
}

void lm_stagecraft_unlock() {
    LMLauncherPrint("[LMEDK_1.5]lm_stagecraft_unlock enter ! \n");
    g_StageCond.notify_one();
    LMLauncherPrint("[LMEDK_1.5]lm_stagecraft_unlock leave ! \n");
}

bool LMHostIPCEnded() {
    return g_IPCEnded.load(std::memory_order_acquire);
}

void LMJoinEndedListener() {
    if (!g_ListenerStarted)
        return;
    if (g_IPCEnded.load(std::memory_order_acquire)) {
        pthread_join(g_Listener, nullptr);
    } else {
        pthread_detach(g_Listener);
    }
    g_ListenerStarted = false;
}
