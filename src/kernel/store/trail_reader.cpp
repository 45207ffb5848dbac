#include "kernel/store/trail_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "kernel/store/trail_writer.h"

namespace brimley::store {

namespace {

// The fields of trail_table().
enum TrailField { kNumber, kMoment, kUser, kComputer, kDocument, kRowsWritten, kHash };

std::int64_t number_of(const Row& entry) {
    return static_cast<std::int64_t>(entry.number(kNumber).value_or(0));
}

std::string text_in(const Row& row, int field) { return std::string(row.text(field).value_or("")); }

std::optional<RowDigest> digest_in(std::string_view letters) {
    const std::vector<unsigned char> bytes = bytes_of_base64(letters);
    RowDigest digest{};
    if (bytes.size() != digest.size()) return {};
    std::ranges::copy(bytes, digest.begin());
    return digest;
}

// Takes the text up to the separator, and the separator, from the front.
std::string_view take_front(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view front = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return front;
}

}  // namespace

TrailReader::TrailReader(Connection& connection) : connection_(connection), catalog_(connection.catalog()) {}

std::vector<std::string> TrailReader::faults(const TrailEntry& sealed) {
    read_entries(sealed);
    read_tables();
    compare();
    if (!differing_.empty() || !unknown_.empty()) report_documents();
    return std::move(faults_);
}

void TrailReader::read_entries(const TrailEntry& sealed) {
    const auto plan =
        connection_.select_plan(fmt::format("SELECT * FROM [{}] ORDER BY entry_no", catalog_.trail()->name));
    connection_.query(plan->rows, {}, [&](const EngineRow& entry) {
        read_entry(entry, sealed);
        return true;
    });
    if (sealed.number > end_.number)
        faults_.push_back(fmt::format("the trail ends at entry {}, before the sealed entry {}", end_.number,
                                      sealed.number));
}

void TrailReader::read_entry(const EngineRow& stored, const TrailEntry& sealed) {
    Row entry;
    stored.read(entry);
    const std::int64_t number = number_of(entry);
    const std::string hash = text_in(entry, kHash);
    read_rows_written(entry.text(kRowsWritten).value_or(""), number);
    if (number == sealed.number && hash != sealed.hash)
        faults_.push_back(fmt::format("entry {} of the trail is not the one that was sealed", number));
    if (number <= end_.number) {
        faults_.push_back(fmt::format("there are two entries {} of the trail", number));
        return;
    }
    const bool follows = is_in_its_place(number);
    if ((follows && !holds_hash_before(entry, hash)) || !stored.has_whole_seconds())
        faults_.push_back(fmt::format("entry {} of the trail is not as it was written", number));
    if (!follows) computed_ = hash;
    end_ = {number, hash};
}

bool TrailReader::is_in_its_place(std::int64_t number) {
    const std::int64_t next = end_.number + 1;
    if (number == next) return true;
    faults_.push_back(number == next + 1
                          ? fmt::format("entry {} of the trail is missing", next)
                          : fmt::format("entries {} to {} of the trail are missing", next, number - 1));
    return false;
}

// When the entry before it was changed, it may be the hash in that one that is wrong, or what it was computed
// from: this entry is at fault only when it follows from neither.
bool TrailReader::holds_hash_before(const Row& entry, const std::string& hash) {
    std::vector<Value> values;
    for (int field = 0; field < entry.size(); ++field)
        values.push_back(entry.value(field));
    const auto hash_after = [&](const std::string& before) {
        return chained_hash(sha256_, before, *catalog_.trail(), values);
    };
    const std::string before = std::exchange(computed_, hash_after(end_.hash));
    if (hash == computed_) return true;
    return before != end_.hash && hash == hash_after(before);
}

void TrailReader::read_rows_written(std::string_view list, std::int64_t entry) {
    while (!list.empty()) {
        std::string_view line = take_front(list, '\n');
        const Table* const table = catalog_.find(take_front(line, ' '));
        if (!table) continue;  // the entry was changed, which its hash has shown
        const auto place = static_cast<std::uint16_t>(table - catalog_.tables().data());
        while (!line.empty())
            add_digest(take_front(line, ' '), place, entry);
    }
}

void TrailReader::add_digest(std::string_view word, std::uint16_t table, std::int64_t entry) {
    const auto digest = digest_in(word.substr(std::min<std::size_t>(1, word.size())));
    if (digest)
        mentions_.push_back(
            {*digest, entry, table, static_cast<std::int8_t>(word.front() == '-' ? -1 : 1), true});
}

void TrailReader::read_tables() {
    Row row;
    RowBytes bytes;
    for (std::size_t place = 0; place < catalog_.tables().size(); ++place) {
        const Table& table = catalog_.tables()[place];
        const WatchedTable* const watched = connection_.trail().watched(table);
        if (!watched) continue;
        const auto plan = connection_.select_plan(fmt::format("SELECT * FROM [{}]", table.name));
        connection_.query(plan->rows, {}, [&](const EngineRow& each) {
            bytes.clear();
            bytes.add_stored_row(table, watched->fields, each, row);
            mentions_.push_back(
                {digest_of(sha256_, bytes.all()), each.key(), static_cast<std::uint16_t>(place), -1, false});
            return true;
        });
    }
}

void TrailReader::compare() {
    std::ranges::sort(mentions_, {}, &Mention::digest);
    for (auto from = mentions_.begin(); from != mentions_.end();) {
        const auto to = std::find_if(from, mentions_.end(),
                                     [&](const Mention& each) { return each.digest != from->digest; });
        judge({from, to});
        from = to;
    }
}

void TrailReader::judge(std::span<const Mention> mentions) {
    int left = 0;
    for (const Mention& mention : mentions)
        left += mention.times;
    if (left == 0) return;
    // Of equal rows the last ones written are held to be the ones that differ.
    const bool missing = left > 0;
    const Mention* last = nullptr;
    for (const Mention& mention : mentions)
        if (mention.in_entry == missing && (!last || mention.where > last->where)) last = &mention;
    if (missing)
        differing_.insert(last->where);
    else if (last)
        ++unknown_[document_of(*last)];
    else
        differing_.insert(mentions.front().where);  // an entry takes back what no entry has written
}

std::string TrailReader::document_of(const Mention& mention) {
    const Table& table = catalog_.tables()[mention.table];
    Row row;
    if (!connection_.read_row(table, mention.where, row)) return table.watched->document;
    return table.watched->document + ' ' + text_in(row, table.field_index(table.watched->number_field));
}

void TrailReader::report_documents() {
    const auto plan =
        connection_.select_plan(fmt::format("SELECT * FROM [{}] ORDER BY entry_no", catalog_.trail()->name));
    Row entry;
    connection_.query(plan->rows, {}, [&](const EngineRow& each) {
        each.read(entry);
        const std::int64_t number = number_of(entry);
        const std::string document = text_in(entry, kDocument);
        if (!differing_.contains(number)) return true;
        faults_.push_back(fmt::format("{} is not as {} wrote it on {} (entry {} of the trail)", document,
                                      text_in(entry, kUser), entry.value(kMoment).text(), number));
        unknown_.erase(document);
        return true;
    });
    for (const auto& [document, rows] : unknown_)
        faults_.push_back(fmt::format("{} has {} that the trail does not know", document,
                                      rows == 1 ? "a row" : fmt::format("{} rows", rows)));
}

}  // namespace brimley::store
