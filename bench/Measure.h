#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

/// Milliseconds that `work` takes once.
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

/// The middle one of an odd number of values.
inline double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Milliseconds that `work` takes: the median of five runs after one that is not counted.
template <class Work>
double MedianMilliseconds(Work work) {
  work();
  std::vector<double> times(5);
  for (double& time : times) {
    time = Milliseconds(work);
  }
  return Median(times);
}

/// Prints the value of one run of a figure, in the form that tools/bench reads.
inline void PrintRun(const char* figure, double value) { std::printf("%s %.5f\n", figure, value); }
