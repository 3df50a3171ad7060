#pragma once
// The current ranges: the sense resistor and entry unit of each, and
// the names the range lists show.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace qz {

inline constexpr int kCurrentRangeCount = 7;

// The box whose number is the sense resistor of an external range.
enum class RsenseBox { None, EXT2, EXT1 };

struct CurrentRange {
    float rsense; // ohms; 0 where rsenseBox gives it
    RsenseBox rsenseBox;
    double toAmperes;  // an entry in the range's unit times this is amperes
    const char* lblmA; // the unit caption beside the clamp boxes
};

// Indexed by IRangeIndex: the list index of cboCurrent on either panel, and the value of
// the range field of PMUreg (bits 13..11), whose read-back texts are kRangeReadback.
// Index 5 is EXT2 and index 6 EXT1.
inline constexpr std::array<CurrentRange, kCurrentRangeCount> kCurrentRanges{{
    {100000.0f, RsenseBox::None, 1e-6, "uA"},
    {20000.0f, RsenseBox::None, 1e-6, "uA"},
    {2000.0f, RsenseBox::None, 1e-6, "uA"},
    {200.0f, RsenseBox::None, 0.001, "mA"},
    {20.0f, RsenseBox::None, 0.001, "mA"},
    {0.0f, RsenseBox::EXT2, 1.0, "A"},
    {0.0f, RsenseBox::EXT1, 1.0, "A"},
}};

// The range of IRangeIndex as the front panel knows it; nullptr outside 0..6.
inline const CurrentRange* currentRange(int IRangeIndex) {
    return IRangeIndex >= 0 && IRangeIndex < kCurrentRangeCount
               ? &kCurrentRanges[static_cast<size_t>(IRangeIndex)]
               : nullptr;
}

using RangeNames = std::array<const char*, kCurrentRangeCount>;

// cboCurrent of frmMain before UpdateRangeNames first runs.
inline constexpr RangeNames kRangeStartNames{
    "5uA Current Range",  "25uA Current Range",  "250uA Current Range", "2.5mA Current Range",
    "25mA Current Range", "Ext Current Range 2", "Ext Current Range1"};

// The rated ranges: VREF 5 with MI gain 20, or VREF 2.5 with MI gain 10.
inline constexpr RangeNames kRangeNamesRated{
    "±5uA Current Range",  "±25uA Current Range", "±250uA Current Range", "±2.5mA Current Range",
    "±25mA Current Range", "±EXT2 Current Range", "±EXT1 Current Range"};

// VREF 2.5 with MI gain 20: every fixed range at half its rated current.
inline constexpr RangeNames kRangeNamesHalved{"±2.5uA Current Range",  "±12.5uA Current Range",
                                              "±125uA Current Range",  "±1.25mA Current Range",
                                              "±12.5mA Current Range", "±EXT2 Current Range",
                                              "±EXT1 Current Range"};

// cboCurrent of the console; these never change.
inline constexpr RangeNames kConsoleRangeNames{"±5uA",  "±25uA",        "±250uA",     "±2.5mA",
                                               "±25mA", "±Ext Range 2", "±Ext Range1"};

inline constexpr const char* kGainDoublingWarning =
    "This combination of VREF = 5 and MI Gain = 10 isn't intended to double the Irange. The "
    "QZ7740 can only deliver up to the rated Iranges";

enum class RangeNaming {
    Nothing, // leave the list alone
    Names,   // give the list these names
    Warning, // leave the list alone and show the warning; nothing is refused
};

struct RangeNamesUpdate {
    RangeNaming what = RangeNaming::Nothing;
    const RangeNames* names = nullptr; // when Names
    const char* title = nullptr;       // when Warning: kEntryErrorTitle
    const char* text = nullptr;        // when Warning: kGainDoublingWarning
};

// What UpdateRangeNames does to cboCurrent of frmMain for this VREF and MI gain. Only
// VREF 5 and 2.5 with gain 20 or 10 name the ranges; any other VREF leaves them.
RangeNamesUpdate UpdateRangeNames(float VREF, float imeasGain);

// The full scale of a range with sense resistor rsense, in amperes, as the rated names
// give it: 0.5 V across the resistor at VREF 5 with MI gain 20, scaled by VREF / gain,
// and never beyond the rated current, which is all the chip delivers whatever the gain.
double rangeFullScale(double rsense, double VREF, double imeasGain);
// The index of the smallest full scale that covers |amps|; nothing when none does.
std::optional<int> smallestRangeCovering(std::span<const double> fullScales, double amps);

} // namespace qz
