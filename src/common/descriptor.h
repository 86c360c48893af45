// An open file of systems with descriptors.
#pragma once

#include <unistd.h>

#include <utility>

namespace kel {

/// Owns an open descriptor; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() {
    if (number_ != -1) ::close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return number_; }
  bool IsOpen() const { return number_ != -1; }

 private:
  int number_;
};

}  // namespace kel
