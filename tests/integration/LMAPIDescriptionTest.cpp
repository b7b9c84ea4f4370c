// The generated WSDL and XSD files: operation sets and actions of the three bindings, and
// instance documents written by the generated serializers checked against the schema.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "LMAPITestSupport.h"
#include "soapH.h"

namespace {

const std::string kGenDir = LMAPI_GEN_DIR;
const char kActionBase[] = "http://www.lumora.example/api/";

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

struct WsdlOperation {
    std::string name;
    std::string action;
};

// The value of attribute `name` in the tag starting at `tag` (empty when absent).
std::string Attribute(const std::string& text, size_t tag, const std::string& name) {
    size_t close = text.find('>', tag);
    size_t at = text.find(" " + name + "=\"", tag);
    if (at == std::string::npos || at > close) {
        return "";
    }
    at += name.size() + 3;
    return text.substr(at, text.find('"', at) - at);
}

// The operations of the <binding> section in document order, each with the soapAction of the
// SOAP:operation element that follows it.
std::vector<WsdlOperation> BindingOperations(const std::string& wsdl) {
    std::vector<WsdlOperation> ops;
    size_t begin = wsdl.find("<binding ");
    size_t end = wsdl.find("</binding>", begin);
    if (begin == std::string::npos || end == std::string::npos) {
        return ops;
    }
    std::string binding = wsdl.substr(begin, end - begin);
    for (size_t at = binding.find("<operation "); at != std::string::npos;
         at = binding.find("<operation ", at + 1)) {
        size_t soapOp = binding.find("<SOAP:operation ", at);
        size_t next = binding.find("<operation ", at + 1);
        std::string action;
        if (soapOp != std::string::npos && (next == std::string::npos || soapOp < next)) {
            action = Attribute(binding, soapOp, "soapAction");
        }
        ops.push_back({Attribute(binding, at, "name"), action});
    }
    return ops;
}

struct BindingExpectation {
    const char* binding;
    size_t operations;
    const char* first;
    const char* last;
};

void PrintTo(const BindingExpectation& b, std::ostream* os) {
    *os << b.binding;
}

class WsdlTest : public ::testing::TestWithParam<BindingExpectation> {};

TEST_P(WsdlTest, OperationsInOrderWithTheirSoapActions) {
    const BindingExpectation& expect = GetParam();
    std::string wsdl = ReadFile(kGenDir + "/" + expect.binding + ".wsdl");
    ASSERT_FALSE(wsdl.empty());
    EXPECT_NE(wsdl.find("http://schemas.xmlsoap.org/wsdl/soap12/"), std::string::npos)
        << "not a SOAP 1.2 binding";
    EXPECT_NE(wsdl.find(std::string("location=\"http://stgapi.lumora.example/api/")),
              std::string::npos);

    std::vector<WsdlOperation> ops = BindingOperations(wsdl);
    ASSERT_EQ(expect.operations, ops.size());
    EXPECT_EQ(expect.first, ops.front().name);
    EXPECT_EQ(expect.last, ops.back().name);
    std::set<std::string> names;
    for (const WsdlOperation& op : ops) {
        EXPECT_EQ(kActionBase + op.name, op.action) << op.name;
        EXPECT_TRUE(names.insert(op.name).second) << "duplicate " << op.name;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Bindings, WsdlTest,
    ::testing::Values(BindingExpectation{"DownloadAPISoap12", 27, "authorizeDevice",
                                         "getLicenseCount"},
                      BindingExpectation{"RealTimeBrowseSoap12", 20, "getFileType",
                                         "getRecommendedTitles_SpecifyOutput"},
                      BindingExpectation{"StreamAPISoap12", 49, "getStreamingNavigation",
                                         "getTHXMediaDirectorBonusAsset"}),
    [](const ::testing::TestParamInfo<BindingExpectation>& info) {
        return std::string(info.param.binding);
    });

// Names that break the usual spelling must reach the wire exactly so.
TEST(WsdlNames, IrregularOperationNamesAreKept) {
    std::map<std::string, std::set<std::string>> byBinding;
    for (const char* b : {"DownloadAPISoap12", "RealTimeBrowseSoap12", "StreamAPISoap12"}) {
        for (const WsdlOperation& op : BindingOperations(ReadFile(kGenDir + "/" + b + ".wsdl"))) {
            byBinding[b].insert(op.name);
        }
    }
    const std::set<std::string>& download = byBinding["DownloadAPISoap12"];
    const std::set<std::string>& stream = byBinding["StreamAPISoap12"];
    for (const char* name :
         {"GetCountryID", "doPurchaseSavedbilling", "addItemToWishlist", "getWishlistItems",
          "removeItemFromWishList", "removeAllItemsFromWishList"}) {
        EXPECT_EQ(1u, download.count(name)) << name;
        EXPECT_EQ(1u, stream.count(name)) << name;
    }
    EXPECT_EQ(1u, stream.count("ReturnError"));
    EXPECT_EQ(1u, stream.count("ReturnTimeout"));
    EXPECT_EQ(1u, byBinding["RealTimeBrowseSoap12"].count("searchForTitleDetail_IncludeShortDesc"));
}

// ---------------------------------------------------------------------------------------------
// Schema validation of serialized request elements.

class SchemaTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_Soap = soap_new();
        lmapi_test::PrepareContext(m_Soap);
        char dir[] = "/tmp/lmapi_schema_XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(dir));
        m_Dir = dir;
    }
    void TearDown() override {
        soap_destroy(m_Soap);
        soap_end(m_Soap);
        soap_free(m_Soap);
        std::string cmd = "rm -rf '" + m_Dir + "'";
        EXPECT_EQ(0, std::system(cmd.c_str()));
    }

