; expect: 3:13: select: expected an array, got a term of (_ BitVec 8)
(declare-const a (_ BitVec 8))
(assert (= (select a a) a))
