// Damaged scripts: whatever the text, the only exception is ScriptError.
#include <gtest/gtest.h>

#include <random>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

const char* const kScripts[] = {
    R"((set-logic QF_FP)
(set-info :source |two
lines| ) ; remark
(set-option :produce-models true)
(define-sort F () (_ FloatingPoint 3 5))
(declare-fun x () F)
(declare-const |y z| F)
(declare-const r RoundingMode)
(define-fun half ((v F) (w F)) Bool (fp.lt (fp.div RNE v ((_ to_fp 3 5) RNE 2.0)) w))
(assert (! (half x |y z|) :named first))
(assert (let ((a (fp.add r x |y z|)) (b (fp.neg x))) (or (fp.eq a b) (fp.isNaN a))))
(check-sat)
(get-model)
(get-value (x (fp.leq x |y z|) ((_ to_fp 8 24) r (/ (- 1) 3.5))))
(echo "done ""well""")
(exit)
)",
    R"((set-logic QF_BVFP)
(declare-const a (_ BitVec 8))
(declare-const b (_ BitVec 8))
(define-sort Same (X) X)
(declare-const c (Same Float16))
(push 1)
(assert (distinct a b #x0f (_ bv12 8)))
(assert (= ((_ to_fp 3 5) a) (fp #b1 ((_ extract 2 0) b) #b0101)))
(assert (bvult (bvadd a b (bvnot a)) ((_ rotate_left 3) b)))
(assert (= ((_ repeat 2) a) (concat ((_ zero_extend 4) #xA) ((_ sign_extend 4) #b0011))))
(check-sat-assuming (true (not false)))
(pop 1)
(get-assertions)
(reset-assertions)
(assert (=> true (ite false true (xor true false))))
(check-sat)
(get-info :all-statistics)
)",
    R"((declare-const m RoundingMode)
(declare-const d Float64)
(define-fun id ((t Float64)) Float64 t)
(define-const k Float64 (id (_ +oo 11 53)))
(assert (and (fp.geq d k (_ -zero 11 53)) (= d ((_ to_fp_unsigned 11 53) m #b101))))
(assert (not (= (_ NaN 11 53) ((_ to_fp 11 53) roundTowardZero 1e2 0.1))))
)",
    "\xEF\xBB\xBF(declare-const |a\\b| (Float32)) ; \xE9\r(declare-sort U 02)\r\n"
    "(define-fun f ((v Float32)) Float32 (fp.neg v))(push)\n"
    "(assert (and (xor (= |a\\b| (f (f ((_ to_fp 8 24) RNE (* 2.0 (+ -1.5 (- 3 1 07))) (- "
    "30))))))))\n"
    "(assert (distinct ((_ to_fp 8 24) RTZ (/ 1 3 7.0) 99999999999999) (f (f |a\\b|))))\n"
    "(set-option :timeout 1)(set-option :regular-output-channel \"stdout\")(pop)(check-sat)\n",
};

/// Runs a text; whatever comes of it, it is no crash and no other exception.
void survive(const std::string& text) {
  Session s;
  try {
    s.run(text);
  } catch (const ScriptError& error) {
    EXPECT_GE(error.get_line(), 1U);
    EXPECT_GE(error.get_column(), 1U);
    EXPECT_FALSE(error.get_message().empty());
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what() << "\nin\n" << text;
  }
}

TEST(Damage, PrefixesOfScripts) {
  for (const std::string script : kScripts) {
    for (std::size_t n = 0; n <= script.size(); ++n)
      survive(script.substr(0, n));
  }
}

TEST(Damage, MissingPieces) {
  for (const std::string script : kScripts) {
    for (std::size_t n = 0; n < script.size(); ++n) {
      for (const std::size_t length : {1U, 2U, 5U}) {
        std::string text = script;
        survive(text.erase(n, length));
      }
    }
  }
}

TEST(Damage, ChangedBytes) {
  std::mt19937 random(12345);
  const std::string alphabet = "()()|\";:#_!- 0129abx.\n\\\x01\xC3[";
  const auto below = [&](std::size_t n) {
    return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
  };
  for (const std::string script : kScripts) {
    for (int round = 0; round < 4000; ++round) {
      std::string text = script;
      for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
        text[below(text.size())] = alphabet[below(alphabet.size())];
      }
      survive(text);
    }
  }
}

TEST(Damage, MovedPieces) {
  std::mt19937 random(54321);
  const auto below = [&](std::size_t n) {
    return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
  };
  for (const std::string script : kScripts) {
    for (int round = 0; round < 2000; ++round) {
      std::string text = script;
      const std::string piece = text.substr(below(text.size()), 1 + below(30));
      survive(text.insert(below(text.size()), piece));
    }
  }
}

TEST(Damage, ArbitraryBytes) {
  std::mt19937 random(999);
  for (int round = 0; round < 2000; ++round) {
    std::string text = "(assert ";
    for (std::size_t n = random() % 40; n > 0; --n)
      text += static_cast<char>(random() % 256);
    survive(text);
  }
}

}  // namespace
}  // namespace vorn::smt2
