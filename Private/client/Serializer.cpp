#include "Serializer.h"

#include <zlib.h>

#include <cstdlib>
#include <cstring>

#include "LMAssert.h"
#include "LMDeployment.h"

const char* const Serializer::kRootTag = "LMWSLib";

namespace {

// Only the schema namespace: cached records carry no envelope.
const struct Namespace kSerializerNamespaces[] = {
    {"LM1", "http://" LM_WS_SCHEMA_HOST "/api/", nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr},
};

Serializer* FromContext(struct soap* soap) {
    Serializer* pSerializer = soap != nullptr ? static_cast<Serializer*>(soap->user) : nullptr;
    LM_ASSERT(pSerializer != 0);
    return pSerializer;
}

// zlib's working memory: a compressing stream takes about 270 KB in five blocks, a decompressing
// one about 40 KB in two, for each message. Taken from malloc every time, much of it went back to
// the kernel at the end of the message and came back as fresh pages at the next, a sixth of the
// time it takes to write a page of titles. So each thread keeps the blocks of its last messages
// (up to kKept: those of one stream of each kind) for its next ones.
const int kKept = 8;

// Trivially destructible, so it stays usable until the thread's storage goes; ZlibRelease empties
// it when the thread ends.
struct ZlibKept {
    void* blocks[kKept];
    size_t sizes[kKept];
    int count;
    bool closed;
};
thread_local ZlibKept t_Kept;

struct ZlibRelease {
    ~ZlibRelease() {
        for (int i = 0; i < t_Kept.count; ++i) {
            free(t_Kept.blocks[i]);
        }
        t_Kept.count = 0;
        t_Kept.closed = true;
    }
};
thread_local ZlibRelease t_Release;

// Each block starts with its size, so that a freed block can be matched to a later request.
struct alignas(16) BlockHead {
    size_t size;
};

voidpf ZlibAlloc(voidpf, uInt items, uInt size) {
    const size_t bytes = static_cast<size_t>(items) * size;
    for (int i = 0; i < t_Kept.count; ++i) {
        if (t_Kept.sizes[i] == bytes) {
            void* block = t_Kept.blocks[i];
            --t_Kept.count;
            t_Kept.blocks[i] = t_Kept.blocks[t_Kept.count];
            t_Kept.sizes[i] = t_Kept.sizes[t_Kept.count];
            return static_cast<BlockHead*>(block) + 1;
        }
    }
    auto* head = static_cast<BlockHead*>(malloc(sizeof(BlockHead) + bytes));
    if (head == nullptr) {
        return Z_NULL;
    }
    head->size = bytes;
    return head + 1;
}

void ZlibFree(voidpf, voidpf address) {
    BlockHead* head = static_cast<BlockHead*>(address) - 1;
    if (t_Kept.closed || t_Kept.count == kKept) {
        free(head);
        return;
    }
    (void)&t_Release;  // makes sure the thread releases what it keeps
    t_Kept.blocks[t_Kept.count] = head;
    t_Kept.sizes[t_Kept.count] = head->size;
    ++t_Kept.count;
}

// Cached answers are compressed at level 3 of 9, zlib's fast method: writing a page of 50 titles
// (166 KB of XML) takes 0.55 ms against 1.05 ms at the default level 6, for 27% more bytes
// (8.3 KB against 6.5 KB). Every cache miss pays for it, on top of the service's answer.
const int kCompressionLevel = 3;

}  // namespace

namespace {
soap_mode SerializerMode(bool compress, bool indent) {
    soap_mode mode = SOAP_XML_TREE | SOAP_C_UTFSTRING | SOAP_ENC_PLAIN;
    if (compress) {
        mode |= SOAP_ENC_ZLIB;  // gzip on output; input detects it by its header
    }
    if (indent) {
        mode |= SOAP_XML_INDENT;
    }
    return mode;
}
}  // namespace

Serializer::Serializer(bool compress, bool indent)
    : soap(SerializerMode(compress, indent), SerializerMode(compress, indent)) {
    soap_set_namespaces(this, kSerializerNamespaces);
    user = this;
    fsend = Serializer_fsend;
    frecv = Serializer_frecv;
    // Cached text comes from our own disk, but a corrupted file must not make us recurse or
    // allocate without bound.
    maxlevel = 64;
    maxlength = 1 << 20;
    z_level = kCompressionLevel;
    // The toolkit uses a stream it finds in place, allocators included, and frees it with the
    // context (with free(), as it would its own). Without one it makes its own.
    d_stream = static_cast<z_stream*>(calloc(1, sizeof(z_stream)));
    if (d_stream != nullptr) {
        d_stream->zalloc = ZlibAlloc;
        d_stream->zfree = ZlibFree;
    }
}

// The base destructor finishes the context with soap_done.
Serializer::~Serializer() {
    Reset();
}

int Serializer::Serializer_fsend(struct soap* soap, const char* buf, size_t len) {
    Serializer* pSerializer = FromContext(soap);
    pSerializer->m_Buffer.append(buf, len);
    return SOAP_OK;
}

size_t Serializer::Serializer_frecv(struct soap* soap, char* buf, size_t len) {
    Serializer* pSerializer = FromContext(soap);
    LMString& buffer = pSerializer->m_Buffer;
    if (buffer.empty()) {
        return 0;
    }
    size_t n = len < buffer.length() ? len : buffer.length();
    memcpy(buf, buffer.c_str(), n);
    buffer = buffer.substr(n);
    return n;
}

int Serializer::BeginSerialize() {
    return soap_begin_send(this);
}

int Serializer::EndSerialize() {
    return soap_end_send(this);
}

int Serializer::BeginDeserialize() {
    return soap_begin_recv(this);
}

int Serializer::EndDeserialize() {
    return soap_end_recv(this);
}

bool Serializer::WriteContent(const std::string& declarations, const char* content, size_t length) {
    m_Buffer.assign("");
    std::string open = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<";
    open.append(kRootTag).append(declarations).append(">");
    std::string close = "</";
    close.append(kRootTag).append(">");
    if (BeginSerialize() != SOAP_OK) {
        return false;
    }
    // The send always ends, so that the compressor is released before anything else is written.
    const bool sent = soap_send_raw(this, open.data(), open.size()) == SOAP_OK &&
                      soap_send_raw(this, content, length) == SOAP_OK &&
                      soap_send_raw(this, close.data(), close.size()) == SOAP_OK;
    return EndSerialize() == SOAP_OK && sent;
}

void Serializer::Reset() {
    soap_destroy(this);
    soap_end(this);
}
