; expect: 4:18: store takes 3 arguments, got 2
(declare-const a (Array (_ BitVec 8) Bool))
(declare-const i (_ BitVec 8))
(assert (select (store a i) i))
