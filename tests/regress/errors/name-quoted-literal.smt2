; expect: 3:14: unknown symbol '#x00'
(declare-const a (_ BitVec 8))
(assert (= a |#x00|))
