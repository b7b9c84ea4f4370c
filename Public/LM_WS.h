/* The LM_WS_* client interface: set-up and teardown of a client handle and the operations that
 * set-up itself relies on.
 *
 * A caller owns an LM_WS_Handle, zero-initialises it, passes it to LM_WS_Setup and, when done,
 * to LM_WS_Teardown. Every operation checks the handle's client context first and returns -1000
 * when it is null (never set up, set-up failed, or torn down). A handle serves one call at a time.
 */
#ifndef LM_WS_H
#define LM_WS_H

#include <stdint.h>

#include "LM_WS_Records.h"
#include "LM_WS_Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Environment chosen by the caller: 0 staging API, 1 staging, 2 production; any larger value
 * asks the service which environment this device belongs to. */
typedef uint32_t LM_WS_EnvNum;
/* The environment in use (may exceed 2 when the service names an unknown one). */
typedef int32_t LM_WS_EnvID;
/* 1 download service, 2 streaming service; anything else asks the service (getFileType). */
typedef int32_t LM_WS_AccessType;

/* What the caller passes to LM_WS_Setup. Texts are NUL-terminated; an absent optional text is a
 * null pointer or "". The fields are read during the call only. */
typedef struct LM_WS_SetupParams {
    enum ContentType { General = 0, Adult = 1 };

    const char* APIKey;              /* required */
    const char* AuthToken;           /* optional */
    const char* DestinationUniqueID; /* required, at most 350 characters */
    int32_t DestinationTypeID;
    const char* UserName;       /* required */
    const char* Password;       /* required */
    const char* ServiceBaseURL; /* carried only: the base URL comes from the environment table */
    int32_t Type;               /* ContentType */
    LM_WS_EnvNum EnvNum;
    uint32_t CacheType;  /* LM_WS_CacheParam::CacheType */
    uint32_t CacheData;  /* bit set of LM_WS_CacheParam::CacheData */
    uint32_t CacheLimit; /* bytes; 0 no limit, else at least 358400 */
    const char* CachePath;
    const char* ProxyHost; /* optional HTTP proxy */
    int32_t ProxyPort;
    const char* ProxyUserName;
    const char* ProxyPassword;
    LM_WS_AccessType AccessType;
    const char* ApplicationRevision; /* optional, goes into the User-Agent */
    const char* firmwareVersion;     /* optional, goes into the User-Agent */
    const char* modelNumber;         /* optional, goes into the User-Agent */
} LM_WS_SetupParams;

/* The client handle: Type points to a heap tag holding 1, Client to the client context. */
typedef struct LM_WS_Handle {
    int32_t* Type;
    void* Client;
} LM_WS_Handle;

/* Validates `params`, resolves the environment, configures the three service proxies and opens
 * the cache. 0 on success; on failure the handle is left without a client and the status says
 * why (-1000 bad parameters, -1911 cache folder, -5000 TLS set-up, -2011 no base URL, -1910
 * cache database). A handle that already holds a client is torn down first. */
LM_WS_Status LM_WS_Setup(LM_WS_Handle* handle, const LM_WS_SetupParams* params);

/* Frees the client and the handle's tag; the handle is empty afterwards. Safe on a handle that
 * was never set up or is already torn down. */
void LM_WS_Teardown(LM_WS_Handle* handle);

/* The User-Agent the client sends, in a length-and-text record (a one-byte "" when empty). */
LM_WS_Status LM_WS_getUserAgent(LM_WS_Handle* handle, LM_WS_LengthAndText* result);

/* The service's catalogue load time text, in a length-and-text record. Only the transport
 * status is returned. */
LM_WS_Status LM_WS_getLastCacheLoadTimeUTC(LM_WS_Handle* handle, LM_WS_LengthAndText* result);

/* The file type of this device's account; on success its access type becomes the client's. */
LM_WS_Status LM_WS_getFileType(LM_WS_Handle* handle, LM_WS_FileType* result);

#ifdef __cplusplus
}
#endif

#endif /* LM_WS_H */
