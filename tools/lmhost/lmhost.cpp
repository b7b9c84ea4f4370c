// lmhost: plays the host application for the launcher.
//
// Creates the message queue socket, starts the program with LM_NETWORK_IPC naming it, sends INIT
// when the program connects, then whatever the options ask for (UNINIT after a delay, a dropped
// link, an unprompted FINALIZE_DONE), answers FINALIZE with FINALIZE_DONE, and prints one line
// per message received. The program's own output passes through.
//
// Exit status: 0 when the program told the host it was gone (UNINIT_RET, or FINALIZE answered
// with FINALIZE_DONE) and then exited with status 0; 1 otherwise; 2 for bad arguments; 124 when
// the time ran out (the program is then killed).
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "networkipc/network_ipc.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kExitTimeout = 124;

void Usage(FILE* out) {
    std::fprintf(
        out,
        "usage: lmhost [OPTIONS] -- COMMAND [ARG...]\n"
        "\n"
        "Plays the host application: starts COMMAND with LM_NETWORK_IPC naming the message\n"
        "queue socket (in a fresh temporary folder unless LM_NETWORK_IPC is set), sends INIT\n"
        "when it connects, answers FINALIZE with FINALIZE_DONE and prints every message it\n"
        "receives (\"lmhost: received 5 FINALIZE\").\n"
        "  --uninit-after SECONDS     send UNINIT this long after INIT\n"
        "  --drop-link-after SECONDS  close the link this long after INIT\n"
        "  --no-finalize-done         do not answer FINALIZE\n"
        "  --finalize-done-first      send FINALIZE_DONE right after INIT, unprompted\n"
        "  --timeout SECONDS          kill the program after this long (default 60, 0 = never)\n"
        "Exit status: 0 the program told the host it was gone (UNINIT_RET, or FINALIZE\n"
        "answered) and exited with 0; 1 otherwise; 2 bad arguments; 124 time-out.\n");
}

bool ParseSeconds(const char* text, double& seconds) {
    char* end = nullptr;
    seconds = std::strtod(text, &end);
    return end != text && *end == '\0' && seconds >= 0 && seconds < 1e6;
}

const char* MessageName(int32_t id) {
    switch (id) {
        case NETWORK_MSG_STUB_INIT:
            return "INIT";
        case 2:
            return "(unnamed)";
        case NETWORK_MSG_STUB_UNINIT:
            return "UNINIT";
        case NETWORK_MSG_STUB_UNINIT_RET:
            return "UNINIT_RET";
        case NETWORK_MSG_STUB_FINALIZE:
            return "FINALIZE";
        case NETWORK_MSG_STUB_FINALIZE_DONE:
            return "FINALIZE_DONE";
        case NETWORK_MSG_STUB_FINALIZE_NETWORK_ERROR:
            return "FINALIZE_NETWORK_ERROR";
        default:
            return "(unknown)";
    }
}

struct Options {
    double uninitAfter = -1;
    double dropLinkAfter = -1;
    bool finalizeDone = true;
    bool finalizeDoneFirst = false;
    double timeout = 60;
    std::vector<char*> command;
};

// Self-pipe: the SIGCHLD handler makes it readable so that poll() wakes when the program ends.
int g_ChildPipe[2] = {-1, -1};

void OnChild(int) {
    int saved = errno;
    char byte = 0;
    ssize_t ignored = write(g_ChildPipe[1], &byte, 1);
    (void)ignored;
    errno = saved;
}

class Host {
public:
    explicit Host(const Options& options) : m_Options(options) {}
    ~Host() {
        CloseLink();
        if (m_Listener >= 0)
            close(m_Listener);
        if (!m_SocketPath.empty())
            unlink(m_SocketPath.c_str());
        if (!m_TempDir.empty())
            rmdir(m_TempDir.c_str());
    }

    int Run() {
        if (!Listen() || !StartProgram())
            return 1;
        m_Start = Clock::now();
        while (!m_ChildExited) {
            if (!Turn())
                return kExitTimeout;
        }
        Drain();
        std::fprintf(
            stderr, "lmhost: the program %s %d\n",
            WIFEXITED(m_ChildStatus) ? "exited with status" : "was killed by signal",
            WIFEXITED(m_ChildStatus) ? WEXITSTATUS(m_ChildStatus) : WTERMSIG(m_ChildStatus));
        bool clean = WIFEXITED(m_ChildStatus) && WEXITSTATUS(m_ChildStatus) == 0;
        return m_Told && clean ? 0 : 1;
    }

private:
    bool Listen() {
        const char* given = std::getenv(NETWORK_IPC_PATH_ENV);
        if (given && *given) {
            m_SocketPath = given;
        } else {
            char templ[] = "/tmp/lmhostXXXXXX";
            if (!mkdtemp(templ)) {
                std::perror("lmhost: mkdtemp");
                return false;
            }
            m_TempDir = templ;
            m_SocketPath = m_TempDir + "/ipc";
        }
        sockaddr_un address{};
        if (m_SocketPath.size() >= sizeof(address.sun_path)) {
            std::fprintf(stderr, "lmhost: socket path too long: %s\n", m_SocketPath.c_str());
            m_SocketPath.clear();
            return false;
        }
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, m_SocketPath.c_str());
        m_Listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (m_Listener < 0 ||
            bind(m_Listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
            std::fprintf(stderr, "lmhost: cannot listen on %s: %s\n", m_SocketPath.c_str(),
                         std::strerror(errno));
            m_SocketPath.clear();  // not ours to remove
            return false;
        }
        if (listen(m_Listener, 1) != 0) {
            std::perror("lmhost: listen");
            return false;
        }
        return true;
    }

