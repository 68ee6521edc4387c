#include "balance/ShieldScale.h"

#include "balance/BalanceMath.h"

#include <algorithm>

namespace {

constexpr int kSizedTypes = 6;
constexpr int64_t kSizes[kSizedTypes] = {1000, 5000, 25000, 125000, 1000000, 10000000};

// Steps of a type below the scale's top type.
constexpr int64_t kPlainSteps = 4;
constexpr int64_t kSteps125MJ = 7; // type 3: 7 x 125 MJ stand below one 1 GJ
constexpr int64_t kSteps1GJ = 9;   // type 4: 9 x 1 GJ stand below one 10 GJ

} // namespace

int64_t ShieldSize(int type)
{
    return type >= 0 && type < kSizedTypes ? kSizes[type] : 0;
}

ShieldScale::ShieldScale(int32_t minType, int32_t maxType, int32_t maxCount)
    : m_minType(minType), m_maxType(maxType), m_maxCount(maxCount)
{
    if (m_minType > m_maxType)
        return;
    const int64_t steps = PositionsBefore(m_maxType) + std::max<int64_t>(0, m_maxCount);
    m_steps = BalanceMath::ClampToInt32(steps);
}

int64_t ShieldScale::StepsOf(int64_t type) const
{
    if (type == m_maxType)
        return std::max<int64_t>(0, m_maxCount);
    if (type == 3)
        return kSteps125MJ;
    if (type == 4)
        return kSteps1GJ;
    return kPlainSteps;
}

int64_t ShieldScale::PositionsBefore(int64_t type) const
{
    // Every type below `type` has the plain steps, but 3 and 4 have more.
    int64_t positions = kPlainSteps * (type - m_minType);
    if (m_minType <= 3 && 3 < type)
        positions += kSteps125MJ - kPlainSteps;
    if (m_minType <= 4 && 4 < type)
        positions += kSteps1GJ - kPlainSteps;
    return positions;
}

std::optional<ShieldPair> ShieldScale::PairAt(int64_t position) const
{
    if (position < 1 || position > m_steps)
        return std::nullopt;
    // The last type whose first position is not behind `position`: the
    // positions before a type grow with the type, so a binary search finds it.
    int64_t low = m_minType;
    int64_t high = m_maxType;
    while (low < high) {
        const int64_t middle = low + (high - low + 1) / 2;
        if (PositionsBefore(middle) < position)
            low = middle;
        else
            high = middle - 1;
    }
    const int64_t count = position - PositionsBefore(low);
    if (count < 1 || count > StepsOf(low))
        return std::nullopt;
    return ShieldPair{static_cast<int32_t>(low), static_cast<int32_t>(count)};
}

std::optional<int32_t> ShieldScale::PositionOf(int64_t type, int64_t count) const
{
    if (type < m_minType || type > m_maxType || count < 1 || count > StepsOf(type))
        return std::nullopt;
    const int64_t position = PositionsBefore(type) + count;
    if (position > m_steps)
        return std::nullopt;
    return static_cast<int32_t>(position);
}
