#pragma once

namespace orvel {

/// As long as it lives, numbers too small for full precision are zero on this thread: filters that die away would
/// otherwise become a hundred times slower. On processors that have no such switch nothing happens.
class NoDenormals {
  public:
    NoDenormals();
    ~NoDenormals();
    NoDenormals(const NoDenormals &) = delete;
    NoDenormals(NoDenormals &&) = delete;
    NoDenormals &operator=(const NoDenormals &) = delete;
    NoDenormals &operator=(NoDenormals &&) = delete;

  private:
    unsigned before_ = 0;
};

} // namespace orvel