    bool StartProgram() {
        std::fflush(nullptr);
        m_Child = fork();
        if (m_Child < 0) {
            std::perror("lmhost: fork");
            return false;
        }
        if (m_Child == 0) {
            signal(SIGPIPE, SIG_DFL);
            signal(SIGCHLD, SIG_DFL);
            setenv(NETWORK_IPC_PATH_ENV, m_SocketPath.c_str(), 1);
            execvp(m_Options.command[0], m_Options.command.data());
            std::fprintf(stderr, "lmhost: cannot run %s: %s\n", m_Options.command[0],
                         std::strerror(errno));
            _exit(127);
        }
        return true;
    }

    // Milliseconds until `seconds` after `from`, never below 0; -1 when nothing is due.
    static int MillisUntil(Clock::time_point from, double seconds, Clock::time_point now) {
        if (seconds < 0)
            return -1;
        auto due = from + std::chrono::duration_cast<Clock::duration>(
                              std::chrono::duration<double>(seconds));
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(due - now).count();
        return left <= 0 ? 0 : static_cast<int>(left) + 1;
    }

    static int Earliest(int a, int b) {
        if (a < 0)
            return b;
        if (b < 0)
            return a;
        return a < b ? a : b;
    }

    // One wait for the next event and its handling; false when the time ran out.
    bool Turn() {
        Clock::time_point now = Clock::now();
        int wait = m_Options.timeout > 0 ? MillisUntil(m_Start, m_Options.timeout, now) : -1;
        if (m_Link >= 0) {
            if (!m_UninitSent)
                wait = Earliest(wait, MillisUntil(m_InitAt, m_Options.uninitAfter, now));
            wait = Earliest(wait, MillisUntil(m_InitAt, m_Options.dropLinkAfter, now));
        }

        pollfd fds[2] = {{g_ChildPipe[0], POLLIN, 0}, {-1, POLLIN, 0}};
        fds[1].fd = m_Link >= 0 ? m_Link : m_Listener;
        if (poll(fds, 2, wait) < 0 && errno != EINTR) {
            std::perror("lmhost: poll");
            return KillProgram();
        }

        now = Clock::now();
        if (m_Options.timeout > 0 && MillisUntil(m_Start, m_Options.timeout, now) == 0)
            return KillProgram();
        if (fds[0].revents & POLLIN)
            Reap();
        if (m_Link >= 0 && fds[1].revents)
            ReadLink(false);
        else if (m_Link < 0 && m_Listener >= 0 && (fds[1].revents & POLLIN))
            Accept();
        if (m_Link >= 0 && !m_UninitSent &&
            MillisUntil(m_InitAt, m_Options.uninitAfter, now) == 0) {
            m_UninitSent = true;
            Send(NETWORK_MSG_STUB_UNINIT);
        }
        if (m_Link >= 0 && MillisUntil(m_InitAt, m_Options.dropLinkAfter, now) == 0) {
            std::fprintf(stderr, "lmhost: dropping the link\n");
            CloseLink();
        }
        return true;
    }

    bool KillProgram() {
        std::fprintf(stderr, "lmhost: time-out after %g s, killing the program\n",
                     m_Options.timeout);
        kill(m_Child, SIGKILL);
        while (waitpid(m_Child, &m_ChildStatus, 0) < 0 && errno == EINTR) {
        }
        return false;
    }

    void Reap() {
        char bytes[64];
        while (read(g_ChildPipe[0], bytes, sizeof(bytes)) > 0) {
        }
        if (waitpid(m_Child, &m_ChildStatus, WNOHANG) == m_Child)
            m_ChildExited = true;
    }

    void Accept() {
        m_Link = accept4(m_Listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (m_Link < 0)
            return;
        // One program, one link.
        close(m_Listener);
        m_Listener = -1;
        m_InitAt = Clock::now();
        Send(NETWORK_MSG_STUB_INIT);
        if (m_Options.finalizeDoneFirst)
            Send(NETWORK_MSG_STUB_FINALIZE_DONE);
    }

    // Reads what is there (everything, when `drain`); whole messages are handled as they
    // complete. End of stream or an error closes our side.
    void ReadLink(bool drain) {
        do {
            ssize_t got = recv(m_Link, m_Received + m_ReceivedSize,
                               sizeof(m_Received) - m_ReceivedSize, drain ? MSG_DONTWAIT : 0);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0 && drain && (errno == EAGAIN || errno == EWOULDBLOCK))
                return;
            if (got <= 0) {
                if (m_ReceivedSize > 0)
                    std::fprintf(stderr, "lmhost: %zu bytes of a message were cut off\n",
                                 m_ReceivedSize);
                CloseLink();
                return;
            }
            m_ReceivedSize += static_cast<size_t>(got);
            if (m_ReceivedSize == sizeof(m_Received)) {
                m_ReceivedSize = 0;
                network_ipc_msg_t msg;
                std::memcpy(&msg, m_Received, sizeof(msg));
                Handle(msg.id);
            }
        } while (drain && m_Link >= 0);
    }

