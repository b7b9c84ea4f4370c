#include "LMAnswerKeeper.h"

#include <cstring>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "stdsoap2.h"

const char LMAnswerKeeper::kId[] = "LM-ANSWER-KEEPER/1.0";

int LMAnswerKeeper::Register(struct soap* soap) {
    if (soap_lookup_plugin(soap, kId) != nullptr) {
        return SOAP_OK;
    }
    return soap_register_plugin(soap, Create);
}

int LMAnswerKeeper::Create(struct soap* soap, struct soap_plugin* plugin, void* /*arg*/) {
    Data* data = new (std::nothrow) Data{soap->fprepareinitrecv, soap->fparse, soap->fpreparerecv};
    if (data == nullptr) {
        return SOAP_EOM;
    }
    plugin->id = kId;
    plugin->data = data;
    plugin->fcopy = Copy;
    plugin->fdelete = Delete;
    soap->fprepareinitrecv = PrepareInitRecv;
    soap->fparse = Parse;
    soap->fpreparerecv = PrepareRecv;
    return SOAP_OK;
}

// A copied context keeps nothing of the original's answers.
int LMAnswerKeeper::Copy(struct soap* /*soap*/, struct soap_plugin* dst, struct soap_plugin* src) {
    const Data* from = static_cast<const Data*>(src->data);
    Data* data = new (std::nothrow) Data{from->fprepareinitrecv, from->fparse, from->fpreparerecv};
    if (data == nullptr) {
        return SOAP_EOM;
    }
    dst->data = data;
    return SOAP_OK;
}

void LMAnswerKeeper::Delete(struct soap* /*soap*/, struct soap_plugin* plugin) {
    delete static_cast<Data*>(plugin->data);
    plugin->data = nullptr;
}

void LMAnswerKeeper::Keep(struct soap* soap, bool keep) {
    if (Data* data = static_cast<Data*>(soap_lookup_plugin(soap, kId))) {
        data->keep = keep;
        data->keeping = false;
        data->body.clear();
        // The buffer stays for the next answer: built afresh, a page of titles cost 0.15 ms in
        // reallocations and new pages. An exceptionally large one is given back.
        if (!keep && data->body.capacity() > kKeptCapacity) {
            std::string().swap(data->body);
        }
    }
}

const std::string* LMAnswerKeeper::Kept(struct soap* soap) {
    const Data* data = static_cast<const Data*>(soap_lookup_plugin(soap, kId));
    return data != nullptr && data->keeping ? &data->body : nullptr;
}

// Each message begins here: what an earlier one left is dropped.
int LMAnswerKeeper::PrepareInitRecv(struct soap* soap) {
    Data* data = static_cast<Data*>(soap_lookup_plugin(soap, kId));
    if (data == nullptr) {
        return SOAP_PLUGIN_ERROR;
    }
    data->keeping = false;
    data->body.clear();
    return data->fprepareinitrecv != nullptr ? data->fprepareinitrecv(soap) : SOAP_OK;
}

// Until the HTTP head is read, the received bytes are the head's; from here on they are the
// body's. The head tells whether they will be the document as the parser reads it.
int LMAnswerKeeper::Parse(struct soap* soap) {
    Data* data = static_cast<Data*>(soap_lookup_plugin(soap, kId));
    if (data == nullptr) {
        return SOAP_PLUGIN_ERROR;
    }
    const int rc = data->fparse(soap);
    data->keeping = rc == SOAP_OK && data->keep && (soap->imode & SOAP_IO) != SOAP_IO_CHUNK &&
                    (soap->mode & SOAP_ENC_LATIN) == 0;
    data->body.clear();
    return rc;
}

int LMAnswerKeeper::PrepareRecv(struct soap* soap, const char* bytes, size_t length) {
    Data* data = static_cast<Data*>(soap_lookup_plugin(soap, kId));
    if (data == nullptr) {
        return SOAP_PLUGIN_ERROR;
    }
    if (data->keeping) {
        // The toolkit bounds what it reads; the copy keeps to the same bound.
        if (soap->recv_maxlength > 0 && data->body.size() + length > soap->recv_maxlength) {
            data->keeping = false;
            data->body.clear();
        } else {
            data->body.append(bytes, length);
        }
    }
    return data->fpreparerecv != nullptr ? data->fpreparerecv(soap, bytes, length) : SOAP_OK;
}

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsNameChar(char c) {
    return !IsSpace(c) && c != '<' && c != '>' && c != '/' && c != '=' && c != '"' && c != '\'';
}

