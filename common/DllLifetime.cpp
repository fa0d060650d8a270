#include "common/DllLifetime.h"

#include <atomic>

namespace {

std::atomic<CModuleLifetimeLink*> g_last = nullptr;

}  // namespace

void CModuleLifetimeLink::Enlist() noexcept {
  m_next = g_last;
  while (!g_last.compare_exchange_weak(m_next, this)) {
  }
}

void EndModuleLifetime() noexcept {
  while (CModuleLifetimeLink* const link = g_last) {
    g_last = std::exchange(link->m_next, nullptr);
    link->End();
  }
}
