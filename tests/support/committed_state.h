// Whether anybody has committed a change to a company meanwhile, without reading all that it holds.
#pragma once

#include <functional>
#include <string>

namespace brimley::testing {

// A look at a company from outside of the store. Keeps a connection open.
class CommittedState {
  public:
    // Throws std::runtime_error when the company cannot be looked at.
    explicit CommittedState(const std::string& company);

    // While this is the same text as before, every table holds the rows that it held; after a commit of
    // somebody else's change it is another one.
    [[nodiscard]] std::string now() const { return look_(); }

  private:
    std::function<std::string()> look_;
};

}  // namespace brimley::testing
