// What a session was asked ahead of the call that wants it, so that many questions share one journey.
//
// An answer is good once, and only while its row is not written.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kernel/store/engine.h"
#include "kernel/store/postgresql/postgresql_session.h"

namespace brimley::store {

class PostgresqlPrefetch {
  public:
    struct Asked {
        bool takes_row = false;
        std::shared_ptr<const std::string> statement;  // its name
        std::vector<Value> parameters;
        LaterAnswer answer;
        std::size_t written_before = 0;
    };

    // The statement is keyed, and has been sent with these parameters.
    void add(const PostgresqlStatement& statement, std::span<const Parameter> parameters, LaterAnswer answer);
    // Whether each row to be taken has been. Everything sent has been answered.
    [[nodiscard]] bool all_taken() const;
    void forget_taken();
    // This workspace writes the row, or has taken it as it stands now.
    void note_written(RowKey key) {
        if (!asked_.empty()) written_.push_back(key);
    }
    void clear();

    // What was asked with the statement and these parameters, which is forgotten here.
    [[nodiscard]] std::optional<Asked> take(const PostgresqlStatement& statement,
                                            std::span<const Parameter> parameters);
    // Whether none of the rows answered has been written since. Directly behind take().
    [[nodiscard]] bool is_still_true(const Asked& asked) const;

  private:
    std::vector<Asked> asked_;
    std::vector<RowKey> written_;  // since there was nothing asked
};

}  // namespace brimley::store
