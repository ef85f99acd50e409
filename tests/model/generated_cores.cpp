// SPDX-License-Identifier: MIT
#include "generator.hpp"

namespace model {

namespace {

// Names and revisions that differ little, so that how each is read decides the
// order among them.
Text odd_name(Dice& dice) {
    return dice.pick_text(
        {"Vexa-K300",  "Vexa-K420",  "Vexa-K350",  "Vexa-100",   "Vexa-K37",    "K350",
         "1",          "-",          "",           nullptr,      "Vexa-K4600",  "Vexa-K46x",
         "Vexa-K46",   "Vexa-Kx60",  "Vexa-KK4",   "vexa-100",   "Vexa-1000",   "Vexa-460",
         "ab-K460",    "ab-K461",    "abcde-K460", "abcdeK461",  "Vexa-K 46",   "Vexa-K+46",
         "Vexa-K-46",  "K460",       "k46X",       "Vexa-K\n46", "\xc3\xa9",    "Vexa-K460 ",
         "VexaK-460",  "Vexa-K350x", "Vexa--K460", "Vexa--460",  "Vexa-K4\n60", "Vexa-K4599",
         "a\tb%",      "Vexa-k460",  "-K460",      "--K460",     "Vexa-K46\v",  "k35x",
         "Vexa-K\t45", "Vexa-K045",  "Vexa-KK460", "Vexa- K46",  "Vexa-\nK460", "abcd-459",
         "Vexa-K\v46", "Vexa-K\f46", "Vexa-K\r46"});
}

Text odd_revision(Dice& dice) {
    return dice.pick_text({"r1p0",
                           "r1p2_7",
                           "r10p2",
                           "r0p1-00rel0",
                           "r5p0_012345r1",
                           "",
                           nullptr,
                           "r",
                           "rp",
                           "r1",
                           "r1p",
                           "r1p2_",
                           "rp1_5",
                           "rpp1_2",
                           "xr1p2_3rel4",
                           "xyr1p2_3rel4",
                           "r1p2_ 5rel3",
                           "r1p2_5v7",
                           "r1p2_l9",
                           "r1p2_d3l",
                           "r1p2_rel",
                           "r1p2_12rel9x",
                           "r1p2_-5rel1",
                           "r1p2_+5rel1",
                           "r\np1_1rel1",
                           "r1p2_3\nrel4",
                           "1p2_3rel4",
                           "r1_2p3",
                           "R1p0_00rel0",
                           "r1p2_v",
                           "r p _ ",
                           "r1p_3rel4",
                           "rapb_00rel0",
                           "r1p2_99l",
                           "r1p2__3rel4",
                           "r1p2_1vrel5",
                           "r1p2_\nrel4",
                           "rr1p2_3rel4",
                           "r1pp2_3rel4",
                           "r1p2_0d5rel",
                           "r1p2_1rel5",
                           "r1p2_1rel4",
                           "r1p2_1rel0",
                           "r1p2_1lv4",
                           "r1p2_1lv6",
                           "r1p2_1dl2r",
                           "r1p2_1rl3d",
                           "r1p2_1v3l",
                           "r1p2_00001",
                           "r1p2_00001l9",
                           "r1p2_\t1rel5",
                           "r1p2_1",
                           "r1p2_1v",
                           "r1p2_1 rel5",
                           "r1p2_1dev5",
                           "r1p1_9rel9",
                           "r1p2x1rel5",
                           "r0p9_99rel9",
                           "r1p3-00rel0",
                           "r1p2_\v1rel5",
                           "r1p2_\f1rel5",
                           "r1p2_\r1rel5"});
}

Text name(Dice& dice) {
    if (dice.one_in(5))
        return odd_name(dice);
    return dice.pick({"k30x", "k32x", "k42x", "k46x", "k46x", "k52x", "k53x", "k56x", "k58x",
                      "Vexa-K460", "k99x"});
}

Text revision(Dice& dice) {
    if (dice.one_in(5))
        return odd_revision(dice);
    std::string revision = "r" + std::to_string(dice.below(3));
    revision += "p" + std::to_string(dice.below(2));
    revision += "_" + dice.pick({"00", "05", "5", "12"});
    revision += dice.pick({"rel", "rel", "dev"});
    return revision + std::to_string(dice.below(3));
}

} // namespace

std::vector<Core> generate_cores(Dice& dice) {
    std::vector<Core> cores;
    const unsigned kind = dice.below(6);
    for (unsigned i = dice.below(kind < 2 ? 12 : 6); i > 0; --i) {
        // One core in many revisions, many cores in one, or a mixture.
        const Text core = kind == 0 ? "k46x" : kind == 1 ? odd_name(dice) : name(dice);
        const Text of_core = kind == 0   ? odd_revision(dice)
                             : kind == 1 ? "r1p2_1rel5"
                                         : revision(dice);
        cores.push_back({core, of_core});
    }
    return cores;
}

} // namespace model
