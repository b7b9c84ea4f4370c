// The simulator's HTTPS side: the three SOAP services, routed by path
// (".../RealTimeBrowse.asmx", ".../StreamAPI.asmx", ".../DownloadAPI.asmx"), and the
// environment query "GET /device/env/?d=..&dt=..". One thread per connection, which serves the
// client's requests in turn while it keeps the connection alive (HTTP/1.1 keep-alive, bounded:
// see KeepAlive); armed faults are applied to the answers.
#ifndef LMSIM_SOAP_SERVER_H
#define LMSIM_SOAP_SERVER_H

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "SimFaults.h"
#include "SimRequestLog.h"
#include "SimServices.h"
#include "SimStats.h"
#include "SimWeb.h"

namespace lmsim {

struct SimConnection;

class SimSoapServer {
public:
    // How long and how much a connection may be kept between requests. Connections beyond
    // `maxConnections` at once are served one request and closed; a connection is closed after
    // `maxRequests` requests or `idleMs` milliseconds without one.
    struct KeepAlive {
        int idleMs = 5000;
        int maxConnections = 32;
        int maxRequests = 1000;
        bool resumption = true;  // TLS sessions cached and tickets issued
    };

    SimSoapServer(const SimState& state, const SimWeb& web, SimFaults& faults,
                  const KeepAlive& keepAlive);
    ~SimSoapServer();
    SimSoapServer(const SimSoapServer&) = delete;
    SimSoapServer& operator=(const SimSoapServer&) = delete;

    // Loads DIR/server.pem and DIR/server.key and binds 127.0.0.1:port (0 picks one).
    bool Listen(const std::string& tlsDir, int port, std::string& error);
    int Port() const { return m_Port; }
    // Each SOAP request served is written to `log` (null: none). Set before Start.
    void SetRequestLog(SimRequestLog* log) { m_Log = log; }
    const SimStats& Stats() const { return m_Stats; }
    void Start();
    // Stops accepting and waits for the connections in progress.
    void Stop();

private:
    void AcceptLoop();
    // Serves the requests of one connection; `keep` allows keeping it between them.
    void Serve(struct soap* conn, bool keep);
    // One request: false when the connection is to be closed after it.
    bool ServeOne(struct soap* conn, SimConnection& c, bool keep);

    const SimState& m_State;
    const SimWeb& m_Web;
    SimFaults& m_Faults;
    const KeepAlive m_KeepAlive;
    SimStats m_Stats;
    struct soap* m_Master;
    int m_Port = 0;
    std::atomic<bool> m_Running{false};
    std::thread m_Thread;
    std::mutex m_Lock;
    std::condition_variable m_Idle;
    int m_Active = 0;
    SimRequestLog* m_Log = nullptr;
};

}  // namespace lmsim

#endif  // LMSIM_SOAP_SERVER_H
