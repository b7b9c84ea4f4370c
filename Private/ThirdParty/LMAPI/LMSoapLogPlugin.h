// gSOAP plug-in that copies every byte a context sends and receives into the log, and traces its
// transport events.
//
// It wraps the context's transport callbacks: what `fsend` writes goes to the area whose id is
// in SENT_LMLogAreaID, what `frecv` returns to RECV_LMLogAreaID, both at trace severity and by
// length (the chunks are not NUL-terminated). The events of a connection (opened or refused, each
// send and receive by size, end of stream, close, and the toolkit's error at close) go to the
// area in TEST_LMLogAreaID, one line each. The ids are read at every call, so the areas can be
// configured after the plug-in is registered. Over TLS the bytes are the plaintext; a compressed
// answer is logged as its head followed by the inflated body, as the reader sees it. Passwords,
// tokens, pins and proxy credentials in them are logged as "***". The same wrappers hold an
// exchange to its deadline (BeginExchange) and tell whether a failed exchange may be repeated on
// a new connection (KeptConnectionDropped).
//
// Register it after any plug-in or code that replaces fsend/frecv itself, so that the logged
// bytes are the ones on the connection. The plug-in follows the context through soap_copy()
// and a proxy's copy(): the copy gets its own plug-in record with the same wrapped callbacks.
#ifndef LM_SOAP_LOG_PLUGIN_H
#define LM_SOAP_LOG_PLUGIN_H

#include <chrono>
#include <cstddef>
#include <string>

#include "LMSecretMask.h"

struct soap;
struct soap_plugin;

class LMSoapLogPlugin {
public:
    // Plug-in id, as passed to soap_lookup_plugin().
    static const char kId[];

    // Registers the plug-in on `soap`; a second registration on the same context does nothing.
    // Returns SOAP_OK (0) or the toolkit's error code.
    static int Register(struct soap* soap);

    // The plug-in's creation callback, for soap_register_plugin(soap, LMSoapLogPlugin::Create).
    static int Create(struct soap* soap, struct soap_plugin* plugin, void* arg);

    // Stops (true) or resumes (false) logging the bytes of `soap`, for exchanges that carry a
    // secret the log must not keep. Does nothing on a context without the plug-in.
    static void SetQuiet(struct soap* soap, bool quiet);

    // Starts the clock of one exchange (a call: connect, send, receive) on `soap`. While the
    // context's transfer_timeout is set, the connect, every send and every receive of the
    // exchange waits at most for what is left of that many seconds from here, and fails once
    // none is left, so the exchange ends in time however the server behaves. Does nothing on a
    // context without the plug-in.
    static void BeginExchange(struct soap* soap);

    // True when the exchange begun last on `soap` failed only because the server had closed the
    // connection kept from an earlier exchange before anything of the answer arrived: no new
    // connection was opened for it, no byte was received, it ended in an end of stream or a
    // transport error, and its deadline has not passed. A server closes an idle kept connection
    // at a moment of its choosing, so the request can be sent again on a new one.
    static bool KeptConnectionDropped(struct soap* soap);

private:
    struct Data {
        int (*fsend)(struct soap*, const char*, size_t);
        size_t (*frecv)(struct soap*, char*, size_t);
        int (*fopen)(struct soap*, const char*, const char*, int);
        int (*fclose)(struct soap*);
        int (*fpreparerecv)(struct soap*, const char*, size_t);
        int (*fparse)(struct soap*);
        bool quiet;
        std::chrono::steady_clock::time_point begun = std::chrono::steady_clock::time_point();
        // The exchange begun last: whether it started on a kept connection, opened one of its
        // own, and how many bytes it received.
        bool onKeptConnection = false;
        bool opened = false;
        size_t receivedBytes = 0;
        // The answer's head as it arrives (until its end), and whether its body is compressed.
        std::string head = std::string();
        bool headEnded = false;
        bool compressed = false;
        // The toolkit has read the head: what the transport hands over from here is the body.
        bool bodyBegun = false;
        // What is logged of each direction has its secrets hidden (LMSecretMask.h).
        LMSecretMask sent = LMSecretMask();
        LMSecretMask received = LMSecretMask();
    };

    static int Copy(struct soap* soap, struct soap_plugin* dst, struct soap_plugin* src);
    static void Delete(struct soap* soap, struct soap_plugin* plugin);
    static int Send(struct soap* soap, const char* data, size_t length);
    static size_t Recv(struct soap* soap, char* buffer, size_t length);
    static int Open(struct soap* soap, const char* endpoint, const char* host, int port);
    static int Close(struct soap* soap);
    static int PrepareRecv(struct soap* soap, const char* data, size_t length);
    static int Parse(struct soap* soap);
    // Follows the answer's head to learn whether its body is compressed, and logs what came in:
    // the head as it is, a plain body as it is, a compressed one not at all (PrepareRecv logs it
    // inflated).
    static void LogReceived(Data& plugin, const char* data, size_t length);
};

#endif  // LM_SOAP_LOG_PLUGIN_H
