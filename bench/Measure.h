#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace qm::bench {

/// Runs `work` once and returns how long it took, in milliseconds.
template <class Work>
double Milliseconds(Work work) {
  LARGE_INTEGER frequency;
  LARGE_INTEGER begin;
  LARGE_INTEGER end;
  ::QueryPerformanceFrequency(&frequency);
  ::QueryPerformanceCounter(&begin);
  work();
  ::QueryPerformanceCounter(&end);
  return 1000.0 * static_cast<double>(end.QuadPart - begin.QuadPart) /
         static_cast<double>(frequency.QuadPart);
}

/// Returns the median of an odd number of values.
inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Runs `work` once to warm up and then five times. Returns the median in milliseconds.
template <class Work>
double MedianMilliseconds(Work work) {
  work();
  std::vector<double> times(5);
  for (double& time : times) {
    time = Milliseconds(work);
  }
  return Median(times);
}

/// Prints the value of one run of a figure in the format that tools/bench reads.
inline void PrintRun(const char* figure, double value) { std::printf("%s %.5f\n", figure, value); }

}  // namespace qm::bench
