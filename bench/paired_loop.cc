#include "paired_loop.h"

#include <algorithm>
#include <chrono>

namespace {

double TimeOne(const std::function<void()> &operation, int repetitions) {
    const auto start = std::chrono::steady_clock::now();
    for (int number = 0; number < repetitions; ++number) operation();
    const std::chrono::duration<double, std::micro> taken =
        std::chrono::steady_clock::now() - start;
    return taken.count() / repetitions;
}

}  // namespace

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

PairedTimes TimePaired(const std::function<void()> &first, const std::function<void()> &second,
                       int rounds, int repetitions) {
    TimeOne(first, repetitions);  // caches and lazy binding
    TimeOne(second, repetitions);
    std::vector<double> firsts, seconds, ratios;
    for (int round = 0; round < rounds; ++round) {
        const bool is_even = round % 2 == 0;  // no operation always comes first
        const double a = TimeOne(is_even ? first : second, repetitions);
        const double b = TimeOne(is_even ? second : first, repetitions);
        firsts.push_back(is_even ? a : b);
        seconds.push_back(is_even ? b : a);
        ratios.push_back(firsts.back() / seconds.back());
    }
    return {Median(firsts), Median(seconds), Median(ratios)};
}