std::string_view LocalName(std::string_view name) {
    const size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// Namespace declarations by attribute name, in order of first appearance.
class Declarations {
public:
    void Add(std::string_view name, std::string_view attribute) {
        for (auto& known : m_List) {
            if (known.first == name) {
                known.second = attribute;
                return;
            }
        }
        m_List.emplace_back(name, attribute);
    }
    void AddAll(const Declarations& other) {
        for (const auto& declaration : other.m_List) {
            Add(declaration.first, declaration.second);
        }
    }
    std::string Text() const {
        std::string text;
        for (const auto& declaration : m_List) {
            text += ' ';
            text += declaration.second;
        }
        return text;
    }

private:
    std::vector<std::pair<std::string_view, std::string_view>> m_List;
};

struct Tag {
    std::string_view name;
    bool empty = false;  // written <name ... />
};

// A forward reader of the markup of a document the toolkit has already parsed: it only needs to
// find its way, and gives up (false) on anything it does not expect.
class Scanner {
public:
    Scanner(const char* begin, const char* end) : m_P(begin), m_End(end) {}

    const char* Here() const { return m_P; }
    bool AtEnd() const { return m_P == m_End; }

    bool Starts(std::string_view text) const {
        return static_cast<size_t>(m_End - m_P) >= text.size() &&
               memcmp(m_P, text.data(), text.size()) == 0;
    }

    // Moves past the next `text`; false when there is none.
    bool SkipPast(std::string_view text) {
        const std::string_view rest(m_P, static_cast<size_t>(m_End - m_P));
        const size_t at = rest.find(text);
        if (at == std::string_view::npos) {
            return false;
        }
        m_P += at + text.size();
        return true;
    }

    void SkipSpace() {
        while (m_P < m_End && IsSpace(*m_P)) {
            ++m_P;
        }
    }

    // White space, comments and processing instructions between elements.
    bool SkipMisc() {
        for (;;) {
            SkipSpace();
            if (Starts("<!--")) {
                if (!SkipPast("-->")) {
                    return false;
                }
            } else if (Starts("<?")) {
                if (!SkipPast("?>")) {
                    return false;
                }
            } else {
                return true;
            }
        }
    }

    // A start tag; its namespace declarations go to `declarations` when given.
    bool StartTag(Tag& tag, Declarations* declarations) {
        if (!Starts("<")) {
            return false;
        }
        ++m_P;
        tag.name = Name();
        if (tag.name.empty()) {
            return false;
        }
        for (;;) {
            SkipSpace();
            if (m_P == m_End) {
                return false;
            }
            if (*m_P == '>' || Starts("/>")) {
                tag.empty = *m_P == '/';
                m_P += tag.empty ? 2 : 1;
                return true;
            }
            const char* attribute = m_P;
            const std::string_view name = Name();
            SkipSpace();
            if (name.empty() || !Starts("=")) {
                return false;
            }
            ++m_P;
            SkipSpace();
            if (m_P == m_End || (*m_P != '"' && *m_P != '\'')) {
                return false;
            }
            const void* close = memchr(m_P + 1, *m_P, static_cast<size_t>(m_End - m_P - 1));
            if (close == nullptr) {
                return false;
            }
            m_P = static_cast<const char*>(close) + 1;
            if (declarations != nullptr && (name == "xmlns" || name.substr(0, 6) == "xmlns:")) {
                declarations->Add(name, std::string_view(attribute, m_P - attribute));
            }
        }
    }

    // An end tag "</name>".
    bool EndTag(std::string_view& name) {
        if (!Starts("</")) {
            return false;
        }
        m_P += 2;
        name = Name();
        SkipSpace();
        if (name.empty() || !Starts(">")) {
            return false;
        }
        ++m_P;
        return true;
    }

    // The content of an element whose start tag was just read, up to its end tag, which is
    // read too; `contentEnd` is where that end tag starts, `name` the name it closes.
    bool Content(const char*& contentEnd, std::string_view& name) {
        size_t depth = 0;
        for (;;) {
            const void* open = memchr(m_P, '<', static_cast<size_t>(m_End - m_P));
            if (open == nullptr || static_cast<const char*>(open) + 1 == m_End) {
                return false;
            }
            m_P = static_cast<const char*>(open);
            bool ok = true;
            switch (m_P[1]) {
                case '/':
                    if (depth == 0) {
                        contentEnd = m_P;
                        return EndTag(name);
                    }
                    --depth;
                    ok = SkipPast(">");
                    break;
                case '!':
                    ok = Starts("<!--") ? SkipPast("-->") : Starts("<![CDATA[") && SkipPast("]]>");
                    break;
                case '?':
                    ok = SkipPast("?>");
                    break;
                default:
                    ok = SkipStartTag(depth);
            }
            if (!ok) {
                return false;
            }
        }
    }

private:
    // A start tag inside content, counted into `depth` unless it is empty. Most tags have no
    // attributes and end at the first '>'; only one with a quote in it is read attribute by
    // attribute, since a quoted value may hold '>'.
    bool SkipStartTag(size_t& depth) {
        const void* close = memchr(m_P, '>', static_cast<size_t>(m_End - m_P));
        if (close == nullptr) {
            return false;
        }
        const char* end = static_cast<const char*>(close);
        const size_t span = static_cast<size_t>(end - m_P);
        if (memchr(m_P, '"', span) != nullptr || memchr(m_P, '\'', span) != nullptr) {
            Tag tag;
            if (!StartTag(tag, nullptr)) {
                return false;
            }
            depth += tag.empty ? 0 : 1;
            return true;
        }
        depth += end[-1] == '/' ? 0 : 1;
        m_P = end + 1;
        return true;
    }

    std::string_view Name() {
        const char* start = m_P;
        while (m_P < m_End && IsNameChar(*m_P)) {
            ++m_P;
        }
        return std::string_view(start, static_cast<size_t>(m_P - start));
    }

    const char* m_P;
    const char* m_End;
};

bool SameText(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (size_t i = 0; i < a.size(); ++i) {
        if ((a[i] | 0x20) != (b[i] | 0x20)) {
            return false;
        }
    }
    return true;
}

// The XML declaration, when there is one, names UTF-8 or no encoding.
bool Utf8Declaration(Scanner& scanner) {
    if (!scanner.Starts("<?xml") || scanner.Starts("<?xml-")) {
        return true;
    }
    const char* start = scanner.Here();
    if (!scanner.SkipPast("?>")) {
        return false;
    }
    const std::string_view declaration(start, static_cast<size_t>(scanner.Here() - start));
    const size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) {
        return true;
    }
    const size_t open = declaration.find_first_of("\"'", at);
    if (open == std::string_view::npos) {
        return false;
    }
    const size_t close = declaration.find(declaration[open], open + 1);
    return close != std::string_view::npos &&
           SameText(declaration.substr(open + 1, close - open - 1), "utf-8");
}

}  // namespace

