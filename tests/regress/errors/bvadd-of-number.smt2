; expect: 3:15: bvadd: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const a (_ BitVec 8))
(assert (= a (bvadd a 1)))
