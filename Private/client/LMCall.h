// The calling pattern the client's service operations share (LMCall::Call), with its cache slots.
#ifndef LM_CALL_H
#define LM_CALL_H

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>

#include "LMAnswerKeeper.h"
#include "LMCacheNames.h"
#include "LMLog.h"
#include "LMSoapLogPlugin.h"
#include "LMUtilities.h"
#include "LMWSClient.h"
#include "Serializer.h"

namespace LMCall {

// The log area of the client's operations.
inline LMLogArea& ClientLogArea() {
    static LMLogArea area(LMWS_SoapProxyLOG_AREA_NAME);
    return area;
}

// Where an operation's answers live in the cache: the table (through its get/set pair), the
// entry's name, the CacheData bit that allows storing, and the argument text of this request.
struct CacheSlot {
    int (CacheInterface::*Get)(const LMString&, const LMString&, LMString&);
    int (CacheInterface::*Set)(const LMString&, const LMString&, const LMString&);
    const char* Name;
    uint32_t Bit;
    char Key[256] = {0};
    bool KeyFits = true;
};

// Formats the argument text. A text that does not fit the key buffer would be cut and could
// name another request's entry (two long search queries with the same beginning), so such a
// request bypasses the cache instead.
inline void SetKey(CacheSlot& slot, const char* format, ...) __attribute__((format(printf, 2, 3)));
inline void SetKey(CacheSlot& slot, const char* format, ...) {
    va_list args;
    va_start(args, format);
    int n = vsnprintf(slot.Key, sizeof(slot.Key), format, args);
    va_end(args);
    slot.KeyFits = n >= 0 && static_cast<size_t>(n) < sizeof(slot.Key);
}

inline CacheSlot ServiceSlot(const char* name) {
    return {&CacheInterface::GetServiceData, &CacheInterface::SetServiceData, name,
            LM_WS_CacheParam::Service};
}

inline CacheSlot UserSlot(const char* name) {
    return {&CacheInterface::GetUserData, &CacheInterface::SetUserData, name,
            LM_WS_CacheParam::UserData};
}

// The line an operation logs after its call.
enum class LogLine {
    None,       // nothing (the callers log the outcome)
    Ret,        // "%s, ret:%d\n"
    RetAndCode  // "%s, ret:%d,responseCode:%d\n"
};

// The names of one operation: the service operation (for the headers) and the client's own name
// (for the log and, with MapsByName, for the response codes that have statuses of their own).
struct Operation {
    const char* Service;
    const char* Client;
    LogLine Log;
    bool MapsByName = false;
};

// What a successful answer (response code 0) changes besides the record: nothing by default.
struct NoSideEffect {
    template <class Wire>
    void operator()(const Wire&) const {}
};

// The cached answer of `slot`, or null on a miss. An entry whose bytes were decoded recently is
// answered from the client's memo; others are decoded into `response` (its data then belongs to
// `serializer`, created here) and remembered. An entry that does not decode into an answer with a
// result is treated as a miss and is overwritten by the next good answer.
template <class Response, class Wire>
const Wire* ReadCached(LMWSClient& client, const CacheSlot& slot,
                       std::unique_ptr<Serializer>& serializer, Response& response,
                       Wire* Response::*result) {
    const LMString name(slot.Name);
    const LMString key(slot.Key);
    LMString value;
    if (!(client.m_CacheMgr->*slot.Get)(name, key, value) || value.empty()) {
        return nullptr;
    }
    if (const Wire* known = client.m_AnswerMemo.Find<Wire>(slot.Bit, name, key, value)) {
        return known;
    }
    serializer = std::make_unique<Serializer>(true, false);
    if (serializer->Read(value, response) && response.*result != nullptr) {
        client.m_AnswerMemo.Keep(slot.Bit, name, key, value, *(response.*result));
        return response.*result;
    }
    response.*result = nullptr;
    return nullptr;
}

// Asks the service (`ask(response)`, the proxy prepared for `operation`). When the server had
// closed the kept connection before answering, which it may do to an idle connection at any
// moment, the call is prepared and asked once more: the toolkit opens a new connection for it,
// resuming the TLS session.
template <class Proxy, class Response, class Ask>
int AskKept(Proxy& proxy, const char* operation, Ask& ask, Response& response) {
    int rc = ask(response);
    if (rc != SOAP_OK && LMSoapLogPlugin::KeptConnectionDropped(proxy.soap)) {
        LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE,
                     "%s: the kept connection was closed, asking on a new one\n", operation);
        rc = proxy.Setup(LMString(operation));
        if (rc == SOAP_OK) {
            rc = ask(response);
        }
    }
    return rc;
}

