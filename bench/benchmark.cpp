#include "benchmark.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace
{

double getMedian(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

Times measure(int runs, const std::function<double()> &ours, const std::function<double()> &floor)
{
    std::vector<double> oursTimes;
    std::vector<double> floorTimes;
    for (int i = 0; i < runs; ++i) {
        floorTimes.push_back(floor());
        oursTimes.push_back(ours());
    }
    return {getMedian(oursTimes), getMedian(floorTimes)};
}

BenchTable::BenchTable(const QString &name)
{
    std::printf("\n%s\n%10s %12s %12s %8s\n", qPrintable(name), "size", "ours ms", "floor ms",
                "ratio");
    std::fflush(stdout);
}

BenchTable::~BenchTable()
{
    if (rows.size() < 2)
        return;
    const Row &first = rows.front();
    const Row &last = rows.back();
    const auto slope = [&](double from, double to) {
        return std::log(to / from) / std::log(double(last.size) / first.size);
    };
    std::printf("%10s %12.2f %12.2f\n", "growth", slope(first.times.ours, last.times.ours),
                slope(first.times.floor, last.times.floor));
    std::fflush(stdout);
}

void BenchTable::add(int size, const Times &times)
{
    rows.push_back({size, times});
    std::printf("%10d %12.3f %12.3f %8.2f\n", size, times.ours, times.floor,
                times.ours / times.floor);
    std::fflush(stdout);
}
