// LMSecretMask: hides the secrets in a stream of SOAP/HTTP bytes before they are logged.
//
// The text of every element named Password (the WS-Security password), AuthToken (the device's
// token, sent in the device header and answered by authorizeDevice) or Pin (the activation pin),
// whatever its namespace prefix, becomes "***", and so does the value of a Proxy-Authorization
// header. The bytes come in chunks as the transport moves them: a secret's text that runs on into
// the next chunk is hidden there too, and a tag or header name cut by a chunk boundary is found
// by looking at the end of the previous chunk, kept for that. One mask serves one direction of
// one connection.
#ifndef LM_SECRET_MASK_H
#define LM_SECRET_MASK_H

#include <cstddef>
#include <string>

class LMSecretMask {
public:
    // The chunk `data` of `size` bytes as it may be logged.
    std::string Mask(const char* data, size_t size);

private:
    enum class Inside { Nothing, Element, Header };
    Inside m_Inside = Inside::Nothing;
    bool m_Masked = false;  // "***" was written for the secret being hidden
    std::string m_Tail;     // the end of the previous chunk, where a cut tag may start
};

#endif  // LM_SECRET_MASK_H
