// What a transaction has written into watched tables, and the entries of the trail that it becomes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kernel/store/catalog.h"
#include "kernel/store/place_set.h"
#include "kernel/store/row.h"
#include "kernel/store/row_digest.h"
#include "kernel/store/trail.h"

namespace brimley::store {

// A watched table as its rows are digested.
struct WatchedTable {
    explicit WatchedTable(const Table& watched);

    const Table* table;
    PlaceSet fields;  // those that are watched
    int number_field;
};

class TrailWriter {
  public:
    // The catalog must outlive it. Nothing is watched when it has no trail.
    explicit TrailWriter(const Catalog& catalog);

    // Null when the table is not watched.
    [[nodiscard]] const WatchedTable* watched(const Table& table) const;
    // Where the caller puts the fields of a row that it notes.
    [[nodiscard]] RowBytes& row_bytes() { return bytes_; }

    // The row that was put into row_bytes() last: it now stands, or no longer does. number: of the document
    // that it is part of.
    void note(const WatchedTable& watched, bool stands, std::string_view number);
    // Of a row that holds every field.
    void note(const WatchedTable& watched, const Row& row, bool stands);
    // Of a row as it is stored.
    void note(const WatchedTable& watched, const EngineRow& stored, bool stands);
    class Mark;
    // The document that the entries name, whatever was written.
    void name_entries(std::string document) { entries_named_ = std::move(document); }
    // The transaction brings entries of its own.
    void note_entries_brought() { brings_entries_ = true; }
    void clear();

    // The entries to be appended, each with every field but its number, which is null, and its hash, which is
    // left out; none when nothing was written that still stands, or no longer does, at the end of the
    // transaction.
    [[nodiscard]] std::vector<std::vector<Value>> entries(const Signature& signature);
    // Numbers the entry and adds its hash. end: the entry before it, and afterwards this one.
    void chain(std::vector<Value>& entry, TrailEntry& end);
    [[nodiscard]] bool is_empty() const { return written_.empty() || brings_entries_; }

  private:
    struct Written {
        std::size_t table;  // its place in the catalog
        std::size_t end;    // of its bytes, which begin where those of the one before it end
        int times;          // 1: stands; -1: no longer does
        RowDigest digest;   // computed when all have been written
    };
    // The first document that was written, or what went along while there is none.
    struct Document {
        const Watched* watched = nullptr;
        std::string number;
        bool and_others = false;
    };
    void note_document(const WatchedTable& watched, std::string_view number);
    void hash_rows();
    void settle();
    [[nodiscard]] std::string list_of(std::size_t from, std::size_t to) const;

    const Catalog& catalog_;
    std::unordered_map<const Table*, WatchedTable> watched_;
    Sha256 sha256_;
    RowBytes bytes_;
    Row stored_row_;
    std::vector<Written> written_;
    std::size_t hashed_ = 0;  // how many of them have their digest
    bool brings_entries_ = false;
    Document document_;
    std::string entries_named_;  // empty: by the document
};

// Forgets what is noted after it, unless it is kept: a write that fails has written nothing.
class TrailWriter::Mark {
  public:
    explicit Mark(TrailWriter& trail)
        : trail_(&trail), rows_(trail.written_.size()), document_(trail.document_) {}
    ~Mark();
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

    void keep() { trail_ = nullptr; }

  private:
    TrailWriter* trail_;
    std::size_t rows_;
    Document document_;
};

}  // namespace brimley::store
