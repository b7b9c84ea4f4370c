// The simulator's user side: accounts, activated devices and their auth tokens, wishlists,
// purchases (passes), prepaid balances, gift certificates and stream sessions. Everything is in
// memory and deterministic: ids and tokens come from counters in request order, and time comes
// from an injectable clock. Plain C++ without the SOAP layer, so it is tested without sockets;
// SimAccountServices puts it on the wire. Every public member is safe to call from the server's
// connection threads at once.
#ifndef LMSIM_ACCOUNTS_H
#define LMSIM_ACCOUNTS_H

#include <ctime>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "SimCatalogue.h"

namespace lmsim {

// The fixed values clients and tests rely on (lmsim --help lists them too).
struct AccountDefaults {
    static constexpr int kActivationPin = 1234;       // authorizeDevice accepts only this Pin
    static constexpr int kAdultPin = 42;              // compared as its "%04d" text, "0042"
    static constexpr int kPrepaidCents = 1000;        // a new account's prepaid balance, $10.00
    static constexpr int kCountryId = 1;              // every account's country
    static constexpr int kTaxPercent = 8;             // tax on every order, rounded to the cent
    static constexpr int kDecliningSku = 700099;      // purchases of this SKU are always declined
    static constexpr int kGiftCentsLimit = 100000;    // the largest gift certificate, $1,000.00
    static constexpr const char* kDemoUser = "demo";  // the account of requests without a user
    static constexpr const char* kCardLastFour = "4242";  // the card on file of every account
    static constexpr int kCardTypeId = 1;
    static constexpr const char* kCardType = "Visa";
};

// Response codes. Each operation has its own table on the client's side; the codes are chosen
// so that the client's mapping gives the status of the condition.
struct Code {
    static constexpr int kOk = 0;
    // Any operation that needs an activated device, when the request's auth token is missing,
    // unknown, replaced, deactivated or issued to another device.
    static constexpr int kNotAuthorised = 20;
    // authorizeDevice
    static constexpr int kWrongPin = 1;
    static constexpr int kNoDeviceId = 2;
    // doPurchaseSavedbilling
    static constexpr int kDeclined = 1;
    static constexpr int kUnknownSku = 3;
    static constexpr int kAlreadyOwned = 4;
    static constexpr int kInsufficientFunds = 7;
    // calcOrderTax
    static constexpr int kTaxUnknownSku = 1;
    // assignGiftCertificateToUser
    static constexpr int kGiftInvalid = 1;
    static constexpr int kGiftUsed = 2;
    // Unknown title, pass, stream or bonus asset; a wrong password; adult verification off.
    static constexpr int kNotFound = 1;
    static constexpr int kWrongPassword = 1;
    static constexpr int kAdultVerificationOff = 1;
    // Streaming: the rental ran out; a file profile the product does not offer; a negative
    // stop time.
    static constexpr int kRentalExpired = 2;
    static constexpr int kProfileNotOffered = 3;
    static constexpr int kBadStopTime = 2;
    // THX media director data asked for a title or trailer without it.
    static constexpr int kNoMediaDirector = 2;
};

// Who is asking: the WS-Security user name and password and the device header of the request.
struct Caller {
    std::string user;
    std::string password;
    std::string deviceId;  // DestinationUniqueID
    std::string token;     // AuthToken
};

// What every answer carries.
struct Outcome {
    int code = Code::kOk;
    std::string message;
    bool ok() const { return code == Code::kOk; }
    void Refuse(int refusal, const char* why) {
        code = refusal;
        message = why;
    }
};

// A pass as an answer shows it: a copy, with the catalogue's title and product.
struct PassView {
    int passId = 0;
    const Title* title = nullptr;
    const Product* product = nullptr;
    int transactionId = 0;
    std::string authNum;
    int positionSeconds = 0;
    int playStatus = 1;  // PlayStatus: 1 stopped until a stream reports otherwise
    bool expired = false;
    int hoursRemaining = 0;  // rentals only; 0 once expired
};

struct Authorization : Outcome {
    std::string token;
    std::string email;
    std::string deviceId;
    std::string deviceName;
};

struct AccountInfo : Outcome {
    std::string user;
    std::string email;
    std::string deviceId;
    std::string deviceName;
    std::string ccLastFour;
    int ccTypeId = 0;
    std::string ccType;
    int balanceCents = 0;
    int audioSetting = 0;
    int countryId = AccountDefaults::kCountryId;
    bool adultVerification = false;
};

struct WishlistPage : Outcome {
    Page page;
    int sortOrder = 0;
};

struct PassPage : Outcome {
    std::vector<PassView> passes;  // the page's passes, newest first
    int currentPage = 1;
    int itemsPerPage = 1;
    int totalItems = 0;
    int totalPages = 0;
};

struct Purchase : Outcome {
    int passId = 0;
    int transactionId = 0;
    std::string authNum;
};

struct Tax : Outcome {
    std::string subTotal;  // decimal texts, two places
    std::string tax;
    std::string total;
};

struct Balance : Outcome {
    int cents = 0;
};

struct PassLookup : Outcome {
    PassView pass;
};

struct Stream : Outcome {
    PassView pass;
    std::string streamId;  // empty when no stream was started
    int fileProfile = 0;
};

struct PinCheck : Outcome {
    bool verified = false;
};

class SimAccounts {
public:
    using Clock = std::function<time_t()>;

    explicit SimAccounts(const Catalogue& catalogue, Clock clock = nullptr);
    SimAccounts(const SimAccounts&) = delete;
    SimAccounts& operator=(const SimAccounts&) = delete;

