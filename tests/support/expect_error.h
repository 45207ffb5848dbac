// What a test expects of a store call that must fail.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "kernel/store/error.h"

namespace brimley::testing {

// The error that the action throws; nothing, and a failed test, when it throws none.
template <class Action>
std::optional<store::Error> error_of(const Action& action) {
    try {
        action();
    } catch (const store::Error& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return {};
}

template <class Action>
void expect_error(store::ErrorKind kind, const Action& action) {
    const auto error = error_of(action);
    if (!error) return;
    EXPECT_EQ(error->kind(), kind) << error->what();
}

}  // namespace brimley::testing
