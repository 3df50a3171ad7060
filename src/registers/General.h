#pragma once
// The module variables that every panel shares: the shadow words and the levels.

#include <cstdint>

namespace qz {

// Start words of the shadows: what the program writes, or would write, at start.
inline constexpr int32_t kSYSregStart = 0x012200;   // powered up, MEASOUT gain 0.2, 130degC
inline constexpr int32_t kPMUregStart = 0x029950;   // enabled, 2.5mA, Hi-Z compare, V sense, clamps
inline constexpr int32_t kDPS2regStart = 0x030000;  // force/sense Hi-Z, 1 V/us, master
inline constexpr int32_t kCOMP1regStart = 0x040000;
inline constexpr int32_t kCOMP2regStart = 0x050000;
inline constexpr int32_t kALMregStart = 0x06AA80;   // all five alarms latched, none disabled
inline constexpr int32_t kDIAGregStart = 0x070000;

struct General {
    // Shadow words: each the complete 24-bit write word of its register, as the program
    // last built it. Nothing refreshes a shadow from a read.
    int32_t SYSreg = kSYSregStart;
    int32_t PMUreg = kPMUregStart;
    int32_t DPS2reg = kDPS2regStart;
    int32_t COMP1reg = kCOMP1regStart;
    int32_t COMP2reg = kCOMP2regStart;
    int32_t ALMreg = kALMregStart;
    int32_t DIAGreg = kDIAGregStart;

    float VREF = 5.0f;        // volts
    float imeasGain = 20.0f;  // current-sense gain, 20 or 10
    // The current range, 0 to 6: the range field of DPS1 as the front panel's cboCurrent
    // or the measurement panel's cboSweepI last chose it. The clamps read it through
    // currentRange (levels/Ranges.h), the runs through senseRange (runs/Measure.h).
    int16_t IRangeIndex = 0;
    int32_t DAClast = 0;      // the last composed DAC write word
    float VoutMax = 0.0f;     // output limits of the present codes, volts
    float VoutMin = 0.0f;

    // The measurement panel's. sweepPMUreg is its own DPS1 word, composed by its lists and
    // sent before each run; measMode 0 reads MEASOUT as volts, 1 as amperes.
    int32_t sweepPMUreg = 0;
    int16_t measMode = 0;
    // Seconds. tempDelay is waited after each sample by the measurement runs and the
    // temperature run alike; sampleDelay stands between a write and its reading; cycleDelay
    // is the nominal time from one point to the next, for the lists' "sample time". They
    // outlive the panel: a panel loaded again keeps them.
    float tempDelay = 0.0f;
    float sampleDelay = 0.0f;
    float cycleDelay = 0.0f;

    // Set by an entry field on Enter and cleared before it goes on, so that no handler
    // finds it set; the entry fields and the buttons that test it keep their guard all the
    // same, as a handler run from inside an entry would need it.
    bool entryBusy = false;

    // The shadow word of the register at address (1 system control .. 7 diagnostic), or
    // nullptr for a register the program keeps no word of.
    int32_t* shadowAt(int address) {
        int32_t* const words[] = {&SYSreg, &PMUreg, &DPS2reg, &COMP1reg, &COMP2reg, &ALMreg, &DIAGreg};
        return address >= 1 && address <= 7 ? words[address - 1] : nullptr;
    }
};

} // namespace qz
