#include "SimAccounts.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace lmsim {

namespace {

Outcome Fail(int code, const char* message) {
    Outcome out;
    out.Refuse(code, message);
    return out;
}

const char kNotAuthorisedText[] = "The device is not activated for an account";

// 32-bit FNV-1a: a short, stable fingerprint of a device id for its tokens.
uint32_t Fingerprint(const std::string& text) {
    uint32_t h = 2166136261u;
    for (unsigned char c : text) {
        h = (h ^ c) * 16777619u;
    }
    return h;
}

std::string DeviceName(const std::string& deviceId) {
    return "Lumora player " + deviceId;
}

std::string Email(const std::string& user) {
    return user.find('@') != std::string::npos ? user : user + "@example.com";
}

int TaxCents(int cents) {
    return (cents * AccountDefaults::kTaxPercent + 50) / 100;  // half a cent rounds up
}

bool Matches(const Title& title, int titleType) {
    return titleType == kAnyTitle || (titleType == kTvTitles && title.isTv) ||
           (titleType == kMovies && !title.isTv);
}

const Product* FindProduct(const Title* title, int skuId) {
    if (title == nullptr) {
        return nullptr;
    }
    for (const Product& p : title->products) {
        if (p.skuId == skuId) {
            return &p;
        }
    }
    return nullptr;
}

// The pass `passId` among an account's passes, or null.
template <class Passes>
auto FindPassIn(Passes& passes, int passId) -> decltype(&passes.front()) {
    for (auto& p : passes) {
        if (p.passId == passId) {
            return &p;
        }
    }
    return nullptr;
}

}  // namespace

SimAccounts::SimAccounts(const Catalogue& catalogue, Clock clock)
    : m_Catalogue(catalogue), m_Clock(clock ? std::move(clock) : [] { return time(nullptr); }) {}

// ---- Helpers (the lock is held) ----

const SimAccounts::Account* SimAccounts::AccountOf(const Caller& caller) const {
    auto device = m_Devices.find(caller.deviceId);
    if (caller.token.empty() || device == m_Devices.end() || device->second.token != caller.token) {
        return nullptr;
    }
    auto account = m_Accounts.find(device->second.user);
    return account != m_Accounts.end() ? &account->second : nullptr;
}

SimAccounts::Account* SimAccounts::AccountOf(const Caller& caller) {
    return const_cast<Account*>(static_cast<const SimAccounts*>(this)->AccountOf(caller));
}

// When a rental ends; 0 for a pass that never does.
time_t SimAccounts::Expiry(const Pass& pass) {
    const Product& product = *pass.product;
    return product.purchaseType == kRent && product.rentalPeriodHours > 0
               ? pass.purchased + static_cast<time_t>(product.rentalPeriodHours) * 3600
               : 0;
}

bool SimAccounts::InForce(const Pass& pass) const {
    const time_t expiry = Expiry(pass);
    return expiry == 0 || m_Clock() < expiry;
}

PassView SimAccounts::View(const Pass& pass) const {
    PassView v;
    v.passId = pass.passId;
    v.title = pass.title;
    v.product = pass.product;
    v.transactionId = pass.transactionId;
    v.authNum = pass.authNum;
    v.positionSeconds = pass.positionSeconds;
    v.playStatus = pass.playStatus;
    const time_t expiry = Expiry(pass);
    const time_t left = expiry != 0 ? expiry - m_Clock() : 0;
    v.expired = expiry != 0 && left <= 0;
    v.hoursRemaining = left > 0 ? static_cast<int>((left + 3599) / 3600) : 0;
    return v;
}

Outcome SimAccounts::Streamable(const Pass* pass, int fileProfile, int& profile) const {
    if (pass == nullptr) {
        return Fail(Code::kNotFound, "Unknown pass");
    }
    if (!InForce(*pass)) {
        return Fail(Code::kRentalExpired, "The rental has expired");
    }
    const std::vector<int>& offered = pass->product->fileProfiles;
    if (fileProfile == 0) {
        profile = offered.empty() ? 0 : offered.front();
    } else if (std::find(offered.begin(), offered.end(), fileProfile) != offered.end()) {
        profile = fileProfile;
    } else {
        return Fail(Code::kProfileNotOffered, "The product does not offer this file profile");
    }
    return Outcome();
}

