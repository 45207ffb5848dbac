// A whole number of sixteen bits, as the form counts its rows. One that does not fit leaves it as it was.
#pragma once

#include <cstdint>
#include <limits>

namespace brimley::revaluation {

class ShortNumber {
  public:
    explicit ShortNumber(std::int16_t number) : number_(number) {}

    void assign(int number) {
        using Limits = std::numeric_limits<std::int16_t>;
        if (number >= Limits::min() && number <= Limits::max()) number_ = static_cast<std::int16_t>(number);
    }
    void raise_to(int number) {
        if (number > number_) assign(number);
    }
    operator int() const { return number_; }

  private:
    std::int16_t number_;
};

}  // namespace brimley::revaluation
