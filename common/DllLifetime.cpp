#include "common/DllLifetime.h"

#include <atomic>

namespace qm::common {

namespace {

std::atomic<DllLifetimeLink*> g_last = nullptr;

}  // namespace

void DllLifetimeLink::Enlist() noexcept {
  m_next = g_last;
  while (!g_last.compare_exchange_weak(m_next, this)) {
  }
}

void EndDllLifetime() noexcept {
  while (DllLifetimeLink* const link = g_last) {
    g_last = std::exchange(link->m_next, nullptr);
    link->End();
  }
}

}  // namespace qm::common
