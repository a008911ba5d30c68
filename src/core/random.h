// The program's random numbers: one process-wide state and the generator of the Windows run-time,
// state = state * 214013 + 2531011, so that a seed gives the same picture on every machine.
#pragma once

#include <cstdint>

class Random {
  public:
    static void seed(std::uint32_t value) { state() = value; }
    // 0 to 32767: bits 16 to 30 of the state.
    static int next() {
        state() = state() * 214013u + 2531011u;
        return static_cast<int>((state() >> 16) & 0x7FFFu);
    }
    static constexpr int kMax = 32767;

  private:
    static std::uint32_t& state() {
        static std::uint32_t value = 1;
        return value;
    }
};
