// The law between volts and FIN DAC codes, by its worked values and its edges.

#include "levels/Messages.h"
#include "levels/TransferLaw.h"

#include <gtest/gtest.h>

#include <cmath>

using qz::ForceVoltage;
using qz::LawRefusal;
using qz::outputV;
using qz::UpdateOutputLimits;

namespace {

constexpr int32_t kOffset = 0x8000, kM = 0xFFFF, kC = 0x8000;

// The worked figures are given to six decimals: a result is right when it shows them.
constexpr double kSixth = 5e-7;

} // namespace

TEST(OutputLimits, WorkedValues) {
    struct Row {
        float VREF;
        int32_t OFFSET, m, c;
        double VoutMin, VoutMax;
        const char *vl, *vh, *zero;
    };
    const Row rows[] = {
        {5.0f, kOffset, kM, kC, -12.8125, 12.812109, "-12.813", "12.812", "8000"},
        {2.5f, kOffset, kM, kC, -6.40625, 6.406054, "-06.406", "06.406", "8000"},
        {5.0f, 0x4000, kM, kC, -6.40625, 19.218359, "-06.406", "19.218", "4000"},
        {5.0f, 0, kM, kC, 0.0, 25.624609, "00.000", "25.625", "0000"},
        {5.0f, kOffset, 0x7FFF, kC, -12.8125, 0.0, "-12.813", "00.000", "8000"},
        {5.0f, kOffset, kM, 0x8100, -12.712402, 12.8125, "-12.712", "12.813", "8000"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(testing::Message() << "VREF " << r.VREF << std::hex << " OFFSET " << r.OFFSET
                                        << " m " << r.m << " c " << r.c);
        const qz::OutputLimits l = UpdateOutputLimits(r.VREF, r.OFFSET, r.m, r.c);
        ASSERT_TRUE(l.ok);
        EXPECT_EQ(l.txtFINx1, r.zero) << "the code of 0 V";
        EXPECT_EQ(l.txtOutputVl, r.vl);
        EXPECT_EQ(l.txtOutputVh, r.vh);
        EXPECT_NEAR(l.VoutMin, r.VoutMin, kSixth);
        EXPECT_NEAR(l.VoutMax, r.VoutMax, kSixth);
    }
    // x2 is held at 0 and at 0x10000, one past the last code.
    EXPECT_EQ(UpdateOutputLimits(5.0f, 0x4000, kM, 0x9000).VoutMax, 19.21875f);
    EXPECT_EQ(UpdateOutputLimits(5.0f, kOffset, kM, 0x7000).VoutMin, -12.8125f);
}

TEST(ForceVoltage, WorkedValues) {
    struct Row {
        float VREF;
        int32_t OFFSET;
        double V;
        int32_t x1;
        const char* word;
        double output;
        const char* text;
    };
    const Row rows[] = {
        {5.0f, kOffset, 1.0, 35326, "0889FE", 1.000195, "01.000"},
        {5.0f, kOffset, -5.0, 19980, "084E0C", -5.000191, "-05.000"},
        {2.5f, kOffset, 1.0, 37883, "0893FB", 0.999999, "01.000"},
        {5.0f, 0x4000, 10.0, 41959, "08A3E7", 9.99999, "10.000"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(testing::Message() << "VREF " << r.VREF << " request " << r.V);
        const qz::ForceResult f = ForceVoltage(r.V, r.VREF, r.OFFSET, kM, kC);
        ASSERT_EQ(f.refusal, LawRefusal::None) << f.message;
        EXPECT_EQ(f.x1, r.x1);
        EXPECT_EQ(f.txtWrite, r.word);
        EXPECT_EQ(f.txtDaccode, std::string(r.word).substr(2));
        EXPECT_NEAR(f.output, r.output, kSixth);
        EXPECT_EQ(f.txtOutputV, r.text);
    }
    // m 0x7FFF: the same code, only the output moves (VoutMax, 0 V, refuses the request).
    EXPECT_EQ(ForceVoltage(1.0, 5.0f, kOffset, 0x7FFF, kC).refusal, LawRefusal::OutsideLimits);
    const qz::ForceResult half = qz::forceCode(1.0, 5.0f, kOffset, 0x7FFF, kC);
    EXPECT_EQ(half.x1, 35326);
    EXPECT_EQ(half.x2, 17663);
    EXPECT_NEAR(half.output, -5.906153, kSixth);
}

TEST(ForceVoltage, LimitsAreTakenBeyondThemRefused) {
    const qz::OutputLimits l = UpdateOutputLimits(5.0f, kOffset, kM, kC);
    qz::ForceResult f = ForceVoltage(l.VoutMax, 5.0f, kOffset, kM, kC);
    EXPECT_EQ(f.txtWrite, "08FFFF") << "VoutMax itself";
    f = ForceVoltage(l.VoutMin, 5.0f, kOffset, kM, kC);
    EXPECT_EQ(f.txtWrite, "080000") << "VoutMin itself";
    // The request is a double: "12.812109" reads as the single VoutMax but lies above it.
    for (double V : {12.8122, 12.812109, -12.8126, static_cast<double>(NAN)}) {
        f = ForceVoltage(V, 5.0f, kOffset, kM, kC);
        EXPECT_EQ(f.message, "Number too large. Please reenter voltage between Z/S and F/S.") << V;
        EXPECT_EQ(f.txtWrite, "") << "nothing to send";
        EXPECT_EQ(f.limits.txtOutputVh, "12.812") << "the limits were worked out first";
    }
    EXPECT_EQ(ForceVoltage(-0.001, 5.0f, 0, kM, kC).refusal, LawRefusal::OutsideLimits)
        << "OFFSET 0 takes no negative request";
    // c 0x8100: the inverse law puts VoutMax at 0x10000, held at the last code.
    f = ForceVoltage(12.8125, 5.0f, kOffset, kM, 0x8100);
    EXPECT_EQ(f.txtWrite, "08FFFF");
    EXPECT_EQ(f.x2, 65536);
    EXPECT_EQ(f.txtOutputV, "12.813");
}

TEST(ForceVoltage, ReferenceOfZeroGivesNoLevel) {
    for (float VREF : {0.0f, -0.0f, NAN, INFINITY}) {
        const qz::ForceResult f = ForceVoltage(1.0, VREF, kOffset, kM, kC);
        EXPECT_EQ(f.refusal, LawRefusal::Reference) << VREF;
        EXPECT_EQ(f.message, qz::kNotValidNumber);
        EXPECT_EQ(f.txtWrite, "");
    }
    EXPECT_FALSE(outputV(0.0f, kOffset, kM, kC, 0x8000).ok);
    EXPECT_FALSE(qz::stepCode(1000.0f, 0.0f));
}

TEST(OutputV, ForwardLawWithAnUnroundedSingleX2) {
    qz::OutputVResult o = outputV(5.0f, kOffset, kM, kC, 35326);
    EXPECT_NEAR(o.V, 1.000195, kSixth);
    EXPECT_EQ(o.txtOutputV, "01.000");
    // m 0x7FFF halves the code: 35327 gives x2 17663.5, which ForceVoltage would round.
    o = outputV(5.0f, kOffset, 0x7FFF, kC, 35327);
    EXPECT_EQ(o.x2, 17663.5f);
    EXPECT_NEAR(o.V, -5.905957, kSixth);
    EXPECT_EQ(outputV(5.0f, kOffset, kM, 0x8100, 0xFFFF).V, 12.8125f) << "held at 0x10000";
    EXPECT_EQ(outputV(5.0f, kOffset, kM, 0, 0).txtOutputV, "-12.813") << "held at 0";
}

TEST(MeasurementForms, StepCodeAndTheVoltageRangeOfAnEntry) {
    EXPECT_EQ(qz::codeForVolts(0.0, 5.0f, 0x1234), 0x1234);
    EXPECT_EQ(qz::stepCode(1000.0f, 2.5f), 5115);
    EXPECT_EQ(qz::stepCode(-1000.0f, 5.0f), -2558);
    EXPECT_EQ(qz::stepCode(0.1f, 5.0f), 0) << "below one code";
    EXPECT_FALSE(qz::stepCode(3e38f, 5.0f));

    qz::EntryVoltageRange r = qz::entryVoltageRange(5.0f, kOffset);
    EXPECT_DOUBLE_EQ(r.highest, 12.812304493781948) << "65535 in the law, not 65536";
    EXPECT_EQ(r.lowestText, "-12.81");
    r = qz::entryVoltageRange(5.0f, 0);
    EXPECT_EQ(r.highestText, "25.63") << "25.625 is a tie, which formatting takes up";
    EXPECT_EQ(r.highestShown, 25.63);
    EXPECT_EQ(r.lowestText, "0.00");
}
