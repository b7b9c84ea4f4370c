// What the proxies put on the wire and how they read answers the service classes would never
// produce: exact element names, header order, and values outside an enumeration.
#include <gtest/gtest.h>

#include <string>

#include "LMAPITestSupport.h"
#include "soapDownloadAPISoap12Proxy.h"
#include "soapRealTimeBrowseSoap12Proxy.h"
#include "soapStreamAPISoap12Proxy.h"

namespace {

using lmapi_test::CannedHttpServer;

std::string Envelope(const std::string& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<soap:Envelope xmlns:soap=\"http://www.w3.org/2003/05/soap-envelope\" "
           "xmlns:LM1=\"http://www.lumora.example/api/\"><soap:Body>" +
           body + "</soap:Body></soap:Envelope>";
}

// Fixture-free helper: points a proxy at a canned server and prepares its context.
template <class Proxy>
void Aim(Proxy& proxy, const std::string& endpoint) {
    lmapi_test::PrepareContext(proxy.soap);
    proxy.soap_endpoint = endpoint.c_str();
}

TEST(Wire, IncludeShortDescElementsUseThePlainUnderscore) {
    CannedHttpServer server(Envelope(
        "<LM1:searchForTitleDetail_IncludeShortDescResponse>"
        "<LM1:searchForTitleDetail_IncludeShortDescResult>"
        "<LM1:ResponseCode>0</LM1:ResponseCode><LM1:Titles>"
        "<LM1:TitleListing_IncludeShortDesc><LM1:TitleID>7</LM1:TitleID>"
        "<LM1:ShortDescription>short</LM1:ShortDescription><LM1:RunTime>01:42</LM1:RunTime>"
        "</LM1:TitleListing_IncludeShortDesc>"
        "<LM1:TitleListing_IncludeShortDesc><LM1:TitleID>8</LM1:TitleID>"
        "</LM1:TitleListing_IncludeShortDesc>"
        "</LM1:Titles></LM1:searchForTitleDetail_IncludeShortDescResult>"
        "</LM1:searchForTitleDetail_IncludeShortDescResponse>"));
    std::string endpoint = server.Endpoint();
    RealTimeBrowseSoap12Proxy proxy;
    Aim(proxy, endpoint);

    _LM1__searchForTitleDetail_USCOREIncludeShortDesc in;
    in.Query = const_cast<char*>("x");
    _LM1__searchForTitleDetail_USCOREIncludeShortDescResponse out;
    ASSERT_EQ(SOAP_OK, proxy.searchForTitleDetail_USCOREIncludeShortDesc(&in, out));
    const LM1__GetTitlesResponse_USCOREIncludeShortDesc* r =
        out.searchForTitleDetail_USCOREIncludeShortDescResult;
    ASSERT_NE(nullptr, r);
    ASSERT_NE(nullptr, r->Titles);
    ASSERT_EQ(2, r->Titles->__sizeTitleListing_USCOREIncludeShortDesc);
    EXPECT_EQ(7, r->Titles->TitleListing_USCOREIncludeShortDesc[0]->TitleID);
    EXPECT_STREQ("short", r->Titles->TitleListing_USCOREIncludeShortDesc[0]->ShortDescription);
    EXPECT_EQ(8, r->Titles->TitleListing_USCOREIncludeShortDesc[1]->TitleID);
    EXPECT_EQ(nullptr, r->Titles->TitleListing_USCOREIncludeShortDesc[1]->RunTime);

    ASSERT_EQ(1u, server.Requests().size());
    const std::string request = server.Requests()[0];
    EXPECT_NE(request.find("<LM1:searchForTitleDetail_IncludeShortDesc>"), std::string::npos)
        << request;
    EXPECT_EQ(request.find("_USCORE"), std::string::npos) << request;
    EXPECT_NE(request.find("http://www.lumora.example/api/searchForTitleDetail_IncludeShortDesc"),
              std::string::npos)
        << request;
    proxy.destroy();
}

TEST(Wire, EnumerationValueOutsideItsTableIsADeserializationError) {
    CannedHttpServer server(
        Envelope("<LM1:getStreamingAssetLocationResponse><LM1:getStreamingAssetLocationResult>"
                 "<LM1:ResponseCode>0</LM1:ResponseCode><LM1:Status>rewinding</LM1:Status>"
                 "</LM1:getStreamingAssetLocationResult></LM1:getStreamingAssetLocationResponse>"));
    std::string endpoint = server.Endpoint();
    StreamAPISoap12Proxy proxy;
    Aim(proxy, endpoint);

    _LM1__getStreamingAssetLocation in;
    _LM1__getStreamingAssetLocationResponse out;
    EXPECT_EQ(SOAP_TYPE, proxy.getStreamingAssetLocation(&in, out));
    proxy.destroy();
}

TEST(Wire, EnumerationValuesAreMatchedExactly) {
    // Value names are case-sensitive: "Play" is not "play".
    CannedHttpServer server(
        Envelope("<LM1:getStreamingAssetLocationResponse><LM1:getStreamingAssetLocationResult>"
                 "<LM1:Status>Play</LM1:Status>"
                 "</LM1:getStreamingAssetLocationResult></LM1:getStreamingAssetLocationResponse>"));
    std::string endpoint = server.Endpoint();
    StreamAPISoap12Proxy proxy;
    Aim(proxy, endpoint);
    _LM1__getStreamingAssetLocation in;
    _LM1__getStreamingAssetLocationResponse out;
    EXPECT_NE(SOAP_OK, proxy.getStreamingAssetLocation(&in, out));
    proxy.destroy();
}

TEST(Wire, EmptyRequestElementAndHeaderInOrder) {
    CannedHttpServer server(Envelope(
        "<LM1:getConfigResponse><LM1:getConfigResult><LM1:ResponseCode>0</LM1:ResponseCode>"
        "</LM1:getConfigResult></LM1:getConfigResponse>"));
    std::string endpoint = server.Endpoint();
    DownloadAPISoap12Proxy proxy;
    Aim(proxy, endpoint);

    auto* security = soap_new__wsse__Security(proxy.soap);
    auto* device = soap_new_LM1__DownloadDeviceRequestSettings(proxy.soap);
    device->APIKey = soap_strdup(proxy.soap, "api-key");
    device->DestinationUniqueID = soap_strdup(proxy.soap, "00:11:22:33:44:55");
    device->DestinationTypeID = 12;
    device->AuthToken = soap_strdup(proxy.soap, "auth");
    proxy.soap_header(security, soap_strdup(proxy.soap, "uuid:getConfig"), nullptr, nullptr,
                      nullptr, nullptr, soap_strdup(proxy.soap, endpoint.c_str()),
                      soap_strdup(proxy.soap, "http://www.lumora.example/api/getConfig"), nullptr,
                      nullptr, device);

    _LM1__getConfig in;
    _LM1__getConfigResponse out;
    ASSERT_EQ(SOAP_OK, proxy.getConfig(&in, out));
    ASSERT_NE(nullptr, out.getConfigResult);
    EXPECT_EQ(nullptr, out.getConfigResult->ConfigurationSet);

    ASSERT_EQ(1u, server.Requests().size());
    const std::string request = server.Requests()[0];
    size_t security_at = request.find("<wsse:Security");
    size_t message_at = request.find("<wsa:MessageID>uuid:getConfig</wsa:MessageID>");
    size_t to_at = request.find("<wsa:To");
    size_t action_at = request.find("<wsa:Action");
    size_t device_at = request.find("<LM1:DownloadDeviceRequestSettings>");
    size_t body_at = request.find("Body>");
    ASSERT_NE(std::string::npos, security_at) << request;
    ASSERT_NE(std::string::npos, message_at) << request;
    ASSERT_NE(std::string::npos, device_at) << request;
    EXPECT_LT(security_at, message_at);
    EXPECT_LT(message_at, to_at);
    EXPECT_LT(to_at, action_at);
    EXPECT_LT(action_at, device_at);
    EXPECT_LT(device_at, body_at);
    // Device element members in order.
    size_t key_at = request.find("<LM1:APIKey>api-key</LM1:APIKey>");
    size_t unique_at = request.find("<LM1:DestinationUniqueID>");
    size_t type_at = request.find("<LM1:DestinationTypeID>12</LM1:DestinationTypeID>");
    size_t token_at = request.find("<LM1:AuthToken>auth</LM1:AuthToken>");
    EXPECT_LT(key_at, unique_at);
    EXPECT_LT(unique_at, type_at);
    EXPECT_LT(type_at, token_at);
    EXPECT_NE(std::string::npos, token_at) << request;
    // The parameterless request is still an element of its own.
    EXPECT_TRUE(request.find("<LM1:getConfig></LM1:getConfig>") != std::string::npos ||
                request.find("<LM1:getConfig/>") != std::string::npos)
        << request;
    EXPECT_NE(request.find("POST /api/ HTTP/1.1"), std::string::npos);
    EXPECT_NE(request.find("application/soap+xml"), std::string::npos);
    // The envelope declares the client's namespace table in its order, SOAP 1.2 on the wire.
    const char* const declared[] = {
        "xmlns:SOAP-ENV=\"http://www.w3.org/2003/05/soap-envelope\"",
        "xmlns:SOAP-ENC=\"http://www.w3.org/2003/05/soap-encoding\"",
        "xmlns:xsi=",
        "xmlns:xsd=",
        "xmlns:c14n=",
        "xmlns:wsu=",
        "xmlns:ds=",
        "xmlns:wsse=",
        "xmlns:wsa=",
        "xmlns:LM2=",
        "xmlns:LM3=",
        "xmlns:LM4=",
        "xmlns:LM1=\"http://www.lumora.example/api/\"",
        "xmlns:LM5=\"http://www.lumora.example/api/DownloadAuthenticateSoap12\""};
    size_t previous = 0;
    for (const char* ns : declared) {
        size_t at = request.find(ns);
        ASSERT_NE(std::string::npos, at) << ns;
        EXPECT_LT(previous, at) << ns;
        previous = at;
    }
    proxy.destroy();
}

TEST(Wire, ProxyWithoutEndpointUsesTheStagingDefault) {
    DownloadAPISoap12Proxy download;
    RealTimeBrowseSoap12Proxy browse;
    StreamAPISoap12Proxy stream;
    for (struct soap* s : {download.soap, browse.soap, stream.soap}) {
        lmapi_test::PrepareContext(s);
        s->connect_timeout = 1;
        // Resolve nothing: the connect hook records the address and fails the call.
        s->fopen = [](struct soap* soap, const char* endpoint, const char*, int) -> SOAP_SOCKET {
            soap_set_receiver_error(soap, "test", endpoint, SOAP_TCP_ERROR);
            return SOAP_INVALID_SOCKET;
        };
    }
    _LM1__GetCountryID in;
    _LM1__GetCountryIDResponse out;
    EXPECT_NE(SOAP_OK, download.GetCountryID(&in, out));
    EXPECT_STREQ("http://stgapi.lumora.example/api/DownloadAPI.asmx", download.soap_endpoint);
    _LM1__getFileType fileType;
    _LM1__getFileTypeResponse fileTypeOut;
    EXPECT_NE(SOAP_OK, browse.getFileType(&fileType, fileTypeOut));
    EXPECT_STREQ("http://stgapi.lumora.example/api/RealTimeBrowse.asmx", browse.soap_endpoint);
    _LM1__getStreamingNavigation nav;
    _LM1__getStreamingNavigationResponse navOut;
    EXPECT_NE(SOAP_OK, stream.getStreamingNavigation(&nav, navOut));
    EXPECT_STREQ("http://stgapi.lumora.example/api/StreamAPI.asmx", stream.soap_endpoint);
}

}  // namespace