// ---- Devices ----

Authorization SimAccounts::Authorize(const Caller& caller, int pin) {
    Authorization out;
    if (caller.deviceId.empty()) {
        out.Refuse(Code::kNoDeviceId, "The request names no device");
        return out;
    }
    if (pin != AccountDefaults::kActivationPin) {
        out.Refuse(Code::kWrongPin, "Wrong activation PIN");
        return out;
    }
    const std::string user = caller.user.empty() ? AccountDefaults::kDemoUser : caller.user;
    std::lock_guard<std::mutex> lock(m_Lock);
    auto created = m_Accounts.emplace(user, Account());
    Account& account = created.first->second;
    if (created.second) {
        account.user = user;
        account.password = caller.password;
        account.email = Email(user);
    }
    char token[48];
    snprintf(token, sizeof(token), "LMT-%08x-%06ld", Fingerprint(caller.deviceId), m_NextToken++);
    m_Devices[caller.deviceId] = Device{user, token};
    out.token = token;
    out.email = account.email;
    out.deviceId = caller.deviceId;
    out.deviceName = DeviceName(caller.deviceId);
    return out;
}

Outcome SimAccounts::Deactivate(const Caller& caller) {
    std::lock_guard<std::mutex> lock(m_Lock);
    if (AccountOf(caller) == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    m_Devices.erase(caller.deviceId);
    return Outcome();
}

bool SimAccounts::TokenValid(const Caller& caller) const {
    std::lock_guard<std::mutex> lock(m_Lock);
    return AccountOf(caller) != nullptr;
}

Outcome SimAccounts::Authorised(const Caller& caller) const {
    return TokenValid(caller) ? Outcome() : Fail(Code::kNotAuthorised, kNotAuthorisedText);
}

AccountInfo SimAccounts::Info(const Caller& caller) const {
    AccountInfo out;
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    if (account == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        return out;
    }
    out.user = account->user;
    out.email = account->email;
    out.deviceId = caller.deviceId;
    out.deviceName = DeviceName(caller.deviceId);
    out.ccLastFour = AccountDefaults::kCardLastFour;
    out.ccTypeId = AccountDefaults::kCardTypeId;
    out.ccType = AccountDefaults::kCardType;
    out.balanceCents = account->balanceCents;
    out.audioSetting = account->audioSetting;
    out.adultVerification = account->adultVerification;
    return out;
}

Outcome SimAccounts::SetAudioSetting(const Caller& caller, int setting) {
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    account->audioSetting = setting;
    return Outcome();
}

Outcome SimAccounts::AdultVerificationEnabled(const Caller& caller) const {
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    return account->adultVerification
               ? Outcome()
               : Fail(Code::kAdultVerificationOff, "Adult verification is not enabled");
}

PinCheck SimAccounts::CheckAdultPin(const Caller& caller, const std::string& pin) const {
    PinCheck out;
    std::lock_guard<std::mutex> lock(m_Lock);
    if (AccountOf(caller) == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        return out;
    }
    char expected[16];
    snprintf(expected, sizeof(expected), "%04d", AccountDefaults::kAdultPin);
    out.verified = pin == expected;
    return out;
}

// ---- Wishlist ----

Outcome SimAccounts::AddToWishlist(const Caller& caller, int titleId) {
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    if (m_Catalogue.FindTitle(titleId) == nullptr) {
        return Fail(Code::kNotFound, "Title not found");
    }
    std::vector<Listed>& list = account->wishlist;
    if (std::none_of(list.begin(), list.end(),
                     [titleId](const Listed& l) { return l.titleId == titleId; })) {
        list.push_back({titleId, m_NextListed++});
    }
    return Outcome();
}

Outcome SimAccounts::RemoveFromWishlist(const Caller& caller, int titleId) {
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    if (m_Catalogue.FindTitle(titleId) == nullptr) {
        return Fail(Code::kNotFound, "Title not found");
    }
    std::vector<Listed>& list = account->wishlist;
    list.erase(std::remove_if(list.begin(), list.end(),
                              [titleId](const Listed& l) { return l.titleId == titleId; }),
               list.end());
    return Outcome();
}

Outcome SimAccounts::ClearWishlist(const Caller& caller) {
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    account->wishlist.clear();
    return Outcome();
}

bool SimAccounts::InWishlist(const Caller& caller, int titleId) const {
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    return account != nullptr &&
           std::any_of(account->wishlist.begin(), account->wishlist.end(),
                       [titleId](const Listed& l) { return l.titleId == titleId; });
}

WishlistPage SimAccounts::Wishlist(const Caller& caller, int sortOrder, int page, int perPage,
                                   int titleType) const {
    WishlistPage out;
    out.sortOrder = sortOrder;
    std::vector<Listed> listed;
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        const Account* account = AccountOf(caller);
        if (account == nullptr) {
            out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
            out.page = Catalogue::Paginate({}, page, perPage);
            return out;
        }
        listed = account->wishlist;
    }
    std::vector<std::pair<const Title*, long>> titles;
    for (const Listed& l : listed) {
        const Title* t = m_Catalogue.FindTitle(l.titleId);
        if (t != nullptr && Matches(*t, titleType)) {
            titles.emplace_back(t, l.added);
        }
    }
    std::stable_sort(titles.begin(), titles.end(), [sortOrder](const auto& a, const auto& b) {
        if (sortOrder == 1) {
            return a.second < b.second;
        }
        if (sortOrder == 2) {
            return a.first->name < b.first->name;
        }
        return a.second > b.second;
    });
    std::vector<const Title*> sorted;
    for (const auto& t : titles) {
        sorted.push_back(t.first);
    }
    out.page = Catalogue::Paginate(sorted, page, perPage);
    return out;
}

