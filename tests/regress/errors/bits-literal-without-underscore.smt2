; expect: 3:15: unknown symbol 'bv5'; a bit-vector is written (_ bv5 width)
(declare-const a (_ BitVec 8))
(assert (= a (bv5 8)))
