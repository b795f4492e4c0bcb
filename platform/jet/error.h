#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace orvel::jet {

/// What went wrong with a database file, as far as callers tell it apart.
enum class Fault {
    NotADatabase,
    Damaged,
    Protected,
    InOut,
    Locked,
    NotUpdatable,
};

/// A failed call on a database file. what() is one Dutch sentence fragment in UTF-8, without the path.
class Error : public std::runtime_error {
  public:
    Error(Fault fault, const std::string &detail) : std::runtime_error(detail), fault_(fault) {}

    [[nodiscard]] Fault fault() const { return fault_; }

  private:
    Fault fault_;
};

/// The file says something that cannot be true; page is where it says so.
[[noreturn]] inline void damaged(std::uint32_t page, const std::string &detail) {
    throw Error(Fault::Damaged, "pagina " + std::to_string(page) + ": " + detail);
}

} // namespace orvel::jet
