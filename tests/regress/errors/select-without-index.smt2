; expect: 3:10: select takes 2 arguments, got 1
(declare-const a (Array (_ BitVec 8) Bool))
(assert (select a))
