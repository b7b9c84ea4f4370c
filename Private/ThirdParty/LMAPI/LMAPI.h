// clang-format off
// The Lumora service description: the message vocabulary of namespace LM1 and the three SOAP 1.2
// document/literal services (DownloadAPI, RealTimeBrowse, StreamAPI), written in the interface
// header notation of gSOAP's soapcpp2. The build generates from it the serializers, the proxies
// <binding>Proxy, the server-side <binding>Service classes, the WSDL and the XSD files.
// Nothing generated from this file is committed.
//
// Notation reminders: "LM1__X" is the complex type LM1:X, "_LM1__x" the global element LM1:x (the
// request and response wrappers); "@" marks an attribute; the number after a member is its
// minOccurs (0 for optional text and for complex members, which are held by pointer, 1 for
// numbers, booleans and enumerations); "int __sizeX; T* X" is an array of any length; "_USCORE"
// in an identifier is an underscore on the wire.
//
// The schema host (www.lumora.example) is part of the namespace URIs and SOAP actions and never
// changes with the deployment; endpoints do (the "service port" lines below are only the
// defaults a proxy uses when its soap_endpoint is not set).

// Namespaces. Each binding has a prefix of its own so that one generated serializer set serves
// three proxy classes; LM1 is the schema of every message element and type, LM5 names a binding
// the client has no proxy for.
//gsoap LM2 schema namespace: http://www.lumora.example/api/StreamAPISoap12
//gsoap LM3 schema namespace: http://www.lumora.example/api/RealTimeBrowseSoap12
//gsoap LM4 schema namespace: http://www.lumora.example/api/DownloadAPISoap12
//gsoap LM1 schema namespace: http://www.lumora.example/api/
//gsoap LM1 schema elementForm: qualified
//gsoap LM1 schema attributeForm: unqualified
//gsoap LM5 schema namespace: http://www.lumora.example/api/DownloadAuthenticateSoap12

// WS-Security first, then WS-Addressing 2004/08: their header members are written in this order.
#import "wsse.h"
#import "wsa.h"
// xsd__anyAttribute (DOM attribute list) for the open attribute sets of the device headers.
#import "dom.h"

// Prices are xsd:decimal on the wire and are kept as text, never converted to binary numbers.
typedef char* xsd__decimal;

// Enumerations: written as their value names; the number is the value held in memory. The
// DRMType names are the content-protection formats the download service knows.

/// LM1:PurchaseType
enum LM1__PurchaseType {
    LM1__PurchaseType__rent = 0,
    LM1__PurchaseType__buy = 1,
    LM1__PurchaseType__any = 2,
};

/// LM1:TitleType
enum LM1__TitleType {
    LM1__TitleType__any = 0,
    LM1__TitleType__tv = 1,
    LM1__TitleType__movies = 2,
};

/// LM1:WatchStatusFilter
enum LM1__WatchStatusFilter {
    LM1__WatchStatusFilter__WatchNow = 0,
    LM1__WatchStatusFilter__RentAgain = 1,
    LM1__WatchStatusFilter__NotAvailable = 2,
    LM1__WatchStatusFilter__Undefined = 3,
};

/// LM1:FileProfile
enum LM1__FileProfile {
    LM1__FileProfile__UNKNOWN = 0,
    LM1__FileProfile__STANDARD = 1,
    LM1__FileProfile__HIGH_USCOREDEFINITION = 2,
    LM1__FileProfile__PORTABLE = 3,
    LM1__FileProfile__PORTABLE_USCORESTANDARD = 4,
    LM1__FileProfile__TEMP5 = 5,
    LM1__FileProfile__PORTABLE_USCOREWIDE = 6,
    LM1__FileProfile__STANDARD_USCOREDEFINITION_USCORE3D = 7,
    LM1__FileProfile__HIGH_USCOREDEFINITION_USCORE3D = 8,
    LM1__FileProfile__STANDARD_USCOREDEFINITION_USCOREREALD_USCORE3D = 9,
    LM1__FileProfile__HIGH_USCOREDEFINITION_USCOREREALD_USCORE3D = 10,
};

/// LM1:BonusAssetType
enum LM1__BonusAssetType {
    LM1__BonusAssetType__Trailer = 0,
};

/// LM1:AudioSetting
enum LM1__AudioSetting {
    LM1__AudioSetting__Stereo_USCOREStandard = 0,
    LM1__AudioSetting__Dolby_USCOREStereo_USCOREAC3 = 1,
    LM1__AudioSetting__Dolby_USCOREDigital_USCOREPlus_USCOREStereo = 2,
    LM1__AudioSetting__Dolby_USCOREDigital_USCOREPlus_USCORE51 = 3,
    LM1__AudioSetting__DTS_USCOREExpress_USCOREStereo = 4,
    LM1__AudioSetting__DTS_USCOREExpress_USCORE51 = 5,
};

/// LM1:PlayStatus
enum LM1__PlayStatus {
    LM1__PlayStatus__play = 0,
    LM1__PlayStatus__stopped = 1,
    LM1__PlayStatus__paused = 2,
    LM1__PlayStatus__resumeplay = 3,
    LM1__PlayStatus__errorinplayback = 4,
};

/// LM1:AccessType
enum LM1__AccessType {
    LM1__AccessType__UNKNOWN = 0,
    LM1__AccessType__DOWNLOAD = 1,
    LM1__AccessType__STREAM = 2,
};

/// LM1:VideoFormat
enum LM1__VideoFormat {
    LM1__VideoFormat__UNKNOWN = 0,
    LM1__VideoFormat__WMV9 = 1,
    LM1__VideoFormat__MPEG2_USCORERECBOX = 2,
    LM1__VideoFormat__MPEG2_USCOREStandard = 3,
    LM1__VideoFormat__VC1 = 4,
    LM1__VideoFormat__DIVX = 5,
    LM1__VideoFormat__H264 = 6,
    LM1__VideoFormat__FLUX = 7,
};

/// LM1:FileExtension
enum LM1__FileExtension {
    LM1__FileExtension__AUTOPOPULATE = 0,
    LM1__FileExtension__UNKNOWN = 1,
    LM1__FileExtension__WMV = 2,
    LM1__FileExtension__MPEG = 3,
    LM1__FileExtension__MP4 = 4,
    LM1__FileExtension__FLUX = 5,
    LM1__FileExtension__AVI = 6,
    LM1__FileExtension__QT = 7,
    LM1__FileExtension__FLV = 8,
    LM1__FileExtension__RM = 9,
    LM1__FileExtension__DIVX = 10,
};

/// LM1:DRMType
enum LM1__DRMType {
    LM1__DRMType__UNKNOWN = 0,
    LM1__DRMType__WMDRM10 = 1,
    LM1__DRMType__WMDRM_USCOREPD = 2,
    LM1__DRMType__PLAYREADY = 3,
    LM1__DRMType__PLAYREADY_USCOREND = 4,
    LM1__DRMType__WIDEVINE = 5,
    LM1__DRMType__MARLIN_USCOREBB = 6,
    LM1__DRMType__MARLIN_USCOREMS3 = 7,
    LM1__DRMType__FAIRPLAY = 8,
    LM1__DRMType__OMA_USCOREDRM2 = 9,
    LM1__DRMType__AACS = 10,
    LM1__DRMType__CPRM = 11,
};

// Complex types of LM1, elements in wire order.
class LM1__AlternateFile;
class LM1__ArrayOfAlternateFile;
class LM1__ArrayOfAudioFile;
class LM1__ArrayOfBonusAsset;
class LM1__ArrayOfConfigurationItemOfString;
class LM1__ArrayOfContentitem;
class LM1__ArrayOfFileProfile;
class LM1__ArrayOfGenre;
class LM1__ArrayOfGetLicenseCountResponse;
class LM1__ArrayOfGetMyVideosResponse;
class LM1__ArrayOfGetTitlesResponse;
class LM1__ArrayOfImageInfo;
class LM1__ArrayOfInt;
class LM1__ArrayOfProductListing;
class LM1__ArrayOfTitleListing;
class LM1__ArrayOfTitleListingPurchased;
class LM1__ArrayOfTitleListingPurchasedForPass;
class LM1__ArrayOfTitleListingPurchased_USCOREIncludeShortDesc;
class LM1__ArrayOfTitleListingResponse;
class LM1__ArrayOfTitleListing_USCOREIncludeShortDesc;
class LM1__ArrayOfTvEpisode;
class LM1__AssignPassToDownloadDestinationResponse;
class LM1__AudioFile;
class LM1__AudioInfo;
class LM1__AuthorizeDeviceResponse;
class LM1__BillingInfoAndPPCBalanceResponse;
class LM1__BillingInfoResponse;
class LM1__BonusAsset;
class LM1__CalcOrderTaxResponse;
class LM1__CheckAdultVerificationEnabledResponse;
class LM1__CheckAdultVerificationPinResponse;
class LM1__CheckRentalExpirationResponse;
class LM1__ConfigurationItemOfString;
class LM1__DeviceSettings;
class LM1__DownloadDeviceRequestSettings;
class LM1__DownloadInfo;
class LM1__FileData;
class LM1__FileInfo;
class LM1__FileType;
class LM1__Genre;
class LM1__GenreRequest;
class LM1__GetConfigResponse;
class LM1__GetEmailAddressResponse;
class LM1__GetGenreLabelResponse;
class LM1__GetLicenseCountResponse;
class LM1__GetMyVideosResponse;
class LM1__GetMyVideosResponse_USCOREIncludeShortDesc;
class LM1__GetStreamingAssetLocationResponse;
class LM1__GetTitlesResponse;
class LM1__GetTitlesResponse_USCOREIncludeShortDesc;
class LM1__GetWishlistItemsResponse;
class LM1__GiftCertificateResponse;
class LM1__ImageInfo;
class LM1__LicenseInfo;
class LM1__ListDownloadsAwaitingDeliveryByDeviceResponse;
class LM1__MetaDataInfo;
class LM1__PPCardBalanceResponse;
class LM1__PassInfo;
class LM1__ProductListing;
class LM1__PurchaseResponse;
class LM1__RecommendedTitlesResponse;
class LM1__ReportDownloadStatusResponse;
class LM1__SettingsPageInfo;
class LM1__SkuData;
class LM1__StandardResponse;
class LM1__StreamDeviceRequestSettings;
class LM1__THXMediaDirectorResponse;
class LM1__TitleData;
class LM1__TitleInfo;
class LM1__TitleListing;
class LM1__TitleListingPurchased;
class LM1__TitleListingPurchasedForPass;
class LM1__TitleListingPurchased_USCOREIncludeShortDesc;
class LM1__TitleListingResponse;
class LM1__TitleListing_USCOREIncludeShortDesc;
class LM1__TitleRulesInfo;
class LM1__TranslateSkuIdResponse;
class LM1__TranslatedRecboxExternalIdResponse;
class LM1__TvEpisode;
class LM1__TvEpisodeList;
class LM1__URLForStreamingFileResponse;
class LM1__WishListActionResponse;
class LM1__contentitem;

/// LM1:AlternateFile
class LM1__AlternateFile {
public:
    int AssetID 1;
    char* DownloadURL 0;
    int CDNID 1;
    char* LicenseURL 0;
    char* CustomData 0;
    LM1__FileType* FileProperties 0;
    struct soap* soap;
};

/// LM1:ArrayOfAlternateFile: any number of "AlternateFile" elements
class LM1__ArrayOfAlternateFile {
public:
    int __sizeAlternateFile;
    LM1__AlternateFile** AlternateFile 0;
    struct soap* soap;
};

/// LM1:ArrayOfAudioFile: any number of "AudioFile" elements
class LM1__ArrayOfAudioFile {
public:
    int __sizeAudioFile;
    LM1__AudioFile** AudioFile 0;
    struct soap* soap;
};

/// LM1:ArrayOfBonusAsset: any number of "BonusAsset" elements
class LM1__ArrayOfBonusAsset {
public:
    int __sizeBonusAsset;
    LM1__BonusAsset** BonusAsset 0;
    struct soap* soap;
};

/// LM1:ArrayOfConfigurationItemOfString: any number of "Configuration" elements
class LM1__ArrayOfConfigurationItemOfString {
public:
    int __sizeConfiguration;
    LM1__ConfigurationItemOfString** Configuration 0;
    struct soap* soap;
};

/// LM1:ArrayOfContentitem: any number of "contentitem" elements
class LM1__ArrayOfContentitem {
public:
    int __sizecontentitem;
    LM1__contentitem** contentitem 0;
    struct soap* soap;
};

/// LM1:ArrayOfFileProfile: any number of "FileProfile" elements
class LM1__ArrayOfFileProfile {
public:
    int __sizeFileProfile;
    enum LM1__FileProfile* FileProfile 0;
    struct soap* soap;
};

/// LM1:ArrayOfGenre: any number of "Genre" elements
class LM1__ArrayOfGenre {
public:
    int __sizeGenre;
    LM1__Genre** Genre 0;
    struct soap* soap;
};

/// LM1:ArrayOfGetLicenseCountResponse: any number of "GetLicenseCountResponse" elements
class LM1__ArrayOfGetLicenseCountResponse {
public:
    int __sizeGetLicenseCountResponse;
    LM1__GetLicenseCountResponse** GetLicenseCountResponse 0;
    struct soap* soap;
};

/// LM1:ArrayOfGetMyVideosResponse: any number of "GetMyVideosResponse" elements
class LM1__ArrayOfGetMyVideosResponse {
public:
    int __sizeGetMyVideosResponse;
    LM1__GetMyVideosResponse** GetMyVideosResponse 0;
    struct soap* soap;
};

/// LM1:ArrayOfGetTitlesResponse: any number of "GetTitlesResponse" elements
class LM1__ArrayOfGetTitlesResponse {
public:
    int __sizeGetTitlesResponse;
    LM1__GetTitlesResponse** GetTitlesResponse 0;
    struct soap* soap;
};

/// LM1:ArrayOfImageInfo: any number of "image" elements
class LM1__ArrayOfImageInfo {
public:
    int __sizeimage;
    LM1__ImageInfo** image 0;
    struct soap* soap;
};

/// LM1:ArrayOfInt: any number of "int" elements
class LM1__ArrayOfInt {
public:
    int __sizeint;
    int* int_ 0;
    struct soap* soap;
};

/// LM1:ArrayOfProductListing: any number of "ProductListing" elements
class LM1__ArrayOfProductListing {
public:
    int __sizeProductListing;
    LM1__ProductListing** ProductListing 0;
    struct soap* soap;
};

/// LM1:ArrayOfTitleListing: any number of "TitleListing" elements
class LM1__ArrayOfTitleListing {
public:
    int __sizeTitleListing;
    LM1__TitleListing** TitleListing 0;
    struct soap* soap;
};

/// LM1:ArrayOfTitleListingPurchased: any number of "TitleListingPurchased" elements
class LM1__ArrayOfTitleListingPurchased {
public:
    int __sizeTitleListingPurchased;
    LM1__TitleListingPurchased** TitleListingPurchased 0;
    struct soap* soap;
};

