#include "benchmarks/Figure.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace zm::benchmark {

namespace {

double rounded(double value) {
    return std::round(value * 10000) / 10000;
}

} // namespace

bool print(const Figure& figure) {
    const double ratio = figure.peerValue > 0 ? figure.value / figure.peerValue : 0;
    const bool good = (figure.limitIsRatio ? ratio : figure.value) <= figure.limit;
    nlohmann::ordered_json line{
        {"figure", figure.name}, {"value", rounded(figure.value)}, {"unit", figure.unit}};
    if (!figure.peer.empty()) {
        line["peer"] = figure.peer;
        line["peerValue"] = rounded(figure.peerValue);
        line["ratio"] = rounded(ratio);
    }
    line[figure.limitIsRatio ? "ratioLimit" : "limit"] = figure.limit;
    line["holds"] = good;
    if (!figure.note.empty()) {
        line["note"] = figure.note;
    }
    std::puts(line.dump().c_str());
    std::fflush(stdout);
    return good;
}

std::vector<double> milliseconds(int turns, int warmUp, const std::function<void(int turn)>& work) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> times;
    for (int turn = -warmUp; turn < turns; ++turn) {
        const auto start = Clock::now();
        work(turn);
        const std::chrono::duration<double, std::milli> spent = Clock::now() - start;
        if (turn >= 0) {
            times.push_back(spent.count());
        }
    }
    std::sort(times.begin(), times.end());
    return times;
}

double median(std::vector<double> values) {
    return percentile(std::move(values), 0.5);
}

double percentile(std::vector<double> values, double part) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1,
                           static_cast<size_t>(part * static_cast<double>(values.size())))];
}

} // namespace zm::benchmark
