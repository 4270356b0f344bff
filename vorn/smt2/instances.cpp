#include "vorn/smt2/instances.h"

#include <utility>

namespace vorn::smt2 {

std::size_t InstanceCache::Hash::operator()(const Application& application) const {
  // FNV-1a, a word at a time.
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const Term* t : application)
    hash = (hash ^ t->get_id()) * 0x100000001b3U;
  return static_cast<std::size_t>(hash ^ hash >> 32U);
}

void InstanceCache::renew(const TermManager& manager) {
  if (collections == manager.get_collection_count()) return;
  *this = InstanceCache();
  collections = manager.get_collection_count();
}

const Term* InstanceCache::find(const Application& application) const {
  const auto found = instances.find(application);
  return found == instances.end() ? nullptr : found->second;
}

void InstanceCache::add(const Application& application, const Term* instance) {
  make_room(application.size() + 1);
  instances.emplace(application, instance);
}

const std::vector<const Term*>* InstanceCache::find_dependents(const Term* first_parameter) const {
  const auto found = dependents.find(first_parameter->get_id());
  return found == dependents.end() ? nullptr : &found->second;
}

const std::vector<const Term*>& InstanceCache::add_dependents(const Term* first_parameter,
                                                              std::vector<const Term*> terms) {
  make_room(terms.size() + 1);
  return dependents.insert_or_assign(first_parameter->get_id(), std::move(terms)).first->second;
}

void InstanceCache::make_room(std::size_t pointers) {
  if (size + pointers > kMaxPointers) {
    instances.clear();
    dependents.clear();
    size = 0;
  }
  size += pointers;
}

}  // namespace vorn::smt2
