#include "LMSoapLogPlugin.h"

#include <new>

#include "LMLog.h"
#include "stdsoap2.h"

const char LMSoapLogPlugin::kId[] = "LM-SOAP-LOG/1.0";

int LMSoapLogPlugin::Register(struct soap* soap) {
    if (soap_lookup_plugin(soap, kId) != nullptr) {
        return SOAP_OK;
    }
    return soap_register_plugin(soap, Create);
}

int LMSoapLogPlugin::Create(struct soap* soap, struct soap_plugin* plugin, void* /*arg*/) {
    Data* data = new (std::nothrow) Data{soap->fsend, soap->frecv, false};
    if (data == nullptr) {
        return SOAP_EOM;
    }
    plugin->id = kId;
    plugin->data = data;
    plugin->fcopy = Copy;
    plugin->fdelete = Delete;
    soap->fsend = Send;
    soap->frecv = Recv;
    return SOAP_OK;
}

// soap_copy_context() copies the callbacks with the context; the copy needs a record of its
// own because each context deletes its plug-in data when it ends.
int LMSoapLogPlugin::Copy(struct soap* /*soap*/, struct soap_plugin* dst, struct soap_plugin* src) {
    Data* data = new (std::nothrow) Data(*static_cast<Data*>(src->data));
    if (data == nullptr) {
        return SOAP_EOM;
    }
    dst->data = data;
    return SOAP_OK;
}

void LMSoapLogPlugin::Delete(struct soap* /*soap*/, struct soap_plugin* plugin) {
    delete static_cast<Data*>(plugin->data);
    plugin->data = nullptr;
}

void LMSoapLogPlugin::SetQuiet(struct soap* soap, bool quiet) {
    if (Data* plugin = static_cast<Data*>(soap_lookup_plugin(soap, kId))) {
        plugin->quiet = quiet;
    }
}

int LMSoapLogPlugin::Send(struct soap* soap, const char* data, size_t length) {
    const Data* plugin = static_cast<const Data*>(soap_lookup_plugin(soap, kId));
    if (plugin == nullptr) {  // the context was ended and its plug-ins deleted
        return soap->error = SOAP_PLUGIN_ERROR;
    }
    if (!plugin->quiet) {
        LM_LogOutputwithLen(SENT_LMLogAreaID, LM_LOG_TRACE, data, static_cast<unsigned>(length));
    }
    return plugin->fsend(soap, data, length);
}

size_t LMSoapLogPlugin::Recv(struct soap* soap, char* buffer, size_t length) {
    const Data* plugin = static_cast<const Data*>(soap_lookup_plugin(soap, kId));
    if (plugin == nullptr) {
        return 0;
    }
    size_t received = plugin->frecv(soap, buffer, length);
    if (received > 0 && !plugin->quiet) {
        LM_LogOutputwithLen(RECV_LMLogAreaID, LM_LOG_TRACE, buffer,
                            static_cast<unsigned>(received));
    }
    return received;
}
