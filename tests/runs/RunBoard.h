#pragma once
// A board for the measurement runs whose answers a test chooses: the OFFSET and system
// control words a read gives back, and the ADC code of each conversion as a function of
// the FIN code standing at the time. It keeps every word written with the time of a clock.

#include "board/BridgeLibrary.h"
#include "runs/Clock.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace qztest {

class RunBoard : public qz::BridgeLibrary {
  public:
    int32_t offsetCode = 0x8000;
    int32_t sysReply = 0x012200;
    // code(fin, k): the code of conversion k (from 0) with FIN x1 at fin.
    std::function<int(int fin, int k)> code = [](int, int) { return 32768; };
    const qz::Clock* clock = nullptr;
    qz::LinkState link = qz::LinkState::Connected;

    struct Word {
        int32_t word;
        double at;
    };
    std::vector<Word> words;
    int conversions = 0;

    std::vector<int32_t> wordsOnly() const {
        std::vector<int32_t> w;
        for (const Word& x : words)
            w.push_back(x.word);
        return w;
    }

    int32_t Search_For_Boards(int32_t, int32_t, int16_t& count, uint8_t* paths) override {
        count = 1;
        paths[0] = 1;
        return 0;
    }
    int32_t Connect(int32_t, int32_t, uint8_t, int32_t& handle) override {
        handle = 1;
        return 0;
    }
    int32_t Download_Firmware(int32_t, const uint8_t*) override { return 0; }
    int32_t Vendor_Request(int32_t, int32_t request, int32_t value, int32_t index,
                           int32_t direction, int32_t length, uint8_t* buffer) override {
        int32_t reply = 0;
        if (request == 221 && direction == 0) {
            last_ = index << 16 | value;
            words.push_back({last_, clock ? clock->seconds() : 0.0});
            if ((last_ & 0xFF0000) == 0x080000) fin_ = last_ & 0xFFFF;
            return 0;
        }
        if (request == 221)
            reply = last_ == 0x8B0000 ? 0x0B0000 | offsetCode : last_ == 0x810000 ? sysReply : 0;
        if (request == 232) adc_ = code(fin_, conversions++);
        if (request == 233) reply = adc_;
        for (int32_t i = 0; i < std::min(length, 3); ++i)
            buffer[i] = static_cast<uint8_t>(reply >> (8 * i));
        return 0;
    }
    qz::LinkState linkState() const override { return link; }

  private:
    int32_t last_ = 0;
    int fin_ = 0;
    int adc_ = 0;
};

} // namespace qztest
