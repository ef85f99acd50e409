// SPDX-License-Identifier: MIT
#include "paired.hpp"

#include <algorithm>
#include <cstdio>
#include <vector>

#include <sys/resource.h>
#include <time.h>

namespace paired {

namespace {

constexpr double shortest_slice = 2e-4;
constexpr std::size_t fewest_rounds = 5;
constexpr std::size_t most_rounds = 2001;

// The value below which that part of the values lies.
double quantile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1) + 0.5)];
}

double median(const std::vector<double>& values) {
    return quantile(values, 0.5);
}

// A work, done so often in a slice that the clock's own cost and resolution do
// not show. Warms up on the way.
class Work {
public:
    explicit Work(const Slice& slice_) : slice(slice_) {
        while (slice(times) < shortest_slice)
            times *= 2;
    }

    double nanoseconds() const { return slice(times) / static_cast<double>(times) * 1e9; }

private:
    const Slice& slice;
    std::size_t times = 1;
};

} // namespace

double processor_seconds() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    rusage children = {};
    getrusage(RUSAGE_CHILDREN, &children);
    const auto children_seconds = children.ru_utime.tv_sec + children.ru_stime.tv_sec;
    const auto children_microseconds = children.ru_utime.tv_usec + children.ru_stime.tv_usec;
    return static_cast<double>(time.tv_sec + children_seconds) +
           static_cast<double>(time.tv_nsec) * 1e-9 +
           static_cast<double>(children_microseconds) * 1e-6;
}

void compare(std::string_view row, double size, const Slice& library, const Slice& floor,
             double seconds) {
    const Work library_work(library);
    const Work floor_work(floor);
    std::vector<double> library_times;
    std::vector<double> floor_times;
    std::vector<double> ratios;
    std::vector<double> differences;
    const double end = processor_seconds() + seconds;
    while (ratios.size() < fewest_rounds ||
           (processor_seconds() < end && ratios.size() < most_rounds)) {
        // Whoever goes second finds the caches as the other left them.
        const bool library_first = ratios.size() % 2 == 0;
        const double first = (library_first ? library_work : floor_work).nanoseconds();
        const double second = (library_first ? floor_work : library_work).nanoseconds();
        library_times.push_back(library_first ? first : second);
        floor_times.push_back(library_first ? second : first);
        ratios.push_back(library_times.back() / floor_times.back());
        differences.push_back(library_times.back() - floor_times.back());
    }
    std::printf("{\"row\": \"%.*s\", \"size\": %.0f, \"library_ns\": %.6g, \"floor_ns\": %.6g, "
                "\"ratio\": %.4f, \"ratio_low\": %.4f, \"ratio_high\": %.4f, "
                "\"difference_ns\": %.6g, \"rounds\": %zu}\n",
                static_cast<int>(row.size()), row.data(), size, median(library_times),
                median(floor_times), median(ratios), quantile(ratios, 0.25), quantile(ratios, 0.75),
                median(differences), ratios.size());
    std::fflush(stdout);
}

} // namespace paired
