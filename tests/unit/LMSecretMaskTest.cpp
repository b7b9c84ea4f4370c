// What the SOAP log shows of a request or an answer: the same bytes with the secrets hidden,
// however the transport cut them into chunks.
#include "LMSecretMask.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string kRequest =
    "POST /api/StreamAPI.asmx HTTP/1.1\r\nHost: 127.0.0.1\r\n"
    "Proxy-Authorization: Basic dXNlcjpwcm94eXB3\r\nContent-Length: 999\r\n\r\n"
    "<SOAP-ENV:Envelope><SOAP-ENV:Header><wsse:Security><wsse:UsernameToken>"
    "<wsse:Username>user@example</wsse:Username>"
    "<wsse:Password Type=\"http://docs.oasis-open.org/wss/2004/01/"
    "oasis-200401-wss-username-token-profile-1.0#PasswordText\">s3cret-pw</wsse:Password>"
    "</wsse:UsernameToken></wsse:Security>"
    "<LM1:DeviceSettings><LM1:AuthToken>LMT-77-token</LM1:AuthToken><LM1:PasswordHint>shown"
    "</LM1:PasswordHint><LM1:Password/></LM1:DeviceSettings></SOAP-ENV:Header><SOAP-ENV:Body>"
    "<LM1:authorizeDevice><LM1:Pin>1234</LM1:Pin></LM1:authorizeDevice></SOAP-ENV:Body>"
    "</SOAP-ENV:Envelope>";

const std::string kShown =
    "POST /api/StreamAPI.asmx HTTP/1.1\r\nHost: 127.0.0.1\r\n"
    "Proxy-Authorization: ***\r\nContent-Length: 999\r\n\r\n"
    "<SOAP-ENV:Envelope><SOAP-ENV:Header><wsse:Security><wsse:UsernameToken>"
    "<wsse:Username>user@example</wsse:Username>"
    "<wsse:Password Type=\"http://docs.oasis-open.org/wss/2004/01/"
    "oasis-200401-wss-username-token-profile-1.0#PasswordText\">***</wsse:Password>"
    "</wsse:UsernameToken></wsse:Security>"
    "<LM1:DeviceSettings><LM1:AuthToken>***</LM1:AuthToken><LM1:PasswordHint>shown"
    "</LM1:PasswordHint><LM1:Password/></LM1:DeviceSettings></SOAP-ENV:Header><SOAP-ENV:Body>"
    "<LM1:authorizeDevice><LM1:Pin>***</LM1:Pin></LM1:authorizeDevice></SOAP-ENV:Body>"
    "</SOAP-ENV:Envelope>";

TEST(SecretMask, HidesPasswordTokenPinAndProxyCredentialsOnly) {
    LMSecretMask mask;
    EXPECT_EQ(kShown, mask.Mask(kRequest.data(), kRequest.size()));
}

// Every chunk size, so that every tag, header name and secret is cut at every place once.
TEST(SecretMask, ChunksCutAnywhereShowTheSame) {
    for (size_t size = 1; size < kRequest.size(); ++size) {
        LMSecretMask mask;
        std::string shown;
        for (size_t at = 0; at < kRequest.size(); at += size) {
            const std::string chunk = kRequest.substr(at, size);
            shown += mask.Mask(chunk.data(), chunk.size());
        }
        ASSERT_EQ(kShown, shown) << "chunks of " << size;
    }
}

// One mask follows one direction of a connection: the next message is shown as it is.
TEST(SecretMask, EachMessageStartsWhereTheLastEnded) {
    LMSecretMask mask;
    mask.Mask(kRequest.data(), kRequest.size());
    const std::string answer =
        "<AuthorizeDeviceResult><AuthToken>LMT-78</AuthToken>"
        "<DeviceID>d1</DeviceID></AuthorizeDeviceResult>";
    EXPECT_EQ(
        "<AuthorizeDeviceResult><AuthToken>***</AuthToken><DeviceID>d1</DeviceID>"
        "</AuthorizeDeviceResult>",
        mask.Mask(answer.data(), answer.size()));
}

}  // namespace
