// LMPlayerLibAE over a simulated player: no decoding and no network, only the state machine,
// the playing time measured with a monotonic clock and the player events. The behaviour the
// movie sees is described in docs/player-standin.md.
#include "LMPlayerLibAE.h"

#include <cmath>

#include "LMPlayerStandIn.h"
#include "ae/AEMemory.h"

using ae::stagecraft::ASContext;
using ae::stagecraft::ASObject;
using ae::stagecraft::ASResult;
using ae::stagecraft::ASValue;
using ae::stagecraft::kASTypeNull;
using ae::stagecraft::kASTypeNumber;
using ae::stagecraft::kASTypeString;

// Instances live in kernel blocks, which are 8-byte aligned.
static_assert(alignof(LMPlayerLibAE) <= ae::kAEBlockHeader, "over-aligned for a kernel block");

namespace {

constexpr const char* kVersion = "LMPlayerLibAE stand-in 1.0";
constexpr double kDefaultDurationSeconds = 5400;  // a feature film
constexpr double kBandwidthKbps = 8000;           // what an HD stream would measure
constexpr const char* kOnly3DFormat = "2D";

lmplayer::StandInClock g_Clock = nullptr;

std::chrono::steady_clock::time_point Now() {
    return g_Clock ? g_Clock() : std::chrono::steady_clock::now();
}

// The argument at `index`, null when the movie passed fewer.
ASValue* Arg(AEArray<ASValue*>& args, uint32_t index) {
    return index < args.GetCount() ? args[index] : nullptr;
}

bool IsMissing(const ASValue* value) {
    return !value || value->IsUndefined();
}

bool ReadString(const ASValue* value, AEString& out) {
    return value && value->GetType() == kASTypeString && value->ToString(out);
}

// A duration in seconds: missing means the default; anything else must be a positive number.
bool ReadDuration(const ASValue* value, double& seconds) {
    if (IsMissing(value)) {
        seconds = kDefaultDurationSeconds;
        return true;
    }
    if (value->GetType() != kASTypeNumber)
        return false;
    double n = value->ToNumber();
    if (!std::isfinite(n) || n <= 0)
        return false;
    seconds = n;
    return true;
}

// A property of `object` read as ReadDuration and ReadString read arguments.
bool ReadDurationProperty(ASObject& object, const char* name, double& seconds) {
    ASValue* value = object.GetProperty(name);
    if (!value)
        return false;
    bool ok = ReadDuration(value, seconds);
    value->Release();
    return ok;
}

bool ReadStringProperty(ASObject& object, const char* name, AEString& out) {
    ASValue* value = object.GetProperty(name);
    if (!value)
        return false;
    bool ok = ReadString(value, out);
    value->Release();
    return ok;
}

// Play's media: (url[, duration]) or ({url, duration}); the URL must not be empty.
bool ReadMedia(AEArray<ASValue*>& args, AEString& url, double& seconds) {
    ASValue* first = Arg(args, 0);
    bool ok;
    if (first->GetType() == kASTypeString) {
        ok = ReadString(first, url) && ReadDuration(Arg(args, 1), seconds);
    } else {
        ASObject* asset = first->AsObject();
        ok = asset && !asset->IsFunction() && !asset->IsArray() &&
             ReadStringProperty(*asset, "url", url) &&
             ReadDurationProperty(*asset, "duration", seconds);
    }
    return ok && !url.empty();
}

// Hands a new handle to the movie as the return value and releases it; a null handle (the
// runtime had no memory) becomes kStatusNoMemory.
void Answer(ASResult& result, ASValue* value) {
    if (!value) {
        result.SetStatus(LMPlayerLibAE::kStatusNoMemory);
        return;
    }
    result.SetValue(*value);
    value->Release();
    result.SetStatus(LMPlayerLibAE::kStatusOK);
}

}  // namespace

void lmplayer::SetStandInClock(StandInClock now) {
    g_Clock = now;
}

LMPlayerLibAE::~LMPlayerLibAE() {
    if (m_EventHandler)
        m_EventHandler->Release();
}

// ---- Library and player lifetime

void LMPlayerLibAE::Initialize(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult& result) {
    m_Initialized = true;
    result.SetStatus(kStatusOK);
}

// Back to the state of a new instance: the player and the event handler are released.
void LMPlayerLibAE::Shutdown(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
    DropPlayer();
    if (m_EventHandler) {
        m_EventHandler->Release();
        m_EventHandler = nullptr;
    }
    m_Initialized = false;
    SyncUpdates(context);
    result.SetStatus(kStatusOK);
}

