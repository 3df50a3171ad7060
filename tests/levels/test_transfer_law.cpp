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
        const char *vl, *vh;
    };
    const Row rows[] = {
        {5.0f, kOffset, kM, kC, -12.8125, 12.812109, "-12.813", "12.812"},
        {2.5f, kOffset, kM, kC, -6.40625, 6.406054, "-06.406", "06.406"},
        {5.0f, 0x4000, kM, kC, -6.40625, 19.218359, "-06.406", "19.218"},
        {5.0f, 0, kM, kC, 0.0, 25.624609, "00.000", "25.625"},
        {5.0f, kOffset, 0x7FFF, kC, -12.8125, 0.0, "-12.813", "00.000"},
        {5.0f, kOffset, kM, 0x8100, -12.712402, 12.8125, "-12.712", "12.813"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(testing::Message() << "VREF " << r.VREF << " OFFSET " << std::hex << r.OFFSET
                                        << " m " << r.m << " c " << r.c);
        const qz::OutputLimits l = UpdateOutputLimits(r.VREF, r.OFFSET, r.m, r.c);
        ASSERT_TRUE(l.ok);
        EXPECT_NEAR(l.VoutMin, r.VoutMin, kSixth);
        EXPECT_NEAR(l.VoutMax, r.VoutMax, kSixth);
        EXPECT_EQ(l.txtOutputVl, r.vl);
        EXPECT_EQ(l.txtOutputVh, r.vh);
    }
}

TEST(OutputLimits, ZeroCodeIsTheInverseLawAtZeroVolts) {
    qz::OutputLimits l = UpdateOutputLimits(5.0f, kOffset, kM, kC);
    EXPECT_EQ(l.FinZeroCode, 0x8000);
    EXPECT_EQ(l.txtFINx1, "8000");
    l = UpdateOutputLimits(5.0f, 0x4000, kM, kC);
    EXPECT_EQ(l.FinZeroCode, 0x4000);
    EXPECT_EQ(l.txtFINx1, "4000");
    l = UpdateOutputLimits(2.5f, 0x00AB, 0x1234, 0x4321);
    EXPECT_EQ(l.txtFINx1, "00AB") << "m and c play no part in it";
}

TEST(OutputLimits, X2IsHeldBetweenZeroAndOnePastTheLastCode) {
    // m 0x7FFF puts x2max at 65535 / 2 = 32767.5, a tie that goes to the even 32768.
    EXPECT_EQ(UpdateOutputLimits(5.0f, kOffset, 0x7FFF, kC).x2max, 32768);
    // With c above 0x8000 the top clamps to 0x10000, so VoutMax is span - OFFSET/2^16 span.
    const qz::OutputLimits high = UpdateOutputLimits(5.0f, kOffset, kM, 0x8100);
    EXPECT_EQ(high.x2max, 65536);
    EXPECT_EQ(high.VoutMax, 12.8125f);
    EXPECT_EQ(UpdateOutputLimits(5.0f, 0x4000, kM, 0x9000).VoutMax, 19.21875f);
    // With c below 0x8000 the bottom clamps to 0.
    const qz::OutputLimits low = UpdateOutputLimits(5.0f, kOffset, kM, 0x7000);
    EXPECT_EQ(low.x2min, 0.0);
    EXPECT_EQ(low.VoutMin, -12.8125f);
}

