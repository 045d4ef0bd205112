#pragma once

#include <string>
#include <vector>

// Output and statistics of the benchmarks. Each number is one line: "name: value (bound x): met".
namespace figures {

double median(std::vector<double> values); // 0 for none
// The smallest value that at least `share` (0 to 1) of the values do not exceed; 0 for none.
double percentile(std::vector<double> values, double share);

// A number with its upper bound. `remark` follows in brackets.
void print(const std::string &name, double value, const std::string &unit, double bound,
           const std::string &remark = {});
// A number for the reader, without a bound.
void note(const std::string &name, double value, const std::string &unit, const std::string &remark = {});
void note(const std::string &name, const std::string &text);

} // namespace figures