void LMPlayerLibAE::GetVersion(ASContext& context, ASObject&, AEArray<ASValue*>&,
                               ASResult& result) {
    Answer(result, context.NewString(kVersion));
}

void LMPlayerLibAE::CreatePlayer(ASContext&, ASObject&, AEArray<ASValue*>&, ASResult& result) {
    if (!m_Initialized) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    if (m_HasPlayer) {
        result.SetStatus(kStatusWrongState);
        return;
    }
    m_HasPlayer = true;
    result.SetStatus(kStatusOK);
}

void LMPlayerLibAE::ReleasePlayer(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                  ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    DropPlayer();
    SyncUpdates(context);
    result.SetStatus(kStatusOK);
}

// ---- Transport

void LMPlayerLibAE::Play(ASContext& context, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    EndIfDue();
    int32_t status = kStatusOK;
    if (!IsMissing(Arg(args, 0))) {
        AEString url;
        double seconds = 0;
        if (!ReadMedia(args, url, seconds)) {
            status = kStatusBadArguments;
        } else if (!m_Url.Assign(url.c_str(), url.length())) {
            status = kStatusNoMemory;
        } else {
            m_DurationSeconds = seconds;
            StartMedia();
        }
    } else if (m_State == kStatePaused) {
        m_PlayingSince = Now();
        m_State = kStatePlaying;
        Queue("play", m_State);
    } else if (m_State != kStatePlaying) {
        if (m_Url.empty())
            status = kStatusBadArguments;  // nothing to play again
        else
            StartMedia();
    }
    SyncUpdates(context);
    result.SetStatus(status);
}

void LMPlayerLibAE::Pause(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    EndIfDue();
    int32_t status = kStatusOK;
    if (m_State == kStatePlaying) {
        m_PlayedSeconds = PositionSeconds();
        m_State = kStatePaused;
        Queue("pause", m_State);
    } else if (m_State != kStatePaused) {
        status = kStatusWrongState;
    }
    SyncUpdates(context);
    result.SetStatus(status);
}

// Back to the start of the media, which stays chosen for Play().
void LMPlayerLibAE::Stop(ASContext& context, ASObject&, AEArray<ASValue*>&, ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    EndIfDue();
    if (m_State != kStateStopped) {
        m_PlayedSeconds = 0;
        m_State = kStateStopped;
        Queue("stop", m_State);
    }
    SyncUpdates(context);
    result.SetStatus(kStatusOK);
}

// ---- Queries

void LMPlayerLibAE::GetPlaybackTime(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                    ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    EndIfDue();
    SyncUpdates(context);
    Answer(result, context.NewNumber(PositionSeconds()));
}

void LMPlayerLibAE::GetPlaybackState(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                     ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    EndIfDue();
    SyncUpdates(context);
    Answer(result, context.NewInt(m_State));
}

void LMPlayerLibAE::GetDuration(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    Answer(result, context.NewNumber(m_DurationSeconds));
}

// Data flows only while playing.
void LMPlayerLibAE::GetCurrentBandwidth(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                        ASResult& result) {
    if (!m_HasPlayer) {
        result.SetStatus(kStatusNoPlayer);
        return;
    }
    EndIfDue();
    SyncUpdates(context);
    Answer(result, context.NewNumber(m_State == kStatePlaying ? kBandwidthKbps : 0));
}

// ---- Events

// A function replaces the handler; null or no argument removes it; anything else keeps it.
void LMPlayerLibAE::RegisterEventHandler(ASContext&, ASObject&, AEArray<ASValue*>& args,
                                         ASResult& result) {
    ASValue* fn = Arg(args, 0);
    ASValue* kept = nullptr;
    if (!IsMissing(fn) && fn->GetType() != kASTypeNull) {
        ASObject* object = fn->AsObject();
        if (!object || !object->IsFunction()) {
            result.SetStatus(kStatusBadArguments);
            return;
        }
        kept = fn->Clone();
        if (!kept) {
            result.SetStatus(kStatusNoMemory);
            return;
        }
    }
    if (m_EventHandler)
        m_EventHandler->Release();
    m_EventHandler = kept;
    result.SetStatus(kStatusOK);
}

void LMPlayerLibAE::OnUpdate(ASContext& context) {
    if (m_HasPlayer)
        EndIfDue();
    DeliverEvents(context);
    SyncUpdates(context);
}

// ---- Features this player does not have

void LMPlayerLibAE::THX_ProcessContentDescriptors(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                                  ASResult& result) {
    Answer(result, context.NewBoolean(false));
}

