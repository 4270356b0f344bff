// From terms to and-inverter graphs.
//
// Each Boolean and bit-vector term becomes literals, once: what a term became is kept by the term's
// identifier. Terms may be as deep as memory allows, so the walk keeps its own stack. Uninterpreted
// constants become inputs of the graph; the list of them is what a model is read through.
#ifndef VORN_BV_BIT_BLASTER_H
#define VORN_BV_BIT_BLASTER_H

#include <cstddef>
#include <deque>
#include <span>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/circuits.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::bv {

/// Translates terms of one manager into one graph. What the graph throws on its way, Terminated or
/// std::length_error, passes through; the term can be asked for again.
class VORN_EXPORT BitBlaster {
 public:
  /// What a model is read through.
  struct Input {
    const Term* constant;       // uninterpreted
    std::span<const Lit> bits;  // least significant first; one for a Boolean
  };

  /// Borrows the manager of the terms and the graph that they become part of.
  BitBlaster(const TermManager& manager, Aig& graph) : mgr(manager), circuits(graph) {}

  /// The literal of a Boolean term.
  /// Throws std::invalid_argument, naming the term, where `t` is not Boolean or where an operation,
  /// constant or literal that is neither Boolean nor a bit-vector occurs in it.
  Lit blast_bool(const Term* t);
  /// The bits of a bit-vector term, least significant first; they stay valid and unchanged.
  /// Throws std::invalid_argument as above.
  std::span<const Lit> blast_bits(const Term* t);

  /// Forgets the bits of all terms but uninterpreted constants: the graph gives the same bits to
  /// whoever asks again. Takes back the promise of blast_bits.
  void release_bits();

  /// The uninterpreted constants met so far, in the order in which they were met.
  const std::vector<Input>& get_inputs() const { return inputs; }

 private:
  std::span<const Lit> blast(const Term* root);
  const Lit* find(const Term* t) const {
    return t->get_id() < cache.size() ? cache[t->get_id()] : nullptr;
  }
  std::size_t get_width(const Term* t) const;
  void blast_leaf(const Term* t);
  void blast_operation(const Term* t);
  using Storage = std::deque<std::vector<Lit>>;  // chunks that never grow beyond their capacity
  std::span<const Lit> store(const Term* t, std::span<const Lit> bits, Storage* storage);
  void note(const Term* t, const Lit* bits);

  const TermManager& mgr;
  Circuits circuits;
  std::vector<const Lit*> cache;  // by term: its first bit, in storage; null: not met
  Storage of_inputs;
  Storage of_others;
  std::vector<Input> inputs;
};

}  // namespace vorn::bv

#endif
