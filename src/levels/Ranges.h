#pragma once
// The current ranges: what each puts in PMUreg, its sense resistor and entry unit, and
// the names the range lists show.

#include <array>
#include <cstdint>

namespace qz {

inline constexpr int kCurrentRangeCount = 7;

// The box whose number is the sense resistor of an external range.
enum class RsenseBox { None, EXT2, EXT1 };

struct CurrentRange {
    int32_t pmuBits; // OR-ed into PMUreg (bits 13..11)
    float rsense;    // ohms; 0 where rsenseBox gives it
    RsenseBox rsenseBox;
    double toAmperes;   // an entry in the range's unit times this is amperes
    const char* lblmA;  // the unit caption beside the clamp boxes
    const char* status; // the read-back status text
};

// Indexed by IRangeIndex, the list index of cboCurrent on either panel. Index 5 is EXT2
// and index 6 EXT1.
inline constexpr std::array<CurrentRange, kCurrentRangeCount> kCurrentRanges{{
    {0x0000, 100000.0f, RsenseBox::None, 1e-6, "uA", "Current Range = 5uA"},
    {0x0800, 20000.0f, RsenseBox::None, 1e-6, "uA", "Current Range = 25uA"},
    {0x1000, 2000.0f, RsenseBox::None, 1e-6, "uA", "Current Range = 250uA"},
    {0x1800, 200.0f, RsenseBox::None, 0.001, "mA", "Current Range = 2.5mA"},
    {0x2000, 20.0f, RsenseBox::None, 0.001, "mA", "Current Range = 25mA"},
    {0x2800, 0.0f, RsenseBox::EXT2, 1.0, "A", "Current Range = Ext Range 2"},
    {0x3000, 0.0f, RsenseBox::EXT1, 1.0, "A", "Current Range = Ext Range 1"},
}};

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

} // namespace qz
