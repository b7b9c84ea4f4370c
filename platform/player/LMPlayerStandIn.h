// Controls of the simulated player behind the stand-in LMPlayerLibAE.
#ifndef LM_PLAYER_LMPLAYERSTANDIN_H
#define LM_PLAYER_LMPLAYERSTANDIN_H

#include <chrono>

namespace lmplayer {

using StandInClock = std::chrono::steady_clock::time_point (*)();

// Replaces the clock that playing time is measured with (std::chrono::steady_clock::now when
// null), for tests that step time by hand. Set it while no media is playing.
void SetStandInClock(StandInClock now);

}  // namespace lmplayer

#endif  // LM_PLAYER_LMPLAYERSTANDIN_H
