#include "figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace figures {

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double percentile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto rank = static_cast<size_t>(std::ceil(share * static_cast<double>(values.size())));
    return values[std::clamp<size_t>(rank, 1, values.size()) - 1];
}

namespace {

std::string tail(const std::string &remark)
{
    return remark.empty() ? std::string() : " [" + remark + ']';
}

} // namespace

void print(const std::string &name, double value, const std::string &unit, double bound, const std::string &remark)
{
    std::printf("%s: %.4g%s (bound %.4g%s): %s%s\n", name.c_str(), value, unit.c_str(), bound, unit.c_str(),
                value <= bound ? "met" : "missed", tail(remark).c_str());
    std::fflush(stdout);
}

void note(const std::string &name, double value, const std::string &unit, const std::string &remark)
{
    std::printf("%s: %.4g%s%s\n", name.c_str(), value, unit.c_str(), tail(remark).c_str());
    std::fflush(stdout);
}

void note(const std::string &name, const std::string &text)
{
    std::printf("%s: %s\n", name.c_str(), text.c_str());
    std::fflush(stdout);
}

} // namespace figures