    // Serializes with `write` (a generated soap_write_* function) into a string.
    template <class T>
    std::string Serialize(int (*write)(struct soap*, const T*), const T& value) {
        std::ostringstream out;
        m_Soap->os = &out;
        int rc = write(m_Soap, &value);
        m_Soap->os = nullptr;
        EXPECT_EQ(SOAP_OK, rc);
        return out.str();
    }

    // Runs xmllint, without network access, against `schema` (LM1.xsd unless given); true when
    // the document validates. The schema's imports of the security and addressing namespaces
    // name no location and are skipped.
    bool Validates(const std::string& xml, const char* name,
                   const std::string& schema = kGenDir + "/LM1.xsd") {
        std::string file = m_Dir + "/" + name + ".xml";
        std::ofstream(file, std::ios::binary) << xml;
        std::string cmd = std::string(LMAPI_XMLLINT) + " --noout --nonet --schema '" + schema +
                          "' '" + file + "' 2>'" + m_Dir + "/xmllint.log'";
        int rc = std::system(cmd.c_str());
        if (rc != 0) {
            m_LastLog = ReadFile(m_Dir + "/xmllint.log");
        }
        return rc == 0;
    }

    struct soap* m_Soap = nullptr;
    std::string m_Dir;
    std::string m_LastLog;
};

TEST_F(SchemaTest, SerializedRequestsValidate) {
    _LM1__getTitlesByGenreArray byGenre;
    byGenre.soap_default(m_Soap);
    int genres[] = {12, 7, 40};
    LM1__ArrayOfInt ids;
    ids.soap_default(m_Soap);
    ids.__sizeint = 3;
    ids.int_ = genres;
    byGenre.GenreIDs = &ids;
    byGenre.CurrentPageNumber = 2;
    byGenre.ItemsPerPage = 25;
    byGenre.PurchaseType = LM1__PurchaseType__any;
    std::string xml = Serialize(soap_write__LM1__getTitlesByGenreArray, byGenre);
    EXPECT_NE(xml.find("<LM1:int>7</LM1:int>"), std::string::npos) << xml;
    EXPECT_TRUE(Validates(xml, "getTitlesByGenreArray")) << m_LastLog << xml;

    _LM1__getTHXMediaDirector thx;
    thx.soap_default(m_Soap);
    thx.PassID = 99;
    thx.FileProfile = LM1__FileProfile__HIGH_USCOREDEFINITION_USCOREREALD_USCORE3D;
    thx.AudioSetting = LM1__AudioSetting__DTS_USCOREExpress_USCORE51;
    xml = Serialize(soap_write__LM1__getTHXMediaDirector, thx);
    EXPECT_NE(xml.find(">HIGH_DEFINITION_REALD_3D<"), std::string::npos) << xml;
    EXPECT_TRUE(Validates(xml, "getTHXMediaDirector")) << m_LastLog << xml;

    _LM1__manageStreamInstanceStatus status;
    status.soap_default(m_Soap);
    status.StreamID = const_cast<char*>("stream-1");
    status.Status = LM1__PlayStatus__errorinplayback;
    status.StopTimeSeconds = 3600;
    xml = Serialize(soap_write__LM1__manageStreamInstanceStatus, status);
    EXPECT_TRUE(Validates(xml, "manageStreamInstanceStatus")) << m_LastLog << xml;

    _LM1__getConfig empty;
    empty.soap_default(m_Soap);
    EXPECT_TRUE(Validates(Serialize(soap_write__LM1__getConfig, empty), "getConfig")) << m_LastLog;
}

