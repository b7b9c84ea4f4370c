// A small HTTP/1.1 server on loopback for the simulator's plain-HTTP port: one request per
// connection, answered by SimWeb, with the armed fault applied.
#ifndef LMSIM_HTTP_SERVER_H
#define LMSIM_HTTP_SERVER_H

#include <atomic>
#include <string>
#include <thread>

#include "SimFaults.h"
#include "SimRequestLog.h"
#include "SimStats.h"
#include "SimWeb.h"

namespace lmsim {

class SimHttpServer {
public:
    SimHttpServer(const SimWeb& web, SimFaults& faults) : m_Web(web), m_Faults(faults) {}
    ~SimHttpServer() { Stop(); }
    SimHttpServer(const SimHttpServer&) = delete;
    SimHttpServer& operator=(const SimHttpServer&) = delete;

    // Binds 127.0.0.1:port (0 picks a free port); false with a message in `error`.
    bool Listen(int port, std::string& error);
    int Port() const { return m_Port; }
    // Each request served (the fault switches aside) is written to `log` (null: none).
    void SetRequestLog(SimRequestLog* log) { m_Log = log; }
    // What "GET /__lmsim/stats" answers (null: an empty body). Set before Start.
    void SetStats(const SimStats* stats) { m_Stats = stats; }
    void Start();
    void Stop();

    // Reads one request head from `fd` (at most 16 KiB); false when it is incomplete.
    static bool ReadRequest(int fd, HttpRequest& request);
    // Writes the answer with `fault` applied, then the caller closes.
    static void WriteResponse(int fd, const HttpResponse& response, const Fault& fault);

private:
    void AcceptLoop();
    void Serve(int fd);
    HttpResponse Control(const HttpRequest& request);

    const SimWeb& m_Web;
    SimFaults& m_Faults;
    int m_Listen = -1;
    SimRequestLog* m_Log = nullptr;
    const SimStats* m_Stats = nullptr;
    int m_Port = 0;
    std::atomic<bool> m_Running{false};
    std::thread m_Thread;
};

}  // namespace lmsim

#endif  // LMSIM_HTTP_SERVER_H
