// Serializer: a SOAP-toolkit context whose output and input are an in-memory LMString instead of
// a socket, used to store service answers in the cache and replay them.
//
// It works in plain-XML mode (no envelope) with the one namespace LM1. With compression on, the
// XML is gzip-compressed (the toolkit detects gzip on input); the text then holds NULs, so it is
// always handled with its explicit length. Cached answers are written under the tag "LMWSLib".
#ifndef LM_SERIALIZER_H
#define LM_SERIALIZER_H

#include <cstddef>
#include <string>

#include "LMString.h"
#include "stdsoap2.h"

class Serializer : public soap {
public:
    static const char* const kRootTag;  // "LMWSLib"

    Serializer(bool compress, bool indent);
    ~Serializer();
    Serializer(const Serializer&) = delete;
    Serializer& operator=(const Serializer&) = delete;

    // Output callback: appends to the buffer.
    static int Serializer_fsend(struct soap* soap, const char* buf, size_t len);
    // Input callback: hands out the front of the buffer and removes it; 0 at the end.
    static size_t Serializer_frecv(struct soap* soap, char* buf, size_t len);

    void SetBuffer(const LMString& text) { m_Buffer = text; }
    LMString GetBuffer() const { return m_Buffer; }

    // A toolkit send / receive around the put / get of one record. Return the toolkit's code.
    int BeginSerialize();
    int EndSerialize();
    int BeginDeserialize();
    int EndDeserialize();

    // Writes `record` under the root tag into a fresh buffer; true on success.
    template <class T>
    bool Write(const T& record) {
        m_Buffer.assign("");
        if (BeginSerialize() != SOAP_OK) {
            return false;
        }
        // No reference-marking pass (soap_serialize): in tree mode nothing is written by
        // reference, so the pass would only walk the whole record for nothing.
        int put = record.soap_put(this, kRootTag, nullptr);
        return EndSerialize() == SOAP_OK && put == SOAP_OK;
    }

    // Writes under the root tag, with the attributes `declarations`, the element content
    // `content` of `length` bytes as it stands: a record's XML as the service sent it (see
    // LMAnswerKeeper), which Read reads as it reads what Write wrote. True on success.
    bool WriteContent(const std::string& declarations, const char* content, size_t length);

    // Reads a record written by Write from `text` into `record`, whose data then belongs to this
    // context (freed by Reset or the destructor). False when the text does not deserialize.
    template <class T>
    bool Read(const LMString& text, T& record) {
        SetBuffer(text);
        if (BeginDeserialize() != SOAP_OK) {
            return false;
        }
        bool got = record.soap_get(this, kRootTag, nullptr) != nullptr;
        return EndDeserialize() == SOAP_OK && got && error == SOAP_OK;
    }

    // Frees what earlier reads deserialized.
    void Reset();

private:
    LMString m_Buffer;
};

#endif  // LM_SERIALIZER_H
