/* Basic types of the LM_WS_* client interface shared by the client library and the cache.
 * Plain C, like the rest of the interface. */
#ifndef LM_WS_TYPES_H
#define LM_WS_TYPES_H

#include <stdint.h>

// Status of every client operation: 0 success, negative failures.
typedef int32_t LM_WS_Status;

// The named statuses. Service response codes map to -1005..-1111 per operation; HTTP failures
// are LM_WS_HTTP_BASE - n and SOAP/XML failures LM_WS_SOAP_BASE - n.
enum {
    LM_WS_OK = 0,
    LM_WS_INVALID_ARGUMENT = -1000,     // bad argument, or the client is not set up
    LM_WS_SEND_RECV_FAILED = -1001,     // box art: send, receive or parse failed
    LM_WS_RESPONSE_CODE = -1004,        // a response code without a status of its own
    LM_WS_BOXART_FILE_FAILED = -1900,   // box art: the file could not be written or moved
    LM_WS_BOXART_NOT_FOUND = -1901,     // box art: 404
    LM_WS_BOXART_NOT_MODIFIED = -1902,  // box art: 304, the held copy is current
    LM_WS_CACHE_OPEN_FAILED = -1910,    // the cache database could not be opened
    LM_WS_CACHE_FOLDER_FAILED = -1911,  // the cache folder is missing and cannot be created
    LM_WS_NO_CONNECTION = -2011,        // TCP failure, or no base URL
    LM_WS_CONNECTION_ENDED = -2012,     // the connection ended early
    LM_WS_HTTP_BASE = -4000,
    LM_WS_SSL_SETUP_FAILED = -5000,
    LM_WS_SSL_FAILED = -5030,
    LM_WS_SOAP_BASE = -6000,
};

// Box-art size classes. Each has a folder name on the server and a file-name suffix; they are
// equal except for Size135, whose folder is "135s".
typedef enum LM_WS_BoxArtSize {
    LM_WS_BoxArt95 = 0,
    LM_WS_BoxArt175 = 1,
    LM_WS_BoxArt65 = 2,
    LM_WS_BoxArt77 = 3,
    LM_WS_BoxArt102 = 4,
    LM_WS_BoxArt126 = 5,
    LM_WS_BoxArt135 = 6,
    LM_WS_BoxArt137 = 7,
    LM_WS_BoxArt153 = 8,
    LM_WS_BoxArt177 = 9,
    LM_WS_BoxArt203 = 10,
    LM_WS_BoxArt269 = 11,
    LM_WS_BoxArt321 = 12,
} LM_WS_BoxArtSize;

#endif  // LM_WS_TYPES_H
