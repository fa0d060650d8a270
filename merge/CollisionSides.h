#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "merge/Alternatives.h"
#include "merge/Checks.h"
#include "merge/FindingList.h"

namespace qm::merge {

// The sides of a collision: items of modules, such as files of one name and folder. An item has the
// member `module`, the position of its module. `isSame(a, b)` returns whether two items do not
// collide.

/// Returns the first kMaxModules items of which no two are the same.
template <class Item, class IsSame>
std::vector<const Item*> ChooseSides(const std::vector<const Item*>& items, IsSame isSame) {
  std::vector<const Item*> sides;
  for (const Item* const item : items) {
    if (sides.size() < FindingList::kMaxModules &&
        std::none_of(sides.begin(), sides.end(),
                     [&](const Item* side) { return isSame(*side, *item); })) {
      sides.push_back(item);
    }
  }
  return sides;
}

/// Returns the sides of one module whose items collide with one another; nothing if no module has
/// such items. The items of a module are beside one another.
template <class Item, class IsSame>
std::vector<const Item*> FindSidesWithinModule(const std::vector<const Item*>& items,
                                               IsSame isSame) {
  for (auto begin = items.begin(); begin != items.end();) {
    const auto end = std::find_if(
        begin, items.end(), [&](const Item* item) { return item->module != (*begin)->module; });
    std::vector<const Item*> sides = ChooseSides(std::vector<const Item*>(begin, end), isSame);
    if (sides.size() > 1) {
      return sides;
    }
    begin = end;
  }
  return {};
}

/// Returns items that collide, of which no two are the same. In a catalog, nothing if the modules
/// have alternatives that agree: `getVariant` returns a number that items of such modules share.
template <class Item, class IsSame, class GetVariant>
std::vector<const Item*> FindSides(const CheckedModules& modules,
                                   const std::vector<const Item*>& items, IsSame isSame,
                                   GetVariant getVariant) {
  std::vector<const Item*> sides = ChooseSides(items, isSame);
  if (sides.size() < 2 || modules.IsMerge()) {
    return sides;
  }
  std::vector<ModuleVariant> variants;
  variants.reserve(items.size());
  for (const Item* const item : items) {
    variants.push_back({item->module, getVariant(*item)});
  }
  const std::vector<bool> isChosen = ChooseAlternatives(modules, variants);
  std::vector<const Item*> chosen;
  for (size_t i = 0; i < items.size(); ++i) {
    if (isChosen[i]) {
      chosen.push_back(items[i]);
    }
  }
  sides = ChooseSides(chosen, isSame);
  return sides.size() < 2 ? FindSidesWithinModule(items, isSame) : sides;
}

template <class Item>
std::vector<const Item*> PointersTo(const std::vector<Item>& items) {
  std::vector<const Item*> pointers;
  pointers.reserve(items.size());
  for (const Item& item : items) {
    pointers.push_back(&item);
  }
  return pointers;
}

}  // namespace qm::merge
