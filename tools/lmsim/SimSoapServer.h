// The simulator's HTTPS side: the three SOAP services, routed by path
// (".../RealTimeBrowse.asmx", ".../StreamAPI.asmx", ".../DownloadAPI.asmx"), and the
// environment query "GET /device/env/?d=..&dt=..". One thread per connection; armed faults are
// applied to the answer.
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
#include "SimWeb.h"

namespace lmsim {

class SimSoapServer {
public:
    SimSoapServer(const SimState& state, const SimWeb& web, SimFaults& faults);
    ~SimSoapServer();
    SimSoapServer(const SimSoapServer&) = delete;
    SimSoapServer& operator=(const SimSoapServer&) = delete;

    // Loads DIR/server.pem and DIR/server.key and binds 127.0.0.1:port (0 picks one).
    bool Listen(const std::string& tlsDir, int port, std::string& error);
    int Port() const { return m_Port; }
    // Each SOAP request served is written to `log` (null: none). Set before Start.
    void SetRequestLog(SimRequestLog* log) { m_Log = log; }
    void Start();
    // Stops accepting and waits for the connections in progress.
    void Stop();

private:
    void AcceptLoop();
    void Serve(struct soap* conn);

    const SimState& m_State;
    const SimWeb& m_Web;
    SimFaults& m_Faults;
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
