// Contents of the crash test: each (name, seed, size) gives one deterministic
// byte string, so the test can tell a complete old or new entry from a mix.
#pragma once

#include <cstdint>
#include <string>

namespace drivertest {

inline std::string CrashContent(const std::string& name, uint32_t seed, uint32_t size)
{
    std::string bytes(size, '\0');
    uint32_t state = seed * 2654435761u;
    for (char c : name)
        state = (state ^ uint8_t(c)) * 16777619u;
    for (uint32_t i = 0; i < size; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes[i] = char(state >> 24);
    }
    return bytes;
}

} // namespace drivertest
