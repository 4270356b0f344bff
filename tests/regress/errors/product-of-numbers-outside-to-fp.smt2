; expect: 5:10: =: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const p Bool)
(declare-const a (_ BitVec 8))
(declare-const x Float32)
(assert (= p (* 2 3)))
