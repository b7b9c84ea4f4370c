// The client's one XML namespace table, shared by the three proxies (whose generated copies
// the build renames away) and every context that sets no table of its own. Prefix, namespace, and
// the pattern also accepted on input, in the service's order. The envelope rows name SOAP 1.1; each
// call of the SOAP 1.2 proxies switches them to the 1.2 namespaces, which the patterns accept on
// input.
#include "soapH.h"

SOAP_NMAC struct Namespace namespaces[] = {
    {"SOAP-ENV", "http://schemas.xmlsoap.org/soap/envelope/", "http://www.w3.org/*/soap-envelope",
     nullptr},
    {"SOAP-ENC", "http://schemas.xmlsoap.org/soap/encoding/", "http://www.w3.org/*/soap-encoding",
     nullptr},
    {"xsi", "http://www.w3.org/2001/XMLSchema-instance", "http://www.w3.org/*/XMLSchema-instance",
     nullptr},
    {"xsd", "http://www.w3.org/2001/XMLSchema", "http://www.w3.org/*/XMLSchema", nullptr},
    {"c14n", "http://www.w3.org/2001/10/xml-exc-c14n#", nullptr, nullptr},
    {"wsu", "http://docs.oasis-open.org/wss/2004/01/oasis-200401-wss-wssecurity-utility-1.0.xsd",
     nullptr, nullptr},
    {"ds", "http://www.w3.org/2000/09/xmldsig#", nullptr, nullptr},
    {"wsse", "http://docs.oasis-open.org/wss/2004/01/oasis-200401-wss-wssecurity-secext-1.0.xsd",
     nullptr, nullptr},
    {"wsa", "http://schemas.xmlsoap.org/ws/2004/08/addressing", nullptr, nullptr},
    {"LM2", "http://www.lumora.example/api/StreamAPISoap12", nullptr, nullptr},
    {"LM3", "http://www.lumora.example/api/RealTimeBrowseSoap12", nullptr, nullptr},
    {"LM4", "http://www.lumora.example/api/DownloadAPISoap12", nullptr, nullptr},
    {"LM1", "http://www.lumora.example/api/", nullptr, nullptr},
    {"LM5", "http://www.lumora.example/api/DownloadAuthenticateSoap12", nullptr, nullptr},
    // Types of the imported WS-Security schema refer to these; nothing we send uses them.
    {"xenc", "http://www.w3.org/2001/04/xmlenc#", nullptr, nullptr},
    {"wsc", "http://docs.oasis-open.org/ws-sx/ws-secureconversation/200512", nullptr, nullptr},
    {"saml1", "urn:oasis:names:tc:SAML:1.0:assertion", nullptr, nullptr},
    {"saml2", "urn:oasis:names:tc:SAML:2.0:assertion", nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr},
};
