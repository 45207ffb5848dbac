// The commands of a form as lines of text.
#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string>
#include <vector>

#include "controls/command_bars.h"

namespace brimley::testing {

// Each command but those of the font bar: number, caption, key, and the bars on which it is.
inline std::vector<std::string> command_lines(const controls::CommandBars& bars) {
    std::vector<std::string> lines;
    for (const controls::Command& command : bars.commands())
        if (command.bars != std::vector<std::string>{"Font"})
            lines.push_back(
                fmt::format("{} {}{} [{}]", command.id, command.caption,
                            command.ctrl_key == 0 ? "" : fmt::format(" Ctrl+{}", command.ctrl_key),
                            fmt::join(command.bars, " ")));
    return lines;
}

}  // namespace brimley::testing
