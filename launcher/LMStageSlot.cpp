#include "LMStageSlot.h"

void LMStageSlot::Publish(ae::stagecraft::IStagecraft* stage) {
    std::lock_guard<std::mutex> guard(m_PostLock);
    m_Withdrawn.store(false, std::memory_order_release);
    m_Stage.store(stage, std::memory_order_release);
}

void LMStageSlot::Withdraw() {
    std::lock_guard<std::mutex> guard(m_PostLock);
    m_Stage.store(nullptr, std::memory_order_release);
    m_Withdrawn.store(true, std::memory_order_release);
}

LMStageSlot::State LMStageSlot::Peek() const {
    if (m_Stage.load(std::memory_order_acquire))
        return State::Published;
    return m_Withdrawn.load(std::memory_order_acquire) ? State::Withdrawn : State::NotYet;
}

bool LMStageSlot::PostWith(const std::function<void(ae::stagecraft::IStagecraft&)>& post) {
    std::lock_guard<std::mutex> guard(m_PostLock);
    ae::stagecraft::IStagecraft* stage = m_Stage.load(std::memory_order_acquire);
    if (!stage)
        return false;
    post(*stage);
    return true;
}

LMStageSlot& LMLauncherStage() {
    static LMStageSlot slot;
    return slot;
}
