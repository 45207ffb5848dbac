// Who is connected to a company on the tests' server.
#pragma once

#include <chrono>
#include <string>
#include <thread>

#include "support/test_server.h"

namespace brimley::testing {

// Waits until nobody else is: the server carries out what it has been sent, and notices only then that
// whoever was killed is not there any more. False when somebody still is after ten seconds.
[[nodiscard]] inline bool server_has_let_go(const std::string& company) {
    constexpr int kLooksMost = 1000;
    constexpr std::chrono::milliseconds kPause{10};
    for (int looks = 0; looks < kLooksMost; ++looks) {
        const std::string others =
            on_server(company,
                      "SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() "
                      "AND backend_type = 'client backend' AND pid <> pg_backend_pid()");
        if (others == "0") return true;
        std::this_thread::sleep_for(kPause);
    }
    return false;
}

}  // namespace brimley::testing
