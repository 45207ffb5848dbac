// A ledger kernel on an empty company of its own, with the world outside recorded.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kernel/module_g3.h"
#include "support/company_copy.h"
#include "support/recording_outside.h"

namespace brimley::testing {

inline store::DateTime day(const char* iso) { return store::DateTime::from_iso(iso).value(); }

class KernelTest : public ::testing::Test {
  protected:
    CompanyCopy company;
    RecordingOutside outside;
    kernel::ModuleG3 kernel{company.open().database, outside};

    [[nodiscard]] std::vector<std::string> messages() { return outside.take_messages(); }
};

}  // namespace brimley::testing
