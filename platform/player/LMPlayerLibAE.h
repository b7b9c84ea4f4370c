// The media player's script class (the movie's `new LMPlayerLibAE()`): one player per instance.
//
// The handlers are listed in method-table order. The four marked static are called on the
// constructor and use no instance state. Every handler ends with one ASResult::SetStatus; the
// ones that answer a value set it first.
#ifndef LM_PLAYER_LMPLAYERLIBAE_H
#define LM_PLAYER_LMPLAYERLIBAE_H

#include <chrono>
#include <cstdint>

#include "ae/AEArray.h"
#include "ae/AEString.h"
#include "ae/ASExtensionClass.h"
#include "ae/ASValue.h"

class LMPlayerLibAE : public ae::stagecraft::ASExtensionClass {
public:
    // Statuses (the movie gets the status as a number when no value was set).
    static constexpr int32_t kStatusOK = 0;
    static constexpr int32_t kStatusNoPlayer = -1;      // not initialised, or no player created
    static constexpr int32_t kStatusWrongState = -2;    // not possible in the player's state
    static constexpr int32_t kStatusBadArguments = -3;  // missing or wrongly typed arguments
    static constexpr int32_t kStatusNoMemory = -4;      // a value or a copy could not be made

    // Playback states as GetPlaybackState answers them.
    static constexpr int32_t kStateStopped = 0;
    static constexpr int32_t kStatePlaying = 1;
    static constexpr int32_t kStatePaused = 2;
    static constexpr int32_t kStateEnded = 3;

    LMPlayerLibAE() = default;
    ~LMPlayerLibAE() override;
    LMPlayerLibAE(const LMPlayerLibAE&) = delete;
    LMPlayerLibAE& operator=(const LMPlayerLibAE&) = delete;

    using ASContext = ae::stagecraft::ASContext;
    using ASObject = ae::stagecraft::ASObject;
    using ASValue = ae::stagecraft::ASValue;
    using ASResult = ae::stagecraft::ASResult;

    void Initialize(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void Shutdown(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void GetVersion(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void CreatePlayer(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                      ASResult& result);
    void ReleasePlayer(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                       ASResult& result);
    void Play(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void Pause(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void Stop(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void GetPlaybackTime(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                         ASResult& result);
    void GetPlaybackState(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                          ASResult& result);
    void GetDuration(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void GetCurrentBandwidth(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                             ASResult& result);
    void RegisterEventHandler(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                              ASResult& result);
    void THX_ProcessContentDescriptors(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                                       ASResult& result);  // static
    void THX_IsSupportedOnDevice(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                                 ASResult& result);  // static
    void getSupported3DFormats(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                               ASResult& result);  // static
    void getConfigured3DFormat(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                               ASResult& result);
    void set3DMode(ASContext& context, ASObject& self, AEArray<ASValue*>& args, ASResult& result);
    void SetLogAreaIDsConfig(ASContext& context, ASObject& self, AEArray<ASValue*>& args,
                             ASResult& result);  // static

    // Ends the media when its time is up and delivers the queued player events.
    void OnUpdate(ASContext& context) override;

private:
    // A player event waiting for the next update: its name and the state it reports.
    struct Event {
        const char* name;
        int32_t state;
    };

    void StartMedia();
    void EndIfDue();
    double PositionSeconds() const;
    void Queue(const char* name, int32_t state);
    void DeliverEvents(ASContext& context);
    void FireEvent(ASContext& context, const Event& event);
    void SyncUpdates(ASContext& context);
    void DropPlayer();

    bool m_Initialized = false;
    bool m_HasPlayer = false;
    int32_t m_State = kStateStopped;
    AEString m_Url;                // the media Play() without arguments restarts
    double m_DurationSeconds = 0;  // of that media; 0 before any
    double m_PlayedSeconds = 0;    // playing time before m_PlayingSince
    std::chrono::steady_clock::time_point m_PlayingSince{};
    ASValue* m_EventHandler = nullptr;  // our own handle to the movie's function
    AEArray<Event> m_Events;
    uint32_t m_PlayerGeneration = 0;  // counts released players, so a release stops delivery
};

#endif  // LM_PLAYER_LMPLAYERLIBAE_H
