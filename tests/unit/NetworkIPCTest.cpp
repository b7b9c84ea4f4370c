// The message queue stand-in against a host played by the test over a real Unix socket.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "TempDir.h"
#include "networkipc/network_ipc.h"

namespace {

// The host's side: a listening socket in a temporary folder, named in LM_NETWORK_IPC.
class Host {
public:
    Host() {
        std::string path = m_Dir / "ipc";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, path.c_str());
        m_Listener = socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(bind(m_Listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(m_Listener, 1), 0);
        setenv(NETWORK_IPC_PATH_ENV, path.c_str(), 1);
    }
    ~Host() {
        uninit_network_msg_queue();
        Drop();
        close(m_Listener);
        unsetenv(NETWORK_IPC_PATH_ENV);
    }

    // Opens the program's side and accepts it.
    bool Connect() {
        if (init_network_msg_queue() != 0)
            return false;
        m_Link = accept(m_Listener, nullptr, nullptr);
        return m_Link >= 0;
    }

    void Drop() {
        if (m_Link >= 0)
            close(m_Link);
        m_Link = -1;
    }

    // Writes the bytes in one call.
    void Write(const void* bytes, size_t size) {
        ASSERT_EQ(write(m_Link, bytes, size), static_cast<ssize_t>(size));
    }

    network_ipc_msg_t ReadWhole() {
        network_ipc_msg_t msg;
        char* into = reinterpret_cast<char*>(&msg);
        size_t got = 0;
        while (got < sizeof(msg)) {
            ssize_t n = read(m_Link, into + got, sizeof(msg) - got);
            if (n <= 0)
                break;
            got += static_cast<size_t>(n);
        }
        EXPECT_EQ(got, sizeof(msg));
        return msg;
    }

private:
    TempDir m_Dir;
    int m_Listener = -1;
    int m_Link = -1;
};

network_ipc_msg_t Message(int32_t id) {
    network_ipc_msg_t msg;
    std::memset(&msg, 0, sizeof(msg));
    msg.id = id;
    return msg;
}

TEST(NetworkIPC, OpeningNeedsTheVariableAListenerAndAClosedQueue) {
    unsetenv(NETWORK_IPC_PATH_ENV);
    EXPECT_EQ(init_network_msg_queue(), -1);
    {
        TempDir nobody;
        setenv(NETWORK_IPC_PATH_ENV, (nobody / "ipc").c_str(), 1);
        EXPECT_EQ(init_network_msg_queue(), -1);
        unsetenv(NETWORK_IPC_PATH_ENV);
    }
    Host host;
    ASSERT_TRUE(host.Connect());
    EXPECT_EQ(init_network_msg_queue(), -1);  // already open
    EXPECT_EQ(uninit_network_msg_queue(), 0);
    EXPECT_EQ(uninit_network_msg_queue(), 0);  // closing twice is harmless
}

TEST(NetworkIPC, MessagesArriveWholeThoughWrittenInPieces) {
    Host host;
    ASSERT_TRUE(host.Connect());
    network_ipc_msg_t first = Message(NETWORK_MSG_STUB_UNINIT);
    network_ipc_msg_t second = Message(-2);
    second.payload[83] = 0x5a;
    char both[2 * NETWORK_IPC_MSG_SIZE];
    std::memcpy(both, &first, sizeof(first));
    std::memcpy(both + sizeof(first), &second, sizeof(second));
    // 1 byte, 50 bytes, the rest of the first message with the start of the second, its rest.
    std::thread writer([&] {
        host.Write(both, 1);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        host.Write(both + 1, 50);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        host.Write(both + 51, NETWORK_IPC_MSG_SIZE);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        host.Write(both + 51 + NETWORK_IPC_MSG_SIZE, sizeof(both) - 51 - NETWORK_IPC_MSG_SIZE);
    });
    network_ipc_msg_t got;
    ASSERT_EQ(network_stub_recv_ipc_msg(&got), 0);
    EXPECT_EQ(std::memcmp(&got, &first, sizeof(got)), 0);
    ASSERT_EQ(network_stub_recv_ipc_msg(&got), 0);
    EXPECT_EQ(got.id, -2);
    EXPECT_EQ(std::memcmp(&got, &second, sizeof(got)), 0);
    writer.join();

    // The other way: 88 bytes each, the id in host order, the payload as sent.
    ASSERT_EQ(network_stub_send_ipc_msg(&first), 0);
    ASSERT_EQ(network_stub_send_ipc_msg(&second), 0);
    network_ipc_msg_t seen = host.ReadWhole();
    EXPECT_EQ(seen.id, NETWORK_MSG_STUB_UNINIT);
    seen = host.ReadWhole();
    EXPECT_EQ(std::memcmp(&seen, &second, sizeof(seen)), 0);
}

TEST(NetworkIPC, AHostThatGoesAwayFailsTheBlockedReceiveAndLaterSends) {
    Host host;
    ASSERT_TRUE(host.Connect());
    // Half a message and then the end of the link: nothing is delivered.
    std::thread host_side([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        network_ipc_msg_t msg = Message(NETWORK_MSG_STUB_UNINIT);
        host.Write(&msg, 40);
        host.Drop();
    });
    network_ipc_msg_t got = Message(0);
    EXPECT_EQ(network_stub_recv_ipc_msg(&got), -1);
    EXPECT_EQ(got.id, 0);
    host_side.join();

    // SIGPIPE keeps its default action here: a send that raised it would end the test program.
    network_ipc_msg_t msg = Message(NETWORK_MSG_STUB_UNINIT_RET);
    EXPECT_EQ(network_stub_send_ipc_msg(&msg), -1);
    EXPECT_EQ(errno, EPIPE);
}

TEST(NetworkIPC, ClosingWakesABlockedReceiverAndLaterCallsFailCleanly) {
    Host host;
    ASSERT_TRUE(host.Connect());
    std::atomic<int> received{1};
    std::thread receiver([&] {
        network_ipc_msg_t got;
        received.store(network_stub_recv_ipc_msg(&got));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(uninit_network_msg_queue(), 0);
    receiver.join();
    EXPECT_EQ(received.load(), -1);

    network_ipc_msg_t msg = Message(NETWORK_MSG_STUB_UNINIT_RET);
    EXPECT_EQ(network_stub_send_ipc_msg(&msg), -1);
    EXPECT_EQ(network_stub_recv_ipc_msg(&msg), -1);

    // The descriptor was released once the receiver had left: the queue opens again.
    host.Drop();
    EXPECT_TRUE(host.Connect());
}

}  // namespace
