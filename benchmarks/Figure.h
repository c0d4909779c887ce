#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zm::benchmark {

/** One measured figure and what it is held against: a limit, or a peer measured in the same run. */
struct Figure {
    std::string name;
    std::string unit;
    double value = 0;
    double limit = 0;      ///< the value (or its ratio to the peer) shall not be above it
    std::string peer = {}; ///< what the peer is; empty without one
    double peerValue = 0;
    bool limitIsRatio = false;
    std::string note = {};
};

/** Prints the figure as one JSON line; returns whether its limit holds. */
bool print(const Figure& figure);

/** Milliseconds that `work` takes, `turns` times after `warmUp` turns, sorted. */
std::vector<double> milliseconds(int turns, int warmUp, const std::function<void(int turn)>& work);
double median(std::vector<double> values);
/** The value that the share `part` (0..1) of all values do not exceed. */
double percentile(std::vector<double> values, double part);

} // namespace zm::benchmark
