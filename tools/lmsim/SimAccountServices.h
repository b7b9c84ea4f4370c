// The account, device, wishlist, purchase and streaming operations on the wire: who the caller
// is (the WS-Security user name and the device header), and the answers SimAccounts gives,
// written as the service's response types. Refusals are answers with a non-zero ResponseCode,
// never SOAP faults.
#ifndef LMSIM_ACCOUNT_SERVICES_H
#define LMSIM_ACCOUNT_SERVICES_H

#include "SimAccounts.h"
#include "SimDefaultServices.h"

namespace lmsim {

struct SimState;

// The base of the simulator's services: a generated service class and the shared state.
template <class Generated>
class SimService : public Generated {
public:
    SimService(struct soap* soap, const SimState& state) : Generated(soap), m_State(state) {}

protected:
    const SimState& m_State;
};

// The caller of the request being served: the user name and password of its WS-Security
// UsernameToken, and the device and token of whichever device header it carries
// (StreamDeviceRequestSettings, DeviceSettings or DownloadDeviceRequestSettings).
Caller CallerOf(const struct soap* soap);

class AccountAnswers {
public:
    AccountAnswers(struct soap* soap, const SimState& state);

    // Devices and the account.
    LM1__AuthorizeDeviceResponse* Authorize(int pin);
    LM1__StandardResponse* Deactivate();
    bool TokenValid() const;
    LM1__BillingInfoResponse* Billing();
    LM1__PPCardBalanceResponse* PrepaidBalance();
    LM1__BillingInfoAndPPCBalanceResponse* BillingAndBalance();
    LM1__GetEmailAddressResponse* Email();
    LM1__SettingsPageInfo* Settings();
    LM1__GiftCertificateResponse* RedeemGiftCertificate(const char* certificate);
    LM1__CheckAdultVerificationEnabledResponse* AdultVerificationEnabled();
    LM1__CheckAdultVerificationPinResponse* CheckAdultPin(const char* pin);
    LM1__GetConfigResponse* Config();
    int CountryId() const;
    LM1__AudioSetting AudioSetting() const;
    LM1__StandardResponse* SetAudioSetting(int setting);
    LM1__StandardResponse* RequestedError();

    // Wishlist.
    LM1__GetWishlistItemsResponse* Wishlist(int sortOrder, int page, int perPage, int titleType);
    LM1__WishListActionResponse* AddToWishlist(int titleId);
    LM1__WishListActionResponse* RemoveFromWishlist(int titleId);
    LM1__WishListActionResponse* ClearWishlist();
    bool InWishlist(int titleId) const;

    // Purchases.
    LM1__PurchaseResponse* Buy(int skuId, const char* usePrepaidFunds);
    LM1__CalcOrderTaxResponse* OrderTax(int skuId);
    LM1__GetMyVideosResponse* MyVideos(int page, int perPage, int purchaseType, int titleType,
                                       int watchStatus);
    LM1__ArrayOfGetMyVideosResponse* MyVideosList(int page, int perPage);
    bool OwnsTitle(int titleId) const;
    bool OwnsSku(int skuId) const;
    LM1__CheckRentalExpirationResponse* RentalExpiration(int passId);
    LM1__TitleListingPurchasedForPass* TitleForPass(int passId);
    LM1__ArrayOfTitleListingPurchasedForPass* TitlesForPasses(const LM1__ArrayOfInt* passIds);
    LM1__StandardResponse* RemoveAllPurchases(const char* password);

    // Streaming.
    LM1__GetStreamingAssetLocationResponse* StartStream(int passId, int fileProfile);
    LM1__GetStreamingAssetLocationResponse* LastStream(int passId, int fileProfile);
    LM1__GetStreamingAssetLocationResponse* BonusStream(int bonusAssetId);
    LM1__URLForStreamingFileResponse* BonusURL(int bonusAssetId);
    LM1__StandardResponse* ReportStream(const char* streamId, int playStatus, int stopSeconds);
    LM1__THXMediaDirectorResponse* MediaDirector(int passId, int fileProfile, int audioSetting);
    LM1__THXMediaDirectorResponse* BonusMediaDirector(int bonusAssetId, int fileProfile,
                                                      int bonusType);

private:
    char* Text(const std::string& s);
    // "http://127.0.0.1:<plain-HTTP port>" + path.
    std::string Url(const std::string& path) const;
    template <class T>
    T* Standard(T* response, const Outcome& outcome);
    template <class T>
    void FillPurchased(T* out, const PassView& pass);
    LM1__GetStreamingAssetLocationResponse* Location(const Stream& stream);

    struct soap* m_Soap;
    const SimState& m_State;
    SimAccounts& m_Accounts;
    const Caller m_Caller;
};

// The account operations that StreamAPI and DownloadAPI both offer with the same request and
// response elements: one implementation over either service.
template <class Service>
class SimAccountService : public Service {
public:
    using Service::Service;

