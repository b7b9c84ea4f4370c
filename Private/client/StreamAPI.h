// The client of the StreamAPI service (the streaming edition of the catalogue and account
// operations): its generated proxy with the device element LM1:StreamDeviceRequestSettings in every
// call's header.
#ifndef LM_STREAMAPI_H
#define LM_STREAMAPI_H

#include "LMProxySupport.h"
#include "soapStreamAPISoap12Proxy.h"

class StreamAPI : public LMServiceClient<StreamAPISoap12Proxy, LM1__StreamDeviceRequestSettings,
                                         soap_new_LM1__StreamDeviceRequestSettings,
                                         &SOAP_ENV__Header::LM1__StreamDeviceRequestSettings_> {
public:
    StreamAPI() : LMServiceClient("StreamAPI.asmx") {}
};

#endif  // LM_STREAMAPI_H