// The two "Pin" parameters differ in type; the schema has to tell them apart, or validating
// what we send proves nothing.
// A client that loads a WSDL follows every schemaLocation: each must name a schema file given
// beside it, and the service's schema embedded in the WSDL must be usable as it stands.
TEST_F(SchemaTest, EachWsdlLoadsOfflineAndItsEmbeddedSchemaValidatesRequests) {
    _LM1__getTitleListing listing;
    listing.soap_default(m_Soap);
    listing.TitleID = 100016;
    const std::string request = Serialize(soap_write__LM1__getTitleListing, listing);
    for (const char* name : {"RealTimeBrowseSoap12", "StreamAPISoap12", "DownloadAPISoap12"}) {
        const std::string wsdl = ReadFile(kGenDir + "/" + name + ".wsdl");
        for (const std::string& document : {wsdl, ReadFile(kGenDir + "/LM1.xsd")}) {
            static const char kLocation[] = "schemaLocation=\"";
            for (size_t at = document.find(kLocation); at != std::string::npos;
                 at = document.find(kLocation, at + 1)) {
                const size_t begin = at + sizeof(kLocation) - 1;
                const std::string target =
                    document.substr(begin, document.find('"', begin) - begin);
                EXPECT_TRUE(std::ifstream(kGenDir + "/" + target).good()) << name << ": " << target;
            }
        }
        const size_t begin =
            wsdl.find("<schema targetNamespace=\"http://www.lumora.example/api/\"");
        ASSERT_NE(begin, std::string::npos) << name;
        const size_t end = wsdl.find("</schema>", begin);
        ASSERT_NE(end, std::string::npos) << name;
        const std::string schema = m_Dir + "/" + name + ".xsd";
        std::ofstream(schema) << wsdl.substr(begin, end + 9 - begin);
        EXPECT_TRUE(Validates(request, name, schema)) << name << "\n" << m_LastLog;
    }
}

TEST_F(SchemaTest, PinIsAnIntegerForAuthorizationAndTextForAdultVerification) {
    const char* ns = "xmlns:LM1=\"http://www.lumora.example/api/\"";
    EXPECT_TRUE(Validates(std::string("<LM1:authorizeDevice ") + ns +
                              "><LM1:Pin>4711</LM1:Pin></LM1:authorizeDevice>",
                          "authorizeOk"))
        << m_LastLog;
    EXPECT_FALSE(Validates(std::string("<LM1:authorizeDevice ") + ns +
                               "><LM1:Pin>04a1</LM1:Pin></LM1:authorizeDevice>",
                           "authorizeText"));
    EXPECT_TRUE(Validates(std::string("<LM1:checkAdultVerificationPin ") + ns +
                              "><LM1:Pin>04a1</LM1:Pin></LM1:checkAdultVerificationPin>",
                          "adultPin"))
        << m_LastLog;
}

TEST_F(SchemaTest, ElementOrderAndEnumerationValuesAreEnforced) {
    const char* ns = "xmlns:LM1=\"http://www.lumora.example/api/\"";
    // Parameters swapped.
    EXPECT_FALSE(Validates(std::string("<LM1:getStreamingAssetLocation ") + ns +
                               "><LM1:FileProfile>STANDARD</LM1:FileProfile>"
                               "<LM1:PassID>1</LM1:PassID></LM1:getStreamingAssetLocation>",
                           "swapped"));
    // A value outside the enumeration.
    EXPECT_FALSE(Validates(std::string("<LM1:getStreamingAssetLocation ") + ns +
                               "><LM1:PassID>1</LM1:PassID>"
                               "<LM1:FileProfile>ULTRA</LM1:FileProfile>"
                               "</LM1:getStreamingAssetLocation>",
                           "badEnum"));
}

}  // namespace