/// LM1:ArrayOfTitleListingPurchasedForPass: any number of "TitleListingPurchasedForPass" elements
class LM1__ArrayOfTitleListingPurchasedForPass {
public:
    int __sizeTitleListingPurchasedForPass;
    LM1__TitleListingPurchasedForPass** TitleListingPurchasedForPass 0;
    struct soap* soap;
};

/// LM1:ArrayOfTitleListingPurchased_IncludeShortDesc: any number of "TitleListingPurchased_IncludeShortDesc" elements
class LM1__ArrayOfTitleListingPurchased_USCOREIncludeShortDesc {
public:
    int __sizeTitleListingPurchased_USCOREIncludeShortDesc;
    LM1__TitleListingPurchased_USCOREIncludeShortDesc** TitleListingPurchased_USCOREIncludeShortDesc 0;
    struct soap* soap;
};

/// LM1:ArrayOfTitleListingResponse: any number of "TitleListingResponse" elements
class LM1__ArrayOfTitleListingResponse {
public:
    int __sizeTitleListingResponse;
    LM1__TitleListingResponse** TitleListingResponse 0;
    struct soap* soap;
};

/// LM1:ArrayOfTitleListing_IncludeShortDesc: any number of "TitleListing_IncludeShortDesc" elements
class LM1__ArrayOfTitleListing_USCOREIncludeShortDesc {
public:
    int __sizeTitleListing_USCOREIncludeShortDesc;
    LM1__TitleListing_USCOREIncludeShortDesc** TitleListing_USCOREIncludeShortDesc 0;
    struct soap* soap;
};

/// LM1:ArrayOfTvEpisode: any number of "TvEpisode" elements
class LM1__ArrayOfTvEpisode {
public:
    int __sizeTvEpisode;
    LM1__TvEpisode** TvEpisode 0;
    struct soap* soap;
};

/// LM1:AssignPassToDownloadDestinationResponse
class LM1__AssignPassToDownloadDestinationResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int DownloadDestinationID 1;
    int DownloadQueueID 1;
    int SKUID 1;
    int PurchaseQueueID 1;
    int TotalLicenses 1;
    int TotalDownloads 1;
    struct soap* soap;
};

/// LM1:AudioFile
class LM1__AudioFile {
public:
    int AssetAudioID 1;
    char* FileLocation 0;
    bool ContainsVideo 1;
    enum LM1__AudioSetting AudioAssetProfile 1;
    struct soap* soap;
};

/// LM1:AudioInfo
class LM1__AudioInfo {
public:
    @char* url 0;
    @char* filename 0;
    @char* crc 0;
    struct soap* soap;
};

/// LM1:AuthorizeDeviceResponse
class LM1__AuthorizeDeviceResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* AuthToken 0;
    char* EmailAddress 0;
    char* DeviceID 0;
    char* DeviceName 0;
    struct soap* soap;
};

/// LM1:BillingInfoAndPPCBalanceResponse
class LM1__BillingInfoAndPPCBalanceResponse {
public:
    LM1__BillingInfoResponse* BillingInfo 0;
    LM1__PPCardBalanceResponse* PPCardBalance 0;
    struct soap* soap;
};

/// LM1:BillingInfoResponse
class LM1__BillingInfoResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* CCLastFour 0;
    int CCTypeId 1;
    char* CCType 0;
    struct soap* soap;
};

/// LM1:BonusAsset
class LM1__BonusAsset {
public:
    @int BonusAssetID 1;
    @enum LM1__FileProfile Profile 1;
    @enum LM1__BonusAssetType BonusType 1;
    struct soap* soap;
};

/// LM1:CalcOrderTaxResponse
class LM1__CalcOrderTaxResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    xsd__decimal SubTotal 1;
    xsd__decimal TotalPrice 1;
    xsd__decimal Tax 1;
    struct soap* soap;
};

/// LM1:CheckAdultVerificationEnabledResponse
class LM1__CheckAdultVerificationEnabledResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    struct soap* soap;
};

/// LM1:CheckAdultVerificationPinResponse
class LM1__CheckAdultVerificationPinResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    bool IsPinVerified 1;
    struct soap* soap;
};

/// LM1:CheckRentalExpirationResponse
class LM1__CheckRentalExpirationResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    bool ShouldDisplay 1;
    int HoursRemaining 1;
    struct soap* soap;
};

/// LM1:ConfigurationItemOfString
class LM1__ConfigurationItemOfString {
public:
    @char* Key 0;
    char* Value 0;
    struct soap* soap;
};

/// LM1:DeviceSettings
class LM1__DeviceSettings {
public:
    @xsd__anyAttribute __anyAttribute;  // open attribute set, kept as read
    char* APIKey 0;
    char* DestinationUniqueID 0;
    int DestinationTypeID 1;
    char* AuthToken 0;
    struct soap* soap;
};

/// LM1:DownloadDeviceRequestSettings
class LM1__DownloadDeviceRequestSettings {
public:
    @xsd__anyAttribute __anyAttribute;  // open attribute set, kept as read
    char* APIKey 0;
    char* DestinationUniqueID 0;
    int DestinationTypeID 1;
    char* AuthToken 0;
    struct soap* soap;
};

/// LM1:DownloadInfo
class LM1__DownloadInfo {
public:
    @char* url 0;
    struct soap* soap;
};

/// LM1:FileData
class LM1__FileData {
public:
    @char* filename 0;
    @char* pid 0;
    @char* bitrate 0;
    @char* audiobitrate 0;
    @char* device 0;
    @char* titleid 0;
    LM1__DownloadInfo* dl 0;
    LM1__AudioInfo* audio 0;
    int burn 1;
    int IntelMV 1;
    struct soap* soap;
};

/// LM1:FileInfo
class LM1__FileInfo {
public:
    LM1__FileData* file 0;
    LM1__LicenseInfo* license 0;
    char* renewurl 0;
    char* purchaseurl 0;
    char* ReportAProblemURL 0;
    char* StoreURL 0;
    char* friendlystorename 0;
    struct soap* soap;
};

/// LM1:FileType
class LM1__FileType {
public:
    enum LM1__DRMType File_USCOREDRMProvider 1;
    enum LM1__AccessType File_USCOREAccessType 1;
    enum LM1__FileProfile File_USCOREFileProfile 1;
    enum LM1__VideoFormat File_USCOREVideoFormat 1;
    enum LM1__FileExtension File_USCOREFileExtension 1;
    struct soap* soap;
};

/// LM1:Genre
class LM1__Genre {
public:
    int ID 1;
    char* Name 0;
    bool Visible 1;
    int ParentId 1;
    struct soap* soap;
};

/// LM1:GenreRequest
class LM1__GenreRequest {
public:
    LM1__ArrayOfGenre* Genres 0;
    struct soap* soap;
};

/// LM1:GetConfigResponse
class LM1__GetConfigResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfConfigurationItemOfString* ConfigurationSet 0;
    struct soap* soap;
};

/// LM1:GetEmailAddressResponse
class LM1__GetEmailAddressResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* EmailAddress 0;
    struct soap* soap;
};

/// LM1:GetGenreLabelResponse
class LM1__GetGenreLabelResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* Label 0;
    char* LabelMessage 0;
    struct soap* soap;
};

/// LM1:GetLicenseCountResponse
class LM1__GetLicenseCountResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int TotalLicenses 1;
    int LicensesUsed 1;
    int LicensesRemaining 1;
    int PassID 1;
    struct soap* soap;
};

/// LM1:GetMyVideosResponse
class LM1__GetMyVideosResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfTitleListingPurchased* Titles 0;
    short CurrentPageNumber 1;
    short ItemsPerPage 1;
    short TotalPages 1;
    short TotalItems 1;
    struct soap* soap;
};

/// LM1:GetMyVideosResponse_IncludeShortDesc
class LM1__GetMyVideosResponse_USCOREIncludeShortDesc {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfTitleListingPurchased_USCOREIncludeShortDesc* Titles 0;
    short CurrentPageNumber 1;
    short ItemsPerPage 1;
    short TotalPages 1;
    short TotalItems 1;
    struct soap* soap;
};

/// LM1:GetStreamingAssetLocationResponse
class LM1__GetStreamingAssetLocationResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* StreamingAssetLocation 0;
    int AssetID 1;
    char* StreamID 0;
    char* DRMServerURL 0;
    char* DRMACKServerURL 0;
    enum LM1__PlayStatus Status 1;
    int StartTimeSeconds 1;
    char* HeartbeatURL 0;
    int HeartbeatPollInSeconds 1;
    struct soap* soap;
};

/// LM1:GetTitlesResponse
class LM1__GetTitlesResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int GenreID 1;
    short CurrentPageNumber 1;
    short ItemsPerPage 1;
    short TotalPages 1;
    short TotalItems 1;
    LM1__ArrayOfTitleListing* Titles 0;
    struct soap* soap;
};

/// LM1:GetTitlesResponse_IncludeShortDesc
class LM1__GetTitlesResponse_USCOREIncludeShortDesc {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int GenreID 1;
    short CurrentPageNumber 1;
    short ItemsPerPage 1;
    short TotalPages 1;
    short TotalItems 1;
    LM1__ArrayOfTitleListing_USCOREIncludeShortDesc* Titles 0;
    struct soap* soap;
};

/// LM1:GetWishlistItemsResponse
class LM1__GetWishlistItemsResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfTitleListingPurchased* Titles 0;
    short CurrentPageNumber 1;
    short ItemsPerPage 1;
    short TotalPages 1;
    short TotalItems 1;
    int SortOrder 1;
    struct soap* soap;
};

/// LM1:GiftCertificateResponse
class LM1__GiftCertificateResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int Balance 1;
    struct soap* soap;
};

/// LM1:ImageInfo
class LM1__ImageInfo {
public:
    @char* url 0;
    @char* sx 0;
    @char* target 0;
    struct soap* soap;
};

/// LM1:LicenseInfo
class LM1__LicenseInfo {
public:
    char* url 0;
    char* customData 0;
    struct soap* soap;
};

/// LM1:ListDownloadsAwaitingDeliveryByDeviceResponse
class LM1__ListDownloadsAwaitingDeliveryByDeviceResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfContentitem* ContentItems 0;
    struct soap* soap;
};

/// LM1:MetaDataInfo
class LM1__MetaDataInfo {
public:
    @char* version 0;
    char* titletype 0;
    char* name 0;
    char* descshort 0;
    char* desclong 0;
    char* boxart 0;
    char* rating 0;
    char* clipauthor 0;
    char* keywords 0;
    char* copyright 0;
    char* userrating 0;
    char* runtime 0;
    char* releasedate 0;
    char* aspectratio 0;
    char* genre 0;
    char* directors 0;
    char* actors 0;
    char* producers 0;
    char* writers 0;
    struct soap* soap;
};

/// LM1:PPCardBalanceResponse
class LM1__PPCardBalanceResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int Balance 1;
    struct soap* soap;
};

/// LM1:PassInfo
class LM1__PassInfo {
public:
    @char* pid 0;
    LM1__SkuData* sku 0;
    char* firstplay 0;
    int amtofunits 1;
    char* unit 0;
    int type 1;
    int autodelete 1;
    int LicAvailableCSSBurn 1;
    struct soap* soap;
};

/// LM1:ProductListing
class LM1__ProductListing {
public:
    int SkuID 1;
    enum LM1__PurchaseType PurchaseType 1;
    xsd__decimal Price 1;
    LM1__ArrayOfFileProfile* AvailableAssets 0;
    char* ExpireDate 0;
    LM1__ArrayOfAudioFile* AvailableAudioProfiles 0;
    int RentalPeriod 1;
    struct soap* soap;
};

/// LM1:PurchaseResponse
class LM1__PurchaseResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int PassID 1;
    int TransactionId 1;
    char* TransactionAuthNum 0;
    struct soap* soap;
};

/// LM1:RecommendedTitlesResponse
class LM1__RecommendedTitlesResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfTitleListing* Titles 0;
    struct soap* soap;
};

/// LM1:ReportDownloadStatusResponse
class LM1__ReportDownloadStatusResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    struct soap* soap;
};

/// LM1:SettingsPageInfo
class LM1__SettingsPageInfo {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* Account 0;
    char* DeviceID 0;
    char* DeviceName 0;
    struct soap* soap;
};

/// LM1:SkuData
class LM1__SkuData {
public:
    @char* skuid 0;
    LM1__TitleData* title 0;
    int dqid 1;
    struct soap* soap;
};

/// LM1:StandardResponse
class LM1__StandardResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    struct soap* soap;
};

/// LM1:StreamDeviceRequestSettings
class LM1__StreamDeviceRequestSettings {
public:
    @xsd__anyAttribute __anyAttribute;  // open attribute set, kept as read
    char* APIKey 0;
    char* DestinationUniqueID 0;
    int DestinationTypeID 1;
    char* AuthToken 0;
    struct soap* soap;
};

/// LM1:THXMediaDirectorResponse
class LM1__THXMediaDirectorResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* LongFormat 0;
    char* ShortFormat 0;
    struct soap* soap;
};

/// LM1:TitleData
class LM1__TitleData {
public:
    @char* titleid 0;
    struct soap* soap;
};

/// LM1:TitleInfo
class LM1__TitleInfo {
public:
    @char* titleid 0;
    LM1__MetaDataInfo* metadata 0;
    LM1__ArrayOfImageInfo* files 0;
    LM1__TitleRulesInfo* titlerules 0;
    struct soap* soap;
};

/// LM1:TitleListing
class LM1__TitleListing {
public:
    int TitleID 1;
    char* TitleName 0;
    char* BoxArtPrefix 0;
    short TitlePosition 1;
    int EpisodeNumber 1;
    LM1__ArrayOfBonusAsset* BonusAssets 0;
    bool IsTvListing 1;
    char* MPAARating 0;
    LM1__ArrayOfProductListing* AvailableProducts 0;
    bool IsTHXMediaDirectorEnabled 1;
    bool IsTHXMediaDirectorEnabledForTrailer 1;
    char* CHVRSRating 0;
    char* LoyaltyPointsForBuy 0;
    char* LoyaltyPointsForRent 0;
    struct soap* soap;
};

/// LM1:TitleListingPurchased
class LM1__TitleListingPurchased {
public:
    int TitleID 1;
    char* TitleName 0;
    char* BoxArtPrefix 0;
    short TitlePosition 1;
    int EpisodeNumber 1;
    LM1__ArrayOfBonusAsset* BonusAssets 0;
    bool IsTvListing 1;
    char* MPAARating 0;
    LM1__ArrayOfProductListing* AvailableProducts 0;
    bool IsTHXMediaDirectorEnabled 1;
    bool IsTHXMediaDirectorEnabledForTrailer 1;
    char* CHVRSRating 0;
    char* LoyaltyPointsForBuy 0;
    char* LoyaltyPointsForRent 0;
    int EpisodeID 1;
    int TvListingTitleID 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__WatchStatusFilter Status 1;
    char* RentalPeriod 0;
    int PassID 1;
    enum LM1__PlayStatus PlayStatus 1;
    int StartTimeSeconds 1;
    struct soap* soap;
};

