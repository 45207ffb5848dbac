// The row writes of one save as bare statements, and their order: the same for every engine.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "kernel/store/value.h"

namespace brimley::bench {

enum Bare { docno, fkey, header, line, gl_header, gl_line, balance, period, vendor, glfkey, kBareStatements };

// In SQLite's spelling: parameters ?1, ?2 ... Every value that a document brings with it is one: a text that
// held it could not be prepared once for all documents.
[[nodiscard]] std::array<std::string, kBareStatements> bare_statements();

using BareValue = std::variant<std::string_view, double, bool, store::DateTime>;

class BareRunner {
  public:
    virtual ~BareRunner() = default;
    virtual void run(Bare statement, std::span<const BareValue> values) = 0;
};

// All writes of one save but its BEGIN and COMMIT. number: of the document.
void run_bare_save(BareRunner& runner, std::int64_t number);

}  // namespace brimley::bench
