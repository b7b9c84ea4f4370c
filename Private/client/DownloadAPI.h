// The client of the DownloadAPI service (account, device, purchase, wishlist and download queue):
// its generated proxy with the device element LM1:DownloadDeviceRequestSettings in every call's
// header.
#ifndef LM_DOWNLOADAPI_H
#define LM_DOWNLOADAPI_H

#include "LMProxySupport.h"
#include "soapDownloadAPISoap12Proxy.h"

class DownloadAPI
    : public LMServiceClient<DownloadAPISoap12Proxy, LM1__DownloadDeviceRequestSettings,
                             soap_new_LM1__DownloadDeviceRequestSettings,
                             &SOAP_ENV__Header::LM1__DownloadDeviceRequestSettings_> {
public:
    DownloadAPI() : LMServiceClient("DownloadAPI.asmx") {}
};

#endif  // LM_DOWNLOADAPI_H