// ---- Purchases ----

Purchase SimAccounts::Buy(const Caller& caller, int skuId, bool usePrepaid) {
    Purchase out;
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    const Title* title = m_Catalogue.FindBySku(skuId);
    const Product* product = FindProduct(title, skuId);
    const int price = product != nullptr ? Cents(product->price) : -1;
    if (account == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
    } else if (product == nullptr || price < 0) {
        out.Refuse(Code::kUnknownSku, "Unknown SKU");
    } else if (skuId == AccountDefaults::kDecliningSku) {
        out.Refuse(Code::kDeclined, "The payment was declined");
    } else if (std::any_of(account->passes.begin(), account->passes.end(), [&](const Pass& p) {
                   return p.product->skuId == skuId && InForce(p);
               })) {
        out.Refuse(Code::kAlreadyOwned, "A pass for this SKU is in force");
    } else if (usePrepaid && account->balanceCents < price + TaxCents(price)) {
        out.Refuse(Code::kInsufficientFunds, "Insufficient prepaid funds for this order");
    }
    if (!out.ok()) {
        return out;
    }
    if (usePrepaid) {
        account->balanceCents -= price + TaxCents(price);
    }
    Pass pass{m_NextPass++, title, product, m_Clock(), m_NextTransaction++, "", 0, 1, ""};
    char auth[32];
    snprintf(auth, sizeof(auth), "AUTH%06d", pass.transactionId % 1000000);
    pass.authNum = auth;
    account->passes.push_back(pass);
    std::vector<Listed>& list = account->wishlist;
    list.erase(std::remove_if(list.begin(), list.end(),
                              [title](const Listed& l) { return l.titleId == title->id; }),
               list.end());
    out.passId = pass.passId;
    out.transactionId = pass.transactionId;
    out.authNum = pass.authNum;
    return out;
}

