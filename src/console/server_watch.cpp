#include "console/server_watch.h"

#include <iostream>

#include "console/interrupt.h"
#include "kernel/visible_text.h"

namespace brimley::console {

void ServerWatch::tell(const std::string& text) const {
    std::cout.flush();
    std::cerr << program_ << ": " << kernel::visible_text(text) << '\n';
}

void ServerWatch::connection_lost() { tell("the connection to the company is lost"); }

void ServerWatch::connection_back(const std::string& reading_only_because) {
    tell("the connection to the company is back");
    if (!reading_only_because.empty()) tell(reading_only_because);
}

bool ServerWatch::go_on_waiting(std::chrono::milliseconds /*so_far*/) { return !Interrupt::take(); }

}  // namespace brimley::console