    // ---- Devices ----
    // A right pin activates the caller's device for the account of the caller's user name (the
    // demo account without one; an unknown name creates its account) and issues a new token,
    // which replaces any earlier token of that device.
    Authorization Authorize(const Caller& caller, int pin);
    Outcome Deactivate(const Caller& caller);
    bool TokenValid(const Caller& caller) const;
    // Success with a valid token, else the refusal every such operation answers.
    Outcome Authorised(const Caller& caller) const;
    // The account and device behind a valid token (e-mail, billing, balance, settings...).
    AccountInfo Info(const Caller& caller) const;
    Outcome SetAudioSetting(const Caller& caller, int setting);
    Outcome AdultVerificationEnabled(const Caller& caller) const;
    // `pin` is the text the device sent; it matches the "%04d" text of the account's PIN.
    PinCheck CheckAdultPin(const Caller& caller, const std::string& pin) const;

    // ---- Wishlist ----
    Outcome AddToWishlist(const Caller& caller, int titleId);
    // Removing a title that is not listed is no error.
    Outcome RemoveFromWishlist(const Caller& caller, int titleId);
    Outcome ClearWishlist(const Caller& caller);
    bool InWishlist(const Caller& caller, int titleId) const;
    // sortOrder 0: newest first, 1: oldest first, 2: by title name; others as 0.
    // titleType: kAnyTitle, kTvTitles, kMovies.
    WishlistPage Wishlist(const Caller& caller, int sortOrder, int page, int perPage,
                          int titleType) const;

    // ---- Purchases ----
    // Buys or rents `skuId` with the card on file, or with the prepaid balance when
    // `usePrepaid`; the order's total (price and tax) is charged. The title leaves the wishlist.
    Purchase Buy(const Caller& caller, int skuId, bool usePrepaid);
    Tax OrderTax(const Caller& caller, int skuId) const;
    Balance RedeemGiftCertificate(const Caller& caller, const std::string& certificate);
    // purchaseType: kRent, kBuy, kAnyPurchase; titleType as for Wishlist; watchStatus: 0 watch
    // now (passes in force), 1 rent again (expired rentals), 2 not available (none), 3 all.
    PassPage Passes(const Caller& caller, int page, int perPage, int purchaseType, int titleType,
                    int watchStatus) const;
    PassLookup FindPass(const Caller& caller, int passId) const;
    // Whether a pass in force covers the title or the SKU (false without a valid token).
    bool OwnsTitle(const Caller& caller, int titleId) const;
    bool OwnsSku(const Caller& caller, int skuId) const;
    // Drops every pass and stream of the account; `password` must be the account's.
    Outcome RemoveAllPurchases(const Caller& caller, const std::string& password);

    // ---- Streaming ----
    // Opens a stream session for a pass in force; the answer carries the pass's last position.
    // fileProfile 0 (unknown) means the product's first profile.
    Stream StartStream(const Caller& caller, int passId, int fileProfile);
    // The pass's last position and its latest stream session, without opening a new one.
    Stream LastStream(const Caller& caller, int passId, int fileProfile) const;
    // Records a stream's status and the position it reports for the stream's pass.
    Outcome ReportStream(const Caller& caller, const std::string& streamId, int playStatus,
                         int stopSeconds);

    // The cents of a decimal price text ("3.99" -> 399); -1 when it is not one.
    static int Cents(const std::string& price);
    // Cents as decimal text with two places (399 -> "3.99").
    static std::string Decimal(int cents);
    // "GIFT-<cents>-<any suffix>": the certificate's value, or 0 when it is not a valid code.
    static int GiftCertificateCents(const std::string& certificate);

private:
    struct Pass {
        int passId;
        const Title* title;
        const Product* product;
        time_t purchased;
        int transactionId;
        std::string authNum;
        int positionSeconds = 0;
        int playStatus = 1;
        std::string lastStream;
    };
    struct Listed {
        int titleId;
        long added;  // order of addition
    };
    struct Account {
        std::string user;
        std::string password;
        std::string email;
        int balanceCents = AccountDefaults::kPrepaidCents;
        int audioSetting = 0;
        bool adultVerification = true;
        std::vector<Listed> wishlist;
        std::vector<Pass> passes;  // in order of purchase
    };
    struct Device {
        std::string user;
        std::string token;
    };
    struct Session {
        std::string user;
        int passId;
    };

    // The account behind the caller's token: the token must be the current one of the device
    // the request names. Null otherwise.
    const Account* AccountOf(const Caller& caller) const;
    Account* AccountOf(const Caller& caller);
    // Whether `pass` (null when the account has no such pass) can be streamed now with
    // `fileProfile`; settles the profile.
    Outcome Streamable(const Pass* pass, int fileProfile, int& profile) const;
    static time_t Expiry(const Pass& pass);
    bool InForce(const Pass& pass) const;
    PassView View(const Pass& pass) const;

    const Catalogue& m_Catalogue;
    Clock m_Clock;
    mutable std::mutex m_Lock;
    std::map<std::string, Account> m_Accounts;  // by user name
    std::map<std::string, Device> m_Devices;    // by DestinationUniqueID
    std::map<std::string, Session> m_Streams;   // by stream id
    std::set<std::string> m_UsedCertificates;
    long m_NextToken = 1;
    long m_NextListed = 1;
    int m_NextPass = 300001;
    int m_NextTransaction = 900001;
    long m_NextStream = 1;
};

}  // namespace lmsim

#endif  // LMSIM_ACCOUNTS_H
