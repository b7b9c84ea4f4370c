// JSON forms of the client records, for lmws.
//
// Fields carry the names the service gives them on the wire (LMRecordFields.h names them). Nested
// lists become arrays named by their wrapper element ("Titles", "Genres", "BonusAssets",
// "ConfigurationSet"); a record that is a list itself names its array after the element the
// service repeats ("GetTitlesResponse", "TitleListingResponse", "TitleListingPurchasedForPass").
// Nested records are objects under their element's name ("BillingInfo", "PPCardBalance"). A
// title's page and a purchased title are flat objects, as on the wire: the title's fields first,
// then the rest. Numbers stay numbers (16-bit paging numbers too), decimals stay the service's
// texts, flags are booleans, and a text the record does not hold (a failed call) is "". The
// length-and-text record is {"Length": N, "Text": "..."}, its Text null when the record holds
// none.
#ifndef LMWS_RECORD_JSON_H
#define LMWS_RECORD_JSON_H

#include "LMRecordFields.h"
#include "LM_WS_Records.h"
#include "LmwsOperations.h"

// Adds the members of the records it visits to `out`.
struct LmwsJsonFields : LMRecordFields::NoOp {
    LmwsJson& out;

    explicit LmwsJsonFields(LmwsJson& object) : out(object) {}
    template <class N>
    void Number(const char* name, N value) {
        out[name] = value;
    }
    void Flag(const char* name, uint8_t value);
    void Text(const char* name, const char* text);
    void Bytes(const char* name, const char* text, uint32_t length);
    template <class S>
    void Record(const char* name, const S& part);
    template <class S>
    void Flatten(const S& part) {
        LMRecordFields::Visit(part, *this);
    }
    template <class L>
    void List(const char* name, const L& list) {
        Records(name, list.Count, list.Array);
    }
    template <class N>
    void Numbers(const char* name, int32_t count, const N* array) {
        LmwsJson& numbers = out[name] = LmwsJson::array();
        for (int32_t i = 0; array != nullptr && i < count; ++i) {
            numbers.push_back(array[i]);
        }
    }
    // A negative count or a null array (an empty list) gives [].
    template <class E>
    void Records(const char* name, int32_t count, const E* array);
};

// The JSON object of a record (or of the file type, which carries no tag).
template <class R>
LmwsJson LmwsToJson(const R& record) {
    LmwsJson out = LmwsJson::object();
    LMRecordFields::Visit(record, LmwsJsonFields(out));
    return out;
}

template <class S>
void LmwsJsonFields::Record(const char* name, const S& part) {
    out[name] = LmwsToJson(part);
}

template <class E>
void LmwsJsonFields::Records(const char* name, int32_t count, const E* array) {
    LmwsJson& records = out[name] = LmwsJson::array();
    for (int32_t i = 0; array != nullptr && i < count; ++i) {
        records.push_back(LmwsToJson(array[i]));
    }
}

// One output line (without the newline): {"operation": NAME, "status": N, "result": {...}}.
// Bytes that are not UTF-8 (a server's text, a command-line argument) become U+FFFD instead of
// failing the dump.
std::string LmwsOutputLine(const std::string& operation, LM_WS_Status status,
                           const LmwsJson& result);

#endif  // LMWS_RECORD_JSON_H
