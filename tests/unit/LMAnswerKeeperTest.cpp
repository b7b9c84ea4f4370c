#include "LMAnswerKeeper.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Serializer.h"
#include "TitlesPage.h"
#include "soapH.h"

namespace {

const char kUri[] = "http://www.lumora.example/api/";

// An answer with what a lexical reader could trip over: a comment before the envelope, a header
// whose CDATA, comment and attribute values look like the end of the body, a redeclared prefix,
// an attribute with '>' in the response, white space around everything.
const std::string kResponse =
    "<m:Result k=\"1>2\" j='/>'><m:Item/>a &amp; b<!-- </m:Answer> -->"
    "<![CDATA[</m:Answer>]]></m:Result>";
const std::string kAnswer =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!-- served by a test -->\n"
    "<s:Envelope xmlns:s=\"http://www.w3.org/2003/05/soap-envelope\" xmlns:m=\"urn:old\">\n"
    " <s:Header xmlns:h=\"urn:h\"><h:Note a='x > y' b=\"/>\"><![CDATA[</s:Body>]]>"
    "<!-- </s:Envelope> --></h:Note><h:Empty/></s:Header>\n"
    " <s:Body xmlns:b='urn:b'>\n"
    "  <m:Answer xmlns:m=\"http://www.lumora.example/api/\" xmlns=\"urn:d\">" +
    kResponse +
    "</m:Answer >\n"
    " </s:Body>\n"
    "</s:Envelope>\n";

TEST(LMAnswerKeeper, FindsTheResponseAndTheDeclarationsInForce) {
    LMAnswerContent content;
    ASSERT_TRUE(FindAnswerContent(kAnswer, content));
    EXPECT_EQ(kAnswer.substr(content.begin, content.end - content.begin), kResponse);
    // The header's declarations are not in force in the body; the response's m replaces the
    // envelope's in place.
    EXPECT_EQ(content.declarations,
              " xmlns:s=\"http://www.w3.org/2003/05/soap-envelope\""
              " xmlns:m=\"http://www.lumora.example/api/\" xmlns:b='urn:b' xmlns=\"urn:d\"");

    const std::string empty =
        "<e:Envelope xmlns:e='urn:e'><e:Body><r:Done xmlns:r='urn:r'/>"
        "</e:Body></e:Envelope>";
    ASSERT_TRUE(FindAnswerContent(empty, content));
    EXPECT_EQ(content.begin, content.end);
    EXPECT_EQ(content.declarations, " xmlns:e='urn:e' xmlns:r='urn:r'");
}

TEST(LMAnswerKeeper, RefusesWhatIsNotOneResponseInAnEnvelope) {
    const std::string body = "<s:Envelope xmlns:s='urn:s'><s:Body><r>x</r></s:Body></s:Envelope>";
    LMAnswerContent content;
    ASSERT_TRUE(FindAnswerContent(body, content));
    const std::vector<std::string> refused = {
        "<?xml version='1.0' encoding='ISO-8859-1'?>" + body,
        "<s:Envelope xmlns:s='urn:s'><s:Body><r>x</r><r>y</r></s:Body></s:Envelope>",
        "<s:Envelope xmlns:s='urn:s'><s:Body/></s:Envelope>",
        "<s:Envelope xmlns:s='urn:s'><s:Body></s:Body></s:Envelope>",
        "<s:Envelope xmlns:s='urn:s'><s:Body><r>x</q></s:Body></s:Envelope>",
        "<s:Envelope xmlns:s='urn:s'><s:Header><h></s:Header><s:Body><r/></s:Body></s:Envelope>",
        "<s:Root xmlns:s='urn:s'><s:Body><r>x</r></s:Body></s:Root>",
        body + "<more/>",
        "<!DOCTYPE s:Envelope>" + body,
        "",
    };
    for (const std::string& text : refused) {
        EXPECT_FALSE(FindAnswerContent(text, content)) << text;
    }
    // Nor is any beginning of an answer one.
    for (size_t length = 0; length + 1 < kAnswer.size(); ++length) {
        EXPECT_FALSE(FindAnswerContent(kAnswer.substr(0, length), content)) << length;
    }
}

// Replaces every `from` in `text` with `to`.
std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
        text.replace(at, from.size(), to);
        at += to.size();
    }
    return text;
}

// A page stored from the service's XML reads back as the page stored from the record, whatever
// prefixes the service chose, the default namespace included.
TEST(LMAnswerKeeper, AnAnswerStoredAsSentReadsAsTheRecord) {
    struct soap ctx(SOAP_C_UTFSTRING);
    const LM1__GetTitlesResponse* page = MakeTitles(&ctx, 3);
    Serializer plain(false, false);
    ASSERT_TRUE(plain.Write(*page));
    const std::string written(plain.GetBuffer().c_str(), plain.GetBuffer().length());
    const size_t open = written.find('>', written.find("<LMWSLib")) + 1;
    const std::string fields = written.substr(open, written.rfind("</LMWSLib>") - open);

    for (const std::string& prefix : {std::string("api:"), std::string()}) {
        const std::string declaration = prefix.empty() ? std::string(" xmlns=\"") + kUri + "\""
                                                       : " xmlns:api=\"" + std::string(kUri) + "\"";
        const std::string answer =
            "<?xml version=\"1.0\"?><env:Envelope xmlns:env=\"urn:env\"><env:Body><" + prefix +
            "Answer" + declaration + ">" + Replaced(fields, "LM1:", prefix) + "</" + prefix +
            "Answer></env:Body></env:Envelope>";
        LMAnswerContent content;
        ASSERT_TRUE(FindAnswerContent(answer, content)) << answer;
        Serializer writer(true, false);
        ASSERT_TRUE(writer.WriteContent(content.declarations, answer.data() + content.begin,
                                        content.end - content.begin));

        Serializer reader(true, false);
        LM1__GetTitlesResponse back;
        ASSERT_TRUE(reader.Read(writer.GetBuffer(), back)) << prefix;
        EXPECT_EQ(back.TotalPages, page->TotalPages);
        ASSERT_NE(back.Titles, nullptr);
        ASSERT_EQ(back.Titles->__sizeTitleListing, 3);
        EXPECT_STREQ(back.Titles->TitleListing[1]->TitleName,
                     page->Titles->TitleListing[1]->TitleName);
        EXPECT_EQ(back.Titles->TitleListing[2]->IsTvListing,
                  page->Titles->TitleListing[2]->IsTvListing);
    }
    soap_destroy(&ctx);
    soap_end(&ctx);
}

}  // namespace
