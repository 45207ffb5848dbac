// A whole company in one file, whichever engine keeps the company, and a company made from such a file.
//
// A backup is a company file like any other: it can be opened, checked and exported. It appears in its place
// whole, on the disk and looked through, or not at all. What the books of a company do not agree in, those of
// its backup do not either: that is reported, and the copy is made all the same.
#pragma once

#include <string>

#include "company/books.h"

namespace brimley::company {

// Copies the company as it stands at one moment, while others go on working, to the path of a new file.
// Returns what check finds in the copy. Throws UnusableValue when `to` is on a server; Refusal when the
// company is damaged, or the copy is; store::Error.
[[nodiscard]] Findings back_up(const std::string& company, const std::string& to);

// Makes the company, which must not exist yet, in a file or on a server, from a backup. As back_up otherwise.
[[nodiscard]] Findings restore(const std::string& from, const std::string& company);

struct Upgrade {
    std::string backup;  // the path of it; empty when the company is of this version already
    Findings findings;   // in the backup
};

// Brings a company of an older version to this one, in one transaction, after a backup: beside a company
// file, or in the current folder for one on a server. Nobody else may have it open. Throws as back_up, and
// ErrorKind::locked: the company is as it was then, and there is no backup. ErrorKind::commit_in_doubt names
// the backup, which stays.
[[nodiscard]] Upgrade upgrade(const std::string& company);

}  // namespace brimley::company
