// The client's own copy of its set-up parameters, held in the client context and shared by the
// three service proxies. The run CacheType..CachePath is the LM_WS_CacheParam the cache manager
// is opened with; after set-up CachePath holds the full cache file name.
#ifndef LM_WS_SETUP_PARAMS2_H
#define LM_WS_SETUP_PARAMS2_H

#include <cstdint>

#include "LMDeployment.h"
#include "LMString.h"
#include "LM_WS.h"
#include "LM_WS_CacheParam.h"
#include "LM_WS_Types.h"

struct LM_WS_SetupParams2 {
    LMString APIKey;
    LMString AuthToken;
    LMString DestinationUniqueID;
    int32_t DestinationTypeID = 0;
    LMString UserName;
    LMString Password;
    LMString ServiceBaseURL;  // from LMUtilities::QueryServiceBaseURL
    LM_WS_EnvID EnvID = 0;
    LMString BandwidthCheckURL;  // empty until the bandwidth probe fetches it
    LM_WS_CacheParam Cache;      // CacheType, CacheData, CacheLimit, CachePath
    LMString ProxyHost;
    int32_t ProxyPort = 0;
    LMString ProxyUserName;
    LMString ProxyPassword;
    int32_t SendTimeout = 30;  // seconds, also the connect time-out
    int32_t RecvTimeout = 88;  // seconds
    uint8_t Flag = 0;
    LM_WS_AccessType AccessType = 0;
    LMString ApplicationRevision;
    LMString firmwareVersion;
    LMString UserAgent;
    LMString modelNumber;
    // Hosts, ports and the extra CA file, read from the environment once, at set-up; every
    // later connection of this client uses these.
    LMDeployment Deployment;
};

#endif  // LM_WS_SETUP_PARAMS2_H