TEST(ForceVoltage, WorkedValues) {
    struct Row {
        float VREF;
        int32_t OFFSET, m;
        double V;
        int32_t x1, word;
        double output;
        const char* text;
    };
    const Row rows[] = {
        {5.0f, kOffset, kM, 1.0, 35326, 0x0889FE, 1.000195, "01.000"},
        {5.0f, kOffset, kM, -5.0, 19980, 0x084E0C, -5.000191, "-05.000"},
        {2.5f, kOffset, kM, 1.0, 37883, 0x0893FB, 0.999999, "01.000"},
        {5.0f, 0x4000, kM, 10.0, 41959, 0x08A3E7, 9.99999, "10.000"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(testing::Message() << "VREF " << r.VREF << " request " << r.V);
        const qz::ForceResult f = ForceVoltage(r.V, r.VREF, r.OFFSET, r.m, kC);
        ASSERT_EQ(f.refusal, LawRefusal::None);
        EXPECT_EQ(f.message, "");
        EXPECT_EQ(f.x1, r.x1);
        EXPECT_EQ(f.DAClast, r.word);
        EXPECT_NEAR(f.output, r.output, kSixth);
        EXPECT_EQ(f.txtOutputV, r.text);
    }
}

TEST(ForceVoltage, GainBelowFullScaleKeepsTheCodeOfARequest) {
    // m 0x7FFF puts VoutMax at 0 V, so ForceVoltage refuses 1 V; its arithmetic alone
    // gives the same code as with full gain, and only the output moves.
    EXPECT_EQ(ForceVoltage(1.0, 5.0f, kOffset, 0x7FFF, kC).refusal, LawRefusal::OutsideLimits);
    const qz::ForceResult f = qz::forceCode(1.0, 5.0f, kOffset, 0x7FFF, kC);
    ASSERT_EQ(f.refusal, LawRefusal::None);
    EXPECT_EQ(f.x1, 35326);
    EXPECT_EQ(f.x2, 17663);
    EXPECT_EQ(f.DAClast, 0x0889FE);
    EXPECT_NEAR(f.output, -5.906153, kSixth);
    EXPECT_EQ(f.txtOutputV, "-05.906");
    EXPECT_FALSE(f.limits.ok) << "no limits were worked out";
}

TEST(ForceVoltage, FieldTextsOfARequest) {
    const qz::ForceResult f = ForceVoltage(-5.0, 5.0f, kOffset, kM, kC);
    EXPECT_EQ(f.txtDaccode, "4E0C");
    EXPECT_EQ(f.txtWrite, "084E0C");
    EXPECT_EQ(f.x2, 19980);
    EXPECT_EQ(f.limits.txtOutputVh, "12.812") << "the limits are worked out first";
}

TEST(ForceVoltage, GainBelowFullScaleMovesOnlyTheShownOutput) {
    const qz::ForceResult full = ForceVoltage(-5.0, 5.0f, kOffset, kM, kC);
    const qz::ForceResult half = ForceVoltage(-5.0, 5.0f, kOffset, 0x7FFF, kC);
    ASSERT_EQ(half.refusal, LawRefusal::None);
    EXPECT_EQ(half.x1, full.x1);
    EXPECT_EQ(half.x2, 9990);
    EXPECT_NEAR(half.output, -8.906345, kSixth);
    EXPECT_LT(half.limits.VoutMax, full.limits.VoutMax);
}

TEST(ForceVoltage, RequestsAtTheLimitsAreTakenBeyondThemRefused) {
    const qz::OutputLimits l = UpdateOutputLimits(5.0f, kOffset, kM, kC);
    qz::ForceResult f = ForceVoltage(l.VoutMax, 5.0f, kOffset, kM, kC);
    ASSERT_EQ(f.refusal, LawRefusal::None) << "VoutMax itself";
    EXPECT_EQ(f.x1, 0xFFFF);
    EXPECT_EQ(f.DAClast, 0x08FFFF);
    f = ForceVoltage(l.VoutMin, 5.0f, kOffset, kM, kC);
    ASSERT_EQ(f.refusal, LawRefusal::None) << "VoutMin itself";
    EXPECT_EQ(f.x1, 0);
    EXPECT_EQ(f.DAClast, 0x080000);
    EXPECT_EQ(f.txtDaccode, "0000");
    EXPECT_EQ(ForceVoltage(12.812, 5.0f, kOffset, kM, kC).refusal, LawRefusal::None);

    for (double V : {12.8122, -12.8126, 100.0, -1e300, static_cast<double>(NAN)}) {
        f = ForceVoltage(V, 5.0f, kOffset, kM, kC);
        EXPECT_EQ(f.refusal, LawRefusal::OutsideLimits) << V;
        EXPECT_EQ(f.message, "Number too large. Please reenter voltage between Z/S and F/S.");
        EXPECT_EQ(f.txtWrite, "") << "nothing to send";
    }
}

TEST(ForceVoltage, RequestIsADoubleNotCutToSingle) {
    // VoutMax is 12.81210899...; the text "12.812109" is that same single, but the double
    // it gives lies above it, and ForceVoltage tests the double.
    const qz::OutputLimits l = UpdateOutputLimits(5.0f, kOffset, kM, kC);
    ASSERT_EQ(12.812109f, l.VoutMax);
    EXPECT_EQ(ForceVoltage(12.812109, 5.0f, kOffset, kM, kC).refusal, LawRefusal::OutsideLimits);
}

TEST(ForceVoltage, WithOffsetZeroNoNegativeRequestPasses) {
    EXPECT_EQ(ForceVoltage(-0.001, 5.0f, 0, kM, kC).refusal, LawRefusal::OutsideLimits);
    const qz::ForceResult f = ForceVoltage(0.0, 5.0f, 0, kM, kC);
    ASSERT_EQ(f.refusal, LawRefusal::None);
    EXPECT_EQ(f.DAClast, 0x080000);
    EXPECT_EQ(f.txtOutputV, "00.000");
}

TEST(ForceVoltage, CodePastTheRegisterIsHeldAtTheLastCode) {
    // c 0x8100: VoutMax is 12.8125, whose x1 by the inverse law is 0x10000.
    const qz::ForceResult f = ForceVoltage(12.8125, 5.0f, kOffset, kM, 0x8100);
    ASSERT_EQ(f.refusal, LawRefusal::None);
    EXPECT_EQ(f.x1, 0xFFFF);
    EXPECT_EQ(f.DAClast, 0x08FFFF);
    EXPECT_EQ(f.txtDaccode, "FFFF");
    EXPECT_EQ(f.x2, 65536);
    EXPECT_EQ(f.output, 12.8125f);
    EXPECT_EQ(f.txtOutputV, "12.813");
}

TEST(ForceVoltage, ReferenceOfZeroIsRefusedNotComputed) {
    for (float VREF : {0.0f, -0.0f, NAN, INFINITY}) {
        const qz::ForceResult f = ForceVoltage(1.0, VREF, kOffset, kM, kC);
        EXPECT_EQ(f.refusal, LawRefusal::Reference) << VREF;
        EXPECT_EQ(f.message, qz::kNotValidNumber);
        EXPECT_FALSE(f.limits.ok);
        EXPECT_EQ(f.limits.txtOutputVh, "");
        EXPECT_EQ(f.txtWrite, "");
    }
    EXPECT_FALSE(UpdateOutputLimits(0.0f, kOffset, kM, kC).ok);
}

TEST(OutputV, ShowsTheCodeOfTheConsoleThroughTheForwardLaw) {
    qz::OutputVResult o = outputV(5.0f, kOffset, kM, kC, 0x8000);
    ASSERT_TRUE(o.ok);
    EXPECT_EQ(o.V, 0.0f);
    EXPECT_EQ(o.txtOutputV, "00.000");
    o = outputV(5.0f, kOffset, kM, kC, 35326);
    EXPECT_NEAR(o.V, 1.000195, kSixth);
    EXPECT_EQ(o.txtOutputV, "01.000");
    o = outputV(5.0f, kOffset, 0x7FFF, kC, 35326);
    EXPECT_NEAR(o.V, -5.906153, kSixth);
}

TEST(OutputV, KeepsTheFractionOfX2WhereForceVoltageRounds) {
    // m 0x7FFF halves the code: 35327 gives x2 17663.5, which ForceVoltage makes 17664.
    const qz::OutputVResult o = outputV(5.0f, kOffset, 0x7FFF, kC, 35327);
    EXPECT_EQ(o.x2, 17663.5f);
    EXPECT_NEAR(o.V, -5.905957, kSixth);
    EXPECT_NEAR(qz::lawVolts(17664.0, 5.0f, kOffset), -5.905762, kSixth);
}

TEST(OutputV, X2IsHeldBetweenZeroAndOnePastTheLastCode) {
    qz::OutputVResult o = outputV(5.0f, kOffset, kM, 0x8100, 0xFFFF);
    EXPECT_EQ(o.x2, 65536.0f);
    EXPECT_EQ(o.V, 12.8125f);
    o = outputV(5.0f, kOffset, kM, 0, 0);
    EXPECT_EQ(o.x2, 0.0f);
    EXPECT_EQ(o.V, -12.8125f);
    EXPECT_EQ(o.txtOutputV, "-12.813");
}

TEST(OutputV, ReferenceOfZeroIsRefused) {
    const qz::OutputVResult o = outputV(0.0f, kOffset, kM, kC, 0x8000);
    EXPECT_FALSE(o.ok);
    EXPECT_EQ(o.message, qz::kNotValidNumber);
    EXPECT_EQ(o.txtOutputV, "");
}

TEST(MeasurementForms, VoltageToCodeAndStepToCodeStep) {
    EXPECT_EQ(qz::spanOf(2.0f), 10.25) << "the Other reference with 2 in its box";
    EXPECT_EQ(qz::codeForVolts(1.0, 5.0f, kOffset), 35326);
    EXPECT_EQ(qz::codeForVolts(0.0, 5.0f, 0x1234), 0x1234);
    EXPECT_DOUBLE_EQ(qz::lawX1(-5.0, 5.0f, kOffset), 19980.487804878048);
    EXPECT_FALSE(qz::codeForVolts(1.0, 0.0f, kOffset));
    EXPECT_FALSE(qz::codeForVolts(1e300, 5.0f, kOffset));

    EXPECT_EQ(qz::stepCode(1000.0f, 2.5f), 5115) << "round(65536 / 12.8125)";
    EXPECT_EQ(qz::stepCode(1000.0f, 5.0f), 2558);
    EXPECT_EQ(qz::stepCode(0.5f, 5.0f), 1);
    EXPECT_EQ(qz::stepCode(0.1f, 5.0f), 0) << "the step is below one code";
    EXPECT_EQ(qz::stepCode(-1000.0f, 5.0f), -2558);
    EXPECT_FALSE(qz::stepCode(1000.0f, 0.0f));
    EXPECT_FALSE(qz::stepCode(3e38f, 5.0f));
}

TEST(MeasurementForms, HighestAndLowestVoltageOfAnEntry) {
    qz::EntryVoltageRange r = qz::entryVoltageRange(5.0f, kOffset);
    EXPECT_DOUBLE_EQ(r.highest, 12.812304493781948) << "65535 in the law, not 65536";
    EXPECT_DOUBLE_EQ(r.lowest, -12.812695506218052);
    EXPECT_EQ(r.highestText, "12.81");
    EXPECT_EQ(r.lowestText, "-12.81");
    EXPECT_EQ(r.highestShown, 12.81);
    EXPECT_EQ(r.lowestShown, -12.81);

    r = qz::entryVoltageRange(5.0f, 0);
    EXPECT_EQ(r.highestText, "25.63") << "25.625 is a tie, which formatting takes up";
    EXPECT_EQ(r.highestShown, 25.63);
    EXPECT_EQ(r.lowestText, "0.00");
    EXPECT_EQ(r.lowestShown, 0.0);

    r = qz::entryVoltageRange(2.5f, 0xFFFF);
    EXPECT_EQ(r.highestText, "0.00");
    EXPECT_EQ(r.lowestText, "-12.81");
}
