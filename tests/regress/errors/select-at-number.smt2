; expect: 3:10: select: a number is no operand here; to_fp makes it a float, (_ bvN width) writes a bit-vector
(declare-const a (Array (_ BitVec 8) Bool))
(assert (select a 3))
