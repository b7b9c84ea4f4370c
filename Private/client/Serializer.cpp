#include "Serializer.h"

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

void Serializer::Reset() {
    soap_destroy(this);
    soap_end(this);
}
