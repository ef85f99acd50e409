/* SPDX-License-Identifier: MIT
 *
 * Runs the scenario: c_host ROOT */
#include "scenario.h"

int main(int argc, char** argv) {
    Scenario scenario = {0};
    if (argc != 2)
        return 2;
    scenario.root = argv[1];
    for (int step = 0; step < NUM_STEPS; ++step)
        run_step(&scenario, step, stdout);
    return 0;
}