/// LM1:TitleListingPurchasedForPass
class LM1__TitleListingPurchasedForPass {
public:
    int TitleID 1;
    char* TitleName 0;
    char* BoxArtPrefix 0;
    short TitlePosition 1;
    int EpisodeNumber 1;
    LM1__ArrayOfBonusAsset* BonusAssets 0;
    bool IsTvListing 1;
    char* MPAARating 0;
    LM1__ArrayOfProductListing* AvailableProducts 0;
    bool IsTHXMediaDirectorEnabled 1;
    bool IsTHXMediaDirectorEnabledForTrailer 1;
    char* CHVRSRating 0;
    char* LoyaltyPointsForBuy 0;
    char* LoyaltyPointsForRent 0;
    int EpisodeID 1;
    int TvListingTitleID 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__WatchStatusFilter Status 1;
    char* RentalPeriod 0;
    int PassID 1;
    enum LM1__PlayStatus PlayStatus 1;
    int StartTimeSeconds 1;
    int ResponseCode 1;
    char* ResponseMessage 0;
    struct soap* soap;
};

/// LM1:TitleListingPurchased_IncludeShortDesc
class LM1__TitleListingPurchased_USCOREIncludeShortDesc {
public:
    int TitleID 1;
    char* TitleName 0;
    char* BoxArtPrefix 0;
    short TitlePosition 1;
    int EpisodeNumber 1;
    LM1__ArrayOfBonusAsset* BonusAssets 0;
    bool IsTvListing 1;
    char* MPAARating 0;
    LM1__ArrayOfProductListing* AvailableProducts 0;
    bool IsTHXMediaDirectorEnabled 1;
    bool IsTHXMediaDirectorEnabledForTrailer 1;
    char* CHVRSRating 0;
    char* LoyaltyPointsForBuy 0;
    char* LoyaltyPointsForRent 0;
    int EpisodeID 1;
    int TvListingTitleID 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__WatchStatusFilter Status 1;
    char* RentalPeriod 0;
    int PassID 1;
    enum LM1__PlayStatus PlayStatus 1;
    int StartTimeSeconds 1;
    char* ShortDescription 0;
    char* RunTime 0;
    struct soap* soap;
};

/// LM1:TitleListingResponse
class LM1__TitleListingResponse {
public:
    int TitleID 1;
    char* TitleName 0;
    char* BoxArtPrefix 0;
    short TitlePosition 1;
    int EpisodeNumber 1;
    LM1__ArrayOfBonusAsset* BonusAssets 0;
    bool IsTvListing 1;
    char* MPAARating 0;
    LM1__ArrayOfProductListing* AvailableProducts 0;
    bool IsTHXMediaDirectorEnabled 1;
    bool IsTHXMediaDirectorEnabledForTrailer 1;
    char* CHVRSRating 0;
    char* LoyaltyPointsForBuy 0;
    char* LoyaltyPointsForRent 0;
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* Synopsys 0;
    int UserRating 1;
    char* Directors 0;
    char* Actors 0;
    char* Writers 0;
    char* Producers 0;
    char* Copyright 0;
    char* RunTime 0;
    bool IsAvailInUserWishList 1;
    char* RatingReason 0;
    struct soap* soap;
};

/// LM1:TitleListing_IncludeShortDesc
class LM1__TitleListing_USCOREIncludeShortDesc {
public:
    int TitleID 1;
    char* TitleName 0;
    char* BoxArtPrefix 0;
    short TitlePosition 1;
    int EpisodeNumber 1;
    LM1__ArrayOfBonusAsset* BonusAssets 0;
    bool IsTvListing 1;
    char* MPAARating 0;
    LM1__ArrayOfProductListing* AvailableProducts 0;
    bool IsTHXMediaDirectorEnabled 1;
    bool IsTHXMediaDirectorEnabledForTrailer 1;
    char* CHVRSRating 0;
    char* LoyaltyPointsForBuy 0;
    char* LoyaltyPointsForRent 0;
    char* ShortDescription 0;
    char* RunTime 0;
    struct soap* soap;
};

/// LM1:TitleRulesInfo
class LM1__TitleRulesInfo {
public:
    char* browseexpiredate 0;
    char* expiredate 0;
    struct soap* soap;
};

/// LM1:TranslateSkuIdResponse
class LM1__TranslateSkuIdResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    int TitleId 1;
    struct soap* soap;
};

/// LM1:TranslatedRecboxExternalIdResponse
class LM1__TranslatedRecboxExternalIdResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* RecboxExternalId 0;
    int TitleId 1;
    struct soap* soap;
};

/// LM1:TvEpisode
class LM1__TvEpisode {
public:
    int EpisodeID 1;
    char* EpisodeName 0;
    int EpisodeNumber 1;
    struct soap* soap;
};

/// LM1:TvEpisodeList
class LM1__TvEpisodeList {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    LM1__ArrayOfTvEpisode* Episodes 0;
    struct soap* soap;
};

/// LM1:URLForStreamingFileResponse
class LM1__URLForStreamingFileResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    char* URL 0;
    struct soap* soap;
};

/// LM1:WishListActionResponse
class LM1__WishListActionResponse {
public:
    int ResponseCode 1;
    char* ResponseMessage 0;
    struct soap* soap;
};

/// LM1:contentitem
class LM1__contentitem {
public:
    LM1__FileInfo* Content 0;
    LM1__PassInfo* pass 0;
    LM1__TitleInfo* title 0;
    LM1__ArrayOfAlternateFile* AlternateFiles 0;
    struct soap* soap;
};

// SOAP header, every element optional, written in this order: wsse:Security, the seven wsa
// elements (from the imports above), then the device identity of the service being called.
// The trailing underscore keeps the member names apart from their type names; it is not written.
mutable struct SOAP_ENV__Header {
    LM1__StreamDeviceRequestSettings* LM1__StreamDeviceRequestSettings_ 0;  // StreamAPI calls
    LM1__DeviceSettings* LM1__DeviceSettings_ 0;                            // RealTimeBrowse calls
    LM1__DownloadDeviceRequestSettings* LM1__DownloadDeviceRequestSettings_ 0;  // DownloadAPI calls
};

// Request and response wrapper elements, one pair per operation (also of the operations no
// proxy calls). A request holds its parameters in order; a response holds its one result.

/// LM1:GetCountryID (empty)
class _LM1__GetCountryID {
public:
    struct soap* soap;
};

/// LM1:GetCountryIDResponse
class _LM1__GetCountryIDResponse {
public:
    int GetCountryIDResult 1;
    struct soap* soap;
};

/// LM1:ReturnError (empty)
class _LM1__ReturnError {
public:
    struct soap* soap;
};

/// LM1:ReturnErrorResponse
class _LM1__ReturnErrorResponse {
public:
    LM1__StandardResponse* ReturnErrorResult 0;
    struct soap* soap;
};

/// LM1:ReturnTimeout (empty)
class _LM1__ReturnTimeout {
public:
    struct soap* soap;
};

/// LM1:ReturnTimeoutResponse
class _LM1__ReturnTimeoutResponse {
public:
    LM1__StandardResponse* ReturnTimeoutResult 0;
    struct soap* soap;
};

