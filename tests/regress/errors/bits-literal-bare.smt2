; expect: 3:14: unknown symbol 'bv255'; a bit-vector is written (_ bv255 width)
(declare-const a (_ BitVec 8))
(assert (= a bv255))
