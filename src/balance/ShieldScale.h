// The shield scale of the balance dialog: one slider over every pair of
// shield type and count between the profile's weakest and strongest fitting.
//
// It walks the types from the profile's ShieldMinType to its ShieldMaxType and,
// in each type, the counts from 1 up to that type's steps: 7 for type 3, 9 for
// type 4 and 4 for any other type below the top type, and the profile's
// ShieldMaxCount for the top type itself. The positions of that walk are
// numbered from 1. So the scale passes from one shield type to the next just
// after the count that equals one shield of the next type in strength.
//
// Profiles may hold any numbers, so the scale is worked out arithmetically,
// never by walking it: a minimum type above the maximum gives no positions, a
// top count of 0 or less gives the top type none, and a scale longer than a
// slider can show is cut to the largest int.
#pragma once

#include <cstdint>
#include <optional>

// A shield's strength in kJ: 1000, 5000, 25000, 125000, 1000000, 10000000 for
// the types 0 to 5 ("1 MJ" ... "10 GJ"); 0 for any other type.
int64_t ShieldSize(int type);

struct ShieldPair
{
    int32_t type = 0;
    int32_t count = 0;
    bool operator==(const ShieldPair&) const = default;
};

class ShieldScale
{
public:
    ShieldScale(int32_t minType, int32_t maxType, int32_t maxCount);

    // The number of positions; the top of the shield slider. 0 when the scale
    // has no positions.
    int32_t Steps() const { return m_steps; }

    // The pair at `position` (from 1); nothing outside 1..Steps().
    std::optional<ShieldPair> PairAt(int64_t position) const;

    // The position of a pair; nothing when the scale does not hold it.
    std::optional<int32_t> PositionOf(int64_t type, int64_t count) const;

private:
    // The steps of one type of the scale.
    int64_t StepsOf(int64_t type) const;
    // The positions before the first count of `type` (minType <= type <= maxType).
    int64_t PositionsBefore(int64_t type) const;

    int64_t m_minType;
    int64_t m_maxType;
    int64_t m_maxCount;
    int32_t m_steps = 0;
};
