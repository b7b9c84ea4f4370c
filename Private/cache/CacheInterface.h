// The cache the client library talks to: service responses, box art, the catalogue load time
// and small per-user values. Every operation returns 1 for success and 0 for failure, except
// Init, which returns 0 or an SQLite result code.
#ifndef LM_CACHE_INTERFACE_H
#define LM_CACHE_INTERFACE_H

#include <vector>

#include "LMString.h"
#include "LM_WS_CacheParam.h"

class CacheInterface {
public:
    virtual ~CacheInterface() {}

    virtual int Init(const LM_WS_CacheParam& param) = 0;
    virtual int Uninit() = 0;
    virtual int GetServiceData(const LMString& name, const LMString& key, LMString& value) = 0;
    virtual int SetServiceData(const LMString& name, const LMString& key,
                               const LMString& value) = 0;
    virtual int SetLastLoadTime(const LMString& time) = 0;
    virtual int SetBoxArt(const LMString& prefix, int dim, unsigned size,
                          const LMString& lastModified, bool needUpdate, const LMString& data) = 0;
    virtual int GetBoxArt(const LMString& prefix, int dim, unsigned& size, LMString& lastModified,
                          bool& needUpdate, LMString& data) = 0;
    virtual int InvalidateBoxArt() = 0;
    virtual int GetUserData(const LMString& name, const LMString& key, LMString& value) = 0;
    virtual int SetUserData(const LMString& name, const LMString& key, const LMString& value) = 0;
    virtual int ClearUserData(const LMString& name) = 0;
    virtual int GetWishlistFlag(int titleId, bool& flag) = 0;
    virtual int SetWishlistFlag(int titleId, bool flag) = 0;
    virtual int SetWishlistFlags(const std::vector<int>& titleIds,
                                 const std::vector<bool>& flags) = 0;
    virtual int RemoveWishlistFlag(int titleId) = 0;
    virtual int ClearWishlistFlags() = 0;
};

#endif  // LM_CACHE_INTERFACE_H
