#pragma once

#include <windows.h>

#include <algorithm>
#include <array>

/// Milliseconds that `work` takes: the median of five runs after one that is not counted.
template <class Work>
double MedianMilliseconds(Work work) {
  LARGE_INTEGER frequency;
  ::QueryPerformanceFrequency(&frequency);
  work();
  std::array<double, 5> times{};
  for (double& time : times) {
    LARGE_INTEGER begin;
    LARGE_INTEGER end;
    ::QueryPerformanceCounter(&begin);
    work();
    ::QueryPerformanceCounter(&end);
    time = 1000.0 * static_cast<double>(end.QuadPart - begin.QuadPart) /
           static_cast<double>(frequency.QuadPart);
  }
  std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
  return times[times.size() / 2];
}
