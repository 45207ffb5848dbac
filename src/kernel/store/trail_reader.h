// Whether a company still is what its trail says.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "kernel/store/connection.h"
#include "kernel/store/row_digest.h"
#include "kernel/store/trail.h"

namespace brimley::store {

class TrailReader {
  public:
    // The company of the connection has a trail.
    explicit TrailReader(Connection& connection);

    // One sentence a fault: entries that were changed or are missing, and then each document that is not as
    // it was written, in the order of the entries. sealed: an entry as it was noted elsewhere; number 0 for
    // none.
    [[nodiscard]] std::vector<std::string> faults(const TrailEntry& sealed);

  private:
    // What an entry says of a row (+1, -1), or that the company has it (-1): all of a row's come to 0.
    struct Mention {
        RowDigest digest;
        std::int64_t where;  // the number of the entry, or the key of the row that the company has
        std::uint16_t table;
        std::int8_t times;
        bool in_entry;
    };

    void read_entries(const TrailEntry& sealed);
    void read_entry(const EngineRow& stored, const TrailEntry& sealed);
    [[nodiscard]] bool is_in_its_place(std::int64_t number);
    [[nodiscard]] bool holds_hash_before(const Row& entry, const std::string& hash);
    void read_rows_written(std::string_view list, std::int64_t entry);
    void add_digest(std::string_view word, std::uint16_t table, std::int64_t entry);
    void read_tables();
    void compare();
    void judge(std::span<const Mention> mentions);
    void report_documents();
    [[nodiscard]] std::string document_of(const Mention& mention);

    Connection& connection_;
    const Catalog& catalog_;
    Sha256 sha256_;
    TrailEntry end_;        // the entry that was read last
    std::string computed_;  // what the hash in it should be
    std::vector<Mention> mentions_;
    std::unordered_set<std::int64_t> differing_;   // entries whose rows are not there any more
    std::map<std::string, std::int64_t> unknown_;  // documents of rows that no entry knows: how many
    std::vector<std::string> faults_;
};

}  // namespace brimley::store
