// The host message queue over a stream Unix-domain socket.
//
// Messages have a fixed size, so the stream needs no framing beyond reading and writing exactly
// 88 bytes; a partial transfer is continued, never taken as a message.
//
// The descriptor is shared between the sender (main thread) and the receiver (listener thread),
// and either may close the queue while the other is inside a call. Closing therefore only shuts
// the socket down, which wakes a blocked receive; the descriptor itself is closed by whoever
// leaves it last. A descriptor number is thus never closed while a call may still use it, and
// no call can reach a number that the process has since reused for something else.
#include "networkipc/network_ipc.h"

#include <errno.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <mutex>

static_assert(sizeof(network_ipc_msg_t) == NETWORK_IPC_MSG_SIZE, "a message is 88 bytes");

namespace {

struct Queue {
    std::mutex lock;  // guards the fields below, never held during I/O
    int fd = -1;
    bool closing = false;  // uninit was called; fd is closed when `users` drops to zero
    int users = 0;         // calls currently using fd
    std::mutex sendLock;   // keeps concurrent sends from interleaving their bytes
};

Queue& TheQueue() {
    static Queue queue;
    return queue;
}

// Takes a use of the open descriptor; -1 when the queue is closed or closing.
int Enter(Queue& q) {
    std::lock_guard<std::mutex> guard(q.lock);
    if (q.fd < 0 || q.closing)
        return -1;
    ++q.users;
    return q.fd;
}

void Leave(Queue& q) {
    std::lock_guard<std::mutex> guard(q.lock);
    if (--q.users == 0 && q.closing) {
        ::close(q.fd);
        q.fd = -1;
        q.closing = false;
    }
}

// Writes all of `size` bytes; MSG_NOSIGNAL turns a vanished peer into EPIPE instead of a signal.
bool SendAll(int fd, const unsigned char* data, size_t size) {
    while (size > 0) {
        ssize_t sent = ::send(fd, data, size, MSG_NOSIGNAL);
        if (sent < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += sent;
        size -= static_cast<size_t>(sent);
    }
    return true;
}

// Reads exactly `size` bytes; false on end of stream (even mid-message) or an error.
bool ReceiveAll(int fd, unsigned char* data, size_t size) {
    while (size > 0) {
        ssize_t got = ::recv(fd, data, size, 0);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (got == 0) {
            errno = ECONNRESET;
            return false;
        }
        data += got;
        size -= static_cast<size_t>(got);
    }
    return true;
}

}  // namespace

extern "C" int init_network_msg_queue(void) {
    const char* path = std::getenv(NETWORK_IPC_PATH_ENV);
    sockaddr_un address{};
    if (!path || !*path || std::strlen(path) >= sizeof(address.sun_path)) {
        errno = EINVAL;
        return -1;
    }
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path);

    Queue& q = TheQueue();
    std::lock_guard<std::mutex> guard(q.lock);
    if (q.fd >= 0) {  // open, or a closed one still in use by a call
        errno = EBUSY;
        return -1;
    }
    int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        int error = errno;
        ::close(fd);
        errno = error;
        return -1;
    }
    q.fd = fd;
    return 0;
}

extern "C" int uninit_network_msg_queue(void) {
    Queue& q = TheQueue();
    std::lock_guard<std::mutex> guard(q.lock);
    if (q.fd < 0 || q.closing)
        return 0;
    if (q.users == 0) {
        ::close(q.fd);
        q.fd = -1;
    } else {
        // Wakes a blocked receive and fails a blocked send; the last of them closes fd.
        ::shutdown(q.fd, SHUT_RDWR);
        q.closing = true;
    }
    return 0;
}

extern "C" int network_stub_send_ipc_msg(const network_ipc_msg_t* msg) {
    if (!msg) {
        errno = EINVAL;
        return -1;
    }
    Queue& q = TheQueue();
    int fd = Enter(q);
    if (fd < 0) {
        errno = ENOTCONN;
        return -1;
    }
    bool ok;
    int error;
    {
        std::lock_guard<std::mutex> guard(q.sendLock);
        ok = SendAll(fd, reinterpret_cast<const unsigned char*>(msg), sizeof(*msg));
        error = errno;
    }
    Leave(q);
    errno = error;
    return ok ? 0 : -1;
}

extern "C" int network_stub_recv_ipc_msg(network_ipc_msg_t* msg) {
    if (!msg) {
        errno = EINVAL;
        return -1;
    }
    Queue& q = TheQueue();
    int fd = Enter(q);
    if (fd < 0) {
        errno = ENOTCONN;
        return -1;
    }
    network_ipc_msg_t whole;
    bool ok = ReceiveAll(fd, reinterpret_cast<unsigned char*>(&whole), sizeof(whole));
    int error = errno;
    Leave(q);
    if (ok)
        *msg = whole;
    errno = error;
    return ok ? 0 : -1;
}
