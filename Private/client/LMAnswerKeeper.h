// LMAnswerKeeper: keeps a service answer's XML as it arrived, so that an answer going into the
// cache is stored from those bytes instead of being written out again from the decoded record
// (on a page of titles, writing the XML again cost a third of what a cache miss adds).
//
// It is a SOAP-toolkit plug-in on a proxy's context. While keeping is on (Keep), it copies the
// body of every answer the context receives: after the HTTP head and after gzip or deflate
// decoding, the bytes the XML parser reads. Answers in chunked transfer coding or in ISO-8859-1
// are not kept; their body bytes are not the UTF-8 document a stored answer is read as. Kept
// shows the body of the last answer.
//
// FindAnswerContent finds in such a body what a stored answer holds: the content of the SOAP
// Body's one element (the operation's response) with the namespace declarations in force there.
#ifndef LM_ANSWER_KEEPER_H
#define LM_ANSWER_KEEPER_H

#include <cstddef>
#include <string>

struct soap;
struct soap_plugin;

class LMAnswerKeeper {
public:
    // Plug-in id, as passed to soap_lookup_plugin().
    static const char kId[];

    // Registers the plug-in on `soap`; a second registration on the same context does nothing.
    // Returns SOAP_OK (0) or the toolkit's error code.
    static int Register(struct soap* soap);

    // Starts (true) or stops (false) keeping the answers `soap` receives, dropping what is kept.
    // The buffer's memory stays for the next answer, up to kKeptCapacity bytes. Does nothing on
    // a context without the plug-in.
    static void Keep(struct soap* soap, bool keep);

    // The body of the last answer, or null when there is none: keeping was off or the answer was
    // not kept (see above). Valid until `soap` receives again or Keep is called.
    static const std::string* Kept(struct soap* soap);

    // The most memory kept for the next answer once keeping stops (a page of 50 titles is
    // about 170 KB).
    static const size_t kKeptCapacity = 1u << 20;

private:
    struct Data {
        int (*fprepareinitrecv)(struct soap*);
        int (*fparse)(struct soap*);
        int (*fpreparerecv)(struct soap*, const char*, size_t);
        bool keep = false;
        bool keeping = false;  // the body of the answer coming in is being copied
        std::string body = std::string();
    };

    static int Create(struct soap* soap, struct soap_plugin* plugin, void* arg);
    static int Copy(struct soap* soap, struct soap_plugin* dst, struct soap_plugin* src);
    static void Delete(struct soap* soap, struct soap_plugin* plugin);
    static int PrepareInitRecv(struct soap* soap);
    static int Parse(struct soap* soap);
    static int PrepareRecv(struct soap* soap, const char* data, size_t length);
};

// Where the response is in the body of an answer: the bytes [begin, end) between its start and
// end tags, and `declarations`, the namespace attributes (` xmlns:p="uri"`, each with its leading
// space) of the envelope, the Body and the response's start tag, a later one of a prefix in
// place of an earlier one.
struct LMAnswerContent {
    std::string declarations;
    size_t begin = 0;
    size_t end = 0;
};

// Finds the response in `body`, a SOAP envelope (an optional XML declaration naming UTF-8 or no
// encoding, the Envelope, an optional Header, a Body of exactly one element). False when `body`
// is not of that form.
bool FindAnswerContent(const std::string& body, LMAnswerContent& content);

#endif  // LM_ANSWER_KEEPER_H
