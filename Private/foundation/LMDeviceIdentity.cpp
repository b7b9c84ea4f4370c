#include "LMDeviceIdentity.h"

#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

LMString LM_FormatFirstHardwareAddress(const unsigned char (*addresses)[6], int count) {
    static const unsigned char kZero[6] = {0, 0, 0, 0, 0, 0};
    for (int i = 0; i < count; ++i) {
        const unsigned char* a = addresses[i];
        if (memcmp(a, kZero, sizeof(kZero)) != 0) {
            char text[18];
            snprintf(text, sizeof(text), "%02X-%02X-%02X-%02X-%02X-%02X", a[0], a[1], a[2], a[3],
                     a[4], a[5]);
            return LMString(text);
        }
    }
    return LMString();
}

LMString LM_GetHardwareAddress() {
    int fd = socket(AF_INET, SOCK_DGRAM, 0);
    if (fd < 0) {
        return LMString();
    }
    char buffer[4096];
    struct ifconf list;
    list.ifc_len = sizeof(buffer);
    list.ifc_buf = buffer;
    unsigned char found[sizeof(buffer) / sizeof(struct ifreq)][6];
    int used = 0;
    if (ioctl(fd, SIOCGIFCONF, &list) == 0) {
        int count = list.ifc_len / static_cast<int>(sizeof(struct ifreq));
        struct ifreq* entries = list.ifc_req;
        for (int i = 0; i < count; ++i) {
            struct ifreq request;
            memset(&request, 0, sizeof(request));
            memcpy(request.ifr_name, entries[i].ifr_name, IFNAMSIZ);
            if (ioctl(fd, SIOCGIFHWADDR, &request) == 0) {
                memcpy(found[used++], request.ifr_hwaddr.sa_data, 6);
            }
        }
    }
    close(fd);
    return LM_FormatFirstHardwareAddress(found, used);
}