    int authorizeDevice(_LM1__authorizeDevice* in, _LM1__authorizeDeviceResponse& out) override {
        out.authorizeDeviceResult = Accounts().Authorize(in->Pin);
        return SOAP_OK;
    }
    int deactivateDevice(_LM1__deactivateDevice*, _LM1__deactivateDeviceResponse& out) override {
        out.deactivateDeviceResult = Accounts().Deactivate();
        return SOAP_OK;
    }
    int checkAuthToken(_LM1__checkAuthToken*, _LM1__checkAuthTokenResponse& out) override {
        out.checkAuthTokenResult = Accounts().TokenValid();
        return SOAP_OK;
    }
    int doPurchaseSavedbilling(_LM1__doPurchaseSavedbilling* in,
                               _LM1__doPurchaseSavedbillingResponse& out) override {
        out.doPurchaseSavedbillingResult = Accounts().Buy(in->SkuID, in->UsePrePaidFunds);
        return SOAP_OK;
    }
    int checkRentalExpiration(_LM1__checkRentalExpiration* in,
                              _LM1__checkRentalExpirationResponse& out) override {
        out.checkRentalExpirationResult = Accounts().RentalExpiration(in->PassId);
        return SOAP_OK;
    }
    int getBillingInfo(_LM1__getBillingInfo*, _LM1__getBillingInfoResponse& out) override {
        out.getBillingInfoResult = Accounts().Billing();
        return SOAP_OK;
    }
    int showPrePaidCardBalance(_LM1__showPrePaidCardBalance*,
                               _LM1__showPrePaidCardBalanceResponse& out) override {
        out.showPrePaidCardBalanceResult = Accounts().PrepaidBalance();
        return SOAP_OK;
    }
    int getEmailAddress(_LM1__getEmailAddress*, _LM1__getEmailAddressResponse& out) override {
        out.getEmailAddressResult = Accounts().Email();
        return SOAP_OK;
    }
    int getSettingsPageInfo(_LM1__getSettingsPageInfo*,
                            _LM1__getSettingsPageInfoResponse& out) override {
        out.getSettingsPageInfoResult = Accounts().Settings();
        return SOAP_OK;
    }
    int assignGiftCertificateToUser(_LM1__assignGiftCertificateToUser* in,
                                    _LM1__assignGiftCertificateToUserResponse& out) override {
        out.assignGiftCertificateToUserResult =
            Accounts().RedeemGiftCertificate(in->GiftCertificateCode);
        return SOAP_OK;
    }
    int getWishlistItems(_LM1__getWishlistItems* in, _LM1__getWishlistItemsResponse& out) override {
        out.getWishlistItemsResult = Accounts().Wishlist(in->sortOrder, in->CurrentPageNumber,
                                                         in->ItemsPerPage, in->TitleType);
        return SOAP_OK;
    }
    int removeItemFromWishList(_LM1__removeItemFromWishList* in,
                               _LM1__removeItemFromWishListResponse& out) override {
        out.removeItemFromWishListResult = Accounts().RemoveFromWishlist(in->TitleID);
        return SOAP_OK;
    }
    int removeAllItemsFromWishList(_LM1__removeAllItemsFromWishList*,
                                   _LM1__removeAllItemsFromWishListResponse& out) override {
        out.removeAllItemsFromWishListResult = Accounts().ClearWishlist();
        return SOAP_OK;
    }
    int addItemToWishlist(_LM1__addItemToWishlist* in,
                          _LM1__addItemToWishlistResponse& out) override {
        out.addItemToWishlistResult = Accounts().AddToWishlist(in->TitleID);
        return SOAP_OK;
    }
    int checkAdultVerificationEnabled(_LM1__checkAdultVerificationEnabled*,
                                      _LM1__checkAdultVerificationEnabledResponse& out) override {
        out.checkAdultVerificationEnabledResult = Accounts().AdultVerificationEnabled();
        return SOAP_OK;
    }
    int checkAdultVerificationPin(_LM1__checkAdultVerificationPin* in,
                                  _LM1__checkAdultVerificationPinResponse& out) override {
        out.checkAdultVerificationPinResult = Accounts().CheckAdultPin(in->Pin);
        return SOAP_OK;
    }
    int getConfig(_LM1__getConfig*, _LM1__getConfigResponse& out) override {
        out.getConfigResult = Accounts().Config();
        return SOAP_OK;
    }
    int GetCountryID(_LM1__GetCountryID*, _LM1__GetCountryIDResponse& out) override {
        out.GetCountryIDResult = Accounts().CountryId();
        return SOAP_OK;
    }

protected:
    AccountAnswers Accounts() { return AccountAnswers(this->soap, this->m_State); }
};

}  // namespace lmsim

#endif  // LMSIM_ACCOUNT_SERVICES_H
