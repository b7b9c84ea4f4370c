// The public headers compile on their own in C++ too, in either order.
#include "LM_WS_Types.h"
#include "LM_WS_Records.h"
#include "LM_WS.h"

int lm_public_headers_cpp() {
    return static_cast<int>(sizeof(LM_WS_SetupParams));
}
