; expect: 8:10: fp.isPositive: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(assert (fp.isPositive 1.5))
