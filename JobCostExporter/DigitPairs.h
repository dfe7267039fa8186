// Two-digit numbers as text, by table.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

constexpr std::array<char, 200> MakeDigitPairs() {
    std::array<char, 200> pairs{};
    for (size_t i = 0; i < 100; ++i) {
        pairs[i * 2] = static_cast<char>('0' + i / 10);
        pairs[i * 2 + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}

inline constexpr std::array<char, 200> DIGIT_PAIRS = MakeDigitPairs();

// Both return the end of what they write. `number` is 0 to 99.
inline char* WritePair(char* out, unsigned number) {
    std::memcpy(out, &DIGIT_PAIRS[size_t{number} * 2], 2);
    return out + 2;
}

inline char* WritePairAfter(char* out, char separator, unsigned number) {
    *out = separator;
    return WritePair(out + 1, number);
}
