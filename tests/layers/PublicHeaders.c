/* The public headers compile on their own, with only Public/ on the include path. */
#include "LM_WS.h"
#include "LM_WS_Records.h"
#include "LM_WS_Types.h"

int lm_public_headers_c(void) {
    LM_WS_StandardResponse response;
    response.ResponseCode = LM_WS_OK;
    return response.ResponseCode;
}
