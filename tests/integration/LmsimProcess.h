// Starts the service simulator as a child process for a test and stops it afterwards: test
// certificates in a fresh folder, free loopback ports, the "lmsim listening" line awaited. The
// simulator also ends when the test process dies without stopping it (a crash, a kill): a stray
// one would keep running and hold ctest's output pipe open, so the run would wait for it.
#ifndef LMSIM_PROCESS_H
#define LMSIM_PROCESS_H

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

class LmsimProcess {
public:
    // `args` are extra lmsim options such as {"--fault", "delay:100"}.
    // `certOptions` go to scripts/make-test-certs after the folder.
    explicit LmsimProcess(std::vector<std::string> args = {}, const std::string& certOptions = "") {
        char templ[] = "/tmp/lmsimXXXXXX";
        m_Dir = mkdtemp(templ);
        std::string certs = std::string(LM_SOURCE_DIR) + "/scripts/make-test-certs '" + m_Dir +
                            "' " + certOptions + " >/dev/null";
        if (std::system(certs.c_str()) != 0) {
            return;
        }
        int out[2];
        if (pipe(out) != 0) {
            return;
        }
        auto started = std::chrono::steady_clock::now();
        const pid_t parent = getpid();
        m_Pid = fork();
        if (m_Pid == 0) {
            // Killed when the thread that started it ends; the tests start it from the thread
            // that runs them. A parent gone before this line is caught by the check after it.
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (getppid() != parent) {
                _exit(127);
            }
            dup2(out[1], STDOUT_FILENO);
            close(out[0]);
            close(out[1]);
            std::vector<std::string> all = {LMSIM_PATH, "--tls-dir", m_Dir};
            all.insert(all.end(), args.begin(), args.end());
            std::vector<char*> argv;
            for (std::string& a : all) {
                argv.push_back(&a[0]);
            }
            argv.push_back(nullptr);
            execv(LMSIM_PATH, argv.data());
            _exit(127);
        }
        close(out[1]);
        m_Out = out[0];
        // The line says the ports; wait for it, five seconds at most.
        std::string line;
        char c;
        pollfd p = {m_Out, POLLIN, 0};
        while (line.find('\n') == std::string::npos && poll(&p, 1, 5000) > 0 &&
               read(m_Out, &c, 1) == 1) {
            line += c;
        }
        m_StartMs =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started)
                .count();
        if (sscanf(line.c_str(), "lmsim listening https=%d http=%d", &m_Https, &m_Http) != 2) {
            m_Https = m_Http = 0;
        }
    }

    ~LmsimProcess() {
        Stop();
        if (m_Out >= 0) {
            close(m_Out);
        }
        (void)std::system(("rm -rf '" + m_Dir + "'").c_str());
    }
    LmsimProcess(const LmsimProcess&) = delete;
    LmsimProcess& operator=(const LmsimProcess&) = delete;

    bool Ready() const { return m_Https > 0 && m_Http > 0; }
    int HttpsPort() const { return m_Https; }
    int HttpPort() const { return m_Http; }
    double StartMs() const { return m_StartMs; }
    pid_t Pid() const { return m_Pid; }
    std::string CaFile() const { return m_Dir + "/ca.pem"; }
    std::string Endpoint(const char* service) const {
        return "https://127.0.0.1:" + std::to_string(m_Https) + "/api/" + service;
    }

    // Arms a fault for the simulator's next `count` answers (count < 0: until changed) after
    // `skip` unharmed ones, through its control path on the HTTP port. True when the simulator
    // confirmed it.
    bool ArmFault(const std::string& kind, const std::string& value = "", int count = 1,
                  int skip = 0) const {
        return Get("/__lmsim/fault?kind=" + kind + (value.empty() ? "" : "&value=" + value) +
                   "&count=" + std::to_string(count) + "&skip=" + std::to_string(skip))
                   .find("armed " + kind) != std::string::npos;
    }

    // The HTTPS side's counts so far ("connections", "resumed", "requests", "compressed"); -1
    // when the simulator did not tell.
    long Stat(const std::string& name) const {
        const std::string text = Get("/__lmsim/stats");
        size_t at = text.find(" " + name + "=");
        if (at == std::string::npos) {
            at = text.find("\n" + name + "=");
        }
        return at == std::string::npos ? -1 : atol(text.c_str() + at + name.size() + 2);
    }

    // The whole answer (head and body) to a GET of `path` on the plain-HTTP port.
    std::string Get(const std::string& path) const {
        int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        addr.sin_port = htons(static_cast<uint16_t>(m_Http));
        std::string answer;
        if (fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0) {
            std::string request = "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
            if (send(fd, request.data(), request.size(), 0) ==
                static_cast<ssize_t>(request.size())) {
                pollfd p = {fd, POLLIN, 0};
                char buffer[512];
                ssize_t n;
                while (poll(&p, 1, 5000) > 0 && (n = recv(fd, buffer, sizeof buffer, 0)) > 0) {
                    answer.append(buffer, static_cast<size_t>(n));
                }
            }
        }
        if (fd >= 0) {
            close(fd);
        }
        return answer;
    }

    // SIGTERM and wait; the exit status (-1 when it did not exit normally).
    int Stop() {
        if (m_Pid <= 0) {
            return m_Status;
        }
        kill(m_Pid, SIGTERM);
        int status = 0;
        waitpid(m_Pid, &status, 0);
        m_Pid = -1;
        m_Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return m_Status;
    }

private:
    std::string m_Dir;
    pid_t m_Pid = -1;
    int m_Out = -1;
    int m_Https = 0;
    int m_Http = 0;
    int m_Status = -1;
    double m_StartMs = 0;
};

#endif  // LMSIM_PROCESS_H
