// The device's hardware (MAC) address, used to identify the player to the service.
#ifndef LM_DEVICE_IDENTITY_H
#define LM_DEVICE_IDENTITY_H

#include "LMString.h"

// "%02X-%02X-%02X-%02X-%02X-%02X" of the first listed interface whose address is not all zero,
// for example "00-1A-2B-3C-4D-5E"; empty when there is none (the caller then identifies the
// device another way).
LMString LM_GetHardwareAddress();

// The same rule over addresses already read: the first one that is not all zero, formatted.
// Kept apart from the ioctls so that the choice can be checked without network interfaces.
LMString LM_FormatFirstHardwareAddress(const unsigned char (*addresses)[6], int count);

#endif  // LM_DEVICE_IDENTITY_H
