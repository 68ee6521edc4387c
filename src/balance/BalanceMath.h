// Number conversions of the balance code. Profiles and ship lines may hold any
// 32-bit value, so sums and products are taken in 64 bits or floating point
// and brought back with saturation: no overflow, and no NaN or infinity ever
// reaches a line or a widget.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace BalanceMath {

// `value` cut to the 32-bit range.
constexpr int32_t ClampToInt32(int64_t value)
{
    if (value > std::numeric_limits<int32_t>::max())
        return std::numeric_limits<int32_t>::max();
    if (value < std::numeric_limits<int32_t>::min())
        return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(value);
}

// `value` truncated toward zero into 64 bits; NaN reads as 0 and values beyond
// the range saturate (a plain cast would be undefined there).
inline int64_t TruncToInt64(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr double limit = 9.0e18; // inside the 64-bit range, far beyond any 32-bit product
    if (value >= limit)
        return static_cast<int64_t>(limit);
    if (value <= -limit)
        return -static_cast<int64_t>(limit);
    return static_cast<int64_t>(value);
}

inline int32_t TruncToInt32(double value)
{
    return ClampToInt32(TruncToInt64(value));
}

// A finite value for display and for the line: NaN and infinities read as 0.
inline double Finite(double value)
{
    return std::isfinite(value) ? value : 0.0;
}

} // namespace BalanceMath