Tax SimAccounts::OrderTax(const Caller& caller, int skuId) const {
    Tax out;
    static_cast<Outcome&>(out) = Authorised(caller);
    if (!out.ok()) {
        return out;
    }
    const Product* product = FindProduct(m_Catalogue.FindBySku(skuId), skuId);
    const int cents = product != nullptr ? Cents(product->price) : -1;
    if (cents < 0) {
        out.Refuse(Code::kTaxUnknownSku, "Unknown SKU");
        return out;
    }
    out.subTotal = Decimal(cents);
    out.tax = Decimal(TaxCents(cents));
    out.total = Decimal(cents + TaxCents(cents));
    return out;
}

Balance SimAccounts::RedeemGiftCertificate(const Caller& caller, const std::string& certificate) {
    Balance out;
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        return out;
    }
    const int value = GiftCertificateCents(certificate);
    if (value == 0) {
        out.Refuse(Code::kGiftInvalid, "Unknown gift certificate");
    } else if (!m_UsedCertificates.insert(certificate).second) {
        out.Refuse(Code::kGiftUsed, "The gift certificate was used");
    } else {
        account->balanceCents += value;
    }
    out.cents = account->balanceCents;
    return out;
}

PassPage SimAccounts::Passes(const Caller& caller, int page, int perPage, int purchaseType,
                             int titleType, int watchStatus) const {
    PassPage out;
    std::vector<PassView> all;
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        const Account* account = AccountOf(caller);
        if (account == nullptr) {
            out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        } else {
            for (auto p = account->passes.rbegin(); p != account->passes.rend(); ++p) {
                PassView v = View(*p);
                const bool rental = v.product->purchaseType == kRent;
                const bool wanted = watchStatus == 0   ? !v.expired
                                    : watchStatus == 1 ? rental && v.expired
                                    : watchStatus == 2 ? false
                                                       : true;
                if (wanted && Matches(*v.title, titleType) &&
                    (purchaseType == kAnyPurchase || v.product->purchaseType == purchaseType)) {
                    all.push_back(v);
                }
            }
        }
    }
    const Page frame = Catalogue::PageFrame(all.size(), page, perPage);
    out.currentPage = frame.currentPage;
    out.itemsPerPage = frame.itemsPerPage;
    out.totalItems = frame.totalItems;
    out.totalPages = frame.totalPages;
    const size_t begin = static_cast<size_t>(frame.currentPage - 1) * frame.itemsPerPage;
    for (size_t i = begin; i < all.size() && i < begin + frame.itemsPerPage; ++i) {
        out.passes.push_back(all[i]);
    }
    return out;
}

PassLookup SimAccounts::FindPass(const Caller& caller, int passId) const {
    PassLookup out;
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    if (account == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        return out;
    }
    const Pass* pass = FindPassIn(account->passes, passId);
    if (pass == nullptr) {
        out.Refuse(Code::kNotFound, "Unknown pass");
        return out;
    }
    out.pass = View(*pass);
    return out;
}

bool SimAccounts::OwnsTitle(const Caller& caller, int titleId) const {
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    return account != nullptr &&
           std::any_of(account->passes.begin(), account->passes.end(),
                       [&](const Pass& p) { return p.title->id == titleId && InForce(p); });
}

bool SimAccounts::OwnsSku(const Caller& caller, int skuId) const {
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    return account != nullptr &&
           std::any_of(account->passes.begin(), account->passes.end(),
                       [&](const Pass& p) { return p.product->skuId == skuId && InForce(p); });
}

Outcome SimAccounts::RemoveAllPurchases(const Caller& caller, const std::string& password) {
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    if (password != account->password) {
        return Fail(Code::kWrongPassword, "Wrong password");
    }
    account->passes.clear();
    for (auto s = m_Streams.begin(); s != m_Streams.end();) {
        s = s->second.user == account->user ? m_Streams.erase(s) : std::next(s);
    }
    return Outcome();
}