// Writes the answer `response` that `soap` received into `writer`: the response's XML as the
// service sent it when the context kept it, otherwise the record written out again.
template <class Response>
bool WriteAnswer(struct soap* soap, Serializer& writer, const Response& response) {
    const std::string* body = LMAnswerKeeper::Kept(soap);
    LMAnswerContent content;
    if (body != nullptr && FindAnswerContent(*body, content) &&
        writer.WriteContent(content.declarations, body->data() + content.begin,
                            content.end - content.begin)) {
        return true;
    }
    return writer.Write(response);
}

// One call on `proxy`: prepare it for the service operation; answer from the cache when `slot`
// names an entry that holds a readable answer, otherwise ask the service (`ask(response)` fills
// the request, calls and returns the toolkit's code); convert the answer into the caller's
// record; on response code 0 store a fresh answer when the client caches that kind of data and
// apply `after`; free the call's data; log and map the status. The cache is read whatever
// CacheData says (entries written under an earlier setting stay usable) but written only when the
// slot's bit is set. `slot` is null for operations that are never cached.
template <class Proxy, class Response, class Wire, class Record, class Ask,
          class After = NoSideEffect>
LM_WS_Status Call(LMWSClient& client, Proxy& proxy, const Operation& op, const CacheSlot* slot,
                  Wire* Response::*result, void (*convert)(const Wire*, Record*), Record* record,
                  Ask ask, After after = After()) {
    CacheMgr* cache = slot != nullptr && slot->KeyFits ? client.m_CacheMgr : nullptr;
    // Toolkit contexts are large (over 100 KB): they live on the heap, and only when needed.
    std::unique_ptr<Serializer> serializer;
    Response response;
    const Wire* answer = nullptr;
    int rc = proxy.Setup(LMString(op.Service));
    if (rc == SOAP_OK && cache != nullptr) {
        answer = ReadCached(client, *slot, serializer, response, result);
    }
    const bool cached = answer != nullptr;
    const bool storing = cache != nullptr && (client.m_Params.Cache.CacheData & slot->Bit) != 0;
    if (rc == SOAP_OK && !cached) {
        LMAnswerKeeper::Keep(proxy.soap, storing);
        rc = AskKept(proxy, op.Service, ask, response);
        answer = rc == SOAP_OK ? response.*result : nullptr;
    }
    if (answer != nullptr) {
        convert(answer, record);
    }
    const int code = record->ResponseCode;
    if (answer != nullptr && code == 0) {
        after(*answer);
    }
    if (answer != nullptr && !cached && code == 0 && storing) {
        // A failed store changes nothing for the caller: the answer is in the record already.
        auto writer = std::make_unique<Serializer>(true, false);
        if (WriteAnswer(proxy.soap, *writer, response)) {
            (cache->*slot->Set)(LMString(slot->Name), LMString(slot->Key), writer->GetBuffer());
        }
    }
    LMAnswerKeeper::Keep(proxy.soap, false);
    proxy.destroy();
    if (op.Log == LogLine::RetAndCode) {
        LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, ret:%d,responseCode:%d\n", op.Client,
                     rc, code);
    } else if (op.Log == LogLine::Ret) {
        LM_LogOutput(ClientLogArea().Id(), LM_LOG_TRACE, "%s, ret:%d\n", op.Client, rc);
    }
    if (rc == SOAP_OK && answer == nullptr) {
        return LM_WS_RESPONSE_CODE;  // an answer without its result: nothing to hand back
    }
    return LMUtilities::MakeStatus(rc, code, op.MapsByName ? op.Client : nullptr);
}

// A call whose answer is a plain value rather than a record: prepare the proxy, ask, hand the
// answer to `take`, free the call's data. Returns the toolkit's code.
template <class Response, class Proxy, class Ask, class Take>
int ValueCall(Proxy& proxy, const char* operation, Ask ask, Take take) {
    Response response;
    int rc = proxy.Setup(LMString(operation));
    if (rc == SOAP_OK) {
        rc = AskKept(proxy, operation, ask, response);
    }
    if (rc == SOAP_OK) {
        take(response);
    }
    proxy.destroy();
    return rc;
}

// Runs `f` with the proxy the facade picks for the operations both StreamAPI and DownloadAPI
// offer (StreamDownloadAPI::Dispatch).
template <class F>
LM_WS_Status OnFacade(LMWSClient& client, F f) {
    return client.m_StreamDownloadAPI.Dispatch(f);
}

}  // namespace LMCall

#endif  // LM_CALL_H
