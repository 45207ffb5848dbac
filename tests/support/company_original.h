// A company that tests have copies of: made once in a process, where its copies are, a file or a database of
// the tests' server.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "support/temporary_folder.h"
#include "support/test_server.h"

namespace brimley::testing {

class CompanyOriginal {
  public:
    using Maker = std::function<void(const std::string& company)>;
    explicit CompanyOriginal(Maker make) : make_(std::move(make)) {}

    void copy_to(const std::string& company) {
        const std::string original = folder_.file("original.brimley");
        if (!std::filesystem::exists(original)) make_(original);
        std::filesystem::copy_file(original, company);
    }
    [[nodiscard]] std::unique_ptr<ServerDatabase> database() {
        if (!template_) {
            auto made = std::make_unique<ServerDatabase>();
            make_(made->uri());
            template_ = std::move(made);
        }
        return std::make_unique<ServerDatabase>(template_.get());
    }

  private:
    std::unique_ptr<ServerDatabase> template_;
    TemporaryFolder folder_;
    Maker make_;
};

}  // namespace brimley::testing