// ---- Streaming ----

Stream SimAccounts::StartStream(const Caller& caller, int passId, int fileProfile) {
    Stream out;
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        return out;
    }
    Pass* pass = FindPassIn(account->passes, passId);
    static_cast<Outcome&>(out) = Streamable(pass, fileProfile, out.fileProfile);
    if (!out.ok()) {
        return out;
    }
    char id[32];
    snprintf(id, sizeof(id), "STR-%06ld", m_NextStream++);
    m_Streams[id] = Session{account->user, passId};
    pass->lastStream = id;
    out.streamId = id;
    out.pass = View(*pass);
    return out;
}

Stream SimAccounts::LastStream(const Caller& caller, int passId, int fileProfile) const {
    Stream out;
    std::lock_guard<std::mutex> lock(m_Lock);
    const Account* account = AccountOf(caller);
    if (account == nullptr) {
        out.Refuse(Code::kNotAuthorised, kNotAuthorisedText);
        return out;
    }
    const Pass* pass = FindPassIn(account->passes, passId);
    static_cast<Outcome&>(out) = Streamable(pass, fileProfile, out.fileProfile);
    if (out.ok()) {
        out.streamId = pass->lastStream;
        out.pass = View(*pass);
    }
    return out;
}

Outcome SimAccounts::ReportStream(const Caller& caller, const std::string& streamId, int playStatus,
                                  int stopSeconds) {
    std::lock_guard<std::mutex> lock(m_Lock);
    Account* account = AccountOf(caller);
    if (account == nullptr) {
        return Fail(Code::kNotAuthorised, kNotAuthorisedText);
    }
    auto session = m_Streams.find(streamId);
    if (session == m_Streams.end() || session->second.user != account->user) {
        return Fail(Code::kNotFound, "Unknown stream");
    }
    if (stopSeconds < 0) {
        return Fail(Code::kBadStopTime, "The stop time is negative");
    }
    if (Pass* pass = FindPassIn(account->passes, session->second.passId)) {
        pass->positionSeconds = stopSeconds;
        pass->playStatus = playStatus;
    }
    return Outcome();
}

// ---- Money ----

int SimAccounts::Cents(const std::string& price) {
    size_t dot = price.find('.');
    const std::string whole = price.substr(0, dot);
    const std::string fraction = dot == std::string::npos ? "" : price.substr(dot + 1);
    auto digits = [](const std::string& s) {
        return std::all_of(s.begin(), s.end(), [](unsigned char c) { return std::isdigit(c); });
    };
    if (whole.empty() || whole.size() > 7 || fraction.size() > 2 || !digits(whole) ||
        !digits(fraction) || (dot != std::string::npos && fraction.empty())) {
        return -1;
    }
    int cents = atoi(whole.c_str()) * 100;
    if (!fraction.empty()) {
        cents += atoi(fraction.c_str()) * (fraction.size() == 1 ? 10 : 1);
    }
    return cents;
}

std::string SimAccounts::Decimal(int cents) {
    char text[32];
    snprintf(text, sizeof(text), "%d.%02d", cents / 100, cents % 100);
    return text;
}

int SimAccounts::GiftCertificateCents(const std::string& certificate) {
    const std::string prefix = "GIFT-";
    if (certificate.compare(0, prefix.size(), prefix) != 0) {
        return 0;
    }
    const size_t dash = certificate.find('-', prefix.size());
    if (dash == std::string::npos || dash == prefix.size() || dash + 1 >= certificate.size()) {
        return 0;
    }
    const std::string amount = certificate.substr(prefix.size(), dash - prefix.size());
    if (amount.size() > 7 || !std::all_of(amount.begin(), amount.end(),
                                          [](unsigned char c) { return std::isdigit(c); })) {
        return 0;
    }
    const int cents = atoi(amount.c_str());
    return cents <= AccountDefaults::kGiftCentsLimit ? cents : 0;
}

}  // namespace lmsim
