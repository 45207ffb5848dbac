// A password in memory: wiped when it goes. Not copied, so that no second one is left behind.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace brimley::company {

class Secret {
  public:
    Secret() = default;
    // Nothing of the text stays where it came from.
    explicit Secret(std::string text);
    Secret(Secret&& other) noexcept : text_(std::move(other.text_)) { other.wipe(); }
    Secret& operator=(Secret&& other) noexcept;
    ~Secret() { wipe(); }

    [[nodiscard]] std::string_view text() const { return text_; }
    [[nodiscard]] bool empty() const { return text_.empty(); }

  private:
    void wipe() noexcept;

    std::string text_;
};

}  // namespace brimley::company
