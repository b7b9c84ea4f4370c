// The head of a plain-HTTP answer (box art, the probes, the environment query) comes off the
// network: whatever bytes arrive, in whatever pieces, parsing them must stay inside the block, and
// a head taken as complete must be one the callers can use as they do. Any broken rule aborts.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "LMRawHttp.h"

namespace {

#define CHECK(condition)    \
    do {                    \
        if (!(condition)) { \
            abort();        \
        }                   \
    } while (0)

bool Same(const LMRawHttp::Head& a, const LMRawHttp::Head& b) {
    return a.status == b.status && a.lastModified == b.lastModified &&
           a.lengthText == b.lengthText && a.contentLength == b.contentLength &&
           a.ended == b.ended && a.complete == b.complete && a.bodyOffset == b.bodyOffset;
}

void CheckHead(const char* block, size_t size, const LMRawHttp::Head& head) {
    using LMRawHttp::Status;
    CHECK(head.bodyOffset <= size);
    if (head.ended) {
        CHECK(head.bodyOffset >= 4 && memcmp(block + head.bodyOffset - 4, "\r\n\r\n", 4) == 0);
        // The empty line is the first one: bytes after it are body and change nothing.
        CHECK(LMRawHttp::Find(block, block + head.bodyOffset - 1, "\r\n\r\n") == nullptr);
        CHECK(Same(head, LMRawHttp::ParseHead(block, head.bodyOffset)));
    } else {
        CHECK(head.bodyOffset == 0);
    }
    if (head.complete) {
        CHECK(head.status == Status::OK && head.ended && head.contentLength > 0);
        CHECK(!head.lengthText.empty());
    }
    if (head.status != Status::OK) {
        CHECK(!head.complete && head.contentLength == 0 && head.lastModified.empty());
    }
    if (head.status == Status::OK) {
        CHECK(memcmp(block, "HTTP/1.1 200 OK\r\n", 17) == 0);
    }
    const int id = LMRawHttp::EnvironmentId(head, block, size);
    CHECK(id == 2 || (head.complete && head.contentLength == 1 && size > head.bodyOffset));
}

// The input as it arrives in pieces of `piece` bytes.
struct Pieces {
    const char* data;
    size_t size;
    size_t piece;
};

size_t ReceivePiece(struct soap* soap, char* buffer, size_t size) {
    Pieces* input = static_cast<Pieces*>(soap->user);
    const size_t n = std::min(std::min(size, input->piece), input->size);
    memcpy(buffer, input->data, n);
    input->data += n;
    input->size -= n;
    return n;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0 || size > 4 * LMRawHttp::kFirstBlock) {
        return 0;
    }
    // The first byte chooses the size of the pieces the rest arrives in.
    const size_t piece = data[0] % 64 + 1;
    const char* text = reinterpret_cast<const char*>(data) + 1;
    const size_t length = size - 1;

    // A block of exactly the bytes parsed, so that a read past them is caught.
    const size_t parsed = std::min(length, LMRawHttp::kFirstBlock);
    std::unique_ptr<char[]> block(new char[parsed]);
    memcpy(block.get(), text, parsed);
    CheckHead(block.get(), parsed, LMRawHttp::ParseHead(block.get(), parsed));

    static struct soap* soap = [] {
        struct soap* s = soap_new();
        s->frecv = ReceivePiece;
        return s;
    }();
    Pieces input = {text, length, piece};
    soap->user = &input;
    LMRawHttp::Connection connection(soap);
    char received[LMRawHttp::kFirstBlock + 1];
    size_t n = 0;
    const LMRawHttp::Head head = LMRawHttp::ReceiveHead(connection, received, n);
    CHECK(n <= LMRawHttp::kFirstBlock && received[n] == 0 && memcmp(received, text, n) == 0);
    CHECK(Same(head, LMRawHttp::ParseHead(received, n)));
    CheckHead(received, n, head);
    // Reading stops at the piece that brings the empty line, once the block is full or at the
    // end of the input.
    // Other answers are decided by their first line and stop there too.
    if (head.ended) {
        CHECK(n - head.bodyOffset < piece);
    } else if (head.status == LMRawHttp::Status::OK) {
        CHECK(n == length || n == LMRawHttp::kFirstBlock);
    } else {
        CHECK(n == length || n == LMRawHttp::kFirstBlock ||
              LMRawHttp::Find(received, received + n, "\r\n") != nullptr);
    }
    return 0;
}
