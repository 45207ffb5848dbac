// A request that a company cannot take: a year that exists, a number that is none. what() is one line for the
// user.
#pragma once

#include <stdexcept>

namespace brimley::company {

class Refusal : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace brimley::company