void LMPlayerLibAE::THX_IsSupportedOnDevice(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                            ASResult& result) {
    Answer(result, context.NewBoolean(false));
}

void LMPlayerLibAE::getSupported3DFormats(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                          ASResult& result) {
    ASObject* formats = context.NewInstance("Array");
    ASValue* format = context.NewString(kOnly3DFormat);
    bool ok = false;
    if (formats && format) {
        const ASValue* argv[] = {format};
        ok = formats->CallMethod("push", 1, argv);
    }
    if (format)
        format->Release();
    if (!ok) {
        if (formats)
            formats->Release();
        result.SetStatus(kStatusNoMemory);
        return;
    }
    Answer(result, formats);
}

void LMPlayerLibAE::getConfigured3DFormat(ASContext& context, ASObject&, AEArray<ASValue*>&,
                                          ASResult& result) {
    Answer(result, context.NewString(kOnly3DFormat));
}

void LMPlayerLibAE::set3DMode(ASContext&, ASObject&, AEArray<ASValue*>& args, ASResult& result) {
    AEString mode;
    bool ok = ReadString(Arg(args, 0), mode) && mode == kOnly3DFormat;
    result.SetStatus(ok ? kStatusOK : kStatusBadArguments);
}

// The simulated player writes no log, so there is nothing to configure.
void LMPlayerLibAE::SetLogAreaIDsConfig(ASContext&, ASObject&, AEArray<ASValue*>&,
                                        ASResult& result) {
    result.SetStatus(kStatusOK);
}

// ---- The simulated player

void LMPlayerLibAE::StartMedia() {
    m_PlayedSeconds = 0;
    m_PlayingSince = Now();
    m_State = kStatePlaying;
    Queue("play", m_State);
}

// Playing time is only looked at when asked for, so the end is noticed on the first update or
// query after it.
void LMPlayerLibAE::EndIfDue() {
    if (m_State != kStatePlaying || PositionSeconds() < m_DurationSeconds)
        return;
    m_PlayedSeconds = m_DurationSeconds;
    m_State = kStateEnded;
    Queue("ended", m_State);
}

double LMPlayerLibAE::PositionSeconds() const {
    double seconds = m_PlayedSeconds;
    if (m_State == kStatePlaying)
        seconds += std::chrono::duration<double>(Now() - m_PlayingSince).count();
    return seconds < m_DurationSeconds ? seconds : m_DurationSeconds;
}

// An event that cannot be queued (no memory) is dropped.
void LMPlayerLibAE::Queue(const char* name, int32_t state) {
    m_Events.Append(Event{name, state});
}

// Delivers the events queued before this update, in order. Events the handler causes wait for the
// next update, so the handler is never re-entered and a handler that answers every event with
// another call cannot hold the loop. Releasing the player from the handler drops the rest.
void LMPlayerLibAE::DeliverEvents(ASContext& context) {
    if (!m_Events.GetCount())
        return;
    AEArray<Event> due;
    for (uint32_t i = 0; i < m_Events.GetCount(); ++i)
        due.Append(m_Events[i]);
    m_Events.Clear();
    uint32_t generation = m_PlayerGeneration;
    for (uint32_t i = 0; i < due.GetCount() && generation == m_PlayerGeneration; ++i)
        FireEvent(context, due[i]);
}

// Calls handler(name, state) through a handle of our own, so that the handler may replace or
// remove itself while it runs.
void LMPlayerLibAE::FireEvent(ASContext& context, const Event& event) {
    if (!m_EventHandler)
        return;
    ASValue* fn = m_EventHandler->Clone();
    ASValue* name = context.NewString(event.name);
    ASValue* state = context.NewInt(event.state);
    ASObject* callee = fn ? fn->AsObject() : nullptr;
    if (callee && name && state) {
        const ASValue* argv[] = {name, state};
        callee->Call(2, argv);
    }
    for (ASValue* handle : {fn, name, state}) {
        if (handle)
            handle->Release();
    }
}

// The loop's turns are needed while time runs or events wait.
void LMPlayerLibAE::SyncUpdates(ASContext& context) {
    if (m_State == kStatePlaying || m_Events.GetCount())
        context.RequestUpdates(*this);
    else
        context.StopUpdates(*this);
}

void LMPlayerLibAE::DropPlayer() {
    m_HasPlayer = false;
    m_State = kStateStopped;
    m_Url.Assign("");
    m_DurationSeconds = 0;
    m_PlayedSeconds = 0;
    m_Events.Clear();
    ++m_PlayerGeneration;
}
