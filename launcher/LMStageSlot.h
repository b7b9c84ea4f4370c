// The stage instance the launcher publishes for the host listener's exit routine.
//
// The launcher publishes its IStagecraft while the movie runs and withdraws it once it will
// publish none any more (the run is over, or there was never a window set). The listener polls
// the slot and posts its keys through PostWith, which holds a small lock that Withdraw also
// takes: a key is never posted through a stage that is being released.
#ifndef LM_STAGESLOT_H
#define LM_STAGESLOT_H

#include <atomic>
#include <functional>
#include <mutex>

#include "ae/IStagecraft.h"

class LMStageSlot {
public:
    enum class State { NotYet, Published, Withdrawn };

    void Publish(ae::stagecraft::IStagecraft* stage);
    // Waits for a post in progress, then clears the slot for good.
    void Withdraw();
    State Peek() const;

    // Runs `post` with the published stage while holding the slot's lock; false (and nothing
    // posted) when no stage is published.
    bool PostWith(const std::function<void(ae::stagecraft::IStagecraft&)>& post);

private:
    mutable std::mutex m_PostLock;
    std::atomic<ae::stagecraft::IStagecraft*> m_Stage{nullptr};
    std::atomic<bool> m_Withdrawn{false};
};

// The launcher's one slot.
LMStageSlot& LMLauncherStage();

#endif  // LM_STAGESLOT_H
