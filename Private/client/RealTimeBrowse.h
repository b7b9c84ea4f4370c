// The client of the RealTimeBrowse service (catalogue browsing): its generated proxy with the
// device element LM1:DeviceSettings in every call's header.
#ifndef LM_REALTIMEBROWSE_H
#define LM_REALTIMEBROWSE_H

#include "LMProxySupport.h"
#include "soapRealTimeBrowseSoap12Proxy.h"

class RealTimeBrowse : public LMServiceClient<RealTimeBrowseSoap12Proxy, LM1__DeviceSettings,
                                              soap_new_LM1__DeviceSettings,
                                              &SOAP_ENV__Header::LM1__DeviceSettings_> {
public:
    RealTimeBrowse() : LMServiceClient("RealTimeBrowse.asmx") {}
};

#endif  // LM_REALTIMEBROWSE_H
