#include "LMSecretMask.h"

#include <cstring>

namespace {

const char* const kSecretElements[] = {"Password", "AuthToken", "Pin"};
const char kProxyAuthorization[] = "Proxy-Authorization:";
// Longer than any opening tag we look for, attributes and all (the WS-Security password's Type
// attribute alone is about 100 characters): what may be left of one at the end of a chunk.
const size_t kTailKept = 512;

bool IsNameChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
}

// When an opening tag of a secret element starts at text[at] ('<'), the offset just past its
// '>'; otherwise 0. An end tag, an empty element or a tag not yet complete gives 0.
size_t SecretOpeningTag(const std::string& text, size_t at) {
    size_t p = at + 1;
    size_t nameStart = p;
    while (p < text.size() && (IsNameChar(text[p]) || text[p] == ':')) {
        if (text[p] == ':') {
            nameStart = p + 1;
        }
        ++p;
    }
    const std::string name = text.substr(nameStart, p - nameStart);
    bool secret = false;
    for (const char* s : kSecretElements) {
        secret = secret || name == s;
    }
    if (!secret) {
        return 0;
    }
    const size_t close = text.find('>', p);
    if (close == std::string::npos || text[close - 1] == '/') {
        return 0;
    }
    return close + 1;
}

}  // namespace

std::string LMSecretMask::Mask(const char* data, size_t size) {
    // The kept tail is scanned again with the new bytes, so that a tag it cut is found; only the
    // new bytes are given back.
    std::string text = m_Tail;
    const size_t fresh = text.size();
    text.append(data, size);
    std::string out;
    out.reserve(size);
    size_t i = fresh;
    // Skip into the new bytes, but look for tags from the start of the tail.
    for (size_t scan = 0; scan < fresh; ++scan) {
        if (m_Inside != Inside::Nothing) {
            break;
        }
        if (text[scan] == '<') {
            const size_t end = SecretOpeningTag(text, scan);
            if (end > fresh) {
                i = end;  // the tag ends in the new bytes: they are copied up to its end
                out.append(text, fresh, end - fresh);
                m_Inside = Inside::Element;
                m_Masked = false;
                break;
            }
        } else if (text.compare(scan, sizeof kProxyAuthorization - 1, kProxyAuthorization) == 0 &&
                   scan + sizeof kProxyAuthorization - 1 > fresh) {
            const size_t end = scan + sizeof kProxyAuthorization - 1;
            out.append(text, fresh, end - fresh);
            i = end;
            m_Inside = Inside::Header;
            m_Masked = false;
            break;
        }
    }
    while (i < text.size()) {
        const char c = text[i];
        if (m_Inside == Inside::Element || m_Inside == Inside::Header) {
            const bool ends = m_Inside == Inside::Element ? c == '<' : c == '\r' || c == '\n';
            if (!ends) {
                if (!m_Masked) {
                    out.append(m_Inside == Inside::Header ? " ***" : "***");
                    m_Masked = true;
                }
                ++i;
                continue;
            }
            m_Inside = Inside::Nothing;
        }
        if (c == '<') {
            const size_t end = SecretOpeningTag(text, i);
            if (end != 0) {
                out.append(text, i, end - i);
                i = end;
                m_Inside = Inside::Element;
                m_Masked = false;
                continue;
            }
        } else if (text.compare(i, sizeof kProxyAuthorization - 1, kProxyAuthorization) == 0) {
            out.append(kProxyAuthorization);
            i += sizeof kProxyAuthorization - 1;
            m_Inside = Inside::Header;
            m_Masked = false;
            continue;
        }
        out.push_back(c);
        ++i;
    }
    m_Tail = text.size() > kTailKept ? text.substr(text.size() - kTailKept) : text;
    return out;
}