bool FindAnswerContent(const std::string& body, LMAnswerContent& content) {
    Scanner scanner(body.data(), body.data() + body.size());
    if (scanner.Starts("\xEF\xBB\xBF")) {
        scanner.SkipPast("\xEF\xBB\xBF");
    }
    Declarations inScope;
    Tag envelope;
    if (!Utf8Declaration(scanner) || !scanner.SkipMisc() || !scanner.StartTag(envelope, &inScope) ||
        envelope.empty || LocalName(envelope.name) != "Envelope" || !scanner.SkipMisc()) {
        return false;
    }
    Declarations own;
    Tag tag;
    if (!scanner.StartTag(tag, &own)) {
        return false;
    }
    if (LocalName(tag.name) == "Header") {
        const char* unused = nullptr;
        std::string_view closed;
        if ((!tag.empty && (!scanner.Content(unused, closed) || closed != tag.name)) ||
            !scanner.SkipMisc()) {
            return false;
        }
        own = Declarations();
        if (!scanner.StartTag(tag, &own)) {
            return false;
        }
    }
    const Tag bodyTag = tag;
    if (LocalName(bodyTag.name) != "Body" || bodyTag.empty || !scanner.SkipMisc()) {
        return false;
    }
    inScope.AddAll(own);
    own = Declarations();
    Tag response;
    if (!scanner.StartTag(response, &own)) {
        return false;
    }
    inScope.AddAll(own);
    const size_t begin = static_cast<size_t>(scanner.Here() - body.data());
    size_t end = begin;
    if (!response.empty) {
        const char* contentEnd = nullptr;
        std::string_view closed;
        if (!scanner.Content(contentEnd, closed) || closed != response.name) {
            return false;
        }
        end = static_cast<size_t>(contentEnd - body.data());
    }
    std::string_view closed;
    if (!scanner.SkipMisc() || !scanner.EndTag(closed) || closed != bodyTag.name ||
        !scanner.SkipMisc() || !scanner.EndTag(closed) || closed != envelope.name ||
        !scanner.SkipMisc() || !scanner.AtEnd()) {
        return false;
    }
    content.declarations = inScope.Text();
    content.begin = begin;
    content.end = end;
    return true;
}
