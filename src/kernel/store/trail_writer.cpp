#include "kernel/store/trail_writer.h"

#include <algorithm>
#include <tuple>

namespace brimley::store {

namespace {

constexpr std::size_t kRowsInEntry = 1000;
// Rows are hashed together when the transaction ends, unless there are very many.
constexpr std::size_t kBytesMax = 1 << 20;

}  // namespace

Table trail_table(std::string name) {
    Table table;
    table.name = std::move(name);
    table.fields = {{"entry_no", FieldType::integer},  {"entry_date", FieldType::datetime},
                    {"user_created", FieldType::text}, {"computer_id", FieldType::text},
                    {"document", FieldType::text},     {"rows_written", FieldType::text},
                    {"hash", FieldType::text}};
    table.natural_key = {"entry_no"};
    table.export_order = {"entry_no"};
    Index by_number{{"entry_no"}};
    by_number.unique = true;
    by_number.in_order_of_adding = true;
    table.indexes = {by_number};
    table.is_trail = true;
    return table;
}

WatchedTable::WatchedTable(const Table& watched)
    : table(&watched), number_field(watched.field_index(watched.watched->number_field)) {
    for (std::size_t field = 0; field < watched.fields.size(); ++field)
        if (std::ranges::find(watched.watched->left_out, watched.fields[field].name) ==
            watched.watched->left_out.end())
            fields.add(field);
}

TrailWriter::TrailWriter(const Catalog& catalog) : catalog_(catalog) {
    if (!catalog.trail()) return;
    for (const Table& table : catalog.tables())
        if (table.watched) watched_.emplace(&table, table);
}

const WatchedTable* TrailWriter::watched(const Table& table) const {
    const auto found = watched_.find(&table);
    return found == watched_.end() ? nullptr : &found->second;
}

void TrailWriter::note(const WatchedTable& watched, bool stands, std::string_view number) {
    const auto place = static_cast<std::size_t>(watched.table - catalog_.tables().data());
    written_.push_back({place, bytes_.size(), stands ? 1 : -1, {}});
    note_document(watched, number);
    if (bytes_.size() > kBytesMax) hash_rows();
}

void TrailWriter::note(const WatchedTable& watched, const Row& row, bool stands) {
    bytes_.add_row(*watched.table, watched.fields, row);
    note(watched, stands, row.text(watched.number_field).value_or(""));
}

void TrailWriter::note(const WatchedTable& watched, const EngineRow& stored, bool stands) {
    bytes_.add_stored_row(*watched.table, watched.fields, stored, stored_row_);
    note(watched, stands, stored_row_.text(watched.number_field).value_or(""));
}

void TrailWriter::note_document(const WatchedTable& watched, std::string_view number) {
    const Watched& written = *watched.table->watched;
    if (document_.watched && !document_.watched->goes_along && written.goes_along) return;
    if (!document_.watched || document_.watched->goes_along != written.goes_along)
        document_ = {&written, std::string(number), false};
    else if (number != document_.number)
        document_.and_others = true;
}

TrailWriter::Mark::~Mark() {
    if (!trail_) return;
    trail_->written_.resize(rows_);
    trail_->hashed_ = std::min(trail_->hashed_, rows_);
    trail_->bytes_.cut(rows_ > trail_->hashed_ ? trail_->written_.back().end : 0);
    trail_->document_ = std::move(document_);
}

void TrailWriter::clear() {
    written_.clear();
    hashed_ = 0;
    bytes_.clear();
    brings_entries_ = false;
    document_ = {};
    entries_named_.clear();
}

void TrailWriter::hash_rows() {
    std::size_t begin = 0;
    for (; hashed_ < written_.size(); ++hashed_) {
        Written& row = written_[hashed_];
        row.digest = digest_of(sha256_, bytes_.range(begin, row.end));
        begin = row.end;
    }
    bytes_.clear();
}

// What was written and taken back within the transaction leaves nothing.
void TrailWriter::settle() {
    hash_rows();
    const auto place_of = [](const Written& each) { return std::tie(each.table, each.digest); };
    std::ranges::sort(written_, {}, place_of);
    std::size_t kept = 0;
    for (std::size_t at = 0; at < written_.size(); ++at) {
        if (kept > 0 && place_of(written_[kept - 1]) == place_of(written_[at]))
            written_[kept - 1].times += written_[at].times;
        else
            written_[kept++] = written_[at];
    }
    written_.resize(kept);
    std::erase_if(written_, [](const Written& each) { return each.times == 0; });
}

std::string TrailWriter::list_of(std::size_t from, std::size_t to) const {
    constexpr std::size_t kUsualLength = 32;
    std::string list;
    list.reserve((to - from) * kUsualLength);
    for (std::size_t at = from; at < to; ++at) {
        const Written& row = written_[at];
        if (at == from || row.table != written_[at - 1].table) {
            if (at != from) list += '\n';
            list += catalog_.tables()[row.table].name;
        }
        for (int times = row.times; times != 0; times += times < 0 ? 1 : -1) {
            list += times < 0 ? " -" : " +";
            append_base64(list, row.digest);
        }
    }
    return list;
}

std::vector<std::vector<Value>> TrailWriter::entries(const Signature& signature) {
    settle();
    std::vector<std::vector<Value>> entries;
    if (is_empty()) return entries;
    if (entries_named_.empty())
        entries_named_ = document_.watched->document + ' ' + document_.number +
                         (document_.and_others ? " and others" : "");
    for (std::size_t from = 0; from < written_.size(); from += kRowsInEntry)
        entries.push_back({Value(), signature.moment, signature.user, signature.computer, entries_named_,
                           list_of(from, std::min(from + kRowsInEntry, written_.size()))});
    return entries;
}

void TrailWriter::chain(std::vector<Value>& entry, TrailEntry& end) {
    entry.front() = ++end.number;
    end.hash = chained_hash(sha256_, end.hash, *catalog_.trail(), entry);
    entry.emplace_back(end.hash);
}

}  // namespace brimley::store
