// Entry and exit trace of one SOAP proxy call.
//
// The build inserts one of these at the top of every synchronous call method of the generated
// proxies, named "<proxy class>::<operation>". Its lifetime spans the whole call (connect, send,
// receive, close), so "Entering %s\n" precedes the first byte sent and "Exiting %s\n" follows the
// end of the exchange on every return path. Both lines go to the "soap_proxy" log area at trace
// severity.
#ifndef LM_SOAP_PROXY_TRACE_H
#define LM_SOAP_PROXY_TRACE_H

class LMSoapProxyTrace {
public:
    // `method` must outlive the object (the generated code passes a string literal).
    explicit LMSoapProxyTrace(const char* method);
    ~LMSoapProxyTrace();

    LMSoapProxyTrace(const LMSoapProxyTrace&) = delete;
    LMSoapProxyTrace& operator=(const LMSoapProxyTrace&) = delete;

private:
    const char* m_Method;
};

#endif  // LM_SOAP_PROXY_TRACE_H
