// Counters of the simulator's HTTPS side, read through "GET /__lmsim/stats" on the plain-HTTP
// port: how many connections it accepted, how many of their TLS handshakes resumed an earlier
// session, how many requests they carried and how many answers went gzip-compressed.
#ifndef LMSIM_STATS_H
#define LMSIM_STATS_H

#include <atomic>
#include <string>

namespace lmsim {

struct SimStats {
    std::atomic<long> connections{0};
    std::atomic<long> resumed{0};
    std::atomic<long> requests{0};
    std::atomic<long> compressed{0};

    // "connections=N resumed=M requests=K compressed=C\n"
    std::string Text() const {
        return "connections=" + std::to_string(connections.load()) +
               " resumed=" + std::to_string(resumed.load()) +
               " requests=" + std::to_string(requests.load()) +
               " compressed=" + std::to_string(compressed.load()) + "\n";
    }
};

}  // namespace lmsim

#endif  // LMSIM_STATS_H