/// LM1:addItemToWishlist
class _LM1__addItemToWishlist {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:addItemToWishlistResponse
class _LM1__addItemToWishlistResponse {
public:
    LM1__WishListActionResponse* addItemToWishlistResult 0;
    struct soap* soap;
};

/// LM1:assignGiftCertificateToUser
class _LM1__assignGiftCertificateToUser {
public:
    char* GiftCertificateCode 0;
    struct soap* soap;
};

/// LM1:assignGiftCertificateToUserResponse
class _LM1__assignGiftCertificateToUserResponse {
public:
    LM1__GiftCertificateResponse* assignGiftCertificateToUserResult 0;
    struct soap* soap;
};

/// LM1:authorizeDevice
class _LM1__authorizeDevice {
public:
    int Pin 1;
    struct soap* soap;
};

/// LM1:authorizeDeviceResponse
class _LM1__authorizeDeviceResponse {
public:
    LM1__AuthorizeDeviceResponse* authorizeDeviceResult 0;
    struct soap* soap;
};

/// LM1:calcOrderTax
class _LM1__calcOrderTax {
public:
    int SKUID 1;
    struct soap* soap;
};

/// LM1:calcOrderTaxResponse
class _LM1__calcOrderTaxResponse {
public:
    LM1__CalcOrderTaxResponse* calcOrderTaxResult 0;
    struct soap* soap;
};

/// LM1:checkAdultVerificationEnabled (empty)
class _LM1__checkAdultVerificationEnabled {
public:
    struct soap* soap;
};

/// LM1:checkAdultVerificationEnabledResponse
class _LM1__checkAdultVerificationEnabledResponse {
public:
    LM1__CheckAdultVerificationEnabledResponse* checkAdultVerificationEnabledResult 0;
    struct soap* soap;
};

/// LM1:checkAdultVerificationPin
class _LM1__checkAdultVerificationPin {
public:
    char* Pin 0;
    struct soap* soap;
};

/// LM1:checkAdultVerificationPinResponse
class _LM1__checkAdultVerificationPinResponse {
public:
    LM1__CheckAdultVerificationPinResponse* checkAdultVerificationPinResult 0;
    struct soap* soap;
};

/// LM1:checkAuthToken (empty)
class _LM1__checkAuthToken {
public:
    struct soap* soap;
};

/// LM1:checkAuthTokenResponse
class _LM1__checkAuthTokenResponse {
public:
    bool checkAuthTokenResult 1;
    struct soap* soap;
};

/// LM1:checkForPurchasedStream
class _LM1__checkForPurchasedStream {
public:
    int SkuID 1;
    struct soap* soap;
};

/// LM1:checkForPurchasedStreamByTitleID
class _LM1__checkForPurchasedStreamByTitleID {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:checkForPurchasedStreamByTitleIDResponse
class _LM1__checkForPurchasedStreamByTitleIDResponse {
public:
    bool checkForPurchasedStreamByTitleIDResult 1;
    struct soap* soap;
};

/// LM1:checkForPurchasedStreamResponse
class _LM1__checkForPurchasedStreamResponse {
public:
    bool checkForPurchasedStreamResult 1;
    struct soap* soap;
};

/// LM1:checkForPurchasedTitle
class _LM1__checkForPurchasedTitle {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:checkForPurchasedTitleResponse
class _LM1__checkForPurchasedTitleResponse {
public:
    bool checkForPurchasedTitleResult 1;
    struct soap* soap;
};

/// LM1:checkRentalExpiration
class _LM1__checkRentalExpiration {
public:
    int PassId 1;
    struct soap* soap;
};

/// LM1:checkRentalExpirationResponse
class _LM1__checkRentalExpirationResponse {
public:
    LM1__CheckRentalExpirationResponse* checkRentalExpirationResult 0;
    struct soap* soap;
};

/// LM1:deactivateDevice (empty)
class _LM1__deactivateDevice {
public:
    struct soap* soap;
};

/// LM1:deactivateDeviceResponse
class _LM1__deactivateDeviceResponse {
public:
    LM1__StandardResponse* deactivateDeviceResult 0;
    struct soap* soap;
};

/// LM1:doPurchaseSavedbilling
class _LM1__doPurchaseSavedbilling {
public:
    int SkuID 1;
    char* IPAddress 0;
    char* UsePrePaidFunds 0;
    struct soap* soap;
};

/// LM1:doPurchaseSavedbillingResponse
class _LM1__doPurchaseSavedbillingResponse {
public:
    LM1__PurchaseResponse* doPurchaseSavedbillingResult 0;
    struct soap* soap;
};

/// LM1:emailPassword
class _LM1__emailPassword {
public:
    char* Email 0;
    char* StoreURL 0;
    char* StoreName 0;
    struct soap* soap;
};

/// LM1:emailPasswordResponse
class _LM1__emailPasswordResponse {
public:
    LM1__StandardResponse* emailPasswordResult 0;
    struct soap* soap;
};

/// LM1:getAllTvEpisodeListings
class _LM1__getAllTvEpisodeListings {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:getAllTvEpisodeListingsResponse
class _LM1__getAllTvEpisodeListingsResponse {
public:
    LM1__ArrayOfTitleListingResponse* getAllTvEpisodeListingsResult 0;
    struct soap* soap;
};

/// LM1:getAudioDefaultProperty (empty)
class _LM1__getAudioDefaultProperty {
public:
    struct soap* soap;
};

/// LM1:getAudioDefaultPropertyResponse
class _LM1__getAudioDefaultPropertyResponse {
public:
    enum LM1__AudioSetting getAudioDefaultPropertyResult 1;
    struct soap* soap;
};

/// LM1:getBillingInfo (empty)
class _LM1__getBillingInfo {
public:
    struct soap* soap;
};

/// LM1:getBillingInfoAndPPCBalance (empty)
class _LM1__getBillingInfoAndPPCBalance {
public:
    struct soap* soap;
};

/// LM1:getBillingInfoAndPPCBalanceResponse
class _LM1__getBillingInfoAndPPCBalanceResponse {
public:
    LM1__BillingInfoAndPPCBalanceResponse* getBillingInfoAndPPCBalanceResult 0;
    struct soap* soap;
};

/// LM1:getBillingInfoResponse
class _LM1__getBillingInfoResponse {
public:
    LM1__BillingInfoResponse* getBillingInfoResult 0;
    struct soap* soap;
};

/// LM1:getBonusAssetLocation
class _LM1__getBonusAssetLocation {
public:
    int BonusAssetID 1;
    struct soap* soap;
};

/// LM1:getBonusAssetLocationResponse
class _LM1__getBonusAssetLocationResponse {
public:
    LM1__GetStreamingAssetLocationResponse* getBonusAssetLocationResult 0;
    struct soap* soap;
};

/// LM1:getBonusAssetURL
class _LM1__getBonusAssetURL {
public:
    int BonusAssetID 1;
    struct soap* soap;
};

/// LM1:getBonusAssetURLResponse
class _LM1__getBonusAssetURLResponse {
public:
    LM1__URLForStreamingFileResponse* getBonusAssetURLResult 0;
    struct soap* soap;
};

/// LM1:getConfig (empty)
class _LM1__getConfig {
public:
    struct soap* soap;
};

/// LM1:getConfigResponse
class _LM1__getConfigResponse {
public:
    LM1__GetConfigResponse* getConfigResult 0;
    struct soap* soap;
};

/// LM1:getEmailAddress (empty)
class _LM1__getEmailAddress {
public:
    struct soap* soap;
};

/// LM1:getEmailAddressResponse
class _LM1__getEmailAddressResponse {
public:
    LM1__GetEmailAddressResponse* getEmailAddressResult 0;
    struct soap* soap;
};

/// LM1:getFileType (empty)
class _LM1__getFileType {
public:
    struct soap* soap;
};

/// LM1:getFileTypeResponse
class _LM1__getFileTypeResponse {
public:
    LM1__FileType* getFileTypeResult 0;
    struct soap* soap;
};

/// LM1:getGenreLabel
class _LM1__getGenreLabel {
public:
    int GenreID 1;
    struct soap* soap;
};

/// LM1:getGenreLabelResponse
class _LM1__getGenreLabelResponse {
public:
    LM1__GetGenreLabelResponse* getGenreLabelResult 0;
    struct soap* soap;
};

/// LM1:getLastCacheLoadTimeUTC (empty)
class _LM1__getLastCacheLoadTimeUTC {
public:
    struct soap* soap;
};

/// LM1:getLastCacheLoadTimeUTCResponse
class _LM1__getLastCacheLoadTimeUTCResponse {
public:
    char* getLastCacheLoadTimeUTCResult 0;
    struct soap* soap;
};

/// LM1:getLicenseCount
class _LM1__getLicenseCount {
public:
    int passID 1;
    struct soap* soap;
};

/// LM1:getLicenseCountResponse
class _LM1__getLicenseCountResponse {
public:
    LM1__GetLicenseCountResponse* getLicenseCountResult 0;
    struct soap* soap;
};

/// LM1:getLicenseCounts
class _LM1__getLicenseCounts {
public:
    LM1__ArrayOfInt* passIDs 0;
    struct soap* soap;
};

/// LM1:getLicenseCountsResponse
class _LM1__getLicenseCountsResponse {
public:
    LM1__ArrayOfGetLicenseCountResponse* getLicenseCountsResult 0;
    struct soap* soap;
};

/// LM1:getMyStreamingVideos
class _LM1__getMyStreamingVideos {
public:
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__TitleType TitleType 1;
    enum LM1__WatchStatusFilter WatchStatusFilter 1;
    struct soap* soap;
};

/// LM1:getMyStreamingVideosList
class _LM1__getMyStreamingVideosList {
public:
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    struct soap* soap;
};

/// LM1:getMyStreamingVideosListResponse
class _LM1__getMyStreamingVideosListResponse {
public:
    LM1__ArrayOfGetMyVideosResponse* getMyStreamingVideosListResult 0;
    struct soap* soap;
};

/// LM1:getMyStreamingVideosResponse
class _LM1__getMyStreamingVideosResponse {
public:
    LM1__GetMyVideosResponse* getMyStreamingVideosResult 0;
    struct soap* soap;
};

/// LM1:getMyVideos
class _LM1__getMyVideos {
public:
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__TitleType TitleType 1;
    enum LM1__WatchStatusFilter WatchStatusFilter 1;
    struct soap* soap;
};

/// LM1:getMyVideosResponse
class _LM1__getMyVideosResponse {
public:
    LM1__GetMyVideosResponse* getMyVideosResult 0;
    struct soap* soap;
};

/// LM1:getMyVideos_IncludeShortDesc
class _LM1__getMyVideos_USCOREIncludeShortDesc {
public:
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__TitleType TitleType 1;
    enum LM1__WatchStatusFilter WatchStatusFilter 1;
    struct soap* soap;
};

/// LM1:getMyVideos_IncludeShortDescResponse
class _LM1__getMyVideos_USCOREIncludeShortDescResponse {
public:
    LM1__GetMyVideosResponse_USCOREIncludeShortDesc* getMyVideos_USCOREIncludeShortDescResult 0;
    struct soap* soap;
};

/// LM1:getNavigation (empty)
class _LM1__getNavigation {
public:
    struct soap* soap;
};

/// LM1:getNavigationResponse
class _LM1__getNavigationResponse {
public:
    LM1__GenreRequest* getNavigationResult 0;
    struct soap* soap;
};

/// LM1:getRecommendedTitles
class _LM1__getRecommendedTitles {
public:
    int TitleId 1;
    struct soap* soap;
};

/// LM1:getRecommendedTitlesResponse
class _LM1__getRecommendedTitlesResponse {
public:
    LM1__RecommendedTitlesResponse* getRecommendedTitlesResult 0;
    struct soap* soap;
};

/// LM1:getRecommendedTitles_SpecifyOutput
class _LM1__getRecommendedTitles_USCORESpecifyOutput {
public:
    int TitleId 1;
    int NumberToFetch 1;
    struct soap* soap;
};

/// LM1:getRecommendedTitles_SpecifyOutputResponse
class _LM1__getRecommendedTitles_USCORESpecifyOutputResponse {
public:
    LM1__RecommendedTitlesResponse* getRecommendedTitles_USCORESpecifyOutputResult 0;
    struct soap* soap;
};

/// LM1:getSettingsPageInfo (empty)
class _LM1__getSettingsPageInfo {
public:
    struct soap* soap;
};

/// LM1:getSettingsPageInfoResponse
class _LM1__getSettingsPageInfoResponse {
public:
    LM1__SettingsPageInfo* getSettingsPageInfoResult 0;
    struct soap* soap;
};

/// LM1:getStreamingAssetLocation
class _LM1__getStreamingAssetLocation {
public:
    int PassID 1;
    enum LM1__FileProfile FileProfile 1;
    struct soap* soap;
};

/// LM1:getStreamingAssetLocationResponse
class _LM1__getStreamingAssetLocationResponse {
public:
    LM1__GetStreamingAssetLocationResponse* getStreamingAssetLocationResult 0;
    struct soap* soap;
};

/// LM1:getStreamingNavigation (empty)
class _LM1__getStreamingNavigation {
public:
    struct soap* soap;
};

/// LM1:getStreamingNavigationResponse
class _LM1__getStreamingNavigationResponse {
public:
    LM1__GenreRequest* getStreamingNavigationResult 0;
    struct soap* soap;
};

/// LM1:getTHXMediaDirector
class _LM1__getTHXMediaDirector {
public:
    int PassID 1;
    enum LM1__FileProfile FileProfile 1;
    enum LM1__AudioSetting AudioSetting 1;
    struct soap* soap;
};

/// LM1:getTHXMediaDirectorBonusAsset
class _LM1__getTHXMediaDirectorBonusAsset {
public:
    int BonusAssetID 1;
    enum LM1__FileProfile FileProfile 1;
    enum LM1__BonusAssetType BonusAssetType 1;
    struct soap* soap;
};

/// LM1:getTHXMediaDirectorBonusAssetResponse
class _LM1__getTHXMediaDirectorBonusAssetResponse {
public:
    LM1__THXMediaDirectorResponse* getTHXMediaDirectorBonusAssetResult 0;
    struct soap* soap;
};

/// LM1:getTHXMediaDirectorResponse
class _LM1__getTHXMediaDirectorResponse {
public:
    LM1__THXMediaDirectorResponse* getTHXMediaDirectorResult 0;
    struct soap* soap;
};

/// LM1:getTitleListing
class _LM1__getTitleListing {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:getTitleListingByAsset
class _LM1__getTitleListingByAsset {
public:
    int AssetID 1;
    struct soap* soap;
};

/// LM1:getTitleListingByAssetResponse
class _LM1__getTitleListingByAssetResponse {
public:
    LM1__TitleListingResponse* getTitleListingByAssetResult 0;
    struct soap* soap;
};

/// LM1:getTitleListingPurchasedForPass
class _LM1__getTitleListingPurchasedForPass {
public:
    int PassID 1;
    struct soap* soap;
};

/// LM1:getTitleListingPurchasedForPassResponse
class _LM1__getTitleListingPurchasedForPassResponse {
public:
    LM1__TitleListingPurchasedForPass* getTitleListingPurchasedForPassResult 0;
    struct soap* soap;
};

/// LM1:getTitleListingResponse
class _LM1__getTitleListingResponse {
public:
    LM1__TitleListingResponse* getTitleListingResult 0;
    struct soap* soap;
};

/// LM1:getTitleListingsPurchasedForPasses
class _LM1__getTitleListingsPurchasedForPasses {
public:
    LM1__ArrayOfInt* Passes 0;
    struct soap* soap;
};

/// LM1:getTitleListingsPurchasedForPassesResponse
class _LM1__getTitleListingsPurchasedForPassesResponse {
public:
    LM1__ArrayOfTitleListingPurchasedForPass* getTitleListingsPurchasedForPassesResult 0;
    struct soap* soap;
};

/// LM1:getTitlesByGenreArray
class _LM1__getTitlesByGenreArray {
public:
    LM1__ArrayOfInt* GenreIDs 0;
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    struct soap* soap;
};

/// LM1:getTitlesByGenreArrayResponse
class _LM1__getTitlesByGenreArrayResponse {
public:
    LM1__ArrayOfGetTitlesResponse* getTitlesByGenreArrayResult 0;
    struct soap* soap;
};

/// LM1:getTitlesByGenreCSV
class _LM1__getTitlesByGenreCSV {
public:
    char* GenreIDs 0;
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    struct soap* soap;
};

/// LM1:getTitlesByGenreCSVResponse
class _LM1__getTitlesByGenreCSVResponse {
public:
    LM1__ArrayOfGetTitlesResponse* getTitlesByGenreCSVResult 0;
    struct soap* soap;
};

/// LM1:getTitlesByNavigation
class _LM1__getTitlesByNavigation {
public:
    int GenreID 1;
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    struct soap* soap;
};

/// LM1:getTitlesByNavigationResponse
class _LM1__getTitlesByNavigationResponse {
public:
    LM1__GetTitlesResponse* getTitlesByNavigationResult 0;
    struct soap* soap;
};

/// LM1:getTitlesByNavigation_IncludeShortDesc
class _LM1__getTitlesByNavigation_USCOREIncludeShortDesc {
public:
    int GenreID 1;
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    struct soap* soap;
};

/// LM1:getTitlesByNavigation_IncludeShortDescResponse
class _LM1__getTitlesByNavigation_USCOREIncludeShortDescResponse {
public:
    LM1__GetTitlesResponse_USCOREIncludeShortDesc* getTitlesByNavigation_USCOREIncludeShortDescResult 0;
    struct soap* soap;
};

/// LM1:getTitlesByStreamingNavigation
class _LM1__getTitlesByStreamingNavigation {
public:
    int GenreID 1;
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__PurchaseType PurchaseType 1;
    struct soap* soap;
};

/// LM1:getTitlesByStreamingNavigationResponse
class _LM1__getTitlesByStreamingNavigationResponse {
public:
    LM1__GetTitlesResponse* getTitlesByStreamingNavigationResult 0;
    struct soap* soap;
};

/// LM1:getTvEpisodeListByTitleID
class _LM1__getTvEpisodeListByTitleID {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:getTvEpisodeListByTitleIDResponse
class _LM1__getTvEpisodeListByTitleIDResponse {
public:
    LM1__TvEpisodeList* getTvEpisodeListByTitleIDResult 0;
    struct soap* soap;
};

/// LM1:getTvEpisodeListing
class _LM1__getTvEpisodeListing {
public:
    int EpisodeID 1;
    struct soap* soap;
};

/// LM1:getTvEpisodeListingResponse
class _LM1__getTvEpisodeListingResponse {
public:
    LM1__TitleListingResponse* getTvEpisodeListingResult 0;
    struct soap* soap;
};

/// LM1:getWishlistItems
class _LM1__getWishlistItems {
public:
    int sortOrder 1;
    int CurrentPageNumber 1;
    int ItemsPerPage 1;
    enum LM1__TitleType TitleType 1;
    struct soap* soap;
};

/// LM1:getWishlistItemsResponse
class _LM1__getWishlistItemsResponse {
public:
    LM1__GetWishlistItemsResponse* getWishlistItemsResult 0;
    struct soap* soap;
};

/// LM1:loadLastStreamingAssetLocationForPass
class _LM1__loadLastStreamingAssetLocationForPass {
public:
    int PassID 1;
    enum LM1__FileProfile FileProfile 1;
    struct soap* soap;
};

/// LM1:loadLastStreamingAssetLocationForPassResponse
class _LM1__loadLastStreamingAssetLocationForPassResponse {
public:
    LM1__GetStreamingAssetLocationResponse* loadLastStreamingAssetLocationForPassResult 0;
    struct soap* soap;
};

/// LM1:loginUser
class _LM1__loginUser {
public:
    char* Username 0;
    char* Password 0;
    char* ClientName 0;
    char* AppVersion 0;
    struct soap* soap;
};

/// LM1:loginUserResponse
class _LM1__loginUserResponse {
public:
    LM1__AuthorizeDeviceResponse* loginUserResult 0;
    struct soap* soap;
};

/// LM1:manageStreamInstanceStatus
class _LM1__manageStreamInstanceStatus {
public:
    char* StreamID 0;
    enum LM1__PlayStatus Status 1;
    int StopTimeSeconds 1;
    struct soap* soap;
};

/// LM1:manageStreamInstanceStatusResponse
class _LM1__manageStreamInstanceStatusResponse {
public:
    LM1__StandardResponse* manageStreamInstanceStatusResult 0;
    struct soap* soap;
};

/// LM1:pollForDownloads (empty)
class _LM1__pollForDownloads {
public:
    struct soap* soap;
};

/// LM1:pollForDownloadsResponse
class _LM1__pollForDownloadsResponse {
public:
    LM1__ListDownloadsAwaitingDeliveryByDeviceResponse* pollForDownloadsResult 0;
    struct soap* soap;
};

/// LM1:queueDownload
class _LM1__queueDownload {
public:
    int PassID 1;
    struct soap* soap;
};

/// LM1:queueDownloadResponse
class _LM1__queueDownloadResponse {
public:
    LM1__AssignPassToDownloadDestinationResponse* queueDownloadResult 0;
    struct soap* soap;
};

/// LM1:queueDownloadSpecifyDRM
class _LM1__queueDownloadSpecifyDRM {
public:
    int PassID 1;
    enum LM1__DRMType DRMType 1;
    struct soap* soap;
};

/// LM1:queueDownloadSpecifyDRMResponse
class _LM1__queueDownloadSpecifyDRMResponse {
public:
    LM1__AssignPassToDownloadDestinationResponse* queueDownloadSpecifyDRMResult 0;
    struct soap* soap;
};

/// LM1:registerUser
class _LM1__registerUser {
public:
    char* UserName 0;
    char* Password 0;
    char* FirstName 0;
    char* LastName 0;
    char* Gender 0;
    char* Age 0;
    char* Email 0;
    char* ClientName 0;
    char* AppVersion 0;
    struct soap* soap;
};

/// LM1:registerUserResponse
class _LM1__registerUserResponse {
public:
    LM1__AuthorizeDeviceResponse* registerUserResult 0;
    struct soap* soap;
};

/// LM1:removeAllItemsFromWishList (empty)
class _LM1__removeAllItemsFromWishList {
public:
    struct soap* soap;
};

/// LM1:removeAllItemsFromWishListResponse
class _LM1__removeAllItemsFromWishListResponse {
public:
    LM1__WishListActionResponse* removeAllItemsFromWishListResult 0;
    struct soap* soap;
};

/// LM1:removeAllMyPurchases
class _LM1__removeAllMyPurchases {
public:
    char* password 0;
    struct soap* soap;
};

/// LM1:removeAllMyPurchasesResponse
class _LM1__removeAllMyPurchasesResponse {
public:
    LM1__StandardResponse* removeAllMyPurchasesResult 0;
    struct soap* soap;
};

/// LM1:removeItemFromWishList
class _LM1__removeItemFromWishList {
public:
    int TitleID 1;
    struct soap* soap;
};

/// LM1:removeItemFromWishListResponse
class _LM1__removeItemFromWishListResponse {
public:
    LM1__WishListActionResponse* removeItemFromWishListResult 0;
    struct soap* soap;
};

/// LM1:searchForTitle
class _LM1__searchForTitle {
public:
    char* Query 0;
    int ItemsPerPage 1;
    int CurrentPageNumber 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__TitleType TitleType 1;
    struct soap* soap;
};

/// LM1:searchForTitleDetail
class _LM1__searchForTitleDetail {
public:
    char* Query 0;
    int ItemsPerPage 1;
    int CurrentPageNumber 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__TitleType TitleType 1;
    struct soap* soap;
};

/// LM1:searchForTitleDetailResponse
class _LM1__searchForTitleDetailResponse {
public:
    LM1__GetTitlesResponse* searchForTitleDetailResult 0;
    struct soap* soap;
};

/// LM1:searchForTitleDetail_IncludeShortDesc
class _LM1__searchForTitleDetail_USCOREIncludeShortDesc {
public:
    char* Query 0;
    int ItemsPerPage 1;
    int CurrentPageNumber 1;
    enum LM1__PurchaseType PurchaseType 1;
    enum LM1__TitleType TitleType 1;
    struct soap* soap;
};

/// LM1:searchForTitleDetail_IncludeShortDescResponse
class _LM1__searchForTitleDetail_USCOREIncludeShortDescResponse {
public:
    LM1__GetTitlesResponse_USCOREIncludeShortDesc* searchForTitleDetail_USCOREIncludeShortDescResult 0;
    struct soap* soap;
};

/// LM1:searchForTitleResponse
class _LM1__searchForTitleResponse {
public:
    LM1__GetTitlesResponse* searchForTitleResult 0;
    struct soap* soap;
};

/// LM1:sendDownloadStatusUpdate
class _LM1__sendDownloadStatusUpdate {
public:
    int DownloadQueueID 1;
    int StatusID 1;
    struct soap* soap;
};

/// LM1:sendDownloadStatusUpdateResponse
class _LM1__sendDownloadStatusUpdateResponse {
public:
    LM1__ReportDownloadStatusResponse* sendDownloadStatusUpdateResult 0;
    struct soap* soap;
};

/// LM1:setAudioDefaultProperty
class _LM1__setAudioDefaultProperty {
public:
    enum LM1__AudioSetting AudioSetting 1;
    struct soap* soap;
};

/// LM1:setAudioDefaultPropertyResponse
class _LM1__setAudioDefaultPropertyResponse {
public:
    LM1__StandardResponse* setAudioDefaultPropertyResult 0;
    struct soap* soap;
};

/// LM1:setUserBillingInfo
class _LM1__setUserBillingInfo {
public:
    char* CCNum 0;
    char* CCExp 0;
    char* FullName 0;
    char* Address 0;
    char* Address2 0;
    char* City 0;
    char* State 0;
    char* Country 0;
    char* Zip 0;
    char* Email 0;
    struct soap* soap;
};

/// LM1:setUserBillingInfoResponse
class _LM1__setUserBillingInfoResponse {
public:
    LM1__StandardResponse* setUserBillingInfoResult 0;
    struct soap* soap;
};

/// LM1:setUserPassword
class _LM1__setUserPassword {
public:
    char* CurrentPassword 0;
    char* NewPassword 0;
    struct soap* soap;
};

/// LM1:setUserPasswordResponse
class _LM1__setUserPasswordResponse {
public:
    LM1__StandardResponse* setUserPasswordResult 0;
    struct soap* soap;
};

/// LM1:shouldUpdateCache
class _LM1__shouldUpdateCache {
public:
    char* UTCTime 0;
    struct soap* soap;
};

/// LM1:shouldUpdateCacheResponse
class _LM1__shouldUpdateCacheResponse {
public:
    int shouldUpdateCacheResult 1;
    struct soap* soap;
};

/// LM1:showPrePaidCardBalance (empty)
class _LM1__showPrePaidCardBalance {
public:
    struct soap* soap;
};

/// LM1:showPrePaidCardBalanceResponse
class _LM1__showPrePaidCardBalanceResponse {
public:
    LM1__PPCardBalanceResponse* showPrePaidCardBalanceResult 0;
    struct soap* soap;
};

/// LM1:translateSkuId
class _LM1__translateSkuId {
public:
    int SkuId 1;
    struct soap* soap;
};

/// LM1:translateSkuIdResponse
class _LM1__translateSkuIdResponse {
public:
    LM1__TranslateSkuIdResponse* translateSkuIdResult 0;
    struct soap* soap;
};

/// LM1:translateRecboxExternalId
class _LM1__translateRecboxExternalId {
public:
    char* RecboxExternalId 0;
    struct soap* soap;
};

/// LM1:translateRecboxExternalIdResponse
class _LM1__translateRecboxExternalIdResponse {
public:
    LM1__TranslatedRecboxExternalIdResponse* translateRecboxExternalIdResult 0;
    struct soap* soap;
};

// The three services. soapcpp2 lists the binding namespaces in the order of the bindings' first
// operations, so StreamAPI comes first here to give the table its order LM2, LM3, LM4, LM1.
// Operations of two services share their request and response elements and their SOAP action.

/***************************************************************************************************
 * StreamAPI: the streaming edition of catalogue and account, plus streaming.
 * 49 operations, in the order of the proxy's call methods.
 **************************************************************************************************/

//gsoap LM2 service name: StreamAPISoap12
//gsoap LM2 service type: StreamAPISoap12
//gsoap LM2 service port: http://stgapi.lumora.example/api/StreamAPI.asmx
//gsoap LM2 service namespace: http://www.lumora.example/api/StreamAPISoap12
//gsoap LM2 service transport: http://schemas.xmlsoap.org/soap/http

//gsoap LM2 service method-protocol: getStreamingNavigation SOAP1.2
//gsoap LM2 service method-style: getStreamingNavigation document
//gsoap LM2 service method-encoding: getStreamingNavigation literal
//gsoap LM2 service method-action: getStreamingNavigation http://www.lumora.example/api/getStreamingNavigation
int __LM2__getStreamingNavigation(_LM1__getStreamingNavigation* LM1__getStreamingNavigation, _LM1__getStreamingNavigationResponse& LM1__getStreamingNavigationResponse);

//gsoap LM2 service method-protocol: searchForTitle SOAP1.2
//gsoap LM2 service method-style: searchForTitle document
//gsoap LM2 service method-encoding: searchForTitle literal
//gsoap LM2 service method-action: searchForTitle http://www.lumora.example/api/searchForTitle
int __LM2__searchForTitle(_LM1__searchForTitle* LM1__searchForTitle, _LM1__searchForTitleResponse& LM1__searchForTitleResponse);

//gsoap LM2 service method-protocol: getGenreLabel SOAP1.2
//gsoap LM2 service method-style: getGenreLabel document
//gsoap LM2 service method-encoding: getGenreLabel literal
//gsoap LM2 service method-action: getGenreLabel http://www.lumora.example/api/getGenreLabel
int __LM2__getGenreLabel(_LM1__getGenreLabel* LM1__getGenreLabel, _LM1__getGenreLabelResponse& LM1__getGenreLabelResponse);

//gsoap LM2 service method-protocol: getTitlesByGenreCSV SOAP1.2
//gsoap LM2 service method-style: getTitlesByGenreCSV document
//gsoap LM2 service method-encoding: getTitlesByGenreCSV literal
//gsoap LM2 service method-action: getTitlesByGenreCSV http://www.lumora.example/api/getTitlesByGenreCSV
int __LM2__getTitlesByGenreCSV(_LM1__getTitlesByGenreCSV* LM1__getTitlesByGenreCSV, _LM1__getTitlesByGenreCSVResponse& LM1__getTitlesByGenreCSVResponse);

//gsoap LM2 service method-protocol: getTitlesByGenreArray SOAP1.2
//gsoap LM2 service method-style: getTitlesByGenreArray document
//gsoap LM2 service method-encoding: getTitlesByGenreArray literal
//gsoap LM2 service method-action: getTitlesByGenreArray http://www.lumora.example/api/getTitlesByGenreArray
int __LM2__getTitlesByGenreArray(_LM1__getTitlesByGenreArray* LM1__getTitlesByGenreArray, _LM1__getTitlesByGenreArrayResponse& LM1__getTitlesByGenreArrayResponse);

//gsoap LM2 service method-protocol: getTitlesByStreamingNavigation SOAP1.2
//gsoap LM2 service method-style: getTitlesByStreamingNavigation document
//gsoap LM2 service method-encoding: getTitlesByStreamingNavigation literal
//gsoap LM2 service method-action: getTitlesByStreamingNavigation http://www.lumora.example/api/getTitlesByStreamingNavigation
int __LM2__getTitlesByStreamingNavigation(_LM1__getTitlesByStreamingNavigation* LM1__getTitlesByStreamingNavigation, _LM1__getTitlesByStreamingNavigationResponse& LM1__getTitlesByStreamingNavigationResponse);

//gsoap LM2 service method-protocol: getTitleListing SOAP1.2
//gsoap LM2 service method-style: getTitleListing document
//gsoap LM2 service method-encoding: getTitleListing literal
//gsoap LM2 service method-action: getTitleListing http://www.lumora.example/api/getTitleListing
int __LM2__getTitleListing(_LM1__getTitleListing* LM1__getTitleListing, _LM1__getTitleListingResponse& LM1__getTitleListingResponse);

//gsoap LM2 service method-protocol: getTvEpisodeListByTitleID SOAP1.2
//gsoap LM2 service method-style: getTvEpisodeListByTitleID document
//gsoap LM2 service method-encoding: getTvEpisodeListByTitleID literal
//gsoap LM2 service method-action: getTvEpisodeListByTitleID http://www.lumora.example/api/getTvEpisodeListByTitleID
int __LM2__getTvEpisodeListByTitleID(_LM1__getTvEpisodeListByTitleID* LM1__getTvEpisodeListByTitleID, _LM1__getTvEpisodeListByTitleIDResponse& LM1__getTvEpisodeListByTitleIDResponse);

//gsoap LM2 service method-protocol: getTvEpisodeListing SOAP1.2
//gsoap LM2 service method-style: getTvEpisodeListing document
//gsoap LM2 service method-encoding: getTvEpisodeListing literal
//gsoap LM2 service method-action: getTvEpisodeListing http://www.lumora.example/api/getTvEpisodeListing
int __LM2__getTvEpisodeListing(_LM1__getTvEpisodeListing* LM1__getTvEpisodeListing, _LM1__getTvEpisodeListingResponse& LM1__getTvEpisodeListingResponse);

//gsoap LM2 service method-protocol: getAllTvEpisodeListings SOAP1.2
//gsoap LM2 service method-style: getAllTvEpisodeListings document
//gsoap LM2 service method-encoding: getAllTvEpisodeListings literal
//gsoap LM2 service method-action: getAllTvEpisodeListings http://www.lumora.example/api/getAllTvEpisodeListings
int __LM2__getAllTvEpisodeListings(_LM1__getAllTvEpisodeListings* LM1__getAllTvEpisodeListings, _LM1__getAllTvEpisodeListingsResponse& LM1__getAllTvEpisodeListingsResponse);

//gsoap LM2 service method-protocol: shouldUpdateCache SOAP1.2
//gsoap LM2 service method-style: shouldUpdateCache document
//gsoap LM2 service method-encoding: shouldUpdateCache literal
//gsoap LM2 service method-action: shouldUpdateCache http://www.lumora.example/api/shouldUpdateCache
int __LM2__shouldUpdateCache(_LM1__shouldUpdateCache* LM1__shouldUpdateCache, _LM1__shouldUpdateCacheResponse& LM1__shouldUpdateCacheResponse);

//gsoap LM2 service method-protocol: getLastCacheLoadTimeUTC SOAP1.2
//gsoap LM2 service method-style: getLastCacheLoadTimeUTC document
//gsoap LM2 service method-encoding: getLastCacheLoadTimeUTC literal
//gsoap LM2 service method-action: getLastCacheLoadTimeUTC http://www.lumora.example/api/getLastCacheLoadTimeUTC
int __LM2__getLastCacheLoadTimeUTC(_LM1__getLastCacheLoadTimeUTC* LM1__getLastCacheLoadTimeUTC, _LM1__getLastCacheLoadTimeUTCResponse& LM1__getLastCacheLoadTimeUTCResponse);

//gsoap LM2 service method-protocol: authorizeDevice SOAP1.2
//gsoap LM2 service method-style: authorizeDevice document
//gsoap LM2 service method-encoding: authorizeDevice literal
//gsoap LM2 service method-action: authorizeDevice http://www.lumora.example/api/authorizeDevice
int __LM2__authorizeDevice(_LM1__authorizeDevice* LM1__authorizeDevice, _LM1__authorizeDeviceResponse& LM1__authorizeDeviceResponse);

//gsoap LM2 service method-protocol: doPurchaseSavedbilling SOAP1.2
//gsoap LM2 service method-style: doPurchaseSavedbilling document
//gsoap LM2 service method-encoding: doPurchaseSavedbilling literal
//gsoap LM2 service method-action: doPurchaseSavedbilling http://www.lumora.example/api/doPurchaseSavedbilling
int __LM2__doPurchaseSavedbilling(_LM1__doPurchaseSavedbilling* LM1__doPurchaseSavedbilling, _LM1__doPurchaseSavedbillingResponse& LM1__doPurchaseSavedbillingResponse);

//gsoap LM2 service method-protocol: getMyStreamingVideosList SOAP1.2
//gsoap LM2 service method-style: getMyStreamingVideosList document
//gsoap LM2 service method-encoding: getMyStreamingVideosList literal
//gsoap LM2 service method-action: getMyStreamingVideosList http://www.lumora.example/api/getMyStreamingVideosList
int __LM2__getMyStreamingVideosList(_LM1__getMyStreamingVideosList* LM1__getMyStreamingVideosList, _LM1__getMyStreamingVideosListResponse& LM1__getMyStreamingVideosListResponse);

//gsoap LM2 service method-protocol: getMyStreamingVideos SOAP1.2
//gsoap LM2 service method-style: getMyStreamingVideos document
//gsoap LM2 service method-encoding: getMyStreamingVideos literal
//gsoap LM2 service method-action: getMyStreamingVideos http://www.lumora.example/api/getMyStreamingVideos
int __LM2__getMyStreamingVideos(_LM1__getMyStreamingVideos* LM1__getMyStreamingVideos, _LM1__getMyStreamingVideosResponse& LM1__getMyStreamingVideosResponse);

//gsoap LM2 service method-protocol: getTitleListingsPurchasedForPasses SOAP1.2
//gsoap LM2 service method-style: getTitleListingsPurchasedForPasses document
//gsoap LM2 service method-encoding: getTitleListingsPurchasedForPasses literal
//gsoap LM2 service method-action: getTitleListingsPurchasedForPasses http://www.lumora.example/api/getTitleListingsPurchasedForPasses
int __LM2__getTitleListingsPurchasedForPasses(_LM1__getTitleListingsPurchasedForPasses* LM1__getTitleListingsPurchasedForPasses, _LM1__getTitleListingsPurchasedForPassesResponse& LM1__getTitleListingsPurchasedForPassesResponse);

//gsoap LM2 service method-protocol: getTitleListingPurchasedForPass SOAP1.2
//gsoap LM2 service method-style: getTitleListingPurchasedForPass document
//gsoap LM2 service method-encoding: getTitleListingPurchasedForPass literal
//gsoap LM2 service method-action: getTitleListingPurchasedForPass http://www.lumora.example/api/getTitleListingPurchasedForPass
int __LM2__getTitleListingPurchasedForPass(_LM1__getTitleListingPurchasedForPass* LM1__getTitleListingPurchasedForPass, _LM1__getTitleListingPurchasedForPassResponse& LM1__getTitleListingPurchasedForPassResponse);

//gsoap LM2 service method-protocol: checkRentalExpiration SOAP1.2
//gsoap LM2 service method-style: checkRentalExpiration document
//gsoap LM2 service method-encoding: checkRentalExpiration literal
//gsoap LM2 service method-action: checkRentalExpiration http://www.lumora.example/api/checkRentalExpiration
int __LM2__checkRentalExpiration(_LM1__checkRentalExpiration* LM1__checkRentalExpiration, _LM1__checkRentalExpirationResponse& LM1__checkRentalExpirationResponse);

//gsoap LM2 service method-protocol: checkForPurchasedStreamByTitleID SOAP1.2
//gsoap LM2 service method-style: checkForPurchasedStreamByTitleID document
//gsoap LM2 service method-encoding: checkForPurchasedStreamByTitleID literal
//gsoap LM2 service method-action: checkForPurchasedStreamByTitleID http://www.lumora.example/api/checkForPurchasedStreamByTitleID
int __LM2__checkForPurchasedStreamByTitleID(_LM1__checkForPurchasedStreamByTitleID* LM1__checkForPurchasedStreamByTitleID, _LM1__checkForPurchasedStreamByTitleIDResponse& LM1__checkForPurchasedStreamByTitleIDResponse);

//gsoap LM2 service method-protocol: checkForPurchasedStream SOAP1.2
//gsoap LM2 service method-style: checkForPurchasedStream document
//gsoap LM2 service method-encoding: checkForPurchasedStream literal
//gsoap LM2 service method-action: checkForPurchasedStream http://www.lumora.example/api/checkForPurchasedStream
int __LM2__checkForPurchasedStream(_LM1__checkForPurchasedStream* LM1__checkForPurchasedStream, _LM1__checkForPurchasedStreamResponse& LM1__checkForPurchasedStreamResponse);

//gsoap LM2 service method-protocol: getBillingInfo SOAP1.2
//gsoap LM2 service method-style: getBillingInfo document
//gsoap LM2 service method-encoding: getBillingInfo literal
//gsoap LM2 service method-action: getBillingInfo http://www.lumora.example/api/getBillingInfo
int __LM2__getBillingInfo(_LM1__getBillingInfo* LM1__getBillingInfo, _LM1__getBillingInfoResponse& LM1__getBillingInfoResponse);

//gsoap LM2 service method-protocol: showPrePaidCardBalance SOAP1.2
//gsoap LM2 service method-style: showPrePaidCardBalance document
//gsoap LM2 service method-encoding: showPrePaidCardBalance literal
//gsoap LM2 service method-action: showPrePaidCardBalance http://www.lumora.example/api/showPrePaidCardBalance
int __LM2__showPrePaidCardBalance(_LM1__showPrePaidCardBalance* LM1__showPrePaidCardBalance, _LM1__showPrePaidCardBalanceResponse& LM1__showPrePaidCardBalanceResponse);

//gsoap LM2 service method-protocol: getBillingInfoAndPPCBalance SOAP1.2
//gsoap LM2 service method-style: getBillingInfoAndPPCBalance document
//gsoap LM2 service method-encoding: getBillingInfoAndPPCBalance literal
//gsoap LM2 service method-action: getBillingInfoAndPPCBalance http://www.lumora.example/api/getBillingInfoAndPPCBalance
int __LM2__getBillingInfoAndPPCBalance(_LM1__getBillingInfoAndPPCBalance* LM1__getBillingInfoAndPPCBalance, _LM1__getBillingInfoAndPPCBalanceResponse& LM1__getBillingInfoAndPPCBalanceResponse);

//gsoap LM2 service method-protocol: getEmailAddress SOAP1.2
//gsoap LM2 service method-style: getEmailAddress document
//gsoap LM2 service method-encoding: getEmailAddress literal
//gsoap LM2 service method-action: getEmailAddress http://www.lumora.example/api/getEmailAddress
int __LM2__getEmailAddress(_LM1__getEmailAddress* LM1__getEmailAddress, _LM1__getEmailAddressResponse& LM1__getEmailAddressResponse);

//gsoap LM2 service method-protocol: getSettingsPageInfo SOAP1.2
//gsoap LM2 service method-style: getSettingsPageInfo document
//gsoap LM2 service method-encoding: getSettingsPageInfo literal
//gsoap LM2 service method-action: getSettingsPageInfo http://www.lumora.example/api/getSettingsPageInfo
int __LM2__getSettingsPageInfo(_LM1__getSettingsPageInfo* LM1__getSettingsPageInfo, _LM1__getSettingsPageInfoResponse& LM1__getSettingsPageInfoResponse);

//gsoap LM2 service method-protocol: assignGiftCertificateToUser SOAP1.2
//gsoap LM2 service method-style: assignGiftCertificateToUser document
//gsoap LM2 service method-encoding: assignGiftCertificateToUser literal
//gsoap LM2 service method-action: assignGiftCertificateToUser http://www.lumora.example/api/assignGiftCertificateToUser
int __LM2__assignGiftCertificateToUser(_LM1__assignGiftCertificateToUser* LM1__assignGiftCertificateToUser, _LM1__assignGiftCertificateToUserResponse& LM1__assignGiftCertificateToUserResponse);

//gsoap LM2 service method-protocol: manageStreamInstanceStatus SOAP1.2
//gsoap LM2 service method-style: manageStreamInstanceStatus document
//gsoap LM2 service method-encoding: manageStreamInstanceStatus literal
//gsoap LM2 service method-action: manageStreamInstanceStatus http://www.lumora.example/api/manageStreamInstanceStatus
int __LM2__manageStreamInstanceStatus(_LM1__manageStreamInstanceStatus* LM1__manageStreamInstanceStatus, _LM1__manageStreamInstanceStatusResponse& LM1__manageStreamInstanceStatusResponse);

//gsoap LM2 service method-protocol: getStreamingAssetLocation SOAP1.2
//gsoap LM2 service method-style: getStreamingAssetLocation document
//gsoap LM2 service method-encoding: getStreamingAssetLocation literal
//gsoap LM2 service method-action: getStreamingAssetLocation http://www.lumora.example/api/getStreamingAssetLocation
int __LM2__getStreamingAssetLocation(_LM1__getStreamingAssetLocation* LM1__getStreamingAssetLocation, _LM1__getStreamingAssetLocationResponse& LM1__getStreamingAssetLocationResponse);

//gsoap LM2 service method-protocol: getBonusAssetLocation SOAP1.2
//gsoap LM2 service method-style: getBonusAssetLocation document
//gsoap LM2 service method-encoding: getBonusAssetLocation literal
//gsoap LM2 service method-action: getBonusAssetLocation http://www.lumora.example/api/getBonusAssetLocation
int __LM2__getBonusAssetLocation(_LM1__getBonusAssetLocation* LM1__getBonusAssetLocation, _LM1__getBonusAssetLocationResponse& LM1__getBonusAssetLocationResponse);

//gsoap LM2 service method-protocol: loadLastStreamingAssetLocationForPass SOAP1.2
//gsoap LM2 service method-style: loadLastStreamingAssetLocationForPass document
//gsoap LM2 service method-encoding: loadLastStreamingAssetLocationForPass literal
//gsoap LM2 service method-action: loadLastStreamingAssetLocationForPass http://www.lumora.example/api/loadLastStreamingAssetLocationForPass
int __LM2__loadLastStreamingAssetLocationForPass(_LM1__loadLastStreamingAssetLocationForPass* LM1__loadLastStreamingAssetLocationForPass, _LM1__loadLastStreamingAssetLocationForPassResponse& LM1__loadLastStreamingAssetLocationForPassResponse);

//gsoap LM2 service method-protocol: getWishlistItems SOAP1.2
//gsoap LM2 service method-style: getWishlistItems document
//gsoap LM2 service method-encoding: getWishlistItems literal
//gsoap LM2 service method-action: getWishlistItems http://www.lumora.example/api/getWishlistItems
int __LM2__getWishlistItems(_LM1__getWishlistItems* LM1__getWishlistItems, _LM1__getWishlistItemsResponse& LM1__getWishlistItemsResponse);

//gsoap LM2 service method-protocol: removeItemFromWishList SOAP1.2
//gsoap LM2 service method-style: removeItemFromWishList document
//gsoap LM2 service method-encoding: removeItemFromWishList literal
//gsoap LM2 service method-action: removeItemFromWishList http://www.lumora.example/api/removeItemFromWishList
int __LM2__removeItemFromWishList(_LM1__removeItemFromWishList* LM1__removeItemFromWishList, _LM1__removeItemFromWishListResponse& LM1__removeItemFromWishListResponse);

//gsoap LM2 service method-protocol: removeAllItemsFromWishList SOAP1.2
//gsoap LM2 service method-style: removeAllItemsFromWishList document
//gsoap LM2 service method-encoding: removeAllItemsFromWishList literal
//gsoap LM2 service method-action: removeAllItemsFromWishList http://www.lumora.example/api/removeAllItemsFromWishList
int __LM2__removeAllItemsFromWishList(_LM1__removeAllItemsFromWishList* LM1__removeAllItemsFromWishList, _LM1__removeAllItemsFromWishListResponse& LM1__removeAllItemsFromWishListResponse);

//gsoap LM2 service method-protocol: addItemToWishlist SOAP1.2
//gsoap LM2 service method-style: addItemToWishlist document
//gsoap LM2 service method-encoding: addItemToWishlist literal
//gsoap LM2 service method-action: addItemToWishlist http://www.lumora.example/api/addItemToWishlist
int __LM2__addItemToWishlist(_LM1__addItemToWishlist* LM1__addItemToWishlist, _LM1__addItemToWishlistResponse& LM1__addItemToWishlistResponse);

//gsoap LM2 service method-protocol: checkAdultVerificationEnabled SOAP1.2
//gsoap LM2 service method-style: checkAdultVerificationEnabled document
//gsoap LM2 service method-encoding: checkAdultVerificationEnabled literal
//gsoap LM2 service method-action: checkAdultVerificationEnabled http://www.lumora.example/api/checkAdultVerificationEnabled
int __LM2__checkAdultVerificationEnabled(_LM1__checkAdultVerificationEnabled* LM1__checkAdultVerificationEnabled, _LM1__checkAdultVerificationEnabledResponse& LM1__checkAdultVerificationEnabledResponse);

//gsoap LM2 service method-protocol: checkAdultVerificationPin SOAP1.2
//gsoap LM2 service method-style: checkAdultVerificationPin document
//gsoap LM2 service method-encoding: checkAdultVerificationPin literal
//gsoap LM2 service method-action: checkAdultVerificationPin http://www.lumora.example/api/checkAdultVerificationPin
int __LM2__checkAdultVerificationPin(_LM1__checkAdultVerificationPin* LM1__checkAdultVerificationPin, _LM1__checkAdultVerificationPinResponse& LM1__checkAdultVerificationPinResponse);

//gsoap LM2 service method-protocol: getConfig SOAP1.2
//gsoap LM2 service method-style: getConfig document
//gsoap LM2 service method-encoding: getConfig literal
//gsoap LM2 service method-action: getConfig http://www.lumora.example/api/getConfig
int __LM2__getConfig(_LM1__getConfig* LM1__getConfig, _LM1__getConfigResponse& LM1__getConfigResponse);

//gsoap LM2 service method-protocol: deactivateDevice SOAP1.2
//gsoap LM2 service method-style: deactivateDevice document
//gsoap LM2 service method-encoding: deactivateDevice literal
//gsoap LM2 service method-action: deactivateDevice http://www.lumora.example/api/deactivateDevice
int __LM2__deactivateDevice(_LM1__deactivateDevice* LM1__deactivateDevice, _LM1__deactivateDeviceResponse& LM1__deactivateDeviceResponse);

//gsoap LM2 service method-protocol: removeAllMyPurchases SOAP1.2
//gsoap LM2 service method-style: removeAllMyPurchases document
//gsoap LM2 service method-encoding: removeAllMyPurchases literal
//gsoap LM2 service method-action: removeAllMyPurchases http://www.lumora.example/api/removeAllMyPurchases
int __LM2__removeAllMyPurchases(_LM1__removeAllMyPurchases* LM1__removeAllMyPurchases, _LM1__removeAllMyPurchasesResponse& LM1__removeAllMyPurchasesResponse);

//gsoap LM2 service method-protocol: checkAuthToken SOAP1.2
//gsoap LM2 service method-style: checkAuthToken document
//gsoap LM2 service method-encoding: checkAuthToken literal
//gsoap LM2 service method-action: checkAuthToken http://www.lumora.example/api/checkAuthToken
int __LM2__checkAuthToken(_LM1__checkAuthToken* LM1__checkAuthToken, _LM1__checkAuthTokenResponse& LM1__checkAuthTokenResponse);

//gsoap LM2 service method-protocol: ReturnError SOAP1.2
//gsoap LM2 service method-style: ReturnError document
//gsoap LM2 service method-encoding: ReturnError literal
//gsoap LM2 service method-action: ReturnError http://www.lumora.example/api/ReturnError
int __LM2__ReturnError(_LM1__ReturnError* LM1__ReturnError, _LM1__ReturnErrorResponse& LM1__ReturnErrorResponse);

//gsoap LM2 service method-protocol: ReturnTimeout SOAP1.2
//gsoap LM2 service method-style: ReturnTimeout document
//gsoap LM2 service method-encoding: ReturnTimeout literal
//gsoap LM2 service method-action: ReturnTimeout http://www.lumora.example/api/ReturnTimeout
int __LM2__ReturnTimeout(_LM1__ReturnTimeout* LM1__ReturnTimeout, _LM1__ReturnTimeoutResponse& LM1__ReturnTimeoutResponse);

//gsoap LM2 service method-protocol: calcOrderTax SOAP1.2
//gsoap LM2 service method-style: calcOrderTax document
//gsoap LM2 service method-encoding: calcOrderTax literal
//gsoap LM2 service method-action: calcOrderTax http://www.lumora.example/api/calcOrderTax
int __LM2__calcOrderTax(_LM1__calcOrderTax* LM1__calcOrderTax, _LM1__calcOrderTaxResponse& LM1__calcOrderTaxResponse);

//gsoap LM2 service method-protocol: GetCountryID SOAP1.2
//gsoap LM2 service method-style: GetCountryID document
//gsoap LM2 service method-encoding: GetCountryID literal
//gsoap LM2 service method-action: GetCountryID http://www.lumora.example/api/GetCountryID
int __LM2__GetCountryID(_LM1__GetCountryID* LM1__GetCountryID, _LM1__GetCountryIDResponse& LM1__GetCountryIDResponse);

//gsoap LM2 service method-protocol: getAudioDefaultProperty SOAP1.2
//gsoap LM2 service method-style: getAudioDefaultProperty document
//gsoap LM2 service method-encoding: getAudioDefaultProperty literal
//gsoap LM2 service method-action: getAudioDefaultProperty http://www.lumora.example/api/getAudioDefaultProperty
int __LM2__getAudioDefaultProperty(_LM1__getAudioDefaultProperty* LM1__getAudioDefaultProperty, _LM1__getAudioDefaultPropertyResponse& LM1__getAudioDefaultPropertyResponse);

//gsoap LM2 service method-protocol: setAudioDefaultProperty SOAP1.2
//gsoap LM2 service method-style: setAudioDefaultProperty document
//gsoap LM2 service method-encoding: setAudioDefaultProperty literal
//gsoap LM2 service method-action: setAudioDefaultProperty http://www.lumora.example/api/setAudioDefaultProperty
int __LM2__setAudioDefaultProperty(_LM1__setAudioDefaultProperty* LM1__setAudioDefaultProperty, _LM1__setAudioDefaultPropertyResponse& LM1__setAudioDefaultPropertyResponse);

//gsoap LM2 service method-protocol: getTHXMediaDirector SOAP1.2
//gsoap LM2 service method-style: getTHXMediaDirector document
//gsoap LM2 service method-encoding: getTHXMediaDirector literal
//gsoap LM2 service method-action: getTHXMediaDirector http://www.lumora.example/api/getTHXMediaDirector
int __LM2__getTHXMediaDirector(_LM1__getTHXMediaDirector* LM1__getTHXMediaDirector, _LM1__getTHXMediaDirectorResponse& LM1__getTHXMediaDirectorResponse);

//gsoap LM2 service method-protocol: getTHXMediaDirectorBonusAsset SOAP1.2
//gsoap LM2 service method-style: getTHXMediaDirectorBonusAsset document
//gsoap LM2 service method-encoding: getTHXMediaDirectorBonusAsset literal
//gsoap LM2 service method-action: getTHXMediaDirectorBonusAsset http://www.lumora.example/api/getTHXMediaDirectorBonusAsset
int __LM2__getTHXMediaDirectorBonusAsset(_LM1__getTHXMediaDirectorBonusAsset* LM1__getTHXMediaDirectorBonusAsset, _LM1__getTHXMediaDirectorBonusAssetResponse& LM1__getTHXMediaDirectorBonusAssetResponse);

/***************************************************************************************************
 * RealTimeBrowse: catalogue browsing.
 * 20 operations, in the order of the proxy's call methods.
 **************************************************************************************************/

//gsoap LM3 service name: RealTimeBrowseSoap12
//gsoap LM3 service type: RealTimeBrowseSoap12
//gsoap LM3 service port: http://stgapi.lumora.example/api/RealTimeBrowse.asmx
//gsoap LM3 service namespace: http://www.lumora.example/api/RealTimeBrowseSoap12
//gsoap LM3 service transport: http://schemas.xmlsoap.org/soap/http

//gsoap LM3 service method-protocol: getFileType SOAP1.2
//gsoap LM3 service method-style: getFileType document
//gsoap LM3 service method-encoding: getFileType literal
//gsoap LM3 service method-action: getFileType http://www.lumora.example/api/getFileType
int __LM3__getFileType(_LM1__getFileType* LM1__getFileType, _LM1__getFileTypeResponse& LM1__getFileTypeResponse);

//gsoap LM3 service method-protocol: getNavigation SOAP1.2
//gsoap LM3 service method-style: getNavigation document
//gsoap LM3 service method-encoding: getNavigation literal
//gsoap LM3 service method-action: getNavigation http://www.lumora.example/api/getNavigation
int __LM3__getNavigation(_LM1__getNavigation* LM1__getNavigation, _LM1__getNavigationResponse& LM1__getNavigationResponse);

//gsoap LM3 service method-protocol: searchForTitle SOAP1.2
//gsoap LM3 service method-style: searchForTitle document
//gsoap LM3 service method-encoding: searchForTitle literal
//gsoap LM3 service method-action: searchForTitle http://www.lumora.example/api/searchForTitle
int __LM3__searchForTitle(_LM1__searchForTitle* LM1__searchForTitle, _LM1__searchForTitleResponse& LM1__searchForTitleResponse);

//gsoap LM3 service method-protocol: searchForTitleDetail SOAP1.2
//gsoap LM3 service method-style: searchForTitleDetail document
//gsoap LM3 service method-encoding: searchForTitleDetail literal
//gsoap LM3 service method-action: searchForTitleDetail http://www.lumora.example/api/searchForTitleDetail
int __LM3__searchForTitleDetail(_LM1__searchForTitleDetail* LM1__searchForTitleDetail, _LM1__searchForTitleDetailResponse& LM1__searchForTitleDetailResponse);

//gsoap LM3 service method-protocol: searchForTitleDetail_USCOREIncludeShortDesc SOAP1.2
//gsoap LM3 service method-style: searchForTitleDetail_USCOREIncludeShortDesc document
//gsoap LM3 service method-encoding: searchForTitleDetail_USCOREIncludeShortDesc literal
//gsoap LM3 service method-action: searchForTitleDetail_USCOREIncludeShortDesc http://www.lumora.example/api/searchForTitleDetail_IncludeShortDesc
int __LM3__searchForTitleDetail_USCOREIncludeShortDesc(_LM1__searchForTitleDetail_USCOREIncludeShortDesc* LM1__searchForTitleDetail_USCOREIncludeShortDesc, _LM1__searchForTitleDetail_USCOREIncludeShortDescResponse& LM1__searchForTitleDetail_USCOREIncludeShortDescResponse);

//gsoap LM3 service method-protocol: getGenreLabel SOAP1.2
//gsoap LM3 service method-style: getGenreLabel document
//gsoap LM3 service method-encoding: getGenreLabel literal
//gsoap LM3 service method-action: getGenreLabel http://www.lumora.example/api/getGenreLabel
int __LM3__getGenreLabel(_LM1__getGenreLabel* LM1__getGenreLabel, _LM1__getGenreLabelResponse& LM1__getGenreLabelResponse);

//gsoap LM3 service method-protocol: getTitlesByNavigation SOAP1.2
//gsoap LM3 service method-style: getTitlesByNavigation document
//gsoap LM3 service method-encoding: getTitlesByNavigation literal
//gsoap LM3 service method-action: getTitlesByNavigation http://www.lumora.example/api/getTitlesByNavigation
int __LM3__getTitlesByNavigation(_LM1__getTitlesByNavigation* LM1__getTitlesByNavigation, _LM1__getTitlesByNavigationResponse& LM1__getTitlesByNavigationResponse);

//gsoap LM3 service method-protocol: getTitlesByNavigation_USCOREIncludeShortDesc SOAP1.2
//gsoap LM3 service method-style: getTitlesByNavigation_USCOREIncludeShortDesc document
//gsoap LM3 service method-encoding: getTitlesByNavigation_USCOREIncludeShortDesc literal
//gsoap LM3 service method-action: getTitlesByNavigation_USCOREIncludeShortDesc http://www.lumora.example/api/getTitlesByNavigation_IncludeShortDesc
int __LM3__getTitlesByNavigation_USCOREIncludeShortDesc(_LM1__getTitlesByNavigation_USCOREIncludeShortDesc* LM1__getTitlesByNavigation_USCOREIncludeShortDesc, _LM1__getTitlesByNavigation_USCOREIncludeShortDescResponse& LM1__getTitlesByNavigation_USCOREIncludeShortDescResponse);

//gsoap LM3 service method-protocol: getTitlesByGenreArray SOAP1.2
//gsoap LM3 service method-style: getTitlesByGenreArray document
//gsoap LM3 service method-encoding: getTitlesByGenreArray literal
//gsoap LM3 service method-action: getTitlesByGenreArray http://www.lumora.example/api/getTitlesByGenreArray
int __LM3__getTitlesByGenreArray(_LM1__getTitlesByGenreArray* LM1__getTitlesByGenreArray, _LM1__getTitlesByGenreArrayResponse& LM1__getTitlesByGenreArrayResponse);

//gsoap LM3 service method-protocol: getTitleListing SOAP1.2
//gsoap LM3 service method-style: getTitleListing document
//gsoap LM3 service method-encoding: getTitleListing literal
//gsoap LM3 service method-action: getTitleListing http://www.lumora.example/api/getTitleListing
int __LM3__getTitleListing(_LM1__getTitleListing* LM1__getTitleListing, _LM1__getTitleListingResponse& LM1__getTitleListingResponse);

//gsoap LM3 service method-protocol: getTitleListingByAsset SOAP1.2
//gsoap LM3 service method-style: getTitleListingByAsset document
//gsoap LM3 service method-encoding: getTitleListingByAsset literal
//gsoap LM3 service method-action: getTitleListingByAsset http://www.lumora.example/api/getTitleListingByAsset
int __LM3__getTitleListingByAsset(_LM1__getTitleListingByAsset* LM1__getTitleListingByAsset, _LM1__getTitleListingByAssetResponse& LM1__getTitleListingByAssetResponse);

//gsoap LM3 service method-protocol: getTvEpisodeListByTitleID SOAP1.2
//gsoap LM3 service method-style: getTvEpisodeListByTitleID document
//gsoap LM3 service method-encoding: getTvEpisodeListByTitleID literal
//gsoap LM3 service method-action: getTvEpisodeListByTitleID http://www.lumora.example/api/getTvEpisodeListByTitleID
int __LM3__getTvEpisodeListByTitleID(_LM1__getTvEpisodeListByTitleID* LM1__getTvEpisodeListByTitleID, _LM1__getTvEpisodeListByTitleIDResponse& LM1__getTvEpisodeListByTitleIDResponse);

//gsoap LM3 service method-protocol: getTvEpisodeListing SOAP1.2
//gsoap LM3 service method-style: getTvEpisodeListing document
//gsoap LM3 service method-encoding: getTvEpisodeListing literal
//gsoap LM3 service method-action: getTvEpisodeListing http://www.lumora.example/api/getTvEpisodeListing
int __LM3__getTvEpisodeListing(_LM1__getTvEpisodeListing* LM1__getTvEpisodeListing, _LM1__getTvEpisodeListingResponse& LM1__getTvEpisodeListingResponse);

//gsoap LM3 service method-protocol: getAllTvEpisodeListings SOAP1.2
//gsoap LM3 service method-style: getAllTvEpisodeListings document
//gsoap LM3 service method-encoding: getAllTvEpisodeListings literal
//gsoap LM3 service method-action: getAllTvEpisodeListings http://www.lumora.example/api/getAllTvEpisodeListings
int __LM3__getAllTvEpisodeListings(_LM1__getAllTvEpisodeListings* LM1__getAllTvEpisodeListings, _LM1__getAllTvEpisodeListingsResponse& LM1__getAllTvEpisodeListingsResponse);

//gsoap LM3 service method-protocol: translateRecboxExternalId SOAP1.2
//gsoap LM3 service method-style: translateRecboxExternalId document
//gsoap LM3 service method-encoding: translateRecboxExternalId literal
//gsoap LM3 service method-action: translateRecboxExternalId http://www.lumora.example/api/translateRecboxExternalId
int __LM3__translateRecboxExternalId(_LM1__translateRecboxExternalId* LM1__translateRecboxExternalId, _LM1__translateRecboxExternalIdResponse& LM1__translateRecboxExternalIdResponse);

//gsoap LM3 service method-protocol: translateSkuId SOAP1.2
//gsoap LM3 service method-style: translateSkuId document
//gsoap LM3 service method-encoding: translateSkuId literal
//gsoap LM3 service method-action: translateSkuId http://www.lumora.example/api/translateSkuId
int __LM3__translateSkuId(_LM1__translateSkuId* LM1__translateSkuId, _LM1__translateSkuIdResponse& LM1__translateSkuIdResponse);

//gsoap LM3 service method-protocol: shouldUpdateCache SOAP1.2
//gsoap LM3 service method-style: shouldUpdateCache document
//gsoap LM3 service method-encoding: shouldUpdateCache literal
//gsoap LM3 service method-action: shouldUpdateCache http://www.lumora.example/api/shouldUpdateCache
int __LM3__shouldUpdateCache(_LM1__shouldUpdateCache* LM1__shouldUpdateCache, _LM1__shouldUpdateCacheResponse& LM1__shouldUpdateCacheResponse);

//gsoap LM3 service method-protocol: getLastCacheLoadTimeUTC SOAP1.2
//gsoap LM3 service method-style: getLastCacheLoadTimeUTC document
//gsoap LM3 service method-encoding: getLastCacheLoadTimeUTC literal
//gsoap LM3 service method-action: getLastCacheLoadTimeUTC http://www.lumora.example/api/getLastCacheLoadTimeUTC
int __LM3__getLastCacheLoadTimeUTC(_LM1__getLastCacheLoadTimeUTC* LM1__getLastCacheLoadTimeUTC, _LM1__getLastCacheLoadTimeUTCResponse& LM1__getLastCacheLoadTimeUTCResponse);

//gsoap LM3 service method-protocol: getRecommendedTitles SOAP1.2
//gsoap LM3 service method-style: getRecommendedTitles document
//gsoap LM3 service method-encoding: getRecommendedTitles literal
//gsoap LM3 service method-action: getRecommendedTitles http://www.lumora.example/api/getRecommendedTitles
int __LM3__getRecommendedTitles(_LM1__getRecommendedTitles* LM1__getRecommendedTitles, _LM1__getRecommendedTitlesResponse& LM1__getRecommendedTitlesResponse);

//gsoap LM3 service method-protocol: getRecommendedTitles_USCORESpecifyOutput SOAP1.2
//gsoap LM3 service method-style: getRecommendedTitles_USCORESpecifyOutput document
//gsoap LM3 service method-encoding: getRecommendedTitles_USCORESpecifyOutput literal
//gsoap LM3 service method-action: getRecommendedTitles_USCORESpecifyOutput http://www.lumora.example/api/getRecommendedTitles_SpecifyOutput
int __LM3__getRecommendedTitles_USCORESpecifyOutput(_LM1__getRecommendedTitles_USCORESpecifyOutput* LM1__getRecommendedTitles_USCORESpecifyOutput, _LM1__getRecommendedTitles_USCORESpecifyOutputResponse& LM1__getRecommendedTitles_USCORESpecifyOutputResponse);

/***************************************************************************************************
 * DownloadAPI: account, device, purchase, wishlist and download queue.
 * 27 operations, in the order of the proxy's call methods.
 **************************************************************************************************/

//gsoap LM4 service name: DownloadAPISoap12
//gsoap LM4 service type: DownloadAPISoap12
//gsoap LM4 service port: http://stgapi.lumora.example/api/DownloadAPI.asmx
//gsoap LM4 service namespace: http://www.lumora.example/api/DownloadAPISoap12
//gsoap LM4 service transport: http://schemas.xmlsoap.org/soap/http

//gsoap LM4 service method-protocol: authorizeDevice SOAP1.2
//gsoap LM4 service method-style: authorizeDevice document
//gsoap LM4 service method-encoding: authorizeDevice literal
//gsoap LM4 service method-action: authorizeDevice http://www.lumora.example/api/authorizeDevice
int __LM4__authorizeDevice(_LM1__authorizeDevice* LM1__authorizeDevice, _LM1__authorizeDeviceResponse& LM1__authorizeDeviceResponse);

//gsoap LM4 service method-protocol: doPurchaseSavedbilling SOAP1.2
//gsoap LM4 service method-style: doPurchaseSavedbilling document
//gsoap LM4 service method-encoding: doPurchaseSavedbilling literal
//gsoap LM4 service method-action: doPurchaseSavedbilling http://www.lumora.example/api/doPurchaseSavedbilling
int __LM4__doPurchaseSavedbilling(_LM1__doPurchaseSavedbilling* LM1__doPurchaseSavedbilling, _LM1__doPurchaseSavedbillingResponse& LM1__doPurchaseSavedbillingResponse);

//gsoap LM4 service method-protocol: getMyVideos SOAP1.2
//gsoap LM4 service method-style: getMyVideos document
//gsoap LM4 service method-encoding: getMyVideos literal
//gsoap LM4 service method-action: getMyVideos http://www.lumora.example/api/getMyVideos
int __LM4__getMyVideos(_LM1__getMyVideos* LM1__getMyVideos, _LM1__getMyVideosResponse& LM1__getMyVideosResponse);

//gsoap LM4 service method-protocol: checkForPurchasedTitle SOAP1.2
//gsoap LM4 service method-style: checkForPurchasedTitle document
//gsoap LM4 service method-encoding: checkForPurchasedTitle literal
//gsoap LM4 service method-action: checkForPurchasedTitle http://www.lumora.example/api/checkForPurchasedTitle
int __LM4__checkForPurchasedTitle(_LM1__checkForPurchasedTitle* LM1__checkForPurchasedTitle, _LM1__checkForPurchasedTitleResponse& LM1__checkForPurchasedTitleResponse);

//gsoap LM4 service method-protocol: getBillingInfo SOAP1.2
//gsoap LM4 service method-style: getBillingInfo document
//gsoap LM4 service method-encoding: getBillingInfo literal
//gsoap LM4 service method-action: getBillingInfo http://www.lumora.example/api/getBillingInfo
int __LM4__getBillingInfo(_LM1__getBillingInfo* LM1__getBillingInfo, _LM1__getBillingInfoResponse& LM1__getBillingInfoResponse);

//gsoap LM4 service method-protocol: showPrePaidCardBalance SOAP1.2
//gsoap LM4 service method-style: showPrePaidCardBalance document
//gsoap LM4 service method-encoding: showPrePaidCardBalance literal
//gsoap LM4 service method-action: showPrePaidCardBalance http://www.lumora.example/api/showPrePaidCardBalance
int __LM4__showPrePaidCardBalance(_LM1__showPrePaidCardBalance* LM1__showPrePaidCardBalance, _LM1__showPrePaidCardBalanceResponse& LM1__showPrePaidCardBalanceResponse);

//gsoap LM4 service method-protocol: getEmailAddress SOAP1.2
//gsoap LM4 service method-style: getEmailAddress document
//gsoap LM4 service method-encoding: getEmailAddress literal
//gsoap LM4 service method-action: getEmailAddress http://www.lumora.example/api/getEmailAddress
int __LM4__getEmailAddress(_LM1__getEmailAddress* LM1__getEmailAddress, _LM1__getEmailAddressResponse& LM1__getEmailAddressResponse);

//gsoap LM4 service method-protocol: getSettingsPageInfo SOAP1.2
//gsoap LM4 service method-style: getSettingsPageInfo document
//gsoap LM4 service method-encoding: getSettingsPageInfo literal
//gsoap LM4 service method-action: getSettingsPageInfo http://www.lumora.example/api/getSettingsPageInfo
int __LM4__getSettingsPageInfo(_LM1__getSettingsPageInfo* LM1__getSettingsPageInfo, _LM1__getSettingsPageInfoResponse& LM1__getSettingsPageInfoResponse);

//gsoap LM4 service method-protocol: assignGiftCertificateToUser SOAP1.2
//gsoap LM4 service method-style: assignGiftCertificateToUser document
//gsoap LM4 service method-encoding: assignGiftCertificateToUser literal
//gsoap LM4 service method-action: assignGiftCertificateToUser http://www.lumora.example/api/assignGiftCertificateToUser
int __LM4__assignGiftCertificateToUser(_LM1__assignGiftCertificateToUser* LM1__assignGiftCertificateToUser, _LM1__assignGiftCertificateToUserResponse& LM1__assignGiftCertificateToUserResponse);

//gsoap LM4 service method-protocol: getBonusAssetURL SOAP1.2
//gsoap LM4 service method-style: getBonusAssetURL document
//gsoap LM4 service method-encoding: getBonusAssetURL literal
//gsoap LM4 service method-action: getBonusAssetURL http://www.lumora.example/api/getBonusAssetURL
int __LM4__getBonusAssetURL(_LM1__getBonusAssetURL* LM1__getBonusAssetURL, _LM1__getBonusAssetURLResponse& LM1__getBonusAssetURLResponse);

//gsoap LM4 service method-protocol: getWishlistItems SOAP1.2
//gsoap LM4 service method-style: getWishlistItems document
//gsoap LM4 service method-encoding: getWishlistItems literal
//gsoap LM4 service method-action: getWishlistItems http://www.lumora.example/api/getWishlistItems
int __LM4__getWishlistItems(_LM1__getWishlistItems* LM1__getWishlistItems, _LM1__getWishlistItemsResponse& LM1__getWishlistItemsResponse);

//gsoap LM4 service method-protocol: removeItemFromWishList SOAP1.2
//gsoap LM4 service method-style: removeItemFromWishList document
//gsoap LM4 service method-encoding: removeItemFromWishList literal
//gsoap LM4 service method-action: removeItemFromWishList http://www.lumora.example/api/removeItemFromWishList
int __LM4__removeItemFromWishList(_LM1__removeItemFromWishList* LM1__removeItemFromWishList, _LM1__removeItemFromWishListResponse& LM1__removeItemFromWishListResponse);

//gsoap LM4 service method-protocol: removeAllItemsFromWishList SOAP1.2
//gsoap LM4 service method-style: removeAllItemsFromWishList document
//gsoap LM4 service method-encoding: removeAllItemsFromWishList literal
//gsoap LM4 service method-action: removeAllItemsFromWishList http://www.lumora.example/api/removeAllItemsFromWishList
int __LM4__removeAllItemsFromWishList(_LM1__removeAllItemsFromWishList* LM1__removeAllItemsFromWishList, _LM1__removeAllItemsFromWishListResponse& LM1__removeAllItemsFromWishListResponse);

//gsoap LM4 service method-protocol: addItemToWishlist SOAP1.2
//gsoap LM4 service method-style: addItemToWishlist document
//gsoap LM4 service method-encoding: addItemToWishlist literal
//gsoap LM4 service method-action: addItemToWishlist http://www.lumora.example/api/addItemToWishlist
int __LM4__addItemToWishlist(_LM1__addItemToWishlist* LM1__addItemToWishlist, _LM1__addItemToWishlistResponse& LM1__addItemToWishlistResponse);

//gsoap LM4 service method-protocol: checkAdultVerificationEnabled SOAP1.2
//gsoap LM4 service method-style: checkAdultVerificationEnabled document
//gsoap LM4 service method-encoding: checkAdultVerificationEnabled literal
//gsoap LM4 service method-action: checkAdultVerificationEnabled http://www.lumora.example/api/checkAdultVerificationEnabled
int __LM4__checkAdultVerificationEnabled(_LM1__checkAdultVerificationEnabled* LM1__checkAdultVerificationEnabled, _LM1__checkAdultVerificationEnabledResponse& LM1__checkAdultVerificationEnabledResponse);

//gsoap LM4 service method-protocol: checkAdultVerificationPin SOAP1.2
//gsoap LM4 service method-style: checkAdultVerificationPin document
//gsoap LM4 service method-encoding: checkAdultVerificationPin literal
//gsoap LM4 service method-action: checkAdultVerificationPin http://www.lumora.example/api/checkAdultVerificationPin
int __LM4__checkAdultVerificationPin(_LM1__checkAdultVerificationPin* LM1__checkAdultVerificationPin, _LM1__checkAdultVerificationPinResponse& LM1__checkAdultVerificationPinResponse);

//gsoap LM4 service method-protocol: queueDownload SOAP1.2
//gsoap LM4 service method-style: queueDownload document
//gsoap LM4 service method-encoding: queueDownload literal
//gsoap LM4 service method-action: queueDownload http://www.lumora.example/api/queueDownload
int __LM4__queueDownload(_LM1__queueDownload* LM1__queueDownload, _LM1__queueDownloadResponse& LM1__queueDownloadResponse);

//gsoap LM4 service method-protocol: queueDownloadSpecifyDRM SOAP1.2
//gsoap LM4 service method-style: queueDownloadSpecifyDRM document
//gsoap LM4 service method-encoding: queueDownloadSpecifyDRM literal
//gsoap LM4 service method-action: queueDownloadSpecifyDRM http://www.lumora.example/api/queueDownloadSpecifyDRM
int __LM4__queueDownloadSpecifyDRM(_LM1__queueDownloadSpecifyDRM* LM1__queueDownloadSpecifyDRM, _LM1__queueDownloadSpecifyDRMResponse& LM1__queueDownloadSpecifyDRMResponse);

//gsoap LM4 service method-protocol: pollForDownloads SOAP1.2
//gsoap LM4 service method-style: pollForDownloads document
//gsoap LM4 service method-encoding: pollForDownloads literal
//gsoap LM4 service method-action: pollForDownloads http://www.lumora.example/api/pollForDownloads
int __LM4__pollForDownloads(_LM1__pollForDownloads* LM1__pollForDownloads, _LM1__pollForDownloadsResponse& LM1__pollForDownloadsResponse);

//gsoap LM4 service method-protocol: sendDownloadStatusUpdate SOAP1.2
//gsoap LM4 service method-style: sendDownloadStatusUpdate document
//gsoap LM4 service method-encoding: sendDownloadStatusUpdate literal
//gsoap LM4 service method-action: sendDownloadStatusUpdate http://www.lumora.example/api/sendDownloadStatusUpdate
int __LM4__sendDownloadStatusUpdate(_LM1__sendDownloadStatusUpdate* LM1__sendDownloadStatusUpdate, _LM1__sendDownloadStatusUpdateResponse& LM1__sendDownloadStatusUpdateResponse);

//gsoap LM4 service method-protocol: deactivateDevice SOAP1.2
//gsoap LM4 service method-style: deactivateDevice document
//gsoap LM4 service method-encoding: deactivateDevice literal
//gsoap LM4 service method-action: deactivateDevice http://www.lumora.example/api/deactivateDevice
int __LM4__deactivateDevice(_LM1__deactivateDevice* LM1__deactivateDevice, _LM1__deactivateDeviceResponse& LM1__deactivateDeviceResponse);

//gsoap LM4 service method-protocol: getConfig SOAP1.2
//gsoap LM4 service method-style: getConfig document
//gsoap LM4 service method-encoding: getConfig literal
//gsoap LM4 service method-action: getConfig http://www.lumora.example/api/getConfig
int __LM4__getConfig(_LM1__getConfig* LM1__getConfig, _LM1__getConfigResponse& LM1__getConfigResponse);

//gsoap LM4 service method-protocol: checkAuthToken SOAP1.2
//gsoap LM4 service method-style: checkAuthToken document
//gsoap LM4 service method-encoding: checkAuthToken literal
//gsoap LM4 service method-action: checkAuthToken http://www.lumora.example/api/checkAuthToken
int __LM4__checkAuthToken(_LM1__checkAuthToken* LM1__checkAuthToken, _LM1__checkAuthTokenResponse& LM1__checkAuthTokenResponse);

//gsoap LM4 service method-protocol: GetCountryID SOAP1.2
//gsoap LM4 service method-style: GetCountryID document
//gsoap LM4 service method-encoding: GetCountryID literal
//gsoap LM4 service method-action: GetCountryID http://www.lumora.example/api/GetCountryID
int __LM4__GetCountryID(_LM1__GetCountryID* LM1__GetCountryID, _LM1__GetCountryIDResponse& LM1__GetCountryIDResponse);

//gsoap LM4 service method-protocol: checkRentalExpiration SOAP1.2
//gsoap LM4 service method-style: checkRentalExpiration document
//gsoap LM4 service method-encoding: checkRentalExpiration literal
//gsoap LM4 service method-action: checkRentalExpiration http://www.lumora.example/api/checkRentalExpiration
int __LM4__checkRentalExpiration(_LM1__checkRentalExpiration* LM1__checkRentalExpiration, _LM1__checkRentalExpirationResponse& LM1__checkRentalExpirationResponse);

//gsoap LM4 service method-protocol: getLicenseCounts SOAP1.2
//gsoap LM4 service method-style: getLicenseCounts document
//gsoap LM4 service method-encoding: getLicenseCounts literal
//gsoap LM4 service method-action: getLicenseCounts http://www.lumora.example/api/getLicenseCounts
int __LM4__getLicenseCounts(_LM1__getLicenseCounts* LM1__getLicenseCounts, _LM1__getLicenseCountsResponse& LM1__getLicenseCountsResponse);

//gsoap LM4 service method-protocol: getLicenseCount SOAP1.2
//gsoap LM4 service method-style: getLicenseCount document
//gsoap LM4 service method-encoding: getLicenseCount literal
//gsoap LM4 service method-action: getLicenseCount http://www.lumora.example/api/getLicenseCount
int __LM4__getLicenseCount(_LM1__getLicenseCount* LM1__getLicenseCount, _LM1__getLicenseCountResponse& LM1__getLicenseCountResponse);

// clang-format on
