#include "LmwsRecordJson.h"

void LmwsJsonFields::Flag(const char* name, uint8_t value) {
    out[name] = value != 0;
}

// A record that was never filled (the call failed before the answer) holds null texts.
void LmwsJsonFields::Text(const char* name, const char* text) {
    out[name] = text != nullptr ? text : "";
}

void LmwsJsonFields::Bytes(const char* name, const char* text, uint32_t length) {
    out[name] = text != nullptr ? LmwsJson(std::string(text, length)) : LmwsJson();
}

std::string LmwsOutputLine(const std::string& operation, LM_WS_Status status,
                           const LmwsJson& result) {
    LmwsJson line;
    line["operation"] = operation;
    line["status"] = status;
    line["result"] = result.is_null() ? LmwsJson::object() : result;
    return line.dump(-1, ' ', false, LmwsJson::error_handler_t::replace);
}
