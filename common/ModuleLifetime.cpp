#include "common/ModuleLifetime.h"

namespace {

CModuleLifetimeLink* g_last = nullptr;

}  // namespace

void CModuleLifetimeLink::Enlist() noexcept { m_next = std::exchange(g_last, this); }

void EndModuleLifetime() noexcept {
  while (CModuleLifetimeLink* const link = g_last) {
    g_last = std::exchange(link->m_next, nullptr);
    link->End();
  }
}