    void Handle(int32_t id) {
        std::printf("lmhost: received %d %s\n", static_cast<int>(id), MessageName(id));
        std::fflush(stdout);
        if (id == NETWORK_MSG_STUB_UNINIT_RET) {
            m_Told = true;
        } else if (id == NETWORK_MSG_STUB_FINALIZE && m_Options.finalizeDone) {
            // The program may already have left: the answer is then lost, which is no failure.
            Send(NETWORK_MSG_STUB_FINALIZE_DONE);
            m_Told = true;
        }
    }

    void Send(int32_t id) {
        network_ipc_msg_t msg;
        std::memset(&msg, 0, sizeof(msg));
        msg.id = id;
        const char* data = reinterpret_cast<const char*>(&msg);
        size_t left = sizeof(msg);
        while (left > 0 && m_Link >= 0) {
            ssize_t sent = send(m_Link, data, left, MSG_NOSIGNAL);
            if (sent < 0 && errno == EINTR)
                continue;
            if (sent < 0) {
                std::fprintf(stderr, "lmhost: sending %s failed: %s\n", MessageName(id),
                             std::strerror(errno));
                return;
            }
            data += sent;
            left -= static_cast<size_t>(sent);
        }
    }

    // After the program has ended, everything it sent is already in the socket.
    void Drain() {
        if (m_Link >= 0)
            ReadLink(true);
    }

    void CloseLink() {
        if (m_Link >= 0) {
            close(m_Link);
            m_Link = -1;
        }
    }

    const Options& m_Options;
    std::string m_TempDir;
    std::string m_SocketPath;
    int m_Listener = -1;
    int m_Link = -1;
    pid_t m_Child = -1;
    int m_ChildStatus = 0;
    bool m_ChildExited = false;
    bool m_Told = false;
    bool m_UninitSent = false;
    Clock::time_point m_Start;
    Clock::time_point m_InitAt;
    unsigned char m_Received[NETWORK_IPC_MSG_SIZE];
    size_t m_ReceivedSize = 0;
};

// 0 parsed, otherwise the exit status to leave with.
int ParseOptions(int argc, char** argv, Options& options) {
    int i = 1;
    for (; i < argc; ++i) {
        const char* arg = argv[i];
        bool hasValue = i + 1 < argc;
        double* seconds = nullptr;
        if (!std::strcmp(arg, "--")) {
            ++i;
            break;
        } else if (!std::strcmp(arg, "--help") || !std::strcmp(arg, "-h")) {
            Usage(stdout);
            return -1;
        } else if (!std::strcmp(arg, "--no-finalize-done")) {
            options.finalizeDone = false;
        } else if (!std::strcmp(arg, "--finalize-done-first")) {
            options.finalizeDoneFirst = true;
        } else if (!std::strcmp(arg, "--uninit-after") && hasValue) {
            seconds = &options.uninitAfter;
        } else if (!std::strcmp(arg, "--drop-link-after") && hasValue) {
            seconds = &options.dropLinkAfter;
        } else if (!std::strcmp(arg, "--timeout") && hasValue) {
            seconds = &options.timeout;
        } else {
            std::fprintf(stderr, "lmhost: unexpected argument '%s'\n", arg);
            Usage(stderr);
            return 2;
        }
        if (seconds && !ParseSeconds(argv[++i], *seconds)) {
            std::fprintf(stderr, "lmhost: bad %s value '%s'\n", arg, argv[i]);
            return 2;
        }
    }
    for (; i < argc; ++i)
        options.command.push_back(argv[i]);
    if (options.command.empty()) {
        std::fprintf(stderr, "lmhost: no command given after --\n");
        Usage(stderr);
        return 2;
    }
    options.command.push_back(nullptr);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    int parsed = ParseOptions(argc, argv, options);
    if (parsed != 0)
        return parsed < 0 ? 0 : parsed;

    if (pipe2(g_ChildPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        std::perror("lmhost: pipe");
        return 1;
    }
    struct sigaction onChild {};
    onChild.sa_handler = OnChild;
    onChild.sa_flags = SA_RESTART | SA_NOCLDSTOP;
    sigemptyset(&onChild.sa_mask);
    sigaction(SIGCHLD, &onChild, nullptr);
    signal(SIGPIPE, SIG_IGN);

    int status;
    {
        Host host(options);
        status = host.Run();
    }
    std::fflush(stdout);
    return status;
}
